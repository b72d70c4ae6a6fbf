#include "dicom/ValueNumbers.h"

#include "dicom/Bytes.h"
#include "dicom/TextSplitting.h"
#include "dicom/ValueRepresentation.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <string>

namespace cinedisc::dicom {

namespace {

std::int64_t clampedToInteger(double value) {
    constexpr double limit = 9.0e18;
    return static_cast<std::int64_t>(std::clamp(value, -limit, limit));
}

bool isSignedVr(Vr letters) { return letters == vr("SS") || letters == vr("SL") || letters == vr("SV"); }

std::int64_t signExtended(std::uint64_t value, int size) {
    const int unused = 64 - 8 * size;
    return static_cast<std::int64_t>(value << unused) >> unused;
}

/// Calls `take` with each number in the bytes.
template <typename Take>
void eachBinary(std::span<const std::byte> bytes, int size, Take take) {
    const auto unit = static_cast<std::size_t>(size);
    for (std::size_t at = 0; at + unit <= bytes.size(); at += unit) take(loadNumber(&bytes[at], size));
}

std::vector<std::int64_t> attributeTags(std::span<const std::byte> value) {
    std::vector<std::int64_t> tags;
    eachBinary(value, 4, [&tags](std::uint64_t raw) {
        tags.push_back(static_cast<std::int64_t>((raw & 0xFFFF) << 16 | raw >> 16));
    });
    return tags;
}

}  // namespace

bool isWholeNumberVr(Vr letters) {
    return isSignedVr(letters) || letters == vr("US") || letters == vr("UL") || letters == vr("UV") ||
           letters == vr("OW") || letters == vr("OL") || letters == vr("OV") || letters == vr("OB");
}

bool isRealVr(Vr letters) {
    return letters == vr("FL") || letters == vr("FD") || letters == vr("OF") || letters == vr("OD");
}

std::optional<double> parseNumber(std::string_view text) {
    text = trimmed(text);
    if (!text.empty() && text.front() == '+') text.remove_prefix(1);
    std::string digits(text);
    std::replace(digits.begin(), digits.end(), ',', '.');
    double value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (error != std::errc() || end != digits.data() + digits.size() || !std::isfinite(value))
        return std::nullopt;
    return value;
}

std::vector<double> decimalsIn(std::span<const std::byte> value, Vr kind) {
    const int size = unitSize(kind);
    std::vector<double> numbers;
    if (isRealVr(kind)) {
        eachBinary(value, size, [&numbers, size](std::uint64_t raw) {
            const double number = size == 4 ? std::bit_cast<float>(static_cast<std::uint32_t>(raw))
                                            : std::bit_cast<double>(raw);
            numbers.push_back(std::isfinite(number) ? number : 0);
        });
    } else if (isText(kind)) {
        for (const std::string_view part : splitValues(textOf(value))) {
            const auto number = parseNumber(part);
            if (!number) break;
            numbers.push_back(*number);
        }
    } else {
        for (const std::int64_t number : integersIn(value, kind))
            numbers.push_back(static_cast<double>(number));
    }
    return numbers;
}

std::vector<std::int64_t> integersIn(std::span<const std::byte> value, Vr kind) {
    if (kind == vr("AT")) return attributeTags(value);
    std::vector<std::int64_t> numbers;
    if (isWholeNumberVr(kind)) {
        const int size = unitSize(kind);
        eachBinary(value, size, [&](std::uint64_t raw) {
            numbers.push_back(isSignedVr(kind) ? signExtended(raw, size) : static_cast<std::int64_t>(raw));
        });
    } else if (isText(kind) || isRealVr(kind)) {
        for (const double number : decimalsIn(value, kind)) numbers.push_back(clampedToInteger(number));
    }
    return numbers;
}

}  // namespace cinedisc::dicom
