#pragma once

namespace cinedisc {

/// Which way the mouse wheel was rolled.
enum class WheelRoll { AwayFromUser, TowardsUser };

}  // namespace cinedisc
