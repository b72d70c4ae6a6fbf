#pragma once

#include <dcmtk/config/osconfig.h>
#include <dcmtk/dcmdata/dctk.h>

#include <vector>

namespace cinedisc::fidelity {

/// Decodes a JPEG 2000 code stream with OpenJPEG and puts it into a data set as native pixels, interleaved.
bool decodeJpeg2000(const std::vector<Uint8>& stream, DcmItem& into);

}  // namespace cinedisc::fidelity
