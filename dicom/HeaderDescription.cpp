#include "dicom/CharacterSet.h"
#include "dicom/DicomFile.h"
#include "dicom/Dictionary.h"
#include "dicom/ElementText.h"
#include "dicom/Tags.h"
#include "dicom/TextSplitting.h"
#include "dicom/ValueRepresentation.h"

#include <map>

namespace cinedisc::dicom {

namespace {

bool isPrivate(Tag tag) { return tag.group % 2 == 1; }
bool isPrivateCreator(Tag tag) { return isPrivate(tag) && tag.element >= 0x0010 && tag.element <= 0x00FF; }

class Describer {
  public:
    explicit Describer(LongValues longValues) : longValues_(longValues) {}

    std::vector<HeaderLine> lines;

    void describe(const DataSet& data, int depth, CharacterSet characterSet) {
        if (data.find(tags::SpecificCharacterSet))
            characterSet = CharacterSet(data.strings(tags::SpecificCharacterSet));
        std::map<Tag, std::string> creators;
        for (const Element& element : data.elements) {
            if (isPrivateCreator(element.tag)) creators[element.tag] = trimmed(textOf(element.value));
            describe(element, depth, characterSet, creators);
        }
    }

  private:
    void describe(const Element& element, int depth, const CharacterSet& characterSet,
                  const std::map<Tag, std::string>& creators) {
        const Dictionary::Entry known = entryOf(element.tag, creators);
        const bool isStated =
            element.valueRepresentation != vr("UN") && isKnownVr(element.valueRepresentation);
        const Vr kind = isStated ? element.valueRepresentation : known.valueRepresentation;
        lines.push_back({depth, element.tag, lettersOf(kind), known.keyword,
                         describeValue(element, kind, characterSet, longValues_)});
        int number = 0;
        for (const DataSet& item : element.items) {
            lines.push_back({depth + 1, tags::Item, "", "Item", std::to_string(++number)});
            describe(item, depth + 2, characterSet);
        }
    }

    Dictionary::Entry entryOf(Tag tag, const std::map<Tag, std::string>& creators) const {
        if (isPrivateCreator(tag)) return {"PrivateCreator", vr("LO")};
        if (!isPrivate(tag)) {
            auto entry = dictionary_.find(tag, {});
            if (entry.keyword.empty() && tag.element == 0) entry = {"GroupLength", vr("UL")};
            return entry;
        }
        const auto creator = creators.find({tag.group, static_cast<std::uint16_t>(tag.element >> 8)});
        auto entry = creator == creators.end() ? Dictionary::Entry{} : dictionary_.find(tag, creator->second);
        if (entry.keyword.empty()) entry.keyword = "Private";
        return entry;
    }

    static std::string lettersOf(Vr kind) {
        return {static_cast<char>(kind >> 8), static_cast<char>(kind & 0xFF)};
    }

    LongValues longValues_;
    Dictionary dictionary_;
};

std::string hexadecimal(std::uint16_t number) {
    std::string text(4, '0');
    for (int i = 0; i < 4; ++i)
        text[static_cast<std::size_t>(i)] = "0123456789ABCDEF"[number >> (12 - 4 * i) & 0xF];
    return text;
}

/// Brings the line to a column, by at least one blank.
void padTo(std::string& line, std::size_t column) {
    line.append(line.size() < column ? column - line.size() : 1, ' ');
}

}  // namespace

std::vector<HeaderLine> describeHeader(const DicomFile& file, LongValues longValues) {
    Describer describer(longValues);
    describer.describe(file.header(), 0, CharacterSet());
    const CharacterSet characterSet(file.header().strings(tags::SpecificCharacterSet));
    describer.describe(file.elementsBehindPixels(), 0, characterSet);
    return std::move(describer.lines);
}

std::string headerText(const DicomFile& file, LongValues longValues) {
    constexpr std::size_t tagWidth = 11, vrWidth = 3, keywordWidth = 34, indent = 2;
    std::string text;
    for (const HeaderLine& line : describeHeader(file, longValues)) {
        std::string row(indent * static_cast<std::size_t>(line.depth), ' ');
        const std::size_t start = row.size();
        row += "(" + hexadecimal(line.tag.group) + "," + hexadecimal(line.tag.element) + ")";
        padTo(row, start + tagWidth + 1);
        row += line.vr;
        padTo(row, start + tagWidth + 1 + vrWidth);
        row += line.keyword;
        if (!line.value.empty()) {
            padTo(row, start + tagWidth + 1 + vrWidth + keywordWidth);
            row += line.value;
        }
        text += row + "\n";
    }
    return text;
}

}  // namespace cinedisc::dicom
