#pragma once

#include <QByteArray>
#include <QDirIterator>
#include <QList>
#include <QPair>
#include <QTemporaryDir>

namespace cinedisc::test {

/// An empty home folder for as long as this object lives. One for a whole suite: the toolkit asks only once
/// where settings belong.
class EmptyHome {
  public:
    EmptyHome() {
        for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"}) {
            former_.append({name, qgetenv(name)});
            qunsetenv(name);
        }
        qputenv("HOME", folder_.path().toUtf8());
    }
    ~EmptyHome() {
        for (const auto& [name, value] : former_) value.isNull() ? qunsetenv(name) : qputenv(name, value);
    }
    Q_DISABLE_COPY_MOVE(EmptyHome)

    QString path() const { return folder_.path(); }
    /// Everything in it, hidden or not.
    QStringList entries() const {
        QStringList found;
        for (QDirIterator i(path(), QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                            QDirIterator::Subdirectories);
             i.hasNext();)
            found += i.next();
        return found;
    }

  private:
    QTemporaryDir folder_;
    QList<QPair<const char*, QByteArray>> former_;
};

}  // namespace cinedisc::test
