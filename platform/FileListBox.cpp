#include "platform/FileListBox.h"

#include "platform/NaturalOrder.h"
#include "platform/Paths.h"
#include "platform/RunTimeError.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace cinedisc {

void FileListBox::putPath(const QString& path) {
    if (!path.isEmpty() && !QFileInfo(path).isDir()) throw RunTimeError::pathNotFound();
    path_ = path.isEmpty() ? path : folderPath(path);
    Refresh();
}

bool FileListBox::moveTo(const QString& path) {
    const QString rememberedPath = path_;
    const int rememberedIndex = listIndex_;
    putPath(path);
    Refresh();
    if (ListCount() > 0) return true;
    putPath(rememberedPath);
    putListIndex(rememberedIndex);
    return false;
}

void FileListBox::putPattern(const QString& pattern) {
    pattern_ = pattern;
    Refresh();
}

void FileListBox::Refresh() {
    listIndex_ = -1;
    list_.clear();
    if (path_.isEmpty()) return;
    list_ = QDir(path_).entryList(pattern_.split(u';', Qt::SkipEmptyParts), QDir::Files, QDir::Unsorted);
    std::sort(list_.begin(), list_.end(), naturalLess);
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
