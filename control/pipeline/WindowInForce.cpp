#include "control/pipeline/WindowInForce.h"

#include <cmath>

namespace cinedisc {

namespace {

using Function = dicom::Window::Function;

// Under LINEAR a window's lowest and highest grey lie at center - 1/2 -+ (width - 1)/2 (PS3.3 C.11.2.1.2.1).
dicom::Window linearOver(const ValueRange& values) {
    return {(values.low + values.high + 1) / 2, values.span() + 1, Function::Linear};
}

}  // namespace

bool usableWidth(double width, Function function) {
    if (!std::isfinite(width)) return false;
    return function == Function::Linear ? width >= 1 : width > 0;
}

const dicom::LookupTable* voiTable(const dicom::GreyTransform& grey) {
    for (const auto& table : grey.voiLuts) {
        if (!table.entries.empty()) return &table;
    }
    return nullptr;
}

std::optional<WindowInForce> ownWindow(const dicom::GreyTransform& grey) {
    if (const auto* table = voiTable(grey)) {
        const auto first = static_cast<double>(table->firstMapped);
        return WindowInForce{true,
                             linearOver({first, first + static_cast<double>(table->entries.size()) - 1})};
    }
    for (const auto& window : grey.windows) {
        if (std::isfinite(window.center) && usableWidth(window.width, window.function)) {
            return WindowInForce{false, window};
        }
    }
    return std::nullopt;
}

WindowInForce windowOver(const ValueRange& values, dicom::SampleKind kind) {
    if (kind == dicom::SampleKind::Integer) return {false, linearOver(values)};
    const double width = values.span() > 0 ? values.span() : 1;
    return {false, {(values.low + values.high) / 2, width, Function::LinearExact}};
}

}  // namespace cinedisc
