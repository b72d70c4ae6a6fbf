#include "dicom/DataSet.h"

#include "dicom/TextSplitting.h"
#include "dicom/ValueNumbers.h"
#include "dicom/ValueRepresentation.h"

namespace cinedisc::dicom {

const Element* DataSet::find(Tag tag) const {
    // Headers are sorted by tag unless they are broken: a miss is looked for again, one by one.
    std::size_t from = 0, count = elements.size();
    while (count > 0) {
        const std::size_t half = count / 2;
        if (elements[from + half].tag < tag) {
            from += half + 1;
            count -= half + 1;
        } else {
            count = half;
        }
    }
    if (from < elements.size() && elements[from].tag == tag) return &elements[from];
    for (const Element& element : elements)
        if (element.tag == tag) return &element;
    return nullptr;
}

std::string DataSet::string(Tag tag) const {
    const Element* element = find(tag);
    return element ? std::string(trimmed(textOf(element->value))) : std::string();
}

std::vector<std::string> DataSet::strings(Tag tag) const {
    const Element* element = find(tag);
    if (!element || element->value.empty()) return {};
    std::vector<std::string> parts;
    for (const std::string_view part : splitValues(textOf(element->value))) parts.emplace_back(trimmed(part));
    return parts;
}

std::vector<std::int64_t> DataSet::integers(Tag tag) const {
    const Element* element = find(tag);
    return element ? integersIn(element->value, effectiveVr(*element)) : std::vector<std::int64_t>();
}

std::optional<std::int64_t> DataSet::integer(Tag tag) const {
    const auto values = integers(tag);
    return values.empty() ? std::nullopt : std::optional(values.front());
}

std::vector<double> DataSet::decimals(Tag tag) const {
    const Element* element = find(tag);
    return element ? decimalsIn(element->value, effectiveVr(*element)) : std::vector<double>();
}

std::optional<double> DataSet::decimal(Tag tag) const {
    const auto values = decimals(tag);
    return values.empty() ? std::nullopt : std::optional(values.front());
}

const std::vector<DataSet>& DataSet::items(Tag tag) const {
    static const std::vector<DataSet> none;
    const Element* element = find(tag);
    return element ? element->items : none;
}

}  // namespace cinedisc::dicom
