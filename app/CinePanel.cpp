#include "app/CinePanel.h"

#include "app/PanelParts.h"
#include "app/PatientStepPanel.h"
#include "platform/widgets/IndicatorOption.h"
#include "platform/widgets/SeekSlider.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace cinedisc {

namespace {

constexpr ButtonRow reverse = {"cmdReverse", "", Picture::Reverse, "Play backward"};
constexpr ButtonRow stop = {"cmdStop", "Stop", Picture::None, "Stop the cine"};
constexpr ButtonRow play = {"cmdPlay", "", Picture::Play, "Play forward"};
constexpr ButtonRow previousFrame = {"cmdPrev", "", Picture::PreviousFrame, "Previous frame"};
constexpr ButtonRow nextFrame = {"cmdNext", "", Picture::NextFrame, "Next frame"};
constexpr ButtonRow previousImage = {"cmdPrevImage", "", Picture::PreviousImage, "Previous image file"};
constexpr ButtonRow nextImage = {"cmdNextImage", "", Picture::NextImage, "Next image file"};

/// Both options of the run's end carry this one; the words beside them differ.
constexpr const char* endOfRunCaption = "Continuos";

QBoxLayout* column() {
    auto* layout = new QVBoxLayout;
    layout->setSpacing(buttonGap);
    return layout;
}

}  // namespace

CinePanel::CinePanel(QWidget* parent) : QFrame(parent) {
    setObjectName("Frame9");
    Frame1 = new PatientStepPanel(this);
    auto* columns = new QHBoxLayout(this);
    columns->setContentsMargins(0, 0, 0, 0);
    columns->setSpacing(panelGap);
    columns->addLayout(playColumn());
    columns->addWidget(groupLine(this));
    columns->addLayout(frameColumn(), 1);
    columns->addWidget(groupLine(this));
    columns->addLayout(imageColumn());
    columns->addWidget(groupLine(this));
    columns->addWidget(Frame1);
}

QBoxLayout* CinePanel::playColumn() {
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(buttonGap);
    for (const ButtonRow& row : {reverse, stop, play}) buttons->addWidget(makeButton(row, this));
    auto* layout = column();
    layout->addWidget(remark("Cine", this));
    layout->addLayout(buttons);
    layout->addWidget(directionFrame());
    return layout;
}

QWidget* CinePanel::directionFrame() {
    auto* frame = named(new QFrame(this), "Frame2");
    auto* row = new QHBoxLayout(frame);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(panelGap);
    Option9 = named(new QRadioButton("Forward", frame), "Option9");
    Option10 = named(new QRadioButton("Reverse", frame), "Option10");
    for (QRadioButton* option : {Option9, Option10}) {
        option->setFocusPolicy(Qt::TabFocus);
        row->addWidget(option);
    }
    return frame;
}

QBoxLayout* CinePanel::frameColumn() {
    Slider2 = makeSlider("Slider2", "Frame Seek Bar", 1, 10);
    lblFra = named(new ElidedLabel("Frame", "Frame :00000", this), "lblFra");
    auto* heading = new QHBoxLayout;
    heading->addWidget(named(remark("Frame Scroll Bar", this), "Label8"));
    heading->addStretch();
    heading->addWidget(lblFra);
    lblFra->setAlignment(Qt::AlignRight | Qt::AlignVCenter);

    auto* seek = new QHBoxLayout;
    seek->setSpacing(buttonGap);
    seek->addWidget(makeButton(previousFrame, this));
    seek->addWidget(Slider2, 1);
    seek->addWidget(makeButton(nextFrame, this));

    Slider1 = makeSlider("Slider1", "Speed Bar", 0, 10);
    Slider1->setPageStep(1);
    auto* options = new QHBoxLayout;
    options->setSpacing(buttonGap);
    addEndOfRunOptions(*options);
    options->addStretch();
    options->addWidget(remark("Speed Bar", this));
    options->addWidget(Slider1);

    auto* layout = column();
    layout->addLayout(heading);
    layout->addLayout(seek);
    layout->addLayout(options);
    return layout;
}

void CinePanel::addEndOfRunOptions(QBoxLayout& row) {
    auto* loop = named(new QLabel("Loop", this), "Label2");
    auto* continuous = named(new QLabel("Continuous", this), "Label3");
    Option4 = named(new IndicatorOption(endOfRunCaption, *loop, this), "Option4");
    Option11 = named(new IndicatorOption(endOfRunCaption, *continuous, this), "Option11");
    Option4->setToolTip("At its end the run starts again");
    Option11->setToolTip("At its end the run goes on with the next file");
    row.addWidget(Option4);
    row.addWidget(loop);
    row.addSpacing(panelGap);
    row.addWidget(Option11);
    row.addWidget(continuous);
}

QBoxLayout* CinePanel::imageColumn() {
    lblImg = named(new ElidedLabel("Image", "Image : 000/000", this), "lblImg");
    auto* layout = column();
    layout->addWidget(named(remark("Image Scroll Bar", this), "Label9"));
    layout->addLayout(stepRow(previousImage, *lblImg, nextImage, this));
    layout->addStretch();
    return layout;
}

QSlider* CinePanel::makeSlider(const char* name, const char* text, int min, int max) {
    auto* slider = named(new SeekSlider(this), name);
    slider->setRange(min, max);
    slider->setToolTip(text);
    slider->setAccessibleName(text);
    return slider;
}

}  // namespace cinedisc
