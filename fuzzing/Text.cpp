#include "control/words/HeaderWords.h"
#include "dicom/CharacterSet.h"
#include "dicom/Utf8.h"
#include "fuzzing/Targets.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace cinedisc::fuzzing {

void text(Bytes input) {
    const std::string_view all(reinterpret_cast<const char*>(input.data()), input.size());
    const auto lineEnd = std::min(all.find('\n'), all.size());
    std::vector<std::string> terms(1);
    for (const char letter : all.substr(0, lineEnd)) {
        if (letter == '\\')
            terms.emplace_back();
        else
            terms.back() += letter;
    }
    const dicom::CharacterSet characters(terms);
    for (const auto resets :
         {dicom::CharacterSet::Resets::AtValues, dicom::CharacterSet::Resets::AtNameParts}) {
        const auto decoded = characters.decode(all.substr(std::min(lineEnd + 1, all.size())), resets);
        if (!dicom::isValidUtf8(decoded)) std::abort();
        const auto words = QString::fromStdString(decoded);
        (void)personNameLines(words);
        (void)readableDate(words);
        (void)readableTime(words);
        (void)harmless(words);
    }
}

}  // namespace cinedisc::fuzzing
