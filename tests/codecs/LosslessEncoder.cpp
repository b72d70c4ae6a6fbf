#include "tests/codecs/Encoders.h"

#include <cstdlib>

namespace cinedisc::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

std::uint8_t byte(int value) { return static_cast<std::uint8_t>(value); }

class LosslessWriter {
  public:
    LosslessWriter(const Raster& raster, const LosslessMaking& making) : raster_(raster), making_(making) {}

    Bytes write() {
        const int rows = making_.rowsAnnounced ? raster_.rows : 0, count = raster_.components;
        Bytes frame{byte(raster_.bits),         byte(rows >> 8),       byte(rows),
                    byte(raster_.columns >> 8), byte(raster_.columns), byte(count)};
        for (int c = 0; c < count; ++c) frame.insert(frame.end(), {byte(c), 0x11, 0});
        putSegment(0xC3, frame);
        for (int c = 0; c < count; ++c) {
            Bytes table(17, isSteep(c) ? 1 : 0);
            table[0] = byte(c);
            if (isSteep(c)) table[16] = 2;
            if (!isSteep(c)) table[5] = 17;
            for (int i = 0; i < 17; ++i) table.push_back(byte(isSteep(c) ? (making_.shortest + i) % 17 : i));
            putSegment(0xC4, table);
        }
        const int interval = making_.restartRows * raster_.columns;
        if (interval > 0) putSegment(0xDD, {byte(interval >> 8), byte(interval)});
        const int inScan = making_.interleaved ? count : 1;
        for (int first = 0; first < count; first += inScan) putScan(first, inScan);
        stream_.insert(stream_.end(), {0xFF, 0xD9});
        return stream_;
    }

  private:
    bool isSteep(int component) const { return component == 0 && making_.shortest >= 0; }

    void putSegment(int code, const Bytes& payload) {
        stream_.insert(stream_.end(), {0xFF, byte(code), 0, byte(static_cast<int>(payload.size()) + 2)});
        stream_.insert(stream_.end(), payload.begin(), payload.end());
    }
    void put(int value, int bits) {
        while (bits-- > 0) {
            filling_ = filling_ << 1 | (value >> bits & 1);
            if (filling_ < 0x100) continue;
            stream_.push_back(byte(filling_));
            if (filling_ == 0x1FF) stream_.push_back(0);
            filling_ = 1;
        }
    }
    void fillUp() {
        while (filling_ != 1) put(1, 1);
    }

    int at(int row, int column, int component) const {
        const int index = (row * raster_.columns + column) * raster_.components + component;
        return raster_.samples[static_cast<std::size_t>(index)] >> making_.pointTransform;
    }
    int predicted(int row, int column, int c, int firstRow) const {
        if (row == firstRow && column == 0) return 1 << (raster_.bits - making_.pointTransform - 1);
        if (row == firstRow) return at(row, column - 1, c);
        if (column == 0) return at(row - 1, 0, c);
        const int a = at(row, column - 1, c), b = at(row - 1, column, c), d = at(row - 1, column - 1, c);
        const int all[] = {0, a, b, d, a + b - d, a + ((b - d) >> 1), b + ((a - d) >> 1), (a + b) >> 1};
        return all[making_.predictor];
    }
    void putDifference(int component, int difference) {
        difference = static_cast<std::int16_t>(difference);
        int size = 0;
        while (std::abs(difference) >> size) ++size;
        const int place = (size - making_.shortest + 17) % 17;
        if (!isSteep(component)) {
            put(size, 5);
        } else {
            put(place < 16 ? (2 << place) - 2 : 0xFFFF, place < 16 ? place + 1 : 16);
        }
        if (size < 16) put(difference < 0 ? difference - 1 : difference, size);
    }
    void putScan(int first, int count) {
        Bytes header{byte(count)};
        for (int c = first; c < first + count; ++c) header.insert(header.end(), {byte(c), byte(c << 4)});
        header.insert(header.end(), {byte(making_.predictor), 0, byte(making_.pointTransform)});
        putSegment(0xDA, header);
        for (int row = 0, firstRow = 0; row < raster_.rows; ++row) {
            if (making_.restartRows > 0 && row > 0 && row % making_.restartRows == 0) {
                fillUp();
                stream_.insert(stream_.end(), {0xFF, byte(0xD0 + (row / making_.restartRows - 1) % 8)});
                firstRow = row;
            }
            for (int column = 0; column < raster_.columns; ++column)
                for (int c = first; c < first + count; ++c)
                    putDifference(c, at(row, column, c) - predicted(row, column, c, firstRow));
        }
        fillUp();
    }

    const Raster& raster_;
    const LosslessMaking& making_;
    Bytes stream_{0xFF, 0xD8};
    int filling_ = 1;  ///< the bits of the next byte behind a one
};

}  // namespace

std::vector<std::uint8_t> losslessEncoded(const Raster& raster, const LosslessMaking& making) {
    return LosslessWriter(raster, making).write();
}

}  // namespace cinedisc::test
