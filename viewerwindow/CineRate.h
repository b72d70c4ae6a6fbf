#pragma once

#include "viewer/CinePace.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

namespace cinedisc {

class ViewerBehaviour;
class ViewerPanels;

/// Tells how fast a run plays and how fast it was recorded, and plays it so when that is chosen.
class CineRate final : public QObject {
    Q_OBJECT

  public:
    CineRate(QObject& window, const ViewerPanels& panels, ViewerBehaviour& behaviour);

  private:
    void tick();
    void choose(bool recordedRate);
    void show();
    double now() const { return double(clock_.nsecsElapsed()) / 1e6; }

    const ViewerPanels& panels_;
    ViewerBehaviour& behaviour_;
    QElapsedTimer clock_;
    CinePace pace_;
    RateMeter meter_;
    QTimer refresh_;
};

}  // namespace cinedisc
