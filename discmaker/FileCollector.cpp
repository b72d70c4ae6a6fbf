#include "discmaker/FileCollector.h"

#include "discmaker/DiscError.h"
#include "platform/NaturalOrder.h"

#include <QString>

#include <algorithm>
#include <set>

namespace cinedisc::discmaker {

namespace fs = std::filesystem;

namespace {

bool isInside(const fs::path& path, const fs::path& folder) {
    const auto [end, rest] = std::mismatch(folder.begin(), folder.end(), path.begin(), path.end());
    return end == folder.end();
}

class Collection {
  public:
    Collection(const fs::path& disc, const Report& report)
        : disc_(fs::weakly_canonical(disc)), report_(report) {}

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
    std::vector<fs::path> result() { return std::move(files_); }

  private:
    void take(const fs::path& path) {
        std::error_code error;
        const auto place = fs::canonical(path, error);
        if (!error && fs::is_regular_file(place, error) && known_.insert(place).second)
            files_.push_back(path);
    }

    void walk(const fs::path& folder, const fs::path& place) {
        if (place == disc_) return;
        std::vector<fs::directory_entry> entries;
        std::error_code error;
        for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error))
            entries.push_back(*entry);
        if (error) report_("cannot read the folder " + folder.string() + ": " + error.message());
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
    const Report& report_;
    std::set<fs::path> known_;
    std::vector<fs::path> files_;
};

}  // namespace

std::vector<fs::path> collectFiles(std::span<const fs::path> named, const fs::path& disc,
                                   const Report& report) {
    Collection collection(disc, report);
    for (const auto& path : named) {
        if (!fs::exists(path)) throw DiscError("there is no file or folder " + path.string());
        collection.add(path);
    }
    return collection.result();
}

}  // namespace cinedisc::discmaker
