#pragma once

#include "control/frames/Errand.h"
#include "control/frames/ImageFile.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace cinedisc {

/// The header of an open file as text, some of which may still lie on the disc.
class HeaderText : public Errand {
  public:
    /// `written` is called by the reader when the text is there.
    HeaderText(std::shared_ptr<const ImageFile> file, dicom::LongValues longValues,
               std::function<void()> written)
        : file_(std::move(file)), longValues_(longValues), written_(std::move(written)) {}
    /// Once it is done, as UTF-8; null when there was no memory for it.
    const std::string* text() const { return text_ ? &*text_ : nullptr; }

  private:
    void work() override { text_ = dicom::headerText(file_->dicom(), longValues_); }
    void tell() override { written_(); }

    const std::shared_ptr<const ImageFile> file_;
    const dicom::LongValues longValues_;
    const std::function<void()> written_;
    std::optional<std::string> text_;
};

}  // namespace cinedisc
