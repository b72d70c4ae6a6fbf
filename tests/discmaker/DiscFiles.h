#pragma once

#include "catalogue/CatalogueReader.h"
#include "dicom/DicomFile.h"
#include "platform/Folder.h"

#include <gtest/gtest.h>

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
    return std::visit(
        [](const auto& samples) { return std::vector<std::uint16_t>(samples.begin(), samples.end()); },
        file.decode(frame).value().samples);
}

/// Every file below a folder: its path from there, and its bytes.
inline std::map<std::string, std::string> filesBelow(const std::filesystem::path& folder) {
    std::map<std::string, std::string> result;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
        if (entry.is_regular_file())
            result[entry.path().lexically_relative(folder).generic_string()] = contentOf(entry.path());
    return result;
}

/// The contents of the image files of a disc as the viewer lists them, `depth` levels below a catalogue node
/// and its folder. On every level both must have as many.
inline std::vector<std::string> playedFiles(const CatalogueNode& node, const Folder& folder, int depth) {
    std::vector<std::string> files;
    const auto items = folder.Items();
    const auto begin = depth == 3 ? node.children().begin() : node.nextLevelBegin();
    EXPECT_EQ(items.Count(), node.children().end() - begin);
    for (int i = 0; i < items.Count(); ++i) {
        EXPECT_EQ(items.Item(i).IsFolder(), depth > 0);
        EXPECT_FALSE(begin[i].first().text().isEmpty());
        if (depth > 0) {
            std::ranges::copy(playedFiles(begin[i], items.Item(i).GetFolder(), depth - 1),
                              std::back_inserter(files));
        } else {
            files.push_back(contentOf(items.Item(i).Path().toStdString()));
        }
    }
    return files;
}
inline std::vector<std::string> playedFiles(const std::filesystem::path& disc) {
    const auto root = readCatalogue(QString::fromStdString((disc / "CD.xml").string()));
    return playedFiles(root.value(), Folder::NameSpace(QString::fromStdString((disc / "Dicom").string())), 3);
}

}  // namespace cinedisc::test
