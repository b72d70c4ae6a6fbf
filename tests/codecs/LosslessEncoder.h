#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace cinedisc::test {

/// A Huffman table for the lossless process: symbols in the order of their codes, and how many codes of each
/// length.
struct LosslessTable {
    std::vector<std::uint8_t> counts;  ///< for lengths 1 to 16
    std::vector<std::uint8_t> symbols;
};

/// All symbols 0 to 16, 5 bits each.
LosslessTable flatTable();
/// One code of each length from 1 bit to 15, two of 16: `symbols` are the 17 symbols, the shortest first.
LosslessTable steepTable(std::vector<std::uint8_t> symbols);

struct LosslessOptions {
    int precision = 8;
    int predictor = 1;
    int pointTransform = 0;
    int restartRows = 0;
    bool interleaved = true;    ///< false: a scan for each component
    bool rowsAnnounced = true;  ///< false: the frame header says 0 rows
    std::vector<LosslessTable> tables{
        flatTable()};  ///< for each component, the last one for those that follow too
};

/// Encodes interleaved samples by the letter of ITU-T T.81 annex H, without any thought of speed.
std::vector<std::uint8_t> losslessEncoded(std::span<const std::uint16_t> samples, int rows, int columns,
                                          int components, const LosslessOptions& options);

}  // namespace cinedisc::test
