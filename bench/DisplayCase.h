#pragma once

#include "bench/Angiogram.h"
#include "control/pipeline/DisplayTables.h"
#include "control/pipeline/PictureScaler.h"
#include "control/pipeline/ScalePlan.h"

#include <QImage>

#include <string>

namespace cinedisc::bench {

/// A grey frame, its window and the 32-bit picture that it is drawn into by the program's own pipeline.
class DisplayCase {
  public:
    DisplayCase(int size, int bits, int shownSize, Smoothing smoothing = Smoothing::Smooth)
        : plan({size, size}, {shownSize, shownSize}, QRect(0, 0, shownSize, shownSize), smoothing),
          picture(shownSize, shownSize, QImage::Format_RGB32) {
        format.rows = format.columns = frame.rows = frame.columns = size;
        format.bitsStored = bits;
        format.bitsAllocated = bits > 8 ? 16 : 8;
        auto samples = angiogram(size, bits, bits > 8 ? 16 : 2);
        if (bits > 8) {
            frame.samples = std::move(samples);
        } else {
            frame.samples = std::vector<std::uint8_t>(samples.begin(), samples.end());
        }
        const double white = 1 << bits;
        rule_.emplace(grey_, WindowInForce{false, {white * 0.55, white * 0.7}}, Polarity::Inverted);
        display.table = std::make_shared<GreyTable>(*rule_, format, bits > 8);
        display.rule = &*rule_;
    }

    void draw() {
        scaler_.draw(FrameRows(frame, display, nullptr), plan.columns, plan.rows,
                     {picture.bits(), picture.bytesPerLine(), PixelTarget::Format::Rgb32});
    }

    dicom::PixelFormat format;
    dicom::Frame frame;
    DisplayRule display;
    ScalePlan plan;
    QImage picture;

  private:
    dicom::GreyTransform grey_;
    std::optional<GreyRule> rule_;
    PictureScaler scaler_;
};

}  // namespace cinedisc::bench
