#include "fuzzing/window/Mutation.h"

#include <algorithm>
#include <string_view>

namespace cinedisc::fuzzing::window {

namespace {

using Content = Mutation::Content;

constexpr std::size_t placesOfCut = 5;

std::size_t below(std::size_t limit, std::mt19937& random) { return limit == 0 ? 0 : random() % limit; }

std::ptrdiff_t signedOf(std::size_t number) { return static_cast<std::ptrdiff_t>(number); }

void putNumber(Content& content, std::size_t at, std::size_t bytes, bool isBigEndian, std::uint64_t value) {
    for (std::size_t i = 0; i < bytes && at + i < content.size(); ++i)
        content[at + i] = static_cast<std::byte>(value >> 8 * (isBigEndian ? bytes - 1 - i : i));
}

void putText(Content& content, std::size_t at, std::size_t end, std::string_view text) {
    for (std::size_t i = 0; at + i < std::min(end, content.size()); ++i)
        content[at + i] = static_cast<std::byte>(i < text.size() ? text[i] : ' ');
}

void insert(Content& content, std::size_t at, const Content& what) {
    content.insert(content.begin() + signedOf(std::min(at, content.size())), what.begin(), what.end());
}

Content pieceOf(const Content& content, const FilePart& part) {
    const auto end = std::min(part.end, content.size());
    return {content.begin() + signedOf(std::min(part.begin, end)), content.begin() + signedOf(end)};
}

void putLength(Content& content, const FilePart& part, std::mt19937& random) {
    const std::uint64_t stated = part.end - part.value,
                        rest = content.size() - std::min(content.size(), part.value);
    const std::uint64_t lengths[] = {0,          1,          2,          stated + 1, stated - 1, stated + 2,
                                     stated * 2, rest,       rest + 1,   rest - 1,   0x7FFF,     0xFFFF,
                                     0xFFFE,     0x7FFFFFFF, 0x80000000, 0xFFFFFFFE, 0xFFFFFFFF};
    putNumber(content, part.lengthAt, part.lengthBytes, part.isBigEndian,
              lengths[below(std::size(lengths), random)]);
}

/// Tags that mean something wherever they stand.
void putTag(Content& content, const FilePart& part, std::mt19937& random) {
    constexpr std::uint32_t known[] = {
        0xE000FFFE, 0xE00DFFFE, 0xE0DDFFFE, 0x00107FE0, 0x00017FE0, 0x00087FE0, 0x00100028, 0x00110028,
        0x01000028, 0x00020028, 0x00080028, 0x92305200, 0x92295200, 0x30100028, 0x30060028, 0x12010028,
        0x30006000, 0x01006000, 0x16000018, 0x00100002, 0x00050008, 0x00000000, 0x60100028, 0x10650018};
    putNumber(content, part.begin, 4, false, known[below(std::size(known), random)]);
}

void putValue(Content& content, const FilePart& part, std::mt19937& random) {
    constexpr std::string_view texts[] = {"2147483648",
                                          "-1",
                                          "1e308",
                                          "nan",
                                          "-inf",
                                          "0",
                                          "\\\\\\\\\\\\\\\\",
                                          "99999999999999999999",
                                          "\x1b$B\x1b(B",
                                          "ISO_IR 192",
                                          "1.2.840.10008.1.2.4.90",
                                          "1.2.840.10008.1.2.5",
                                          "PALETTE COLOR",
                                          "YBR_FULL_422",
                                          "RGB",
                                          "MONOCHROME1",
                                          "%s%n",
                                          "<b>&amp;",
                                          "\xE2\x80\xAE",
                                          "1.2.840.10008.1.2.1.99"};
    constexpr std::uint64_t numbers[] = {0,   1,      2,      3,      7,          8,         12,
                                         15,  16,     17,     31,     32,         64,        255,
                                         256, 0x7FFF, 0x8000, 0xFFFF, 0x7FFFFFFF, 0x80000000};
    const std::size_t bytes = std::min<std::size_t>(part.end - part.value, 4);
    if (below(2, random) == 0)
        putText(content, part.value, part.end, texts[below(std::size(texts), random)]);
    else
        putNumber(content, part.value, bytes, part.isBigEndian, numbers[below(std::size(numbers), random)]);
}

void flipBits(Content& content, std::size_t from, std::size_t to, std::mt19937& random) {
    to = std::min(to, content.size());
    for (auto count = 1 + below(8, random); count > 0 && from < to; --count)
        content[from + below(to - from, random)] ^= static_cast<std::byte>(1u << below(8, random));
}

void scratch(Content& content, std::mt19937& random) {
    const auto from = below(content.size(), random), length = 1 + below(4096, random);
    const auto kind = below(3, random);
    for (std::size_t at = from; at < std::min(from + length, content.size()); ++at)
        content[at] = static_cast<std::byte>(kind == 0 ? 0 : kind == 1 ? 255 : random());
}

}  // namespace

Mutation::Mutation(std::vector<Content> seeds) {
    for (Content& content : seeds) {
        auto parts = partsOf(content);
        if (parts.empty()) parts.push_back({0, 0, 0, false, 0, content.size()});
        cuts_ += parts.size() * placesOfCut;
        seeds_.push_back({std::move(content), std::move(parts)});
    }
}

Content Mutation::operator()(std::size_t number) const {
    return number % 2 ? changed(number) : cut(number / 2);
}

Content Mutation::cut(std::size_t number) const {
    // Steps of a prime number come to every cut in the end, and soon to every seed.
    constexpr std::size_t prime = 1'000'003;
    std::size_t chosen = number * prime % cuts_;
    for (const Seed& seed : seeds_) {
        if (chosen >= seed.parts.size() * placesOfCut) {
            chosen -= seed.parts.size() * placesOfCut;
            continue;
        }
        const FilePart& part = seed.parts[chosen / placesOfCut];
        const std::size_t places[placesOfCut] = {part.begin, (part.begin + part.value) / 2, part.value,
                                                 (part.value + part.end) / 2, part.end - 1};
        Content content = seed.content;
        content.resize(std::min(places[chosen % placesOfCut], content.size()));
        return content;
    }
    return {};
}

Content Mutation::changed(std::size_t number) const {
    std::mt19937 random(static_cast<unsigned>(number));
    const Seed& seed = seeds_[below(seeds_.size(), random)];
    Content content = seed.content;
    for (auto count = 1 + below(4, random); count > 0 && !content.empty(); --count)
        change(content, seed.parts, random);
    return content;
}

void Mutation::change(Content& content, const std::vector<FilePart>& parts, std::mt19937& random) const {
    // The first parts are the header's: what they say decides over all others.
    const auto chosen = [&](const std::vector<FilePart>& from) -> const FilePart& {
        return from[below(below(2, random) ? from.size() : std::min<std::size_t>(from.size(), 80), random)];
    };
    const FilePart &part = chosen(parts), &other = chosen(parts);
    const auto end = std::min(part.end, content.size());
    switch (below(11, random)) {
        case 0:
            return putLength(content, part, random);
        case 1:  // tags swapped
            for (std::size_t i = 0; i < 4; ++i)
                if (std::max(part.begin, other.begin) + i < content.size())
                    std::swap(content[part.begin + i], content[other.begin + i]);
            return;
        case 2:
            return putTag(content, part, random);
        case 3:
            return putValue(content, part, random);
        case 4:
            return flipBits(content, part.begin, part.value, random);
        case 5:
            return flipBits(content, 0, content.size(), random);
        case 6:
            return scratch(content, random);
        case 7:  // left out
            if (part.begin < end)
                content.erase(content.begin() + signedOf(part.begin), content.begin() + signedOf(end));
            return;
        case 8: {  // once more, or very often
            const Content piece = pieceOf(content, part);
            for (auto times = below(4, random) ? 1
                                               : std::min<std::size_t>(2000, (1u << 20) / (piece.size() + 1));
                 times > 0; --times)
                insert(content, part.begin, piece);
            return;
        }
        case 9: {  // of another file
            const Seed& seed = seeds_[below(seeds_.size(), random)];
            return insert(content, part.begin, pieceOf(seed.content, chosen(seed.parts)));
        }
        default:
            return insert(content, part.value,
                          Content(1 + below(64, random), static_cast<std::byte>(random())));
    }
}

}  // namespace cinedisc::fuzzing::window
