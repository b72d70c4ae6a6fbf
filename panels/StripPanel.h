#pragma once

#include <QBoxLayout>
#include <QScrollBar>
#include <QWidget>

#include <array>

namespace cinedisc {

class ezDICOMX;

/// The strip: five previews in a column, or in a row, and the scroll bar that moves them. A preview is a
/// square.
class StripPanel final : public QWidget {
    Q_OBJECT

  public:
    static constexpr int previewCount = 5;

    explicit StripPanel(QWidget* parent = nullptr);

    std::array<ezDICOMX*, previewCount> thumb{};
    QScrollBar* sb1 = nullptr;

    /// The width of a column of squares of this height, and the height of a row of squares of this width; a
    /// square is never less than what one can tell a picture by.
    int widthFor(int height) const;
    int heightFor(int width) const;
    void arrange(Qt::Orientation orientation);

  private:
    QBoxLayout* previews_;
};

}  // namespace cinedisc
