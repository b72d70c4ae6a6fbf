// Sanitizers need system calls that are refused here; on Windows this program is not one that starts anew.
#if defined(__linux__) && !defined(__SANITIZE_ADDRESS__)
#include "dicom/codecs/FrameDecoder.h"
#include "dicom/codecs/LibraryDecoding.h"
#include "dicom/codecs/LibraryProcesses.h"
#include "tests/codecs/Encoders.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <thread>

namespace cinedisc::dicom::codecs {
namespace {

using Stream = std::vector<std::uint8_t>;

struct Case {
    Stream stream;
    PixelFormat format;
};

std::vector<Case> cases() {
    std::vector<Case> all;
    for (const int bits : {8, 12}) {
        const auto raster = test::raster(65, 130, bits == 8 ? 1 : 3, bits);
        all.push_back({test::dcmtkLossy(raster, test::LossyProcess::Progressive, 80), formatOf(raster)});
    }
    for (const int bits : {8, 12, 16, 20})
        for (const bool isSigned : {false, true}) {
            auto raster = test::raster(70, 90, 1, bits);
            raster.isSigned = isSigned;
            all.push_back({test::jpeg2000Encoded(raster), formatOf(raster)});
        }
    const auto large = test::raster(2048, 2048, 1, 8, test::Texture::Flat);  // decoded by several threads
    all.push_back({test::jpeg2000Encoded(large), formatOf(large)});
    for (std::size_t i = 0, whole = all.size(); i < whole; ++i) {
        all.push_back(all[i]);
        all.back().stream.resize(all[i].stream.size() * 2 / 3);
    }
    return all;
}

/// What a frame and its coarse picture show, or what is wrong.
auto shown(const Case& c) {
    const auto frame = test::decoded(c.stream, c.format, Compression::Jpeg);
    const auto coarse = decodeCoarseFrame(std::as_bytes(std::span(c.stream)), c.format, 20);
    using Samples = std::vector<std::int64_t>;
    return std::tuple(frame ? test::samplesOf(frame) : Samples(), frame ? "" : frame.error().detail,
                      coarse ? test::samplesOf(coarse->frame) : Samples());
}

TEST(Confined, DecodesWhatIsDecodedHereForSeveralThreadsAtATime) {
    LibraryProcesses processes(ConfinedProcesses::prepare(answerLibraryTask, 0, nullptr));
    const auto all = cases();
    std::vector<decltype(shown(all[0]))> here;
    for (const auto& c : all) here.push_back(shown(c));
    decodeInProcesses(&processes);
    std::vector<std::jthread> threads;
    for (int i = 0; i < 3; ++i)
        threads.emplace_back([&] {
            for (std::size_t k = 0; k < all.size(); ++k) EXPECT_TRUE(shown(all[k]) == here[k]) << k;
        });
    threads.clear();
    decodeInProcesses(nullptr);
}

/// Does the task, but what it leaves is spoilt as the task's `leastSide` says.
enum class Spoilt { Not, Death, Standstill, AllOnes, WideValues, Components, Halvings, DeathIfUsed };
void answerSpoilt(std::span<std::byte> memory) {
    LibraryTask task;
    std::memcpy(&task, memory.data(), sizeof task);
    const auto spoilt = static_cast<Spoilt>(task.leastSide);
    static bool isUsed = false;
    if (spoilt == Spoilt::Death || (spoilt == Spoilt::DeathIfUsed && isUsed)) std::abort();
    isUsed = true;
    for (volatile bool stands = spoilt == Spoilt::Standstill; stands;) continue;
    answerLibraryTask(memory);
    if (spoilt == Spoilt::AllOnes) std::ranges::fill(memory, std::byte{0xFF});
    // Behind the stream lie the cells; before it, what is told of them.
    if (spoilt == Spoilt::WideValues) std::ranges::fill(memory.subspan(256), std::byte{0xFF});
    const auto number = reinterpret_cast<int*>(memory.data() + 108);
    if (spoilt == Spoilt::Components) number[0] = 3000;
    if (spoilt == Spoilt::Halvings) number[2] = -1;
}

TEST(Confined, WhateverAProcessDoesOneFrameIsLostAndTheNextIsRight) {
    LibraryProcesses processes(ConfinedProcesses::prepare(answerSpoilt, 0, nullptr),
                               std::chrono::milliseconds(500));
    const auto raster = test::raster(40, 30, 1, 12);
    const auto stream = test::jpeg2000Encoded(raster);
    LibraryTask task{LibraryCodec::Jpeg2000, formatOf(raster)};
    const auto isRight = [&, here = decodeInThisProcess(stream, task)] {
        const auto there = processes.decode(stream, task);
        return there && there.value().picture.cells == here.value().picture.cells;
    };
    for (int spoilt = 1; spoilt <= static_cast<int>(Spoilt::Halvings); ++spoilt) {
        EXPECT_TRUE(isRight());
        task.leastSide = spoilt;
        const auto lost = processes.decode(stream, task);
        EXPECT_FALSE(lost) << spoilt;
        EXPECT_TRUE(!lost && lost.error().reason == DecodeError::Reason::Decoder) << spoilt;
        task.leastSide = 0;
    }
    EXPECT_TRUE(isRight());
    task.leastSide = static_cast<int>(Spoilt::DeathIfUsed);
    EXPECT_TRUE(isRight());
}

}  // namespace
}  // namespace cinedisc::dicom::codecs
#endif
