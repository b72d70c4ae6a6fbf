#pragma once

#include <QString>

namespace cinedisc {

/// The dialogs that the program asks its user with, behind one seam.
class Dialogs {
  public:
    virtual ~Dialogs() = default;
    /// A question with Yes and No under the program's title.
    virtual bool askYesNo(const QString& question) = 0;
    /// The chosen folder's path, "" when the user cancels.
    virtual QString browseForFolder(const QString& title) = 0;
    /// The name exactly as typed or picked, "" when the user cancels. `filter` is "(*.jpg)|*.jpg"-like.
    virtual QString saveFileName(const QString& title, const QString& filter) = 0;
};

}  // namespace cinedisc
