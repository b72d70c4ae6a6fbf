#pragma once

#include <QString>
#include <QtGlobal>

namespace cinedisc {

/// What tells that the file at a path is still the same one: its size and times. Reads nothing of the file
/// itself.
struct FileIdentity {
    qint64 size = -1;    ///< bytes, -1 when there is no such file
    qint64 written = 0;  ///< in the file system's own, finest unit
    qint64 changed = 0;  ///< milliseconds; also changes when another file takes the place

    static FileIdentity of(const QString& path);
    friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};

}  // namespace cinedisc
