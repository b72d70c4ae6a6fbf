#include "platform/FileListBox.h"

#include "platform/NaturalOrder.h"
#include "platform/Paths.h"
#include "platform/RunTimeError.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <cstdint>
#include <limits>

namespace cinedisc {

void FileListBox::putPath(const QString& path) {
    list_ = filesIn(path);
    path_ = path.isEmpty() ? path : folderPath(path);
    listIndex_ = -1;
}

QStringList FileListBox::filesIn(const QString& path) const {
    if (path.isEmpty()) return {};
    const QDir folder(path);
    if (!folder.exists()) throw RunTimeError::pathNotFound();
    QStringList files =
        folder.entryList(pattern_.split(u';', Qt::SkipEmptyParts), QDir::Files, QDir::Unsorted);
    // The position behind the last file must be a number, too.
    if (files.size() >= std::numeric_limits<std::int16_t>::max()) throw RunTimeError::overflow();
    std::sort(files.begin(), files.end(), naturalLess);
    return files;
}

void FileListBox::putPattern(const QString& pattern) {
    pattern_ = pattern;
    Refresh();
}

void FileListBox::Refresh() {
    listIndex_ = -1;
    list_.clear();
    if (QFileInfo(path_).isDir()) list_ = filesIn(path_);
}

void FileListBox::putListIndex(int index) {
    if (index < -1 || index >= ListCount()) throw RunTimeError::invalidPropertyValue();
    listIndex_ = index;
}

QString FileListBox::fullPath(Int16 index) const { return joinPath(path_, List(index)); }

Int16 FileListBox::positionOf(const QString& wanted) const {
    for (Int16 i = 0; i < ListCount(); ++i) {
        if (fullPath(i) == wanted) return i;
    }
    return -1;
}

}  // namespace cinedisc
