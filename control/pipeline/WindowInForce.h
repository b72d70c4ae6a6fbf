#pragma once

#include "control/pipeline/ValueRange.h"
#include "dicom/Presentation.h"

#include <optional>

namespace cinedisc {

/// How modality values become grey at the moment: by a window, or by the file's VOI look-up table (PS3.3
/// C.11.2).
struct WindowInForce {
    bool byTable = false;  ///< then `window` names the table's input range
    dicom::Window window;  ///< units of the modality values

    friend bool operator==(const WindowInForce& a, const WindowInForce& b) {
        return a.byTable == b.byTable && a.window.center == b.window.center &&
               a.window.width == b.window.width && a.window.function == b.window.function;
    }
};

/// Whether a width can be used: at least 1 for LINEAR, above 0 otherwise.
bool usableWidth(double width, dicom::Window::Function function);

/// The first VOI look-up table that a file brings, null when it brings none.
const dicom::LookupTable* voiTable(const dicom::GreyTransform& grey);

/// What a file asks for by itself: its VOI look-up table, or the first of its windows that can be used. Empty
/// when it brings neither.
std::optional<WindowInForce> ownWindow(const dicom::GreyTransform& grey);

/// The window that spreads a range of modality values over all greys.
WindowInForce windowOver(const ValueRange& values, dicom::SampleKind kind);

}  // namespace cinedisc
