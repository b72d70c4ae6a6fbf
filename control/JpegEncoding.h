#pragma once

#include <QIODevice>
#include <QImage>

namespace cinedisc {

enum class JpegUse {
    Picture,  ///< keeps every pixel's own colour
    Film,     ///< a frame of a film: what decoders of films take, colour at half the resolution, grey too
};

/// Writes a picture as a baseline JPEG. False when it is larger than a JPEG can be, or the device does not
/// take it.
bool encodeJpeg(const QImage& picture, QIODevice& into, JpegUse use = JpegUse::Picture);

}  // namespace cinedisc
