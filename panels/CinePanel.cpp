#include "panels/CinePanel.h"

#include "panels/PanelParts.h"
#include "platform/widgets/IndicatorOption.h"
#include "viewer/WindowWords.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

namespace cinedisc {

namespace {

/// Both options of the run's end carry this one; the words beside them differ.
constexpr const char* endOfRunCaption = "Continuos";

/// Columns of the panel's grid; a line stands between any two.
enum Column { PlayColumn = 0, FrameColumn = 2, ImageColumn = 4, OwnColumn = 6 };
enum Row { HeadingRow, ControlRow, OptionRow, RowCount };

/// A part of the panel: an empty widget with a row for what stands in it.
QHBoxLayout* rowOf(QWidget* part, int spacing = buttonGap) {
    auto* row = new QHBoxLayout(part);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(spacing);
    return row;
}

QLabel* headingLabel(const Heading& heading, QWidget* parent) {
    return named(remark(CinePanel::tr(heading.text), parent), heading.name);
}

}  // namespace

CinePanel::CinePanel(const ButtonTable& buttons, const CinePanelDesign& design, QWidget* parent)
    : QFrame(parent), grid_(new QGridLayout(this)) {
    setObjectName(design.name);
    grid_->setContentsMargins(0, 0, 0, 0);
    grid_->setHorizontalSpacing(panelGap);
    grid_->setVerticalSpacing(buttonGap);
    for (const int column : {PlayColumn, FrameColumn})
        grid_->addWidget(groupLine(this), 0, column + 1, RowCount, 1);

    grid_->addWidget(remark(tr("Cine"), this), HeadingRow, PlayColumn);
    grid_->addWidget(playButtons(buttons), ControlRow, PlayColumn);
    Frame2 = directionFrame();
    grid_->addWidget(Frame2, OptionRow, PlayColumn);

    grid_->addWidget(frameHeading(design.frames), HeadingRow, FrameColumn);
    grid_->addWidget(frameSeeker(buttons), ControlRow, FrameColumn);
    grid_->addWidget(endOfRunAndSpeed(), OptionRow, FrameColumn);

    lblImg = named(new ElidedLabel(windowWords::anyImage(), "Image : 000/000", this), "lblImg");
    lblImg->setMinimumWidth(lblImg->sizeHint().width());
    grid_->addWidget(headingLabel(design.images, this), HeadingRow, ImageColumn);
    grid_->addLayout(stepRow(buttons, {.back = "cmdPrevImage", .next = "cmdNextImage"}, *lblImg, this),
                     ControlRow, ImageColumn);

    lblRate = named(new ElidedLabel("", "60 fps (recorded 30)", this), "lblRate");
    asRemark(*lblRate);
    grid_->addWidget(lblRate, OptionRow, ImageColumn);

    grid_->setColumnStretch(FrameColumn, 5);
}

void CinePanel::addColumn(QWidget& part) {
    grid_->addWidget(groupLine(this), 0, OwnColumn - 1, RowCount, 1);
    grid_->addWidget(&part, 0, OwnColumn, RowCount, 1);
    grid_->setColumnStretch(OwnColumn, 4);
}

void CinePanel::addToDirections(QPushButton& button) { Frame2->layout()->addWidget(&button); }

QWidget* CinePanel::playButtons(const ButtonTable& buttons) {
    auto* part = new QWidget(this);
    auto* row = rowOf(part);
    for (const char* name : {"cmdReverse", "cmdStop", "cmdPlay"}) row->addWidget(buttons.make(name, part));
    return part;
}

QFrame* CinePanel::directionFrame() {
    auto* frame = named(new QFrame(this), "Frame2");
    auto* row = rowOf(frame, panelGap);
    Option9 = named(new QRadioButton(tr("Forward"), frame), "Option9");
    Option10 = named(new QRadioButton(tr("Reverse"), frame), "Option10");
    for (QRadioButton* option : {Option9, Option10}) {
        option->setFocusPolicy(Qt::TabFocus);
        row->addWidget(option);
    }
    return frame;
}

QWidget* CinePanel::frameHeading(const Heading& heading) {
    auto* part = new QWidget(this);
    lblFra = named(new ElidedLabel(windowWords::anyFrame(), "Frame :00000", part), "lblFra");
    lblFra->setMinimumWidth(lblFra->sizeHint().width());
    lblFra->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    auto* row = rowOf(part);
    row->addWidget(headingLabel(heading, part));
    row->addStretch();
    row->addWidget(lblFra);
    return part;
}

QWidget* CinePanel::frameSeeker(const ButtonTable& buttons) {
    auto* part = new QWidget(this);
    auto* row = rowOf(part);
    Slider2 = makeSlider("Slider2", tr("Frame Seek Bar"), 1, 10);
    row->addWidget(buttons.make("cmdPrev", part));
    row->addWidget(Slider2, 1);
    row->addWidget(buttons.make("cmdNext", part));
    return part;
}

QWidget* CinePanel::endOfRunAndSpeed() {
    auto* part = new QWidget(this);
    auto* loop = named(new QLabel(tr("Loop"), part), "Label2");
    auto* continuous = named(new QLabel(tr("Continuous"), part), "Label3");
    Option4 = named(new IndicatorOption(tr(endOfRunCaption), *loop, part), "Option4");
    Option11 = named(new IndicatorOption(tr(endOfRunCaption), *continuous, part), "Option11");
    Option4->setToolTip(tr("At its end the run starts again"));
    Option11->setToolTip(tr("At its end the run goes on with the next file"));
    Slider1 = makeSlider("Slider1", tr("Speed Bar"), 0, 10);
    Slider1->setPageStep(1);
    constexpr int shortestSpeedBar = 64;
    Slider1->setMinimumWidth(shortestSpeedBar);
    auto* row = rowOf(part);
    row->addWidget(Option4);
    row->addWidget(loop);
    row->addSpacing(panelGap);
    row->addWidget(Option11);
    row->addWidget(continuous);
    row->addStretch(1);
    row->addWidget(remark(tr("Speed Bar"), part));
    row->addWidget(Slider1, 1);
    chkRecordedRate = named(new QCheckBox(tr("Recorded"), part), "chkRecordedRate");
    chkRecordedRate->setToolTip(tr("Play as many frames a second as were recorded"));
    chkRecordedRate->setFocusPolicy(Qt::TabFocus);
    row->addWidget(chkRecordedRate);
    return part;
}

QSlider* CinePanel::makeSlider(const char* name, const QString& text, int min, int max) {
    auto* slider = named(new QSlider(Qt::Horizontal, this), name);
    slider->setRange(min, max);
    slider->setToolTip(text);
    slider->setAccessibleName(text);
    return slider;
}

}  // namespace cinedisc
