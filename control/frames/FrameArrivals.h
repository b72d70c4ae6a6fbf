#pragma once

#include <QObject>

#include <atomic>

namespace cinedisc {

/// Carries the news that a frame has been read from the reader's thread to the views. Lives on the
/// user-interface thread.
class FrameArrivals : public QObject {
    Q_OBJECT

  public:
    /// From any thread. Calls that come before the last one was delivered are delivered together with it.
    void tell();

  signals:
    void arrived() const;

  private:
    std::atomic<bool> told_ = false;
};

}  // namespace cinedisc
