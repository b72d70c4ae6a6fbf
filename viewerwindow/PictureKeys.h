#pragma once

#include <QObject>
#include <QString>

#include <functional>

class QKeyEvent;
class QWheelEvent;

namespace cinedisc {

class FullScreen;
class KeysPage;
class ViewerBehaviour;
class ViewerPanels;

/// What the keyboard and the wheel do while the picture or a preview has them: they run the handlers of the
/// window's buttons. Return presses the button that has the keyboard, as Space does.
class PictureKeys final : public QObject {
    Q_OBJECT

  public:
    struct Window {
        const ViewerPanels& panels;
        ViewerBehaviour& behaviour;
        std::function<void(const QString& command)> run;
        /// Whether the window pages stills, whose files have buttons of their own.
        std::function<bool()> isStills;
        FullScreen& fullScreen;
    };
    PictureKeys(QObject& window, Window parts);

    /// Shows or hides the page that tells the keys.
    void toggleKeysPage();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    bool press(const QKeyEvent& event);
    bool escape();
    void roll(const QWheelEvent& event);
    void playOrStop();

    Window window_;
    KeysPage* page_;
    int rolled_ = 0;  ///< eighths of a degree, towards the next frame step
};

}  // namespace cinedisc
