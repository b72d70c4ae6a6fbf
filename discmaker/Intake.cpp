#include "discmaker/Intake.h"

#include "discmaker/FileCopy.h"
#include "discmaker/HeaderReader.h"
#include "discmaker/ParallelFor.h"

#include <QString>

#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <variant>

namespace cinedisc::discmaker {

namespace fs = std::filesystem;

namespace {

enum class Fate { NotDicom, Directory, Document, Unshowable, Damaged, Whole };

struct Taken {
    Fate fate = Fate::Unshowable;
    std::string reason;
    Digest digest = 0;
    ImageRecord record;
};

Fate fateOf(Skipped::Reason reason) {
    return reason == Skipped::Reason::NotDicom    ? Fate::NotDicom
           : reason == Skipped::Reason::Directory ? Fate::Directory
                                                  : Fate::Unshowable;
}

bool isNamedAsPicture(const fs::path& path) {
    return QString::fromStdString(path.extension().string()).compare(".dcm", Qt::CaseInsensitive) == 0;
}

Taken take(const SourceFile& file, const fs::path& copy, bool keep, std::mutex& reading) {
    Taken taken;
    {
        // One file is read at a time: drives are slow at jumping. Another one may be decoded meanwhile.
        const std::lock_guard guard(reading);
        const auto opened = openSource(file.path);
        if (const auto* skipped = std::get_if<Skipped>(&opened)) {
            taken.fate = fateOf(skipped->reason);
            // What a DICOMDIR names, or what has a picture's name, should be something.
            if (taken.fate == Fate::NotDicom && (file.place || isNamedAsPicture(file.path)))
                taken.fate = Fate::Unshowable;
            taken.reason = skipped->message;
            if (taken.fate != Fate::Unshowable || !keep) return taken;
        }
        auto outcome = copyFile(file.path, copy);
        if (!outcome.fault.empty()) {
            taken.reason = outcome.fault;
            return taken;
        }
        taken.digest = outcome.digest;
    }
    requireSame(copy, taken.digest);
    if (!taken.reason.empty()) return taken;
    const auto opened = openSource(copy);
    if (const auto* skipped = std::get_if<Skipped>(&opened)) {
        taken.reason = skipped->message;
        return taken;
    }
    const auto& picture = *std::get<0>(opened);
    const auto check = checkPictures(picture);
    taken.record = recordOf(picture);
    taken.record.place = file.place;
    taken.reason = check.fault;
    taken.fate = check.fault.empty() ? Fate::Whole
                 : check.shown > 0   ? Fate::Damaged
                 : check.isPlain     ? Fate::Document
                                     : Fate::Unshowable;
    return taken;
}

/// Puts what was taken together, in the order of the sources.
class Sorting {
  public:
    Sorting(bool keep, const Report& report) : keep_(keep), report_(report) {}

    void add(const fs::path& source, const fs::path& copy, Taken taken) {
        switch (taken.fate) {
            case Fate::NotDicom:
                ++result_.summary.notDicom;
                return;
            case Fate::Directory:
                ++result_.summary.directories;
                return;
            case Fate::Document:
                ++result_.summary.documents;
                break;
            case Fate::Unshowable:
                ++result_.summary.unshowable;
                break;
            case Fate::Damaged:
                if (isNew(source, copy, taken)) {
                    ++result_.summary.damaged;
                    report_("damaged " + source.string() + ": " + taken.reason);
                    result_.pictures.push_back({std::move(taken.record), copy, source});
                }
                return;
            case Fate::Whole:
                if (isNew(source, copy, taken))
                    result_.pictures.push_back({std::move(taken.record), copy, source});
                return;
        }
        const bool kept = keep_ && fs::exists(copy);
        report_((kept ? "set aside " : "left out ") + source.string() + ": " + taken.reason);
        if (kept) {
            result_.kept.push_back(copy);
        } else {
            fs::remove(copy);
        }
    }
    Intake result() { return std::move(result_); }

  private:
    bool isNew(const fs::path& source, const fs::path& copy, const Taken& taken) {
        auto [same, end] = digests_.equal_range(taken.digest);
        while (same != end && !haveSameBytes(result_.pictures[same->second].copy, copy)) ++same;
        if (same != end) {
            report_("left out " + source.string() + ": the same as " +
                    result_.pictures[same->second].source.string());
            ++result_.summary.duplicates;
            fs::remove(copy);
            return false;
        }
        digests_.emplace(taken.digest, result_.pictures.size());
        const auto& uid = taken.record.instanceUid;
        if (uid.empty()) return true;
        const auto [other, isOnly] = instances_.try_emplace(uid, source);
        if (!isOnly)
            report_("took both " + other->second.string() + " and " + source.string() +
                    ": they differ, but have one instance UID");
        return true;
    }

    bool keep_;
    const Report& report_;
    std::multimap<Digest, std::size_t> digests_;  ///< numbers of pictures
    std::map<std::string, fs::path> instances_;
    Intake result_;
};

}  // namespace

Intake takeIn(std::span<const SourceFile> files, const fs::path& work, bool keep, const Report& report,
              const Progress& progress) {
    std::vector<Taken> taken(files.size());
    std::mutex reading, telling;
    std::size_t done = 0;
    const auto copyOf = [&](std::size_t i) { return work / std::to_string(i); };
    parallelFor(files.size(), processorCount(), [&](std::size_t i) {
        taken[i] = take(files[i], copyOf(i), keep, reading);
        const std::lock_guard guard(telling);
        progress(++done, files.size());
    });
    Sorting sorting(keep, report);
    for (std::size_t i = 0; i < files.size(); ++i) sorting.add(files[i].path, copyOf(i), std::move(taken[i]));
    return sorting.result();
}

}  // namespace cinedisc::discmaker
