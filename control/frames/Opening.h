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

    /// `opened` is called by the reader when the outcome is there. `asker`: a view looks at the first frame,
    /// a probe does not.
    explicit Opening(Open open, std::function<void()> opened = {}, Asker asker = Asker::Probe)
        : open_(std::move(open)), opened_(std::move(opened)), asker_(asker) {}
    /// Once it is done.
    const Outcome& outcome() const { return outcome_; }

    std::shared_ptr<const FrameRun> toBeLookedAt() const override {
        const bool isLookedAt =
            asker_ != Asker::Probe && outcome_ && outcome_.value()->dicom().frameCount() > 0;
        return isLookedAt ? outcome_.value() : nullptr;
    }

  private:
    void work() override { outcome_ = open_(); }
    void tell() override {
        if (opened_) opened_();
    }

    const Open open_;
    const std::function<void()> opened_;
    const Asker asker_;
    Outcome outcome_ = dicom::DecodeError{dicom::DecodeError::Kind::CannotRead};
};

}  // namespace cinedisc
