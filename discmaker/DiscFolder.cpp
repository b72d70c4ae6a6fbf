#include "discmaker/DiscFolder.h"

#include "discmaker/CatalogueWriter.h"
#include "discmaker/DiscError.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <string>

namespace cinedisc::discmaker {

namespace fs = std::filesystem;

namespace {

constexpr const char* catalogueName = "CD.xml";
constexpr const char* dicomFolder = "Dicom";

bool bearsMark(const fs::path& catalogue) {
    std::ifstream stream(catalogue, std::ios::binary);
    std::string head(256, '\0');
    stream.read(head.data(), static_cast<std::streamsize>(head.size()));
    head.resize(static_cast<std::size_t>(std::max<std::streamsize>(stream.gcount(), 0)));
    return head.find("<!--" + std::string(catalogueMark) + "-->") != std::string::npos;
}

/// "Series07" is `prefix` "Series" and digits.
bool isNumbered(const std::string& name, const std::string& prefix, const std::string& suffix) {
    if (name.size() <= prefix.size() + suffix.size() || !name.starts_with(prefix) || !name.ends_with(suffix))
        return false;
    return std::all_of(name.begin() + static_cast<std::ptrdiff_t>(prefix.size()),
                       name.end() - static_cast<std::ptrdiff_t>(suffix.size()),
                       [](char letter) { return letter >= '0' && letter <= '9'; });
}

/// Nothing is deleted that a person has put among the pictures.
void requireOwnFiles(const fs::path& folder, std::size_t level) {
    static const std::array<std::string, 4> prefixes{"Patient", "Study", "Series", "IM"};
    const bool files = level + 1 == prefixes.size();
    for (const auto& entry : fs::directory_iterator(folder)) {
        const bool kind = files ? entry.is_regular_file() : entry.is_directory();
        if (!kind || entry.is_symlink() ||
            !isNumbered(entry.path().filename().string(), prefixes[level], files ? ".dcm" : ""))
            throw DiscError("will not replace the disc: makedisc did not write " + entry.path().string());
        if (!files) requireOwnFiles(entry.path(), level + 1);
    }
}

}  // namespace

DiscFolder::DiscFolder(fs::path folder)
    : folder_(std::move(folder)), staging_(folder_ / ".makedisc-new"), outdated_(folder_ / ".makedisc-old") {
    if (fs::exists(folder_) && !fs::is_directory(folder_))
        throw DiscError(folder_.string() + " is not a folder");
    if (!fs::exists(folder_)) {
        fs::create_directories(folder_);
        made_ = true;
    } else if (!fs::is_empty(folder_)) {
        // A run that was broken off may have left its work aside and no catalogue.
        const auto catalogue = folder_ / catalogueName;
        const bool own =
            fs::exists(catalogue) ? bearsMark(catalogue) : fs::exists(staging_) || fs::exists(outdated_);
        if (!own) throw DiscError(folder_.string() + " is not empty and not a disc that makedisc wrote");
        if (fs::exists(folder_ / dicomFolder)) requireOwnFiles(folder_ / dicomFolder, 0);
    }
    fs::remove_all(staging_);
    fs::remove_all(outdated_);
    fs::create_directory(staging_);
}

DiscFolder::~DiscFolder() {
    std::error_code ignored;
    fs::remove_all(staging_, ignored);
    if (made_ && fs::is_empty(folder_, ignored)) fs::remove(folder_, ignored);
}

void DiscFolder::publish() {
    // The catalogue goes first and comes last.
    fs::remove(folder_ / catalogueName);
    fs::create_directory(outdated_);
    if (fs::exists(folder_ / dicomFolder)) fs::rename(folder_ / dicomFolder, outdated_ / dicomFolder);
    for (const auto& entry : fs::directory_iterator(staging_)) {
        const auto name = entry.path().filename();
        if (name == catalogueName) continue;
        // A file takes the place of another; a folder does not.
        if (fs::is_directory(folder_ / name)) fs::rename(folder_ / name, outdated_ / name);
        fs::rename(entry.path(), folder_ / name);
    }
    fs::rename(staging_ / catalogueName, folder_ / catalogueName);
    fs::remove_all(outdated_);
    fs::remove_all(staging_);
}

}  // namespace cinedisc::discmaker
