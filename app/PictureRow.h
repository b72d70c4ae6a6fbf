#pragma once

#include <QWidget>

class QSplitter;

namespace cinedisc {

class StripPanel;

/// What stands between the rows of buttons: the tree and the picture, parted by a handle, and the strip. The
/// strip takes the width that makes its previews squares, the picture has all the rest.
class PictureRow final : public QWidget {
    Q_OBJECT

  public:
    /// Takes both over.
    PictureRow(QSplitter& treeAndPicture, StripPanel& strip, QWidget* parent = nullptr);
    QSize minimumSizeHint() const override;

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    QSplitter& treeAndPicture_;
    StripPanel& strip_;
};

}  // namespace cinedisc
