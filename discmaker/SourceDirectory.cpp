#include "discmaker/SourceDirectory.h"

#include "dicom/DicomFile.h"
#include "discmaker/FileCopy.h"

#include <QStringList>
#include <dcmtk/config/osconfig.h>
#include <dcmtk/dcmdata/dcdicdir.h>
#include <dcmtk/dcmdata/dcdirrec.h>
#include <dcmtk/dcmdata/dctk.h>

#include <exception>
#include <set>

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

fs::path found(const fs::path& folder, const std::string& name) {
    if (fs::exists(folder / name)) return folder / name;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error))
        if (bare(entry->path().filename().string()) == bare(name)) return entry->path();
    return {};
}

/// Where the components of a file ID lead, nothing when nowhere. None may lead out of the medium.
fs::path resolved(fs::path place, const std::string& fileId) {
    for (const auto& part : QString::fromStdString(fileId).split('\\')) {
        const auto name = part.trimmed().toStdString();
        if (name.empty() || name == "." || name == ".." || name.find('/') != std::string::npos) return {};
        place = found(place, name);
        if (place.empty()) return {};
    }
    std::error_code error;
    return fs::is_regular_file(place, error) ? place : fs::path();
}

void collect(DcmDirectoryRecord& record, const fs::path& medium, int depth, DirectoryListing& listing) {
    constexpr int deepest = 16;
    OFString fileId;
    if (record.findAndGetOFStringArray(DCM_ReferencedFileID, fileId).good() && !fileId.empty()) {
        auto path = resolved(medium, fileId.c_str());
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
            collect(directory.getRootRecord(), path.parent_path(), 0, listing);
        }
    } catch (const std::exception&) {
        // The library makes a text of a value that is not there.
    }
    fs::remove(scratch);
    return listing;
}

}  // namespace cinedisc::discmaker
