#include "tests/codecs/BlankStreams.h"

#include <initializer_list>

namespace cinedisc::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

void put(Bytes& to, std::initializer_list<std::size_t> numbers, int size) {
    for (const std::size_t number : numbers)
        for (int byte = size - 1; byte >= 0; --byte)
            to.push_back(static_cast<std::uint8_t>(number >> (8 * byte)));
}

Bytes coding(const BlankJpeg2000& m, bool asWanted) {
    Bytes bytes;
    const std::size_t precincts = asWanted && m.precinctBits ? m.levels + 1 : 0;
    const std::size_t block = (asWanted ? m.blockBits : 6) - 2;
    put(bytes, {0xFF52, 12 + precincts}, 2);
    put(bytes, {precincts ? 1u : 0u, 0}, 1);
    put(bytes, {asWanted ? m.layers : 1}, 2);
    put(bytes, {0, m.levels, block, block, 0, 1}, 1);
    bytes.insert(bytes.end(), precincts, static_cast<std::uint8_t>(m.precinctBits.value_or(0) * 17));
    return bytes;
}

}  // namespace

std::vector<std::uint8_t> blankJpeg2000(const BlankJpeg2000& m) {
    Bytes bytes;
    put(bytes, {0xFF4F, 0xFF51, 41, 0}, 2);
    put(bytes, {m.side, m.side, 0, 0, m.tile, m.tile, 0, 0}, 4);
    put(bytes, {1}, 2);
    put(bytes, {7, 1, 1}, 1);
    const Bytes main = coding(m, !m.inTileHeaders), own = m.inTileHeaders ? coding(m, true) : Bytes();
    bytes.insert(bytes.end(), main.begin(), main.end());
    put(bytes, {0xFF5C, 3 + 3 * m.levels + 1}, 2);
    bytes.insert(bytes.end(), 3 * m.levels + 2, 0x40);
    const std::size_t tiles = (m.side + m.tile - 1) / m.tile * ((m.side + m.tile - 1) / m.tile);
    for (std::size_t i = 0; i < tiles; ++i) {
        const std::size_t taken = bytes.size() + 14 + own.size() + 2;
        const std::size_t data = i + 1 == tiles && m.length > taken ? m.length - taken : 1;
        put(bytes, {0xFF90, 10, i}, 2);
        put(bytes, {14 + own.size() + data}, 4);
        put(bytes, {0, 1}, 1);
        bytes.insert(bytes.end(), own.begin(), own.end());
        put(bytes, {0xFF93}, 2);
        bytes.resize(bytes.size() + data);
    }
    put(bytes, {0xFFD9}, 2);
    return bytes;
}

std::vector<std::uint8_t> blankJpeg(const BlankJpeg& m) {
    Bytes bytes{0xFF, 0xD8, 0xFF, 0xDB, 0, 67, 0};
    bytes.insert(bytes.end(), 64, 1);
    put(bytes, {0xFFC2, 11}, 2);
    put(bytes, {m.precision}, 1);
    put(bytes, {m.side, m.side}, 2);
    put(bytes, {1, 1, 0x11, 0}, 1);
    for (const std::size_t kind : {0x00, 0x10}) {
        put(bytes, {0xFFC4, 20}, 2);
        put(bytes, {kind, 1}, 1);
        bytes.resize(bytes.size() + 16);  // one code, a single bit, its symbol 0
    }
    const std::size_t blocks = (m.side + 7) / 8 * ((m.side + 7) / 8);
    for (std::size_t i = 0; i < m.scans; ++i) {
        put(bytes, {0xFFDA, 8}, 2);
        put(bytes, {1, 1, 0, i ? 1u : 0u, i ? 63u : 0u, 0}, 1);
        bytes.resize(bytes.size() + (blocks + 7) / 8);
    }
    put(bytes, {0xFFD9}, 2);
    return bytes;
}

}  // namespace cinedisc::test
