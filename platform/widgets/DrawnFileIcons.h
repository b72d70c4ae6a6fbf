#pragma once

#include <QAbstractFileIconProvider>

namespace cinedisc {

/// Icons of the program's own family in file dialogs.
class DrawnFileIcons final : public QAbstractFileIconProvider {
  public:
    QIcon icon(IconType type) const override;
    QIcon icon(const QFileInfo& file) const override;
};

}  // namespace cinedisc
