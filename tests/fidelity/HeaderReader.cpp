#include "tests/fidelity/HeaderReader.h"

#include <cstdlib>

namespace cinedisc::fidelity {

std::string HeaderReader::text(const DcmTagKey& tag) const {
    OFString value;
    item_->findAndGetOFString(tag, value);
    return value.c_str();
}

std::vector<std::string> HeaderReader::texts(const DcmTagKey& tag) const {
    std::vector<std::string> values;
    OFString value;
    for (unsigned long i = 0; item_->findAndGetOFString(tag, value, i).good(); ++i)
        values.emplace_back(value.c_str());
    return values;
}

std::vector<double> HeaderReader::numbers(const DcmTagKey& tag) const {
    std::vector<double> values;
    for (const auto& value : texts(tag)) {
        if (!value.empty()) values.push_back(std::strtod(value.c_str(), nullptr));
    }
    return values;
}

double HeaderReader::number(const DcmTagKey& tag, double otherwise) const {
    const auto values = numbers(tag);
    return values.empty() ? otherwise : values.front();
}

int HeaderReader::integer(const DcmTagKey& tag, int otherwise) const {
    return static_cast<int>(number(tag, otherwise));
}

std::vector<unsigned> HeaderReader::words(const DcmTagKey& tag) const {
    DcmElement* element = nullptr;
    if (item_->findAndGetElement(tag, element).bad() || !element) return {};
    std::vector<unsigned> values;
    Uint16* words = nullptr;
    Sint16* numbers = nullptr;
    if (element->getUint16Array(words).good() && words) {
        values.assign(words, words + element->getLength() / 2);
    } else if (element->getSint16Array(numbers).good() && numbers) {
        for (unsigned i = 0; i < element->getLength() / 2; ++i)
            values.push_back(static_cast<Uint16>(numbers[i]));
    }
    return values;
}

std::vector<HeaderReader> HeaderReader::items(const DcmTagKey& sequence) const {
    std::vector<HeaderReader> found;
    DcmSequenceOfItems* items = nullptr;
    if (item_->findAndGetSequence(sequence, items).bad() || !items) return found;
    for (unsigned long i = 0; i < items->card(); ++i) found.emplace_back(*items->getItem(i));
    return found;
}

HeaderReader HeaderReader::macro(const DcmTagKey& sequence, int frame) const {
    const auto perFrame = items(DCM_PerFrameFunctionalGroupsSequence);
    if (static_cast<std::size_t>(frame) < perFrame.size()) {
        const auto own = perFrame[static_cast<std::size_t>(frame)].items(sequence);
        if (!own.empty()) return own.front();
    }
    for (const auto& shared : items(DCM_SharedFunctionalGroupsSequence)) {
        const auto own = shared.items(sequence);
        if (!own.empty()) return own.front();
    }
    return *this;
}

}  // namespace cinedisc::fidelity
