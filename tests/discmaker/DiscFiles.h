#pragma once

#include "dicom/DicomFile.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

namespace cinedisc::test {

inline std::string contentOf(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

inline void writeFile(const std::filesystem::path& path, const std::string& content) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << content;
}

/// The samples of a grey frame, counted from 0, as the viewer decodes them.
inline std::vector<std::uint16_t> samplesOf(const dicom::DicomFile& file, int frame) {
    const auto decoded = file.decode(frame);
    if (!decoded) return {};
    return std::visit(
        [](const auto& samples) { return std::vector<std::uint16_t>(samples.begin(), samples.end()); },
        decoded.value().samples);
}

/// Every file below a folder: its path from there, and its bytes.
inline std::map<std::string, std::string> filesBelow(const std::filesystem::path& folder) {
    std::map<std::string, std::string> result;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
        if (entry.is_regular_file())
            result[entry.path().lexically_relative(folder).generic_string()] = contentOf(entry.path());
    return result;
}

}  // namespace cinedisc::test
