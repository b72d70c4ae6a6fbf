#pragma once

#include <QString>
#include <QtGlobal>

namespace cinedisc {

/// The contract's members that only return what was last put.
struct PlainMembers {
    QString exportFile;
    QString exportFormat;
    qint32 rangeStart = 0;
    qint32 rangeEnd = 0;
    qint32 rangeModeA = 1;
    qint32 rangeModeB = 1;
    bool option247 = false;
    bool option256 = false;
    bool startupFlag = false;
    qint32 thumbIndex = 0;
    QString tag;
};

}  // namespace cinedisc
