#pragma once

#include "platform/process/ConfinedProcess.h"

#include <chrono>
#include <cstddef>
#include <future>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace cinedisc {

/// Confined processes that the XML parser works in: a new one for each document, so that one disc's catalogue
/// never reaches into another's. The next is started before it is needed. Used by one thread at a time.
class ParserProcesses {
  public:
    explicit ParserProcesses(std::shared_ptr<ConfinedProcesses> source,
                             std::chrono::milliseconds patience = std::chrono::seconds(5));

    /// As parseXml, which it does here when the system allows no such process: that shows with the first.
    /// Empty also when the process ends, takes too long or is not to be had.
    std::vector<std::byte> parse(std::string_view text, bool isUtf8);

  private:
    void startNext();

    std::shared_ptr<ConfinedProcesses> source_;
    std::chrono::milliseconds patience_;
    std::future<std::unique_ptr<ConfinedProcess>> next_;
    std::optional<bool> areAllowed_;
};

/// Whether a confined process is asked to parse, then it has answerParserTask do it.
bool isParserTask(std::span<const std::byte> memory);
void answerParserTask(std::span<std::byte> memory);

/// From now on parseByLibrary works in these, which stay another's; in this process again when null.
void parseInProcesses(ParserProcesses* processes);

/// As ParserProcesses::parse, or here where processes are not wanted.
std::vector<std::byte> parseByLibrary(std::string_view text, bool isUtf8);

}  // namespace cinedisc
