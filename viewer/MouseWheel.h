#pragma once

#include "platform/RangeControl.h"
#include "platform/WheelRoll.h"

#include <QtGlobal>

#include <functional>

namespace cinedisc {

/// The wheel over the strip: which message means a roll on which platform version, and what a roll does.
namespace wheel {

enum class Platform : quint32 { Win32s = 0, Windows95 = 1, NT = 2 };

/// Code of a platform version: `previous` where a version is not in the table.
qint32 osWheelCode(quint32 platform, quint32 majorVersion, quint32 minorVersion, qint32 previous);
/// Message number of a roll for a code: the system's own, or the one registered under "MSWHEEL_ROLLMSG".
quint32 wheelMessage(qint32 code, const std::function<quint32()>& registeredMessage);

/// One step of the strip's scroll bar within 1 and its maximum, whatever the size of the roll.
void roll(RangeControl& sb1, WheelRoll direction);

}  // namespace wheel

}  // namespace cinedisc
