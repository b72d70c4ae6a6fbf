#include "tests/codecs/LosslessEncoder.h"

#include <algorithm>

namespace cinedisc::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

class BitWriter {
  public:
    explicit BitWriter(Bytes& to) : to_(to) {}

    void put(unsigned value, int bits) {
        for (int i = bits - 1; i >= 0; --i) {
            byte_ = byte_ << 1 | (value >> i & 1);
            if (++filled_ < 8) continue;
            to_.push_back(static_cast<std::uint8_t>(byte_));
            if ((byte_ & 0xFF) == 0xFF) to_.push_back(0);
            filled_ = 0;
        }
    }
    void fillUp() {
        while (filled_ != 0) put(1, 1);
    }

  private:
    Bytes& to_;
    unsigned byte_ = 0;
    int filled_ = 0;
};

void putDifference(BitWriter& bits, const LosslessTable& table, int difference) {
    difference = static_cast<std::int16_t>(difference);
    int size = 0;
    while (std::abs(difference) >> size) ++size;
    unsigned code = 0;
    std::size_t symbol = 0;
    for (int length = 1; length <= 16; ++length, code <<= 1) {
        for (int i = 0; i < table.counts[static_cast<std::size_t>(length - 1)]; ++i, ++code, ++symbol) {
            if (table.symbols[symbol] != size) continue;
            bits.put(code, length);
            if (size < 16)
                bits.put(static_cast<unsigned>(difference < 0 ? difference - 1 : difference), size);
            return;
        }
    }
}

void putMarker(Bytes& to, int code, const Bytes& payload) {
    const std::size_t length = payload.size() + 2;
    to.insert(to.end(), {0xFF, static_cast<std::uint8_t>(code), static_cast<std::uint8_t>(length >> 8),
                         static_cast<std::uint8_t>(length)});
    to.insert(to.end(), payload.begin(), payload.end());
}

class Encoder {
  public:
    Encoder(std::span<const std::uint16_t> samples, int rows, int columns, int components,
            const LosslessOptions& options)
        : samples_(samples), rows_(rows), columns_(columns), components_(components), options_(options) {}

    Bytes encode() {
        Bytes stream{0xFF, 0xD8};
        const int announced = options_.rowsAnnounced ? rows_ : 0;
        Bytes frame{byte(options_.precision), byte(announced >> 8), byte(announced),
                    byte(columns_ >> 8),      byte(columns_),       byte(components_)};
        for (int c = 0; c < components_; ++c) frame.insert(frame.end(), {byte(c + 1), 0x11, 0});
        putMarker(stream, 0xC3, frame);
        for (int c = 0; c < components_; ++c) {
            Bytes payload{byte(c)};
            payload.insert(payload.end(), table(c).counts.begin(), table(c).counts.end());
            payload.insert(payload.end(), table(c).symbols.begin(), table(c).symbols.end());
            putMarker(stream, 0xC4, payload);
        }
        const int inScan = options_.interleaved ? components_ : 1;
        if (options_.restartRows > 0) {
            const int interval = options_.restartRows * columns_;
            putMarker(stream, 0xDD, {byte(interval >> 8), byte(interval)});
        }
        for (int first = 0; first < components_; first += inScan) putScan(stream, first, inScan);
        stream.insert(stream.end(), {0xFF, 0xD9});
        return stream;
    }

  private:
    static std::uint8_t byte(int value) { return static_cast<std::uint8_t>(value); }
    const LosslessTable& table(int component) const {
        return options_.tables[std::min(static_cast<std::size_t>(component), options_.tables.size() - 1)];
    }
    int at(int row, int column, int component) const {
        return samples_[static_cast<std::size_t>((row * columns_ + column) * components_ + component)] >>
               options_.pointTransform;
    }

    int predicted(int row, int column, int component, int firstRow) const {
        if (row == firstRow && column == 0) return 1 << (options_.precision - options_.pointTransform - 1);
        if (row == firstRow) return at(row, column - 1, component);
        if (column == 0) return at(row - 1, 0, component);
        const int left = at(row, column - 1, component), above = at(row - 1, column, component);
        const int diagonal = at(row - 1, column - 1, component);
        const int all[] = {0,
                           left,
                           above,
                           diagonal,
                           left + above - diagonal,
                           left + ((above - diagonal) >> 1),
                           above + ((left - diagonal) >> 1),
                           (left + above) >> 1};
        return all[options_.predictor];
    }

    void putScan(Bytes& stream, int first, int count) const {
        Bytes header{byte(count)};
        for (int c = first; c < first + count; ++c) header.insert(header.end(), {byte(c + 1), byte(c << 4)});
        header.insert(header.end(), {byte(options_.predictor), 0, byte(options_.pointTransform)});
        putMarker(stream, 0xDA, header);
        BitWriter bits(stream);
        int firstRow = 0;
        for (int row = 0; row < rows_; ++row) {
            if (options_.restartRows > 0 && row > 0 && row % options_.restartRows == 0) {
                bits.fillUp();
                stream.insert(stream.end(), {0xFF, byte(0xD0 + (row / options_.restartRows - 1) % 8)});
                firstRow = row;
            }
            for (int column = 0; column < columns_; ++column)
                for (int c = first; c < first + count; ++c)
                    putDifference(bits, table(c), at(row, column, c) - predicted(row, column, c, firstRow));
        }
        bits.fillUp();
    }

    std::span<const std::uint16_t> samples_;
    int rows_, columns_, components_;
    const LosslessOptions& options_;
};

}  // namespace

LosslessTable flatTable() {
    LosslessTable table{std::vector<std::uint8_t>(16), {}};
    table.counts[4] = 17;
    for (int symbol = 0; symbol <= 16; ++symbol) table.symbols.push_back(static_cast<std::uint8_t>(symbol));
    return table;
}

LosslessTable steepTable(std::vector<std::uint8_t> symbols) {
    LosslessTable table{std::vector<std::uint8_t>(16, 1), std::move(symbols)};
    table.counts[15] = 2;
    return table;
}

std::vector<std::uint8_t> losslessEncoded(std::span<const std::uint16_t> samples, int rows, int columns,
                                          int components, const LosslessOptions& options) {
    return Encoder(samples, rows, columns, components, options).encode();
}

}  // namespace cinedisc::test
