#pragma once

#include <dcmtk/config/osconfig.h>
#include <dcmtk/dcmdata/dctagkey.h>

namespace cinedisc::discmaker {

/// What is done with an attribute: X, Z, D and U of PS3.15 section E.3.
enum class ProfileAction { Keep, Remove, Empty, Dummy, NewUid };

/// The action of the Basic Application Level Confidentiality Profile (PS3.15 annex E). Private attributes,
/// curves and overlays are removed.
ProfileAction profileAction(const DcmTagKey& tag);

}  // namespace cinedisc::discmaker
