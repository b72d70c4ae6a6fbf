#pragma once

#include "platform/Dialogs.h"

#include <QPointer>
#include <QWidget>

namespace cinedisc {

/// The toolkit's own dialogs over a window. They keep no history and write nothing but what the user asks
/// for.
class QtDialogs final : public Dialogs {
  public:
    explicit QtDialogs(QWidget* window);
    /// The folder browser starts in the disc's folder of images, where this folder has one; otherwise at
    /// home.
    void setDiscFolder(const QString& folder) { discFolder_ = folder; }
    bool askYesNo(const QString& question) override;
    QString browseForFolder(const QString& title) override;
    /// Starts where the last name was, at first in the pictures folder or at home; appends no extension and
    /// asks nothing about existing files.
    QString saveFileName(const QString& title, const QString& filter) override;

  private:
    QPointer<QWidget> window_;
    QString discFolder_;
    QString saveFolder_;  ///< of the name returned last
};

/// "(*.jpg)|*.jpg" and several such pairs, as the toolkit's name filters.
QStringList nameFilters(const QString& filter);

}  // namespace cinedisc
