#include "dicom/ValueRepresentation.h"

#include "dicom/Tags.h"

#include <algorithm>
#include <array>

namespace cinedisc::dicom {

namespace {

struct VrRow {
    Vr letters;
    bool longLength;
    int unit;
    enum Kind { Binary, Plain, International } kind;
};

constexpr auto binary = VrRow::Binary;
constexpr auto plain = VrRow::Plain;
constexpr auto international = VrRow::International;

constexpr std::array vrTable = std::to_array<VrRow>({
    {vr("AE"), false, 1, plain},         {vr("AS"), false, 1, plain},
    {vr("AT"), false, 2, binary},        {vr("CS"), false, 1, plain},
    {vr("DA"), false, 1, plain},         {vr("DS"), false, 1, plain},
    {vr("DT"), false, 1, plain},         {vr("FD"), false, 8, binary},
    {vr("FL"), false, 4, binary},        {vr("IS"), false, 1, plain},
    {vr("LO"), false, 1, international}, {vr("LT"), false, 1, international},
    {vr("OB"), true, 1, binary},         {vr("OD"), true, 8, binary},
    {vr("OF"), true, 4, binary},         {vr("OL"), true, 4, binary},
    {vr("OV"), true, 8, binary},         {vr("OW"), true, 2, binary},
    {vr("PN"), false, 1, international}, {vr("SH"), false, 1, international},
    {vr("SL"), false, 4, binary},        {vr("SQ"), true, 1, binary},
    {vr("SS"), false, 2, binary},        {vr("ST"), false, 1, international},
    {vr("SV"), true, 8, binary},         {vr("TM"), false, 1, plain},
    {vr("UC"), true, 1, international},  {vr("UI"), false, 1, plain},
    {vr("UL"), false, 4, binary},        {vr("UN"), true, 1, binary},
    {vr("UR"), true, 1, plain},          {vr("US"), false, 2, binary},
    {vr("UT"), true, 1, international},  {vr("UV"), true, 8, binary},
});

const VrRow* findVr(Vr letters) {
    const auto at = std::lower_bound(vrTable.begin(), vrTable.end(), letters,
                                     [](const VrRow& row, Vr wanted) { return row.letters < wanted; });
    return at != vrTable.end() && at->letters == letters ? &*at : nullptr;
}

struct UsualRow {
    Tag tag;
    Vr letters;
};

// In the order of tags. US stands for elements that are US or SS by the pixel representation.
constexpr std::array usualTable = std::to_array<UsualRow>({
    {{0x0008, 0x0005}, vr("CS")}, {{0x0008, 0x0008}, vr("CS")}, {{0x0008, 0x0016}, vr("UI")},
    {{0x0008, 0x0018}, vr("UI")}, {{0x0008, 0x0020}, vr("DA")}, {{0x0008, 0x0021}, vr("DA")},
    {{0x0008, 0x0022}, vr("DA")}, {{0x0008, 0x0023}, vr("DA")}, {{0x0008, 0x002A}, vr("DT")},
    {{0x0008, 0x0030}, vr("TM")}, {{0x0008, 0x0031}, vr("TM")}, {{0x0008, 0x0032}, vr("TM")},
    {{0x0008, 0x0033}, vr("TM")}, {{0x0008, 0x0050}, vr("SH")}, {{0x0008, 0x0060}, vr("CS")},
    {{0x0008, 0x0070}, vr("LO")}, {{0x0008, 0x0080}, vr("LO")}, {{0x0008, 0x0090}, vr("PN")},
    {{0x0008, 0x1010}, vr("SH")}, {{0x0008, 0x1030}, vr("LO")}, {{0x0008, 0x103E}, vr("LO")},
    {{0x0008, 0x1090}, vr("LO")}, {{0x0008, 0x2144}, vr("IS")}, {{0x0010, 0x0010}, vr("PN")},
    {{0x0010, 0x0020}, vr("LO")}, {{0x0010, 0x0030}, vr("DA")}, {{0x0010, 0x0040}, vr("CS")},
    {{0x0018, 0x0040}, vr("IS")}, {{0x0018, 0x1030}, vr("LO")}, {{0x0018, 0x1063}, vr("DS")},
    {{0x0018, 0x1065}, vr("DS")}, {{0x0018, 0x1164}, vr("DS")}, {{0x0018, 0x1500}, vr("CS")},
    {{0x0018, 0x1510}, vr("DS")}, {{0x0018, 0x1511}, vr("DS")}, {{0x0018, 0x1600}, vr("CS")},
    {{0x0018, 0x1602}, vr("IS")}, {{0x0018, 0x1604}, vr("IS")}, {{0x0018, 0x1606}, vr("IS")},
    {{0x0018, 0x1608}, vr("IS")}, {{0x0018, 0x1610}, vr("IS")}, {{0x0018, 0x1612}, vr("IS")},
    {{0x0018, 0x1620}, vr("IS")}, {{0x0018, 0x1622}, vr("US")}, {{0x0018, 0x1623}, vr("US")},
    {{0x0020, 0x000D}, vr("UI")}, {{0x0020, 0x000E}, vr("UI")}, {{0x0020, 0x0010}, vr("SH")},
    {{0x0020, 0x0011}, vr("IS")}, {{0x0020, 0x0012}, vr("IS")}, {{0x0020, 0x0013}, vr("IS")},
    {{0x0020, 0x4000}, vr("LT")}, {{0x0028, 0x0002}, vr("US")}, {{0x0028, 0x0004}, vr("CS")},
    {{0x0028, 0x0006}, vr("US")}, {{0x0028, 0x0008}, vr("IS")}, {{0x0028, 0x0009}, vr("AT")},
    {{0x0028, 0x0010}, vr("US")}, {{0x0028, 0x0011}, vr("US")}, {{0x0028, 0x0030}, vr("DS")},
    {{0x0028, 0x0034}, vr("IS")}, {{0x0028, 0x0100}, vr("US")}, {{0x0028, 0x0101}, vr("US")},
    {{0x0028, 0x0102}, vr("US")}, {{0x0028, 0x0103}, vr("US")}, {{0x0028, 0x0106}, vr("US")},
    {{0x0028, 0x0107}, vr("US")}, {{0x0028, 0x0120}, vr("US")}, {{0x0028, 0x0121}, vr("US")},
    {{0x0028, 0x1040}, vr("CS")}, {{0x0028, 0x1050}, vr("DS")}, {{0x0028, 0x1051}, vr("DS")},
    {{0x0028, 0x1052}, vr("DS")}, {{0x0028, 0x1053}, vr("DS")}, {{0x0028, 0x1054}, vr("LO")},
    {{0x0028, 0x1055}, vr("LO")}, {{0x0028, 0x1056}, vr("CS")}, {{0x0028, 0x1101}, vr("US")},
    {{0x0028, 0x1102}, vr("US")}, {{0x0028, 0x1103}, vr("US")}, {{0x0028, 0x1201}, vr("OW")},
    {{0x0028, 0x1202}, vr("OW")}, {{0x0028, 0x1203}, vr("OW")}, {{0x0028, 0x1221}, vr("OW")},
    {{0x0028, 0x1222}, vr("OW")}, {{0x0028, 0x1223}, vr("OW")}, {{0x0028, 0x2110}, vr("CS")},
    {{0x0028, 0x2112}, vr("DS")}, {{0x0028, 0x2114}, vr("CS")}, {{0x0028, 0x3000}, vr("SQ")},
    {{0x0028, 0x3002}, vr("US")}, {{0x0028, 0x3003}, vr("LO")}, {{0x0028, 0x3004}, vr("LO")},
    {{0x0028, 0x3006}, vr("OW")}, {{0x0028, 0x3010}, vr("SQ")}, {{0x0028, 0x9110}, vr("SQ")},
    {{0x0028, 0x9132}, vr("SQ")}, {{0x0028, 0x9145}, vr("SQ")}, {{0x0028, 0x9443}, vr("SQ")},
    {{0x0088, 0x0200}, vr("SQ")}, {{0x2050, 0x0020}, vr("CS")}, {{0x5200, 0x9229}, vr("SQ")},
    {{0x5200, 0x9230}, vr("SQ")}, {{0x7FE0, 0x0001}, vr("OV")}, {{0x7FE0, 0x0002}, vr("OV")},
    {{0x7FE0, 0x0008}, vr("OF")}, {{0x7FE0, 0x0009}, vr("OD")}, {{0x7FE0, 0x0010}, vr("OW")},
});

Vr overlayVr(std::uint16_t element) {
    switch (element) {
        case 0x0015:
            return vr("IS");
        case 0x0040:
            return vr("CS");
        case 0x0050:
            return vr("SS");
        case 0x0022:
        case 0x1500:
            return vr("LO");
        case 0x3000:
            return vr("OW");
        default:
            return vr("US");
    }
}

}  // namespace

bool isKnownVr(Vr letters) { return findVr(letters) != nullptr; }

bool hasLongLength(Vr letters) {
    const VrRow* row = findVr(letters);
    return row && row->longLength;
}

int unitSize(Vr letters) {
    const VrRow* row = findVr(letters);
    return row ? row->unit : 1;
}

bool usesCharacterSet(Vr letters) {
    const VrRow* row = findVr(letters);
    return row && row->kind == VrRow::International;
}

bool isText(Vr letters) {
    const VrRow* row = findVr(letters);
    return row && row->kind != VrRow::Binary;
}

Vr usualVr(Tag tag) {
    if (tag.element == 0) return vr("UL");
    if (tags::isOverlayGroup(tag.group)) return overlayVr(tag.element);
    const bool isPrivateCreator = tag.group % 2 == 1 && tag.element >= 0x0010 && tag.element <= 0x00FF;
    if (isPrivateCreator) return vr("LO");
    const auto at = std::lower_bound(usualTable.begin(), usualTable.end(), tag,
                                     [](const UsualRow& row, Tag wanted) { return row.tag < wanted; });
    return at != usualTable.end() && at->tag == tag ? at->letters : vr("UN");
}

Vr effectiveVr(const Element& element) {
    const Vr stated = element.valueRepresentation;
    return stated == vr("UN") || !isKnownVr(stated) ? usualVr(element.tag) : stated;
}

}  // namespace cinedisc::dicom
