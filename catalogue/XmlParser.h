#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace cinedisc {

/// Items follow one another, each a byte. An element's children stand between it and its end; behind the
/// kinds with data follow their size in bytes (4 bytes, the machine's order) and UTF-8.
enum class XmlItem : std::uint8_t { End = 1, Element, Text, CharacterData, CommentOrInstruction };

/// Twice what 32,766 patients need, who are all that can be counted. Elements count, and what lies between
/// them.
constexpr std::int64_t mostXmlNodes = 1'000'000;

/// The items of an XML document's element, in the document's order. Text that an entity cuts into pieces is
/// several items. Empty when the document is not well-formed or beyond the bounds: no external entity is
/// followed, and nodes, entities and nesting (256 levels) are bounded. The text is UTF-8 whatever it
/// declares, or in one of the parser's own encodings (UTF-8, UTF-16, ASCII).
std::vector<std::byte> parseXml(std::string_view text, bool isUtf8);

}  // namespace cinedisc
