#include "dicom/ShutterReading.h"

#include "dicom/FunctionalGroups.h"
#include "dicom/Tags.h"

#include <algorithm>

namespace cinedisc::dicom {

namespace {

/// Coordinates may lie outside the picture, but arithmetic with them must be safe.
int coordinate(std::int64_t value) {
    constexpr std::int64_t limit = 1'000'000;
    return static_cast<int>(std::clamp(value, -limit, limit));
}

std::optional<Shutter::Rectangle> readRectangle(const DataSet& from) {
    const auto left = from.integer(tags::ShutterLeftVerticalEdge),
               right = from.integer(tags::ShutterRightVerticalEdge);
    const auto upper = from.integer(tags::ShutterUpperHorizontalEdge);
    const auto lower = from.integer(tags::ShutterLowerHorizontalEdge);
    if (!left || !right || !upper || !lower || *left > *right || *upper > *lower) return std::nullopt;
    return Shutter::Rectangle{coordinate(*left), coordinate(*right), coordinate(*upper), coordinate(*lower)};
}

std::optional<Shutter::Circle> readCircle(const DataSet& from) {
    const auto center = from.integers(tags::CenterOfCircularShutter);
    const auto radius = from.integer(tags::RadiusOfCircularShutter);
    if (center.size() < 2 || !radius || *radius < 1) return std::nullopt;
    return Shutter::Circle{coordinate(center[0]), coordinate(center[1]), coordinate(*radius)};
}

std::vector<std::pair<int, int>> readPolygon(const DataSet& from) {
    constexpr std::size_t mostVertices = 4096;
    const auto numbers = from.integers(tags::VerticesOfThePolygonalShutter);
    std::vector<std::pair<int, int>> vertices;
    for (std::size_t i = 0; i + 1 < numbers.size() && vertices.size() < mostVertices; i += 2)
        vertices.emplace_back(coordinate(numbers[i]), coordinate(numbers[i + 1]));
    return vertices.size() >= 3 ? vertices : std::vector<std::pair<int, int>>();
}

}  // namespace

Shutter readShutter(const DataSet& header, int frame) {
    const DataSet* own = functionalGroup(header, tags::FrameDisplayShutterSequence, frame);
    const DataSet& from = header.find(tags::ShutterShape) || !own ? header : *own;
    const auto shapes = from.strings(tags::ShutterShape);
    const auto has = [&shapes](const char* shape) {
        return std::find(shapes.begin(), shapes.end(), shape) != shapes.end();
    };
    Shutter shutter;
    if (has("RECTANGULAR")) shutter.rectangle = readRectangle(from);
    if (has("CIRCULAR")) shutter.circle = readCircle(from);
    if (has("POLYGONAL")) shutter.polygon = readPolygon(from);
    const auto group = from.integer(tags::ShutterOverlayGroup);
    if (has("BITMAP") && group && tags::isOverlayGroup(static_cast<int>(*group & 0xFFFF)))
        shutter.bitmapGroup = static_cast<int>(*group & 0xFFFF);
    if (const auto value = from.integer(tags::ShutterPresentationValue))
        shutter.presentationValue = static_cast<std::uint16_t>(std::clamp<std::int64_t>(*value, 0, 0xFFFF));
    return shutter;
}

bool readsShuttersByFrame(const DataSet& header) {
    const auto& frames = header.items(tags::PerFrameFunctionalGroups);
    return !header.find(tags::ShutterShape) &&
           std::any_of(frames.begin(), frames.end(), [](const auto& groups) {
               return groups.find(tags::FrameDisplayShutterSequence) != nullptr;
           });
}

}  // namespace cinedisc::dicom
