#include "discmaker/DiscPlanner.h"

#include "discmaker/CatalogueText.h"

#include <algorithm>
#include <limits>
#include <map>
#include <numeric>
#include <set>
#include <tuple>
#include <vector>

namespace cinedisc::discmaker {

namespace {

using Numbers = std::vector<std::size_t>;  // of records

/// Splits the numbers into groups of equal key, each in its given order, groups in the order of their first
/// member.
template <typename Key>
std::vector<Numbers> grouped(const Numbers& numbers, Key key) {
    std::vector<Numbers> groups;
    std::map<decltype(key(numbers.front())), std::size_t> places;
    for (auto number : numbers) {
        const auto [place, isNew] = places.try_emplace(key(number), groups.size());
        if (isNew) groups.emplace_back();
        groups[place->second].push_back(number);
    }
    return groups;
}

template <typename Range, typename Key>
void sortBy(Range& range, Key key) {
    std::stable_sort(range.begin(), range.end(),
                     [&](const auto& a, const auto& b) { return key(a) < key(b); });
}

/// `prefix` and `number` with leading zeros: as many digits as the largest of its folder needs, so that every
/// way of listing gives the same order.
std::string numbered(const std::string& prefix, std::size_t number, std::size_t largest, std::size_t digits) {
    digits = std::max(digits, std::to_string(largest).size());
    const auto decimal = std::to_string(number);
    return prefix + std::string(digits - std::min(digits, decimal.size()), '0') + decimal;
}

std::int64_t orLast(const std::optional<std::int64_t>& number) {
    return number.value_or(std::numeric_limits<std::int64_t>::max());
}

/// Missing texts sort behind all others.
std::pair<bool, std::string> orLast(const std::string& text) { return {text.empty(), text}; }

class Planner {
  public:
    explicit Planner(std::span<const ImageRecord> records) : records_(records) {}

    std::vector<PlannedPatient> patients(PatientOrder order) const {
        Numbers all(records_.size());
        std::iota(all.begin(), all.end(), std::size_t{0});
        // Without an ID nothing says that two studies are of one person, however alike the names.
        auto groups = grouped(all, [&](auto i) {
            const auto& r = records_[i];
            return std::tuple(r.patientId, r.patientName, r.patientId.empty() ? r.studyUid : std::string());
        });
        if (order == PatientOrder::ByName) {
            sortBy(groups, [&](const Numbers& group) {
                const auto& record = records_[group.front()];
                return std::tuple(orLast(sortName(record.patientName)), record.patientId, record.patientName);
            });
        }
        std::vector<PlannedPatient> result;
        std::set<std::string> texts;
        for (const auto& group : groups) {
            const auto text = patientText(records_[group.front()]);
            // The catalogue is searched by this text: a second patient must not be taken for the first.
            auto distinct = text;
            for (int copy = 2; !texts.insert(distinct).second; ++copy)
                distinct = text + " [" + std::to_string(copy) + "]";
            result.push_back({numbered("Patient", result.size(), 0, 3), distinct, studies(group)});
        }
        return result;
    }

  private:
    std::vector<PlannedStudy> studies(const Numbers& patient) const {
        auto groups = grouped(patient, [&](auto i) {
            const auto& r = records_[i];
            return r.studyUid.empty() ? std::tuple(r.studyUid, r.studyDate, r.studyId)
                                      : std::tuple(r.studyUid, std::string(), std::string());
        });
        sortBy(groups, [&](const Numbers& group) {
            const auto& r = records_[group.front()];
            return std::tuple(orLast(r.studyDate), orLast(r.studyTime), r.studyUid);
        });
        std::vector<PlannedStudy> result;
        for (const auto& group : groups) {
            const auto folder = numbered("Study", result.size() + 1, groups.size(), 2);
            result.push_back({folder, studyText(records_[group.front()]), series(group)});
        }
        return result;
    }

    std::vector<PlannedSeries> series(const Numbers& study) const {
        auto groups = grouped(study, [&](auto i) {
            const auto& r = records_[i];
            return r.seriesUid.empty() ? std::tuple(r.seriesUid, orLast(r.seriesNumber), r.modality)
                                       : std::tuple(r.seriesUid, std::int64_t{0}, std::string());
        });
        sortBy(groups, [&](const Numbers& group) {
            const auto& r = records_[group.front()];
            return std::tuple(orLast(r.seriesNumber), r.seriesUid);
        });
        std::vector<PlannedSeries> result;
        for (auto& group : groups) {
            sortBy(group, [&](auto i) { return orLast(records_[i].instanceNumber); });
            const auto folder = numbered("Series", result.size() + 1, groups.size(), 2);
            result.push_back({folder, seriesText(records_[group.front()], contents(group)), files(group)});
        }
        return result;
    }

    std::vector<PlannedFile> files(const Numbers& group) const {
        std::vector<PlannedFile> result;
        for (auto number : group) {
            const auto position = result.size() + 1;
            result.push_back({numbered("IM", position, group.size(), 5) + ".dcm",
                              entryText(records_[number], position), number});
        }
        return result;
    }

    SeriesContents contents(const Numbers& group) const {
        SeriesContents result;
        for (auto number : group) {
            const int frames = records_[number].frames;
            ++(frames > 1 ? result.runs : frames == 1 ? result.images : result.others);
        }
        return result;
    }

    std::span<const ImageRecord> records_;
};

}  // namespace

DiscPlan planDisc(std::span<const ImageRecord> records, const std::string& title, PatientOrder order) {
    return {title, Planner(records).patients(order)};
}

}  // namespace cinedisc::discmaker
