#pragma once

#include <QScrollBar>
#include <QWidget>

#include <array>

namespace cinedisc {

class ezDICOMX;

/// The strip: five previews, one above the other, and the scroll bar that moves them. Its width follows its
/// height, so that a preview is a square.
class StripPanel final : public QWidget {
    Q_OBJECT

  public:
    static constexpr int previewCount = 5;

    explicit StripPanel(QWidget* parent = nullptr);

    std::array<ezDICOMX*, previewCount> thumb{};
    QScrollBar* sb1 = nullptr;

    /// The width that makes the previews squares at this height; never less than what one can tell a picture
    /// by.
    int widthFor(int height) const;
};

}  // namespace cinedisc
