#pragma once

#include <QObject>
#include <QString>

#include <functional>

class QPoint;

namespace cinedisc {

class ezDICOMX;

/// The menu that the right mouse button opens on the picture: what the window's buttons do, and what has no
/// button.
class PictureMenu final : public QObject {
    Q_OBJECT

  public:
    /// Commands that have no button.
    struct Extras {
        std::function<void()> exportFilm, fullScreen, keys;
    };
    PictureMenu(ezDICOMX& picture, std::function<void(const QString& command)> run, Extras extras);

  private:
    void open(const QPoint& at);

    ezDICOMX& picture_;
    std::function<void(const QString& command)> run_;
    Extras extras_;
};

}  // namespace cinedisc
