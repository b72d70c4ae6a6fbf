#include "control/frames/FileIdentity.h"

#include <QDateTime>
#include <QFileInfo>

#include <filesystem>

namespace cinedisc {

FileIdentity FileIdentity::of(const QString& path) {
    const QFileInfo info(path);
    if (!info.exists()) return {};
    std::error_code failure;
    const auto written = std::filesystem::last_write_time(info.filesystemFilePath(), failure);
    return {info.size(), failure ? 0 : static_cast<qint64>(written.time_since_epoch().count()),
            info.metadataChangeTime().toMSecsSinceEpoch()};
}

}  // namespace cinedisc
