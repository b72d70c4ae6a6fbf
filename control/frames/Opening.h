#pragma once

#include "control/frames/Errand.h"
#include "control/frames/ImageFile.h"

#include <functional>
#include <memory>
#include <utility>

namespace cinedisc {

/// A file that is being opened for the views that hold this.
class Opening : public Errand {
  public:
    using Outcome = dicom::Result<std::shared_ptr<const ImageFile>>;
    using Open = std::function<Outcome()>;
    using Opened = std::function<void(const Outcome&)>;

    /// `opened` is called by the reader when the outcome is there.
    explicit Opening(Open open, Opened opened = {}) : open_(std::move(open)), opened_(std::move(opened)) {}
    /// Once it is done.
    const Outcome& outcome() const { return outcome_; }

  private:
    void work() override { outcome_ = open_(); }
    void afterwards() override {
        if (opened_) opened_(outcome_);
    }

    const Open open_;
    const Opened opened_;
    Outcome outcome_ = dicom::DecodeError{dicom::DecodeError::Kind::CannotRead, "the file cannot be read"};
};

}  // namespace cinedisc
