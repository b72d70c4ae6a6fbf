#pragma once

#include <QString>

#include <functional>
#include <vector>

namespace cinedisc::fuzzing::window {

/// A disc that has far too much of something.
struct SizedDisc {
    const char* what;
    std::function<void(const QString& folder)> make;
};

const std::vector<SizedDisc>& sizedDiscs();

}  // namespace cinedisc::fuzzing::window
