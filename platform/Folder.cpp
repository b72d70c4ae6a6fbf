#include "platform/Folder.h"

#include "platform/NaturalOrder.h"
#include "platform/Paths.h"
#include "platform/RunTimeError.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace cinedisc {

QString FolderItem::Path() const {
    if (!isSet()) throw RunTimeError::objectNotSet();
    return path_;
}

bool FolderItem::IsFolder() const {
    if (!isSet()) throw RunTimeError::objectNotSet();
    return isFolder_;
}

Folder FolderItem::GetFolder() const { return IsFolder() ? Folder::NameSpace(path_) : Folder(); }

FolderItem FolderItems::Item(int index) const { return items_.value(index); }

FolderItems FolderItems::subFolders() const {
    QList<FolderItem> folders;
    std::copy_if(items_.begin(), items_.end(), std::back_inserter(folders),
                 [](const FolderItem& item) { return item.IsFolder(); });
    return {self_, folders};
}

Folder Folder::NameSpace(const QString& path) {
    Folder folder;
    if (!path.isEmpty() && QFileInfo(path).isDir()) folder.path_ = folderPath(path);
    return folder;
}

void Folder::requireSet() const {
    if (!isSet()) throw RunTimeError::objectNotSet();
}

QString Folder::Title() const {
    requireSet();
    return QFileInfo(path_).fileName();
}

FolderItems Folder::Items() const {
    requireSet();
    struct Entry {
        QString name;
        bool isFolder;
    };
    QList<Entry> entries;
    const auto listed = QDir(path_).entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Unsorted);
    for (const QFileInfo& info : listed) entries.append({info.fileName(), info.isDir()});
    std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) {
        return a.isFolder != b.isFolder ? a.isFolder : naturalLess(a.name, b.name);
    });
    QList<FolderItem> items;
    for (const Entry& entry : entries) items.append(FolderItem(joinPath(path_, entry.name), entry.isFolder));
    return {FolderItem(path_, true), items};
}

Folder Folder::ParentFolder() const {
    requireSet();
    return NameSpace(QFileInfo(path_).absolutePath());
}

}  // namespace cinedisc
