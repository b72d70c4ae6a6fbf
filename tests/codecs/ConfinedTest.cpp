// Sanitizers need system calls that are refused here; on Windows this program is not one that starts anew.
#if defined(__linux__) && !defined(__SANITIZE_ADDRESS__)
#include "dicom/codecs/LibraryProcesses.h"
#include "tests/codecs/Encoders.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <thread>

namespace cinedisc::dicom::codecs {
namespace {

using Stream = std::vector<std::uint8_t>;

struct Case {
    Stream stream;
    LibraryTask task;
};

std::vector<Case> cases() {
    std::vector<Case> all;
    for (const int bits : {8, 12}) {
        const auto raster = test::raster(65, 130, bits == 8 ? 1 : 3, bits);
        all.push_back({test::dcmtkLossy(raster, test::LossyProcess::Progressive, 80),
                       {LibraryCodec::Jpeg, formatOf(raster)}});
    }
    for (const int bits : {8, 12, 16, 20})
        for (const bool isSigned : {false, true}) {
            auto raster = test::raster(70, 90, 1, bits);
            raster.isSigned = isSigned;
            all.push_back({test::jpeg2000Encoded(raster), {LibraryCodec::Jpeg2000, formatOf(raster)}});
            all.push_back({all.back().stream, {LibraryCodec::CoarseJpeg2000, formatOf(raster), 20}});
        }
    const auto large = test::raster(2048, 2048, 1, 8, test::Texture::Flat);  // decoded by several threads
    all.push_back({test::jpeg2000Encoded(large), {LibraryCodec::Jpeg2000, formatOf(large)}});
    for (std::size_t i = 0, whole = all.size(); i < whole; ++i) {
        all.push_back(all[i]);
        all.back().stream.resize(all[i].stream.size() * 2 / 3);
    }
    return all;
}

bool areSame(const Result<LibraryPicture>& one, const Result<LibraryPicture>& other) {
    if (!one || !other)
        return one.ok() == other.ok() && one.error().kind == other.error().kind &&
               one.error().reason == other.error().reason && one.error().detail == other.error().detail;
    const auto facts = [](const LibraryPicture& p) {
        return std::tuple(p.halvings, p.picture.components, p.picture.precision, p.picture.isSigned,
                          p.picture.exactness, p.picture.arrangement, p.picture.colour, p.picture.usedBits);
    };
    return facts(one.value()) == facts(other.value()) &&
           one.value().picture.cells == other.value().picture.cells;
}

TEST(Confined, DecodesWhatIsDecodedHereForSeveralThreadsAtATime) {
    LibraryProcesses processes(ConfinedProcesses::prepare(answerLibraryTask, 0, nullptr));
    const auto all = cases();
    std::vector<Result<LibraryPicture>> here;
    for (const auto& c : all) here.push_back(decodeInThisProcess(c.stream, c.task));
    std::atomic<std::size_t> same = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i)
        threads.emplace_back([&] {
            for (std::size_t k = 0; k < all.size(); ++k)
                same += areSame(processes.decode(all[k].stream, all[k].task), here[k]);
        });
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(same, 3 * all.size());
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
    const auto here = decodeInThisProcess(stream, task);
    for (int spoilt = 1; spoilt <= static_cast<int>(Spoilt::Halvings); ++spoilt) {
        EXPECT_TRUE(areSame(processes.decode(stream, task), here));
        task.leastSide = spoilt;
        const auto lost = processes.decode(stream, task);
        EXPECT_FALSE(lost) << spoilt;
        EXPECT_TRUE(!lost && lost.error().reason == DecodeError::Reason::Decoder) << spoilt;
        task.leastSide = 0;
    }
    EXPECT_TRUE(areSame(processes.decode(stream, task), here));
    task.leastSide = static_cast<int>(Spoilt::DeathIfUsed);
    EXPECT_TRUE(areSame(processes.decode(stream, task), here));
}

}  // namespace
}  // namespace cinedisc::dicom::codecs
#endif
