#include "discmaker/DiscPlanner.h"

#include "discmaker/CatalogueText.h"
#include "discmaker/DiscError.h"
#include "discmaker/Utf8.h"

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

std::int64_t orLast(const std::optional<std::int64_t>& number) {
    return number.value_or(std::numeric_limits<std::int64_t>::max());
}

/// Missing texts sort behind all others.
std::pair<bool, std::string> orLast(const std::string& text) { return {text.empty(), text}; }

class Planner {
  public:
    explicit Planner(std::span<const ImageRecord> records) : records_(records) {}

    std::vector<PlannedPatient> patients() const {
        Numbers all(records_.size());
        std::iota(all.begin(), all.end(), std::size_t{0});
        const auto named = [&](auto i) {
            const auto& r = records_[i];
            const auto id = oneLine(r.patientId);
            // Without an ID nothing says that two studies are of one person, however alike the names.
            return std::tuple(id, sortName(r.patientName), id.empty() ? r.studyUid : std::string());
        };
        std::map<decltype(named(0)), std::set<std::string>> birthDates;
        for (auto i : all)
            if (!records_[i].birthDate.empty()) birthDates[named(i)].insert(records_[i].birthDate);
        auto groups = grouped(all, [&](auto i) {
            const auto name = named(i);
            return std::pair(name, birthDates[name].size() > 1 ? records_[i].birthDate : std::string());
        });
        sortGroups(groups, [&](const Numbers& group) {
            const auto& record = records_[group.front()];
            return std::tuple(orLast(sortName(record.patientName)), record.patientId, record.birthDate);
        });
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
    bool havePlaces(const Numbers& group) const {
        return std::all_of(group.begin(), group.end(), [&](auto i) { return records_[i].place.has_value(); });
    }

    template <typename Key>
    void sortGroups(std::vector<Numbers>& groups, Key key) const {
        if (!std::all_of(groups.begin(), groups.end(),
                         [&](const Numbers& group) { return havePlaces(group); })) {
            sortBy(groups, key);
            return;
        }
        sortBy(groups, [&](const Numbers& group) {
            const auto place = [&](auto i) { return records_[i].place; };
            return place(*std::min_element(group.begin(), group.end(),
                                           [&](auto a, auto b) { return place(a) < place(b); }));
        });
    }

    /// Slices of one volume are acquired in any order, runs in the order in which the heart was looked at.
    void sortFiles(Numbers& group) const {
        const bool hasRuns =
            std::any_of(group.begin(), group.end(), [&](auto i) { return records_[i].frames > 1; });
        sortBy(group, [&](auto i) {
            const auto& r = records_[i];
            const auto time = orLast(r.acquired);
            return std::tuple(hasRuns ? time : decltype(time)(), orLast(r.instanceNumber), time);
        });
        if (havePlaces(group)) sortBy(group, [&](auto i) { return records_[i].place; });
    }

    std::vector<PlannedStudy> studies(const Numbers& patient) const {
        auto groups = grouped(patient, [&](auto i) {
            const auto& r = records_[i];
            return r.studyUid.empty() ? std::tuple(r.studyUid, r.studyDate, r.studyId)
                                      : std::tuple(r.studyUid, std::string(), std::string());
        });
        sortGroups(groups, [&](const Numbers& group) {
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
        for (auto& group : groups) sortFiles(group);
        sortGroups(groups, [&](const Numbers& group) {
            const auto& r = records_[group.front()];
            return std::tuple(orLast(r.seriesNumber), orLast(r.acquired), r.seriesUid);
        });
        std::vector<PlannedSeries> result;
        for (const auto& group : groups) {
            const auto folder = numbered("Series", result.size() + 1, groups.size(), 2);
            result.push_back({folder, seriesText(records_[group.front()], contents(group)), files(group)});
        }
        return result;
    }

    std::vector<PlannedFile> files(const Numbers& group) const {
        std::vector<PlannedFile> result;
        for (auto number : group) {
            const auto position = result.size() + 1;
            result.push_back({numbered("IM", position, group.size(), 5, ".dcm"),
                              entryText(records_[number], position), number});
        }
        return result;
    }

    SeriesContents contents(const Numbers& group) const {
        SeriesContents result;
        for (auto number : group) {
            ++(records_[number].frames > 1 ? result.runs : result.images);
        }
        return result;
    }

    std::span<const ImageRecord> records_;
};

}  // namespace

std::vector<DiscPlan> splitPlan(const DiscPlan& plan, std::uint64_t capacity,
                                const std::function<std::uint64_t(std::size_t number)>& sizeOf) {
    std::vector<DiscPlan> plans(1);
    std::uint64_t used = 0;
    for (const auto& patient : plan.patients) {
        bool isNew = true;
        for (auto study : patient.studies) {
            std::uint64_t size = 0;
            for (const auto& series : study.series)
                for (const auto& file : series.files) size += sizeOf(file.content);
            if (size > capacity)
                throw DiscError("a study of " + std::to_string(size / 1'000'000) +
                                " MB does not go on one disc: " + patient.text + ", " + study.text);
            if (used + size > capacity) {
                plans.emplace_back();
                used = 0;
                isNew = true;
            }
            used += size;
            auto& patients = plans.back().patients;
            if (isNew) patients.push_back({numbered("Patient", patients.size(), 0, 3), patient.text, {}});
            isNew = false;
            auto& studies = patients.back().studies;
            study.folder = numbered("Study", studies.size() + 1, patient.studies.size(), 2);
            studies.push_back(std::move(study));
        }
    }
    for (std::size_t i = 0; i < plans.size(); ++i) {
        plans[i].title = plan.title;
        if (plans.size() > 1)
            plans[i].title += " (" + std::to_string(i + 1) + " of " + std::to_string(plans.size()) + ")";
    }
    return plans;
}

std::string numbered(const std::string& prefix, std::size_t number, std::size_t largest, std::size_t digits,
                     const std::string& suffix) {
    digits = std::max(digits, std::to_string(largest).size());
    const auto decimal = std::to_string(number);
    return prefix + std::string(digits - std::min(digits, decimal.size()), '0') + decimal + suffix;
}

DiscPlan planDisc(std::span<const ImageRecord> records, const std::string& title) {
    return {title, Planner(records).patients()};
}

}  // namespace cinedisc::discmaker
