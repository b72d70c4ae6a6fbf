#include "discmaker/encoding/JpegLosslessEncoder.h"

#include "discmaker/encoding/HuffmanCode.h"

#include <bit>
#include <cstdlib>

namespace cinedisc::discmaker {

namespace {

using Bytes = std::vector<std::uint8_t>;

int categoryOf(std::int16_t difference) {
    return std::bit_width(static_cast<unsigned>(std::abs(int{difference})));
}

void append16(Bytes& bytes, std::size_t value) {
    bytes.push_back(static_cast<std::uint8_t>(value >> 8));
    bytes.push_back(static_cast<std::uint8_t>(value));
}

void appendMarker(Bytes& bytes, std::uint8_t marker) {
    bytes.push_back(0xFF);
    bytes.push_back(marker);
}

void appendCodeTable(Bytes& bytes, const HuffmanCode& code) {
    appendMarker(bytes, 0xC4);
    append16(bytes, 2 + 1 + 16 + code.orderedCategories().size());
    bytes.push_back(0);  // direct current table 0
    for (auto count : code.codesPerLength()) bytes.push_back(count);
    bytes.insert(bytes.end(), code.orderedCategories().begin(), code.orderedCategories().end());
}

/// Entropy-coded bits, with a zero byte stuffed after each 0xFF.
class BitWriter {
  public:
    explicit BitWriter(Bytes& bytes) : bytes_(bytes) {}

    void put(std::uint32_t value, int bits) {
        held_ = held_ << bits | value;
        count_ += bits;
        while (count_ >= 8) {
            count_ -= 8;
            const auto byte = static_cast<std::uint8_t>(held_ >> count_);
            bytes_.push_back(byte);
            if (byte == 0xFF) bytes_.push_back(0);
        }
    }
    void fillUp() {
        if (count_ > 0) put((1u << (8 - count_)) - 1, 8 - count_);
    }

  private:
    Bytes& bytes_;
    std::uint64_t held_ = 0;
    int count_ = 0;
};

}  // namespace

std::vector<std::int16_t> JpegLosslessEncoder::differences(std::span<const std::uint16_t> samples) const {
    std::vector<std::int16_t> result(samples.size());
    const auto width = static_cast<std::size_t>(columns_);
    for (std::size_t start = 0; start < samples.size(); start += width) {
        const auto* row = samples.data() + start;
        // A row begins from the pixel above, the first one from the middle of the range.
        const int first = start > 0 ? int{*(row - width)} : 1 << (bits_ - 1);
        result[start] = static_cast<std::int16_t>(row[0] - first);
        for (std::size_t x = 1; x < width; ++x)
            result[start + x] = static_cast<std::int16_t>(row[x] - row[x - 1]);
    }
    return result;
}

std::vector<std::uint8_t> JpegLosslessEncoder::encode(std::span<const std::uint16_t> samples) const {
    const auto steps = differences(samples);
    HuffmanCode::Counts counts{};
    for (auto step : steps) ++counts[static_cast<std::size_t>(categoryOf(step))];
    const HuffmanCode code(counts);

    Bytes bytes;
    bytes.reserve(samples.size());
    appendMarker(bytes, 0xD8);
    appendMarker(bytes, 0xC3);  // lossless, sequential, Huffman
    append16(bytes, 11);
    bytes.push_back(static_cast<std::uint8_t>(bits_));
    append16(bytes, static_cast<std::size_t>(rows_));
    append16(bytes, static_cast<std::size_t>(columns_));
    for (std::uint8_t value : {1, 1, 0x11, 0}) bytes.push_back(value);  // one component, not subsampled
    appendCodeTable(bytes, code);
    appendMarker(bytes, 0xDA);
    append16(bytes, 8);
    for (std::uint8_t value : {1, 1, 0x00, 1, 0, 0}) bytes.push_back(value);  // table 0, selection value 1

    BitWriter bits(bytes);
    for (auto step : steps) {
        const int category = categoryOf(step);
        bits.put(code.code(category), code.length(category));
        // Category 16 has a single member and no further bits.
        if (category == 0 || category == 16) continue;
        const int value = step < 0 ? step - 1 : int{step};
        bits.put(static_cast<std::uint32_t>(value) & ((1u << category) - 1), category);
    }
    bits.fillUp();
    appendMarker(bytes, 0xD9);
    return bytes;
}

}  // namespace cinedisc::discmaker
