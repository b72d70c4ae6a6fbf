#include "discmaker/FileCollector.h"

#include "discmaker/DiscError.h"
#include "discmaker/SourceDirectory.h"
#include "platform/NaturalOrder.h"

#include <QString>

#include <algorithm>
#include <map>

namespace cinedisc::discmaker {

namespace fs = std::filesystem;

namespace {

bool isInside(const fs::path& path, const fs::path& folder) {
    const auto [end, rest] = std::mismatch(folder.begin(), folder.end(), path.begin(), path.end());
    return end == folder.end();
}

class Collection {
  public:
    Collection(const fs::path& disc, fs::path scratch, const Report& report)
        : disc_(fs::weakly_canonical(disc)), scratch_(std::move(scratch)), report_(report) {}

    void add(const fs::path& named) {
        const auto place = fs::canonical(named);
        if (isInside(place, disc_))
            throw DiscError(named.string() + " lies inside the disc that is to be written");
        if (fs::is_directory(place)) {
            walk(named, place);
        } else {
            take(named);
        }
    }
    Collected result() { return std::move(collected_); }

  private:
    void take(const fs::path& path) {
        std::error_code error;
        const auto place = fs::canonical(path, error);
        // A link that leads nowhere is nothing.
        if (error && error != std::errc::no_such_file_or_directory) miss(path, error);
        if (error || !fs::is_regular_file(place, error) || isInside(place, disc_)) return;
        if (!known_.try_emplace(place, collected_.files.size()).second) return;
        collected_.files.push_back({path, {}});
        if (QString::fromStdString(place.filename().string()).compare("DICOMDIR", Qt::CaseInsensitive) == 0)
            takeListed(path);
    }

    void miss(const fs::path& path, const std::error_code& error) {
        report_("cannot read " + path.string() + ": " + error.message());
        ++collected_.missing;
    }

    void takeListed(const fs::path& directory) {
        const auto listing = readDirectory(directory, scratch_);
        if (!listing.isWhole) {
            report_(directory.string() + " is damaged: its order, and what it lists, is not known");
            ++collected_.missing;
        }
        for (const auto& name : listing.missing) {
            report_(directory.string() + " lists " + name + ", which is not there");
            ++collected_.missing;
        }
        for (const auto& path : listing.files) {
            take(path);
            const auto known = known_.find(fs::weakly_canonical(path));
            if (known == known_.end()) continue;
            auto& place = collected_.files[known->second].place;
            if (!place) place = listed_++;
        }
    }

    void walk(const fs::path& folder, const fs::path& place) {
        if (place == disc_) return;
        std::vector<fs::directory_entry> entries;
        std::error_code error;
        for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error))
            entries.push_back(*entry);
        if (error) miss(folder, error);
        const auto name = [](const fs::directory_entry& entry) {
            return QString::fromStdString(entry.path().filename().string());
        };
        std::sort(entries.begin(), entries.end(),
                  [&](const auto& a, const auto& b) { return naturalLess(name(a), name(b)); });
        for (const auto& entry : entries) {
            if (!entry.is_directory(error)) {
                take(entry.path());
            } else if (!entry.is_symlink(error)) {
                walk(entry.path(), fs::weakly_canonical(entry.path()));
            }
        }
    }

    fs::path disc_;
    fs::path scratch_;
    const Report& report_;
    std::map<fs::path, std::size_t> known_;
    std::size_t listed_ = 0;
    Collected collected_;
};

}  // namespace

Collected collectFiles(std::span<const fs::path> named, const fs::path& disc, const fs::path& scratch,
                       const Report& report) {
    Collection collection(disc, scratch, report);
    for (const auto& path : named) {
        if (!fs::exists(path)) throw DiscError("there is no file or folder " + path.string());
        collection.add(path);
    }
    return collection.result();
}

}  // namespace cinedisc::discmaker
