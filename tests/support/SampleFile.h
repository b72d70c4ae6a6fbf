#pragma once

#include "tests/support/DicomBuilder.h"

#include <QByteArray>
#include <QSize>

namespace cinedisc::test {

constexpr QSize sampleSize(24, 32);

/// A DICOM file of so many small grey frames of 32 ms, shown without a window: a pixel's grey is its value.
inline QByteArray sampleFile(int frames) {
    auto image = DicomBuilder::image(sampleSize.height(), sampleSize.width(), frames).gradientPixels();
    image.text({0x0018, 0x1063}, "DS", "32");
    const Bytes bytes = image.build();
    return {reinterpret_cast<const char*>(bytes.data()), qsizetype(bytes.size())};
}

/// The grey of a pixel; frames are counted from 1.
constexpr int sampleGrey(int x, int y, int frame) { return ((frame - 1) * 7 + y * 3 + x) & 255; }

}  // namespace cinedisc::test
