#include "discmaker/SourceDirectory.h"

#include "dicom/DicomFile.h"
#include "discmaker/FileCopy.h"

#include <QStringList>
#include <dcmtk/config/osconfig.h>
#include <dcmtk/dcmdata/dcdicdir.h>
#include <dcmtk/dcmdata/dcdirrec.h>
#include <dcmtk/dcmdata/dctk.h>

#include <exception>
#include <map>
#include <utility>

namespace cinedisc::discmaker {

namespace fs = std::filesystem;

namespace {

/// Media spell names in capitals; what is mounted or copied may show small letters, a version or a last dot.
QString bare(const std::string& name) {
    auto result = QString::fromStdString(name).toLower();
    if (result.endsWith(";1")) result.chop(2);
    if (result.endsWith('.')) result.chop(1);
    return result;
}

/// Finds what file IDs name. Each folder is listed once: some have thousands of files.
class Medium {
  public:
    explicit Medium(fs::path root) : root_(std::move(root)) {}

    /// Where the components of a file ID lead, nothing when nowhere. None may lead out of the medium.
    fs::path resolved(const std::string& fileId) {
        auto place = root_;
        for (const auto& part : QString::fromStdString(fileId).split('\\')) {
            const auto name = part.trimmed().toStdString();
            if (name.empty() || name == "." || name == ".." || name.find('/') != std::string::npos) return {};
            place = found(place, name);
            if (place.empty()) return {};
        }
        std::error_code error;
        return fs::is_regular_file(place, error) ? place : fs::path();
    }

  private:
    fs::path found(const fs::path& folder, const std::string& name) {
        std::error_code error;
        if (fs::exists(folder / name, error)) return folder / name;
        const auto [listing, isNew] = names_.try_emplace(folder);
        error.clear();
        fs::directory_iterator entry;
        if (isNew) entry = fs::directory_iterator(folder, error);
        for (const fs::directory_iterator end; !error && entry != end; entry.increment(error))
            listing->second.emplace(bare(entry->path().filename().string()), entry->path());
        const auto known = listing->second.find(bare(name));
        return known == listing->second.end() ? fs::path() : known->second;
    }

    fs::path root_;
    std::map<fs::path, std::map<QString, fs::path>> names_;
};

void collect(DcmDirectoryRecord& record, Medium& medium, int depth, DirectoryListing& listing) {
    constexpr int deepest = 16;
    OFString fileId;
    if (record.findAndGetOFStringArray(DCM_ReferencedFileID, fileId).good() && !fileId.empty()) {
        auto path = medium.resolved(fileId.c_str());
        if (path.empty()) {
            listing.missing.emplace_back(fileId.c_str());
        } else {
            listing.files.push_back(std::move(path));
        }
    }
    for (DcmDirectoryRecord* lower = record.nextSub(nullptr); lower && depth < deepest;
         lower = record.nextSub(lower))
        collect(*lower, medium, depth + 1, listing);
}

/// At the end of a file within a record the library raises an error, or goes on for ever, as it makes texts
/// of values that are not there. Our own parser sees it before.
bool isWholeDirectory(const fs::path& path) {
    const auto file = dicom::DicomFile::open(path.string());
    return file && file.value()->pictureError() &&
           file.value()->pictureError()->kind == dicom::DecodeError::Kind::NoPicture;
}

}  // namespace

DirectoryListing readDirectory(const fs::path& path, const fs::path& scratch) {
    DirectoryListing listing;
    if (!copyFile(path, scratch).fault.empty()) return listing;
    try {
        if (isWholeDirectory(scratch)) {
            DcmDicomDir directory(scratch.c_str());
            Medium medium(path.parent_path());
            collect(directory.getRootRecord(), medium, 0, listing);
            listing.isWhole = true;
        }
    } catch (const std::exception&) {
        // The library makes a text of a value that is not there.
    }
    fs::remove(scratch);
    return listing;
}

}  // namespace cinedisc::discmaker
