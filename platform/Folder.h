#pragma once

#include <QList>
#include <QString>

namespace cinedisc {

class Folder;

/// An entry of a folder, or the folder's own entry. An entry that was not there is "not set": using it raises
/// run-time error 91.
class FolderItem {
  public:
    FolderItem() = default;
    FolderItem(QString path, bool isFolder) : path_(std::move(path)), isFolder_(isFolder) {}

    bool isSet() const { return !path_.isEmpty(); }
    QString Path() const;
    bool IsFolder() const;
    /// The folder that the entry is; not set for a file.
    Folder GetFolder() const;

  private:
    QString path_;
    bool isFolder_ = false;
};

/// The entries of a folder at one moment: folders before files, each in natural order, hidden ones left out.
class FolderItems {
  public:
    FolderItems(FolderItem self, QList<FolderItem> items)
        : self_(std::move(self)), items_(std::move(items)) {}

    int Count() const { return static_cast<int>(items_.size()); }
    /// Entry `index`, counted from 0; not set when there is none.
    FolderItem Item(int index) const;
    /// The folder's own entry.
    FolderItem Item() const { return self_; }
    /// The entries that are folders.
    FolderItems subFolders() const;

    auto begin() const { return items_.begin(); }
    auto end() const { return items_.end(); }

  private:
    FolderItem self_;
    QList<FolderItem> items_;
};

/// A folder of the file system. Default-made and missing ones are "not set": using them raises run-time
/// error 91.
class Folder {
  public:
    Folder() = default;
    /// The folder at `path`; not set when there is none.
    static Folder NameSpace(const QString& path);

    bool isSet() const { return !path_.isEmpty(); }
    /// The folder's name.
    QString Title() const;
    /// Reads the folder afresh.
    FolderItems Items() const;
    Folder ParentFolder() const;
    /// Path, "" when not set.
    QString pathOrEmpty() const { return path_; }

  private:
    void requireSet() const;

    QString path_;
};

}  // namespace cinedisc
