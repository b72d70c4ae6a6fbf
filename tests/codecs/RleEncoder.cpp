#include "tests/codecs/RleEncoder.h"

#include <algorithm>

namespace cinedisc::test {
namespace {

void appendRow(std::span<const std::uint8_t> row, std::vector<std::uint8_t>& to) {
    std::size_t literalStart = 0, i = 0;
    const auto flushLiteral = [&] {
        while (literalStart < i) {
            const std::size_t length = std::min<std::size_t>(128, i - literalStart);
            to.push_back(static_cast<std::uint8_t>(length - 1));
            to.insert(to.end(), row.begin() + static_cast<std::ptrdiff_t>(literalStart),
                      row.begin() + static_cast<std::ptrdiff_t>(literalStart + length));
            literalStart += length;
        }
    };
    while (i < row.size()) {
        std::size_t run = 1;
        while (i + run < row.size() && run < 128 && row[i + run] == row[i]) ++run;
        if (run < 3) {
            i += run;
            continue;
        }
        flushLiteral();
        to.push_back(static_cast<std::uint8_t>(257 - run));
        to.push_back(row[i]);
        i += run;
        literalStart = i;
    }
    flushLiteral();
}

}  // namespace

std::vector<std::uint8_t> rleEncoded(std::span<const std::vector<std::uint8_t>> planes, int columns) {
    std::vector<std::uint8_t> frame(64);
    const auto put32 = [&](std::size_t at, std::size_t value) {
        for (std::size_t k = 0; k < 4; ++k) frame[at + k] = static_cast<std::uint8_t>(value >> (8 * k));
    };
    put32(0, planes.size());
    for (std::size_t i = 0; i < planes.size(); ++i) {
        put32(4 + 4 * i, frame.size());
        for (std::size_t at = 0; at < planes[i].size(); at += static_cast<std::size_t>(columns))
            appendRow(std::span(planes[i]).subspan(at, static_cast<std::size_t>(columns)), frame);
        if (frame.size() % 2) frame.push_back(0);
    }
    return frame;
}

std::vector<std::vector<std::uint8_t>> bytePlanes(std::span<const std::uint32_t> samples, int samplesPerPixel,
                                                  int bytesInSample) {
    std::vector<std::vector<std::uint8_t>> planes;
    for (int sample = 0; sample < samplesPerPixel; ++sample) {
        for (int byte = bytesInSample - 1; byte >= 0; --byte) {
            auto& plane = planes.emplace_back();
            for (std::size_t i = static_cast<std::size_t>(sample); i < samples.size();
                 i += static_cast<std::size_t>(samplesPerPixel))
                plane.push_back(static_cast<std::uint8_t>(samples[i] >> (8 * byte)));
        }
    }
    return planes;
}

}  // namespace cinedisc::test
