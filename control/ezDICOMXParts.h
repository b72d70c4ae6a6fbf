#pragma once

#include "control/HeaderPage.h"
#include "control/PlainMembers.h"
#include "control/ViewPainter.h"
#include "control/WrongPatientBar.h"
#include "control/ezDICOMX.h"
#include "control/mouse/MouseTools.h"
#include "control/picture/ViewState.h"

#include <QBasicTimer>
#include <QPointF>

#include <optional>

namespace cinedisc {

/// What of a view's display can be chosen.
struct DisplayChoices {
    QString file;
    bool bestFit, smooth, inverted, header, fill;
    qint32 zoomPercent, backgroundColor, mouseMode;

    bool operator==(const DisplayChoices&) const = default;
};

/// What the component is made of.
struct ezDICOMX::Parts {
    Parts(ezDICOMX& widget, ViewRole viewRole, ImageLibrary& openFiles);

    /// The part of the component inside its border.
    QRect content() const;
    /// Tells the view its size; done before anything asks for places.
    void layOut();
    /// Takes the file over when it has been opened within the patience.
    void settle(Patience patience);
    /// Waits for the window in force as long as a command may.
    void awaitWindow();
    /// Shows what the disc has given by now.
    void takeArrival();
    /// The notice, if there is one, is also what assistive programs read. Looks at the frame shown, so it
    /// decodes it.
    std::optional<Notice> describe();
    void describeWith(const std::optional<Notice>& notice);
    /// Works out the direction of play from the frame just put and the one before.
    void noteStep(qint32 from, qint32 to);
    /// Has what may follow read ahead; done when the frame shown has been drawn.
    void lookAhead();
    /// Puts the zoom and draws only if it differs: the strip fits its previews again whenever it moves.
    void putZoom(const ViewZoom& zoom);
    void refreshHeaderPage();
    void fillHeaderPage();
    /// Warns, or no longer warns, for the file shown and the patient named beside it.
    void judgePatient();
    /// Gives the children their places.
    void placeChildren();
    void chooseTool();
    /// Which run a preview shows; "" while that is not known.
    QString toolTip() const;
    /// Tells whoever listens when something that can be chosen is not as it was.
    void tellChoices();

    ezDICOMX& owner;
    ViewRole role;
    ImageLibrary& library;
    ViewState view;
    MouseTools tools;
    ViewPainter painter;
    HeaderPage* headerPage = nullptr;         ///< a child, made when first shown
    std::uint64_t headerPageOf = 0;           ///< the file whose header it holds
    std::shared_ptr<HeaderText> headerText;   ///< while it is awaited
    QString namedPatientFolder;               ///< "" when nobody's name is shown
    WrongPatientBar* wrongPatient = nullptr;  ///< a child, made when first needed
    int coveredAtTop = 0;                     ///< by the warning, logical pixels of the content
    PlainMembers plain;
    Neighbour neighbour;
    PlayDirection direction = PlayDirection::Forward;
    QString next;                 ///< the neighbour's name
    QString nextOf;               ///< for this file
    PlayDirection nextTowards{};  ///< and direction
    qint32 mouseMode = MouseWindow;
    bool backgroundFill = false;
    qint32 backgroundColor = 1;
    bool showHeader = false;
    qint32 thumbStyle = 0;
    bool isMarked = false;
    std::optional<DisplayChoices> told;
    std::pair<std::uint64_t, qint32> drawn;  ///< file, by its revision, and frame that were drawn last
    bool awaiting = false;                   ///< the disc has not given the frame shown yet
    QBasicTimer noticeDelay;                 ///< runs while the last frame stands for the awaited one
    bool isReachedByKey = false;             ///< what has the keyboard by way of Tab is marked
    std::optional<QPointF> pressedAt;        ///< of a click on a preview
};

}  // namespace cinedisc
