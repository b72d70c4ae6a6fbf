#pragma once

#include "bench/WindowDriver.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <cstdint>
#include <functional>
#include <vector>

namespace cinedisc::bench {

/// CPU time that the calling thread has taken.
double ownMilliseconds();

/// Watches a playing cine from outside: how long each tick of its clock takes until its handlers are done,
/// the drawing included, and which frame stands in the window then.
class CineRecorder : public QObject {
  public:
    struct Tick {
        double milliseconds = 0;
        double ownMilliseconds = 0;  ///< CPU time of the user-interface thread: without waiting
        double atMilliseconds = 0;   ///< its end, since the recorder was made
        int frame = 0;
        bool drawn = false;        ///< a paint event of the view came with this frame
        bool isPicture = false;    ///< and no notice
        bool isCoarse = false;     ///< it stands for one that is being decoded
        std::uint32_t sample = 0;  ///< of what stands in the window
        QString file;
    };

    CineRecorder(QWidget& window, const WindowDriver& driver);

    const std::vector<Tick>& ticks() const { return ticks_; }
    void forget() { ticks_.clear(); }
    /// Lets the message loop run until `enough`, which is asked after each event.
    void playUntil(const std::function<bool()>& enough) const;
    /// Called at the end of each tick.
    std::function<void()> tickDone;
    bool hasPainted() const { return drawnFrame_ > 0; }
    /// When a picture was first painted, milliseconds as now(); 0 before.
    double firstPictureAt() const { return firstPicture_; }
    /// The same as CPU time of the user-interface thread, as ownMilliseconds().
    double firstPictureOwn() const { return firstPictureOwn_; }
    double now() const { return static_cast<double>(clock_.nsecsElapsed()) / 1e6; }

    /// Some of the pixels that stand in the window where the view's middle row is, as one number.
    std::uint32_t sampleOfWindow() const;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    QWidget& window_;
    const WindowDriver& driver_;
    QTimer& timer_;
    QElapsedTimer clock_;
    double begun_ = 0, ownBegun_ = 0;
    int drawnFrame_ = 0;
    double firstPicture_ = 0, firstPictureOwn_ = 0;
    std::vector<Tick> ticks_;
};

}  // namespace cinedisc::bench
