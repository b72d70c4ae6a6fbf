#pragma once

#include "tests/support/DicomBuilder.h"

#include <functional>
#include <string>
#include <vector>

namespace cinedisc::fidelity {

/// A file of a kind that no sample has.
struct MadeFile {
    std::string name, what;
    std::function<test::DicomBuilder()> make;
    std::function<test::DicomBuilder()> twin;  ///< the same picture in a file that says it plainly; or none
};

const std::vector<MadeFile>& madeFiles();

}  // namespace cinedisc::fidelity
