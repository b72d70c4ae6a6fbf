#pragma once

#include "dicom/DecodeError.h"

#include <utility>
#include <variant>

namespace cinedisc::dicom {

/// Either a value or what was wrong with the file. Ask ok() before value().
template <typename T>
class [[nodiscard]] Result {
  public:
    Result(T value) : content_(std::in_place_index<0>, std::move(value)) {}
    Result(DecodeError error) : content_(std::in_place_index<1>, std::move(error)) {}

    bool ok() const { return content_.index() == 0; }
    explicit operator bool() const { return ok(); }

    T& value() { return std::get<0>(content_); }
    const T& value() const { return std::get<0>(content_); }
    const DecodeError& error() const { return std::get<1>(content_); }

  private:
    std::variant<T, DecodeError> content_;
};

}  // namespace cinedisc::dicom
