#pragma once

#include <dcmtk/config/osconfig.h>
#include <dcmtk/dcmdata/dcxfer.h>

#include <string>

namespace cinedisc::fidelity {

/// Writes a file anew in another transfer syntax, encoded by DCMTK. Throws when DCMTK cannot.
void encode(const std::string& path, E_TransferSyntax syntax);

}  // namespace cinedisc::fidelity
