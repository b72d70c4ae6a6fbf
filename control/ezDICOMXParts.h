#pragma once

#include "control/HeaderPage.h"
#include "control/PlainMembers.h"
#include "control/ViewPainter.h"
#include "control/ezDICOMX.h"
#include "control/mouse/MouseTools.h"
#include "control/picture/ViewState.h"

#include <QPointF>

#include <optional>

namespace cinedisc {

/// What the component is made of.
struct ezDICOMX::Parts {
    Parts(ezDICOMX& widget, ViewRole viewRole, ImageLibrary& library)
        : owner(widget), role(viewRole), view(library), tools(view, widget) {}

    /// The part of the component inside its border.
    QRect content() const;
    /// Tells the view its size; done before anything asks for places.
    void layOut();
    /// The notice, if there is one, is also what assistive programs read. Looks at the frame shown, so it
    /// decodes it.
    void describe();
    void describeWith(const std::optional<Notice>& notice);
    void refreshHeaderPage();
    void chooseTool();

    ezDICOMX& owner;
    ViewRole role;
    ViewState view;
    MouseTools tools;
    ViewPainter painter;
    HeaderPage* headerPage = nullptr;  ///< a child, made when first shown
    std::uint64_t headerPageOf = 0;    ///< the file whose header it holds
    PlainMembers plain;
    qint32 mouseMode = MouseWindow;
    bool backgroundFill = false;
    qint32 backgroundColor = 1;
    bool showHeader = false;
    qint32 thumbStyle = 0;
    std::optional<QPointF> pressedAt;  ///< of a click on a preview
};

}  // namespace cinedisc
