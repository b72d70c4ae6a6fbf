#pragma once

#include "fuzzing/window/FileParts.h"

#include <random>

namespace cinedisc::fuzzing::window {

/// Makes damaged files out of sound ones: always the same for the same seeds and the same number.
class Mutation {
  public:
    using Content = std::vector<std::byte>;
    /// DICOM files, or catalogues; one at least.
    explicit Mutation(std::vector<Content> seeds);

    /// Of every two files one is a seed that ends at the next of its parts, in front of it, within its
    /// header, behind it or within its value; the other is changed in one to four ways.
    Content operator()(std::size_t number) const;
    /// A seed as it is.
    Content sound(std::size_t number) const { return seeds_[number % seeds_.size()].content; }

  private:
    struct Seed {
        Content content;
        std::vector<FilePart> parts;
    };

    Content cut(std::size_t number) const;
    Content changed(std::size_t number) const;
    void change(Content& content, const std::vector<FilePart>& parts, std::mt19937& random) const;

    std::vector<Seed> seeds_;
    std::size_t cuts_ = 0;
};

}  // namespace cinedisc::fuzzing::window
