#pragma once

#include "panels/ButtonTable.h"
#include "platform/widgets/ElidedLabel.h"

#include <QCheckBox>
#include <QFrame>
#include <QRadioButton>
#include <QSlider>

#include <vector>

class QGridLayout;

namespace cinedisc {

/// A heading above a part of a panel; its name may be "".
struct Heading {
    const char* name;
    const char* text;
};

/// What the windows' cine panels differ in.
struct CinePanelDesign {
    const char* name;
    Heading frames;
    Heading images;
};

/// What plays and steps the frames of a run, and steps from file to file.
class CinePanel final : public QFrame {
    Q_OBJECT

  public:
    CinePanel(const ButtonTable& buttons, const CinePanelDesign& design, QWidget* parent = nullptr);

    /// Takes over what stands behind the parts that every window has.
    void addColumn(QWidget& part);
    /// Adds a button beside the directions.
    void addToDirections(QPushButton& button);
    /// Stands side by side what this width has room for, the rest below.
    void arrangeFor(int width) { arrangeIn(bandsFor(width)); }

    QSlider* Slider1 = nullptr;            ///< speed, 0 to 10
    QSlider* Slider2 = nullptr;            ///< frame, from 1
    QRadioButton* Option4 = nullptr;       ///< loop
    QRadioButton* Option11 = nullptr;      ///< continuous
    QRadioButton* Option9 = nullptr;       ///< forward
    QRadioButton* Option10 = nullptr;      ///< reverse
    QCheckBox* chkRecordedRate = nullptr;  ///< play as fast as the run was recorded
    ElidedLabel* lblRate = nullptr;        ///< how fast it plays, and was recorded
    ElidedLabel* lblImg = nullptr;
    ElidedLabel* lblFra = nullptr;
    QFrame* Frame2 = nullptr;  ///< holds the directions

  private:
    /// What stands one below the other, under a heading.
    enum Column { PlayColumn, FrameColumn, ImageColumn, OwnColumn, ColumnCount };
    struct Part {
        QWidget* widget;
        Column column;
        int row;
        int rows;
    };
    void add(QWidget* part, Column column, int row, int rows = 1);
    int leastWidth(Column column) const;
    int bandsFor(int width) const;
    void arrangeIn(int bands);

    QWidget* playButtons(const ButtonTable& buttons);
    QFrame* directionFrame();
    QWidget* frameHeading(const Heading& heading);
    QWidget* frameSeeker(const ButtonTable& buttons);
    QWidget* endOfRunAndSpeed();
    QSlider* makeSlider(const char* name, const QString& text, int min, int max);

    QGridLayout* grid_;
    std::vector<Part> parts_;
    std::vector<QWidget*> lines_;
    int bands_ = 0;
};

}  // namespace cinedisc
