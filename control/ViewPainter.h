#pragma once

#include "control/CornerText.h"
#include "control/HeaderFacts.h"
#include "control/Notice.h"
#include "control/ViewRole.h"
#include "control/mouse/MouseTools.h"
#include "control/picture/ViewState.h"

#include <QPainter>
#include <QRect>

#include <optional>

namespace cinedisc {

/// The notice that stands in place of a picture; empty when there is a picture or nothing is loaded. Decodes
/// the frame shown.
std::optional<Notice> noticeFor(const LoadedPicture& picture);

/// Paints a view: backdrop, picture or notice, labels and tool, corner text, border.
class ViewPainter {
  public:
    struct Look {
        ViewRole role = ViewRole::Main;
        bool fill = false;  ///< otherwise the view's own grey
        bool whiteFill = false;
        bool sunkenBorder = false;
        bool highlighted = false;  ///< has the keyboard, and is to show it
        int coveredAtTop = 0;      ///< of the content, by what lies over the view; logical pixels
        bool marked = false;       ///< the preview of the file shown
        QColor focusColour;
        QColor mark;
    };

    /// `content` is the part of the view inside its border, logical pixels; `notice` stands in place of the
    /// picture.
    void paint(QPainter& painter, const QRect& view, const QRect& content, ViewState& state,
               const std::optional<Notice>& notice, MouseTools& tools, const Look& look);

  private:
    /// Returns which device pixels it covers, counted from `corner`, the content's.
    QRect paintPicture(QPainter& painter, QPoint corner, ViewState& state, ViewRole role) const;
    CornerText::Lines cornerLines(const ViewState& state);
    void paintBorder(QPainter& painter, const QRect& view, const Look& look) const;

    CornerText corners_;
    HeaderFacts facts_;
    std::uint64_t factsOf_ = 0;  ///< the file they were taken from
};

}  // namespace cinedisc
