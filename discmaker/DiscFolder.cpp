#include "discmaker/DiscFolder.h"

#include "discmaker/CatalogueWriter.h"
#include "discmaker/DiscError.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <fstream>
#include <iterator>
#include <set>
#include <span>
#include <string>
#include <vector>

namespace cinedisc::discmaker {

namespace fs = std::filesystem;

namespace {

constexpr const char* catalogueName = "CD.xml";
constexpr const char* dicomFolder = "Dicom";
constexpr const char* otherFolder = "Other";
constexpr const char* lockName = ".makedisc-lock";
/// Besides the programs that one run was given and another was not.
const std::set<std::string> ownNames{"CD.xml",      "Dicom",    "Other",        "README.TXT", "license.txt",
                                     "autorun.inf", "cinedisc", "cinedisc.exe", "linux"};

/// Files that are write-protected too, as those of a copied disc are: not every system removes them so. Links
/// are removed, not followed. One by one, as std::filesystem::remove_all tries a file that another program
/// has open for ever on Windows; here it raises filesystem_error.
void removeAll(const fs::path& path) {
    std::vector<fs::path> entries;
    const auto add = [&](const fs::path& entry) {
        if (!fs::is_symlink(entry)) fs::permissions(entry, fs::perms::owner_write, fs::perm_options::add);
        entries.push_back(entry);
    };
    if (!fs::exists(fs::symlink_status(path))) return;
    add(path);
    if (fs::is_directory(fs::symlink_status(path)))
        for (const auto& entry : fs::recursive_directory_iterator(path)) add(entry.path());
    while (!entries.empty()) {
        fs::remove(entries.back());
        entries.pop_back();
    }
}

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
void requireOwnFiles(const fs::path& folder, std::span<const std::string> prefixes) {
    if (!fs::exists(folder)) return;
    const bool files = prefixes.size() == 1;
    for (const auto& entry : fs::directory_iterator(folder)) {
        const bool kind = files ? entry.is_regular_file() : entry.is_directory();
        if (!kind || entry.is_symlink() ||
            !isNumbered(entry.path().filename().string(), prefixes.front(), files ? ".dcm" : ""))
            throw DiscError("will not replace the disc: makedisc did not write " + entry.path().string());
        if (!files) requireOwnFiles(entry.path(), prefixes.subspan(1));
    }
}

void requireOwnDisc(const fs::path& disc) {
    static const std::array<std::string, 4> pictures{"Patient", "Study", "Series", "IM"};
    static const std::array<std::string, 1> others{"OT"};
    requireOwnFiles(disc / dicomFolder, pictures);
    requireOwnFiles(disc / otherFolder, others);
}

/// The folders Disc1, Disc2 ... of a disc that was too large for one.
std::vector<fs::path> partsOf(const fs::path& folder) {
    std::vector<fs::path> parts;
    for (const auto& entry : fs::directory_iterator(folder))
        if (isNumbered(entry.path().filename().string(), "Disc", "")) parts.push_back(entry.path());
    return parts;
}

void requireOwnPart(const fs::path& part) {
    if (fs::is_symlink(part) || !bearsMark(part / catalogueName))
        throw DiscError("will not replace the disc: makedisc did not write " + part.string());
    for (const auto& entry : fs::directory_iterator(part))
        if (!ownNames.contains(entry.path().filename().string()))
            throw DiscError("will not replace the disc: makedisc did not write " + entry.path().string());
    requireOwnDisc(part);
}

}  // namespace

DiscFolder::DiscFolder(fs::path folder)
    : folder_(std::move(folder)),
      area_(folder_ / ".makedisc-new"),
      outdated_(folder_ / ".makedisc-old"),
      staging_(area_ / "disc"),
      work_(area_ / "work"),
      lock_(QString::fromStdString((folder_ / lockName).string())) {
    if (fs::exists(folder_) && !fs::is_directory(folder_))
        throw DiscError(folder_.string() + " is not a folder");
    if (!fs::exists(folder_)) {
        fs::create_directories(folder_);
        made_ = true;
    } else if (!fs::is_empty(folder_)) {
        // A run that was broken off may have left its work aside and no catalogue.
        const auto catalogue = folder_ / catalogueName;
        const auto parts = partsOf(folder_);
        const bool own = fs::exists(catalogue) ? bearsMark(catalogue)
                                               : fs::exists(area_) || fs::exists(outdated_) ||
                                                     fs::exists(folder_ / lockName) || !parts.empty();
        if (!own) throw DiscError(folder_.string() + " is not empty and not a disc that makedisc wrote");
        requireOwnDisc(folder_);
        for (const auto& part : parts) requireOwnPart(part);
    }
    // Two runs at once would put files of both on one disc. Where no lock can be made, the folder cannot be
    // written either, or its file system has none.
    lock_.setStaleLockTime(std::chrono::days(1));  // of one whose process cannot be told
    if (!lock_.tryLock() && lock_.error() == QLockFile::LockFailedError)
        throw DiscError("another makedisc is writing " + folder_.string() + "; if there is none, remove " +
                        (folder_ / lockName).string());
    removeAll(area_);
    removeAll(outdated_);
    fs::create_directories(staging_);
    fs::create_directory(work_);
}

DiscFolder::~DiscFolder() {
    try {
        removeAll(area_);
        lock_.unlock();
        if (made_ && fs::is_empty(folder_)) fs::remove(folder_);
    } catch (const fs::filesystem_error&) {
        // What stays is removed by the next run.
    }
}

void DiscFolder::publish() {
    fs::create_directory(outdated_);
    std::vector<fs::path> aside, placed;
    const auto putAside = [&](const fs::path& name) {
        if (!fs::exists(folder_ / name)) return;
        fs::rename(folder_ / name, outdated_ / name);
        aside.push_back(name);
    };
    const auto place = [&](const fs::path& name) {
        fs::rename(staging_ / name, folder_ / name);
        placed.push_back(name);
    };
    try {
        // The catalogue goes first and comes last.
        for (const char* name : {catalogueName, dicomFolder, otherFolder, "README.TXT"}) putAside(name);
        for (const auto& part : partsOf(folder_)) putAside(part.filename());
        std::vector<fs::path> names;
        for (const auto& entry : fs::directory_iterator(staging_)) names.push_back(entry.path().filename());
        for (const auto& name : names) {
            if (name == catalogueName) continue;
            putAside(name);
            place(name);
        }
        if (fs::exists(staging_ / catalogueName)) place(catalogueName);
    } catch (const fs::filesystem_error&) {
        // On Windows no folder is renamed of which a viewer has a file open. The disc that was there is put
        // back.
        std::error_code ignored;
        for (auto name = placed.rbegin(); name != placed.rend(); ++name)
            fs::rename(folder_ / *name, staging_ / *name, ignored);
        for (auto name = aside.rbegin(); name != aside.rend(); ++name)
            fs::rename(outdated_ / *name, folder_ / *name, ignored);
        throw;
    }
    try {
        removeAll(outdated_);
        removeAll(area_);
    } catch (const fs::filesystem_error& error) {
        throw DiscError(std::string("the disc is made, but its former files could not be removed: ") +
                        error.what());
    }
}

}  // namespace cinedisc::discmaker
