#include "panels/CinePanel.h"

#include "panels/PanelParts.h"
#include "platform/widgets/IndicatorOption.h"
#include "viewer/WindowWords.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

#include <utility>

namespace cinedisc {

namespace {

/// Both options of the run's end carry this one; the words beside them differ.
constexpr const char* endOfRunCaption = "Continuos";

enum Row { HeadingRow, ControlRow, OptionRow, RowCount };  // an empty one parts the bands

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

    add(remark(tr("Cine"), this), PlayColumn, HeadingRow);
    add(playButtons(buttons), PlayColumn, ControlRow);
    Frame2 = directionFrame();
    add(Frame2, PlayColumn, OptionRow);

    add(frameHeading(design.frames), FrameColumn, HeadingRow);
    add(frameSeeker(buttons), FrameColumn, ControlRow);
    add(endOfRunAndSpeed(), FrameColumn, OptionRow);

    auto* imageSteps = new QWidget(this);
    lblImg = named(new ElidedLabel(windowWords::anyImage(), "Image : 000/000", imageSteps), "lblImg");
    lblImg->setMinimumWidth(lblImg->sizeHint().width());
    QBoxLayout* row = stepRow(buttons, {.back = "cmdPrevImage", .next = "cmdNextImage"}, *lblImg, imageSteps);
    row->setContentsMargins(0, 0, 0, 0);
    imageSteps->setLayout(row);
    lblRate = named(new ElidedLabel("", "60 fps (recorded 30)", this), "lblRate");
    asRemark(*lblRate);
    add(headingLabel(design.images, this), ImageColumn, HeadingRow);
    add(imageSteps, ImageColumn, ControlRow);
    add(lblRate, ImageColumn, OptionRow);
    arrangeIn(1);
}

void CinePanel::add(QWidget* part, Column column, int row, int rows) {
    parts_.push_back({part, column, row, rows});
}

void CinePanel::addColumn(QWidget& part) {
    add(&part, OwnColumn, HeadingRow, RowCount);
    arrangeIn(std::exchange(bands_, 0));
}

int CinePanel::leastWidth(Column column) const {
    int least = 0;
    for (const Part& part : parts_)
        if (part.column == column) least = qMax(least, part.widget->minimumSizeHint().width());
    return least;
}

int CinePanel::bandsFor(int width) const {
    constexpr int line = 2 * panelGap + 1;
    const int play = leastWidth(PlayColumn), frames = leastWidth(FrameColumn);
    const int images = leastWidth(ImageColumn), own = leastWidth(OwnColumn);
    if (width >= play + line + frames + line + images + (own > 0 ? line + own : 0)) return 1;
    return width >= qMax(play, images) + line + qMax(frames, own) ? 2 : 3;
}

void CinePanel::arrangeIn(int bands) {
    if (bands == std::exchange(bands_, bands)) return;
    // Where the columns stand: in which band of rows, at which place of the grid, over how many places. What
    // belongs together stays side by side.
    struct Place {
        int band, column, columns;
    };
    constexpr Place arrangements[][ColumnCount] = {
        {{0, 0, 1}, {0, 2, 1}, {0, 4, 1}, {0, 6, 1}},
        {{0, 0, 1}, {0, 2, 1}, {1, 0, 1}, {1, 2, 1}},
        {{0, 0, 1}, {1, 0, 3}, {0, 2, 1}, {2, 0, 3}},
    };
    qDeleteAll(lines_);
    lines_.clear();
    for (int column = 0; column < 2 * ColumnCount; ++column) grid_->setColumnStretch(column, 0);
    const auto& places = arrangements[bands - 1];
    for (const Part& part : parts_) {
        const Place& place = places[part.column];
        const int row = place.band * (RowCount + 1) + part.row;
        grid_->addWidget(part.widget, row, place.column, part.rows, place.columns);
        if (part.row != HeadingRow || place.column == 0) continue;
        lines_.push_back(groupLine(this));
        grid_->addWidget(lines_.back(), row, place.column - 1, RowCount, 1);
    }
    const bool hasOwn = parts_.back().column == OwnColumn;
    grid_->setColumnStretch(2, 5);
    if (bands == 1) grid_->setColumnStretch(6, hasOwn ? 4 : 0);
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
    row->addWidget(buttons.make("cmdPrev", part));
    Slider2 = makeSlider("Slider2", tr("Frame Seek Bar"), 1, 10);
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
