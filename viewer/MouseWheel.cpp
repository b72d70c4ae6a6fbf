#include "viewer/MouseWheel.h"

#include <algorithm>
#include <array>

namespace cinedisc::wheel {

namespace {

constexpr quint32 systemWheelMessage = 0x20A;
constexpr std::array<qint32, 6> codesWithSystemMessage{2000, 95, 32, 98, 351, 40};

}  // namespace

qint32 osWheelCode(quint32 platform, quint32 majorVersion, quint32 minorVersion, qint32 previous) {
    switch (static_cast<Platform>(platform)) {
        case Platform::Win32s:
            return 32;
        case Platform::Windows95:
            return minorVersion == 0 ? 95 : minorVersion == 10 ? 98 : previous;
        case Platform::NT:
            return majorVersion == 3 ? 351 : majorVersion == 4 ? 40 : majorVersion == 5 ? 2000 : previous;
    }
    return 0;
}

quint32 wheelMessage(qint32 code, const std::function<quint32()>& registeredMessage) {
    const auto known = std::find(codesWithSystemMessage.begin(), codesWithSystemMessage.end(), code);
    return known != codesWithSystemMessage.end() ? systemWheelMessage : registeredMessage();
}

void roll(RangeControl& sb1, WheelRoll direction) {
    if (direction == WheelRoll::AwayFromUser) {
        if (sb1.Value() > 1) sb1.putValue(sb1.Value() - 1);
    } else if (sb1.Value() < sb1.Max()) {
        sb1.putValue(sb1.Value() + 1);
    }
}

}  // namespace cinedisc::wheel
