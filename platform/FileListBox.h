#pragma once

#include "platform/Int16.h"

#include <QObject>
#include <QStringList>

namespace cinedisc {

/// The list of a folder's files that match a pattern. It has no window: it is the backbone of stepping and is
/// found by its object name.
class FileListBox : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString Path READ Path WRITE putPath)
    Q_PROPERTY(QString Pattern READ Pattern WRITE putPattern)
    Q_PROPERTY(int ListCount READ ListCount)
    Q_PROPERTY(int ListIndex READ ListIndex WRITE putListIndex)
    Q_PROPERTY(QStringList List READ list)

  public:
    explicit FileListBox(QObject* parent = nullptr) : QObject(parent) {}

    /// Folder shown, "" before the first.
    QString Path() const { return path_; }
    /// Lists another folder; no file is selected then. "" empties the list. A folder that cannot be listed
    /// raises the errors of filesIn and changes nothing.
    void putPath(const QString& path);
    /// The files that it would list for a folder, in its order. A folder that is not there raises run-time
    /// error 76, one of more files than a 16-bit position can follow run-time error 6.
    QStringList filesIn(const QString& path) const;
    /// File patterns, separated by ";", letter case ignored.
    QString Pattern() const { return pattern_; }
    void putPattern(const QString& pattern);
    /// Reads the folder again; no file is selected then.
    Q_INVOKABLE void Refresh();

    int ListCount() const { return static_cast<int>(list_.size()); }
    /// Name at `index` counted from 0, "" outside the list.
    QString List(Int16 index) const { return list_.value(index.value()); }
    const QStringList& list() const { return list_; }
    /// Selected position counted from 0, -1 for none.
    int ListIndex() const { return listIndex_; }
    /// A position outside the list (-1 selects none) raises run-time error 380.
    void putListIndex(int index);

    /// Full path of entry `index`, the folder with a separator when there is none.
    QString fullPath(Int16 index) const;
    /// Position of the file with this full path, compared whole and case-sensitively; -1 when it is not
    /// listed.
    Int16 positionOf(const QString& fullPath) const;

  private:
    QString path_;
    QString pattern_ = "*.dcm";
    QStringList list_;
    int listIndex_ = -1;
};

}  // namespace cinedisc
