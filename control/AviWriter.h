#pragma once

#include <QByteArray>
#include <QIODevice>
#include <QList>
#include <QSize>

namespace cinedisc {

/// Writes a film: an AVI file of JPEG frames ("MJPG") and no sound, which the usual players and slide
/// programs read. The device must be one that can seek.
class AviWriter {
  public:
    /// `size`: pixels of every frame. `framesPerSecond` is above 0 and kept to a thousandth.
    AviWriter(QIODevice& into, QSize size, double framesPerSecond);

    /// Appends a frame, a whole JPEG file. False when the device does not take it, or the film would be
    /// larger than older players read (1 GiB).
    bool add(const QByteArray& jpeg);
    /// Writes the index and completes the header; the film cannot be read before.
    bool finish();

    int frameCount() const { return static_cast<int>(chunks_.size()); }

  private:
    struct Chunk {
        quint32 offset, size;
    };
    bool write(const QByteArray& bytes);
    QByteArray header() const;

    QIODevice& into_;
    QSize size_;
    quint32 rate_;  ///< frames in a thousand seconds
    quint32 end_ = 0;
    quint32 largest_ = 0;
    QList<Chunk> chunks_;
};

}  // namespace cinedisc
