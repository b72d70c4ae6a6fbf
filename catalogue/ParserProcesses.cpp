#include "catalogue/ParserProcesses.h"

#include "catalogue/XmlParser.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace cinedisc {

namespace {

/// At the beginning of the shared memory, before the text. What is no task of this parser begins otherwise.
struct Question {
    std::uint32_t kind = taskKind;
    std::uint32_t isUtf8 = 0;
    std::uint64_t size = 0;

    static constexpr std::uint32_t taskKind = 0x4C4D5843;
};

/// Takes the question's place, and the items the text's. No items: not well-formed, or more than there is
/// room for.
struct Reply {
    std::uint64_t size = 0;
};

static_assert(sizeof(Reply) <= sizeof(Question));

/// Nothing becomes more than three times as long, in items as small as they can be, but by entities. Only
/// what is used of it is taken from the machine.
std::size_t memoryFor(std::size_t textSize) {
    return sizeof(Question) + 3 * textSize + (std::size_t{20} << 20);
}

template <typename Content>
Content takeFrom(std::span<const std::byte> memory) {
    Content content;
    std::memcpy(&content, memory.data(), sizeof content);
    return content;
}

std::span<std::byte> behindQuestion(std::span<std::byte> memory) { return memory.subspan(sizeof(Question)); }

ParserProcesses* processesInUse = nullptr;

}  // namespace

ParserProcesses::ParserProcesses(std::shared_ptr<ConfinedProcesses> source,
                                 std::chrono::milliseconds patience)
    : source_(std::move(source)), patience_(patience) {
    startNext();
}

std::vector<std::byte> ParserProcesses::parse(std::string_view text, bool isUtf8) {
    auto process = next_.valid() ? next_.get() : nullptr;
    if (!areAllowed_) areAllowed_ = process != nullptr;
    if (!*areAllowed_) return parseXml(text, isUtf8);
    if (process && process->memory().size() < memoryFor(text.size()))
        process = source_->start(memoryFor(text.size()));
    startNext();
    if (!process) return {};
    const auto memory = process->memory(), room = behindQuestion(memory);
    const Question question{Question::taskKind, isUtf8, text.size()};
    std::memcpy(memory.data(), &question, sizeof question);
    std::memcpy(room.data(), text.data(), text.size());
    if (process->ask(patience_) != ConfinedProcess::Outcome::Done) return {};
    const auto size = takeFrom<Reply>(memory).size;
    if (size > room.size()) return {};
    return {room.begin(), room.begin() + static_cast<std::ptrdiff_t>(size)};
}

void ParserProcesses::startNext() {
    constexpr std::size_t usualText = 1 << 20;
    next_ =
        std::async(std::launch::async, [source = source_] { return source->start(memoryFor(usualText)); });
}

bool isParserTask(std::span<const std::byte> memory) {
    return takeFrom<Question>(memory).kind == Question::taskKind;
}

void answerParserTask(std::span<std::byte> memory) {
    const auto question = takeFrom<Question>(memory);
    const auto room = behindQuestion(memory);
    const auto items =
        parseXml({reinterpret_cast<const char*>(room.data()), static_cast<std::size_t>(question.size)},
                 question.isUtf8 != 0);
    Reply reply;
    if (items.size() <= room.size()) {
        std::ranges::copy(items, room.begin());
        reply.size = items.size();
    }
    std::memcpy(memory.data(), &reply, sizeof reply);
}

void parseInProcesses(ParserProcesses* processes) { processesInUse = processes; }

std::vector<std::byte> parseByLibrary(std::string_view text, bool isUtf8) {
    return processesInUse ? processesInUse->parse(text, isUtf8) : parseXml(text, isUtf8);
}

}  // namespace cinedisc
