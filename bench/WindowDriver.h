#pragma once

#include <QString>
#include <QVariant>
#include <QWidget>

namespace cinedisc::bench {

/// Uses a viewer window by the names of its controls, as a person would.
class WindowDriver {
  public:
    explicit WindowDriver(QWidget& window) : window_(window), view_(*find<QWidget>("ezDicom")) {}

    template <typename Control>
    Control* find(const char* name) const {
        auto* control = window_.findChild<Control*>(name);
        if (!control) qFatal("no control %s", name);
        return control;
    }
    void click(const char* button) const;
    /// Opens the disc and its patient of this number, counted from 0.
    void openPatient(int number) const;

    QWidget& view() const { return view_; }
    int currentFrame() const { return view_.property("CurrentFrame").toInt(); }
    int frameCount() const { return view_.property("FrameCount").toInt(); }
    /// A picture stands in the view, no notice.
    bool showsPicture() const { return frameCount() > 0 && view_.accessibleDescription().isEmpty(); }
    /// Resizes the window so that the view has this size, logical pixels.
    void resizeView(QSize size) const;

  private:
    QWidget& window_;
    QWidget& view_;
};

/// Whether a coarse picture stands in a view for one that is being decoded.
bool showsCoarse(const QWidget& view);

}  // namespace cinedisc::bench
