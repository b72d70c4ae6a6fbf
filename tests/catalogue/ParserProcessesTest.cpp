// Sanitizers need system calls that are refused here; on Windows this program is not one that starts anew.
#if defined(__linux__) && !defined(__SANITIZE_ADDRESS__)
#include "catalogue/CatalogueReader.h"
#include "catalogue/ParserProcesses.h"
#include "catalogue/XmlParser.h"
#include "tests/support/DiscBuilder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

namespace cinedisc::test {
namespace {

TEST(ParserProcesses, ParseWhatIsParsedHere) {
    ParserProcesses processes(ConfinedProcesses::prepare(answerParserTask, 0, nullptr));
    const QString utf16 = "<?xml version='1.0' encoding='UTF-16'?><a>\u0416<b/></a>";
    const QByteArray documents[] = {
        "<a/>", "<a><b></a>",
        "<!DOCTYPE a [<!ENTITY e 'x'>]><a>1&e;2<!--3--><?p 4?><![CDATA[<]]><b>5</b></a>",
        "\xFE\xFF" + QByteArray(QStringEncoder(QStringEncoder::Utf16BE)(utf16)),
        // More than the memory that a process is started with.
        "<a>" + QByteArray("<b>x</b>").repeated(300'000) + QByteArray(16 << 20, ' ') + "</a>"};
    for (const QByteArray& document : documents) {
        const std::string_view text(document.data(), std::size_t(document.size()));
        EXPECT_EQ(processes.parse(text, false), parseXml(text, false)) << document.left(60).constData();
    }
}

/// What a process that is somebody else's may leave: the name of the document's element says what.
void answerSpoilt(std::span<std::byte> memory) {
    const auto items = memory.subspan(16);
    const char spoilt = static_cast<char>(items[1]);
    if (spoilt == 'd') std::abort();
    for (volatile bool stands = spoilt == 's'; stands;) continue;
    answerParserTask(memory);
    const auto put = [&](std::uint64_t size, std::initializer_list<int> bytes, int fill) {
        std::memcpy(memory.data(), &size, sizeof size);
        std::ranges::fill(items.first(1000), static_cast<std::byte>(fill));
        for (auto to = items.begin(); const int each : bytes) *to++ = static_cast<std::byte>(each);
    };
    if (spoilt == 'l') put(std::uint64_t{1} << 40, {}, 0);          // longer than the memory
    if (spoilt == 'u') put(9, {2, 3, 200, 0, 0, 0, 'x', 1, 1}, 0);  // data longer than all items
    if (spoilt == 'n') put(1000, {}, 2);                            // nested without an end
    if (spoilt == 'k') put(3, {2, 77, 1}, 0);                       // of no kind
    if (spoilt == 'e') put(4, {2, 1, 1, 1}, 0);                     // ends too often
    if (spoilt == 'c') put(3, {2, 3, 9}, 0);                        // cut within a size
}

TEST(ParserProcesses, WhateverOneDoesTheDocumentIsRefusedAndTheNextIsRight) {
    ParserProcesses processes(ConfinedProcesses::prepare(answerSpoilt, 0, nullptr),
                              std::chrono::milliseconds(500));
    parseInProcesses(&processes);
    QTemporaryDir folder;
    const auto read = [&](const char* name) {
        const QString path = folder.filePath("CD.xml");
        DiscBuilder::write(path, "<" + QByteArray(name) + ">text</" + name + ">");
        return readCatalogue(path);
    };
    for (const char* spoilt : {"d", "s", "l", "u", "n", "k", "e", "c"}) {
        EXPECT_FALSE(read(spoilt)) << spoilt;
        const auto next = read("a");
        ASSERT_TRUE(next) << spoilt;
        EXPECT_EQ(next->text(), "text") << spoilt;
    }
    parseInProcesses(nullptr);
}

}  // namespace
}  // namespace cinedisc::test
#endif
