#include "discmaker/CatalogueText.h"

#include "dicom/ReadableValues.h"
#include "discmaker/Utf8.h"

#include <string_view>
#include <vector>

namespace cinedisc::discmaker {

namespace {

std::vector<std::string> split(std::string_view text, char separator) {
    std::vector<std::string> parts;
    for (;;) {
        const auto end = text.find(separator);
        parts.push_back(oneLine(text.substr(0, end)));
        if (end == std::string_view::npos) return parts;
        text.remove_prefix(end + 1);
    }
}

void join(std::string& text, std::string_view separator, const std::string& next) {
    if (next.empty()) return;
    if (!text.empty()) text += separator;
    text += next;
}

/// "20240522" or "2024.05.22" as "2024-05-22"; what is no date as it stands.
std::string displayDate(const std::string& date) { return dicom::isoDate(date).value_or(oneLine(date)); }

std::string count(std::size_t number, const char* one, const char* many) {
    return number == 0 ? std::string() : std::to_string(number) + " " + (number == 1 ? one : many);
}

std::string angleText(const dicom::BeamAngle& angle) {
    return angle.degrees == 0 ? std::string()
                              : std::string(angle.direction) + " " + std::to_string(angle.degrees);
}

}  // namespace

std::string displayName(const std::string& personName) {
    std::string result;
    for (const auto& script : split(personName, '=')) {
        auto parts = split(script, '^');
        parts.resize(5);  // family, given, middle, prefix, suffix
        std::string given = parts[3];
        join(given, " ", parts[1]);
        join(given, " ", parts[2]);
        std::string name = parts[0];
        join(name, ", ", given);
        join(name, ", ", parts[4]);
        join(result, " / ", name);
    }
    return result;
}

std::string sortName(const std::string& personName) { return lowered(displayName(personName)); }

std::string patientText(const ImageRecord& record) {
    const auto name = displayName(record.patientName), id = oneLine(record.patientId);
    return (name.empty() ? "Unnamed patient" : name) + "  (" + (id.empty() ? "no ID" : id) + ")";
}

std::string studyText(const ImageRecord& record) {
    std::string text = displayDate(record.studyDate);
    if (text.empty()) text = "Undated";
    std::string what = oneLine(record.studyDescription);
    if (what.empty() && !oneLine(record.studyId).empty()) what = "Study " + oneLine(record.studyId);
    if (what.empty())
        what = oneLine(record.modality) + (oneLine(record.modality).empty() ? "Study" : " study");
    join(text, "  ", what);
    return text;
}

std::string seriesText(const ImageRecord& record, SeriesContents contents) {
    std::string text = "Series";
    if (record.seriesNumber) text.append(" ").append(std::to_string(*record.seriesNumber));
    const auto description = oneLine(record.seriesDescription);
    join(text, ": ", description.empty() ? oneLine(record.modality) : description);
    std::string what = count(contents.runs, "run", "runs");
    join(what, ", ", count(contents.images, "image", "images"));
    return text + " (" + what + ")";
}

std::string entryText(const ImageRecord& record, std::size_t position) {
    const auto number = std::to_string(position);
    const auto view = record.primaryAngle && record.secondaryAngle
                          ? viewName(*record.primaryAngle, *record.secondaryAngle)
                          : std::string();
    std::string text = (record.frames > 1 ? "Run " : "Image ") + number;
    join(text, ": ", view);
    if (record.frames > 1) join(text, view.empty() ? ": " : ", ", std::to_string(record.frames) + " frames");
    return text;
}

std::string viewName(double primaryAngle, double secondaryAngle) {
    const auto sideways = dicom::sidewaysAngle(primaryAngle);
    std::string text = sideways.degrees == 0 ? sideways.direction : angleText(sideways);
    join(text, " ", angleText(dicom::tilt(secondaryAngle)));
    return text;
}

}  // namespace cinedisc::discmaker
