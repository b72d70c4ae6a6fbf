#pragma once

#include <QWidget>

namespace cinedisc {

class StripPanel;

/// What stands between the rows of buttons: the picture with whatever belongs beside it, and the strip. The
/// strip takes the room that makes its previews squares, beside the picture or below it, wherever a square
/// picture becomes larger; the picture has all the rest.
class PictureRow final : public QWidget {
    Q_OBJECT

  public:
    /// Takes both over.
    PictureRow(QWidget& picture, StripPanel& strip, QWidget* parent = nullptr);
    QSize minimumSizeHint() const override;

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    QWidget& picture_;
    StripPanel& strip_;
};

}  // namespace cinedisc
