#include "dicom/PixelAspectRule.h"

#include "dicom/FunctionalGroups.h"
#include "dicom/Tags.h"

#include <algorithm>
#include <cmath>

namespace cinedisc::dicom {

namespace {

/// Both attributes give the vertical measure first; nothing when they make no sense.
std::optional<PixelAspect> aspectOf(const std::vector<double>& verticalHorizontal) {
    constexpr double mostStretched = 10;
    if (verticalHorizontal.size() < 2) return std::nullopt;
    const double vertical = verticalHorizontal[0], horizontal = verticalHorizontal[1];
    if (!(vertical > 0) || !(horizontal > 0)) return std::nullopt;
    const double aspect = horizontal / vertical;
    if (!(aspect >= 1 / mostStretched && aspect <= mostStretched)) return std::nullopt;
    return aspect;
}

}  // namespace

PixelAspect readPixelAspect(const DataSet& header, const PixelFormat& format) {
    constexpr int firstFrame = 0;
    const DataSet& properties = groupOrHeader(header, tags::FramePixelDataPropertiesSequence, firstFrame);
    const DataSet& measures = groupOrHeader(header, tags::PixelMeasuresSequence, firstFrame);
    for (const auto& numbers :
         {header.decimals(tags::PixelAspectRatio), properties.decimals(tags::ImagerPixelSpacing),
          measures.decimals(tags::PixelSpacing), header.decimals(tags::NominalScannedPixelSpacing)})
        if (const auto aspect = aspectOf(numbers)) {
            const double growth = std::abs(*aspect - 1) * std::max(format.rows, format.columns);
            return growth < 1 ? 1 : *aspect;
        }
    return 1;
}

}  // namespace cinedisc::dicom
