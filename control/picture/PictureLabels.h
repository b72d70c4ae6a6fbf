#pragma once

#include <QFont>
#include <QPainter>
#include <QPointF>
#include <QRectF>
#include <QString>
#include <QStringList>

#include <map>
#include <vector>

namespace cinedisc {

/// A text that was put on a frame by hand.
struct PictureLabel {
    QPointF at;  ///< left end of the middle of its line, as a share of the picture, 0 ... 1 on both axes
    QString text;
    bool isBeingTyped = false;  ///< in the editor, which shows it meanwhile
};

/// The labels of a file by frame, and how they are drawn: in proportion to the picture, so that a copy looks
/// like the view.
class PictureLabels {
  public:
    /// Of a frame, counted from 1.
    std::vector<PictureLabel>& ofFrame(int frame) { return frames_[frame]; }
    bool any(int frame) const;
    void clear() { frames_.clear(); }

    /// `picture` is where the whole picture lies, in the painter's units.
    void paint(QPainter& painter, int frame, const QRectF& picture) const;
    /// What labels are written with on a picture of this size.
    static QFont font(const QRectF& picture);
    /// The place that a label takes: inside the picture, wherever it was put.
    static QRectF box(const PictureLabel& label, const QRectF& picture) { return layout(label, picture).box; }
    /// Where a label is seen to be, in PictureLabel::at's terms.
    static QPointF place(const PictureLabel& label, const QRectF& picture);
    /// The label under a point, the topmost first; -1 when there is none.
    int at(int frame, QPointF point, const QRectF& picture) const;

  private:
    struct Layout {
        QFont font;
        QStringList rows;
        QRectF box;
    };
    /// A text that is too wide is broken into rows, and written smaller when these are too many.
    static Layout layout(const PictureLabel& label, const QRectF& picture);

    std::map<int, std::vector<PictureLabel>> frames_;
};

}  // namespace cinedisc
