#include "catalogue/CatalogueReader.h"

#include "catalogue/ParserProcesses.h"
#include "catalogue/XmlParser.h"
#include "platform/io/RandomAccessFile.h"
#include "platform/io/TextEncoding.h"

#include <QRegularExpression>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace cinedisc {

namespace {

constexpr std::uint64_t largestCatalogue = 64u << 20;
constexpr int deepest = 256;  // elements within one another

/// Texts are written in the successors of the encodings that are declared: the successor reads them all.
std::string successorOf(const std::string& declared) {
    constexpr std::pair<const char*, const char*> successors[] = {
        {"GB2312", "GB18030"},  {"GBK", "GB18030"},  {"CP936", "GB18030"}, {"SHIFT_JIS", "CP932"},
        {"SHIFT-JIS", "CP932"}, {"X-SJIS", "CP932"}, {"EUC-KR", "CP949"},  {"KS_C_5601-1987", "CP949"},
    };
    for (const auto& [name, read] : successors)
        if (declared == name) return read;
    return declared;
}

/// The encoding that a declaration in plain letters names, in capitals.
std::string declaredEncoding(std::string_view bytes) {
    static const QRegularExpression declaration(
        R"(^<\?xml\s[^>]*?\sencoding\s*=\s*["']([A-Za-z][A-Za-z0-9._-]*)["'])");
    constexpr std::size_t longest = 512;
    const auto start = bytes.substr(0, std::min(bytes.size(), longest));
    return declaration.match(QString::fromLatin1(start.data(), static_cast<qsizetype>(start.size())))
        .captured(1)
        .toUpper()
        .toStdString();
}

/// The file in UTF-8 where the parser may not know its encoding, but the platform does; nothing when it is
/// for the parser as it stands. The parser refuses a file with bytes that do not belong to its encoding, and
/// so does this: the file is empty then.
std::optional<std::string> inUtf8(std::string_view bytes) {
    constexpr std::string_view parsersOwn[] = {"",         "UTF-8",    "UTF8",    "UTF-16",
                                               "UTF-16LE", "UTF-16BE", "US-ASCII"};
    const std::string declared = declaredEncoding(bytes);
    if (std::find(std::begin(parsersOwn), std::end(parsersOwn), declared) != std::end(parsersOwn))
        return std::nullopt;
    auto text = decodeText(bytes, successorOf(declared).c_str());
    if (text && text->find("\xEF\xBF\xBD") != std::string::npos) text->clear();
    return text;
}

std::vector<std::byte> readWholeFile(const QString& path) {
    const auto file = RandomAccessFile::open(path.toStdString());
    if (!file || file->size() > largestCatalogue) return {};
    std::vector<std::byte> bytes(file->size());
    bytes.resize(file->readAt(0, bytes));
    return bytes;
}

/// Whether a tag is longer than any that a catalogue needs, whose elements have no attributes: the parser
/// compares each attribute of an element with all others before it, which a million of them make endless.
bool hasEndlessTag(std::string_view text) {
    constexpr std::size_t longestTag = 4096;
    const auto isMarkup = [](char c) { return c == '!' || c == '?'; };
    std::size_t end = 0;
    for (auto start = text.find('<'); start != text.npos; start = text.find('<', end)) {
        end = start + 1;
        const auto first = text.find_first_not_of('\0', end);  // UTF-16 has a zero between
        if (first == text.npos || isMarkup(text[first])) continue;
        const auto length = text.substr(start, longestTag).find('>');
        if (length == text.npos && text.size() - start > longestTag) return true;
        if (length != text.npos) end = start + length;
    }
    return false;
}

bool isAllXmlSpace(const QString& text) {
    return std::all_of(text.begin(), text.end(),
                       [](QChar c) { return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r'; });
}

/// Builds the catalogue of a document's items. They come from a process that may be under somebody else's
/// control, so they may be anything.
class CatalogueBuilder {
  public:
    explicit CatalogueBuilder(std::span<const std::byte> items) : left_(items) {}

    std::optional<CatalogueNode> build() {
        if (takeKind() != XmlItem::Element) return std::nullopt;
        auto root = takeElement(1);
        return left_.empty() ? std::move(root) : std::nullopt;
    }

  private:
    /// Nothing behind the last one.
    std::optional<XmlItem> takeKind() {
        if (left_.empty()) return std::nullopt;
        const auto kind = static_cast<XmlItem>(left_.front());
        left_ = left_.subspan(1);
        return kind;
    }

    std::optional<QString> takeData() {
        std::uint32_t size = 0;
        if (left_.size() < sizeof size) return std::nullopt;
        std::memcpy(&size, left_.data(), sizeof size);
        left_ = left_.subspan(sizeof size);
        if (left_.size() < size) return std::nullopt;
        const auto data = QString::fromUtf8(reinterpret_cast<const char*>(left_.data()), qsizetype(size));
        left_ = left_.subspan(size);
        return data;
    }

    /// What stands between an element and its end.
    std::optional<CatalogueNode> takeElement(int depth) {
        std::vector<CatalogueNode> children;
        QString space;
        const auto append = [&](CatalogueNode child) {
            child.setSpaceBefore(std::exchange(space, {}));
            children.push_back(std::move(child));
        };
        QString text;
        const auto appendText = [&] {
            if (isAllXmlSpace(text)) {
                space += text;
            } else {
                append({CatalogueNode::Data::Text, text});
            }
            text.clear();
        };
        while (const auto kind = takeKind()) {
            // Text that entities have cut into pieces is one node.
            if (kind != XmlItem::Text) {
                appendText();
                ++items_;
            }
            if (items_ > 2 * mostXmlNodes || depth > deepest) break;
            if (kind == XmlItem::End) return CatalogueNode(std::move(children), space);
            if (kind == XmlItem::Element) {
                auto child = takeElement(depth + 1);
                if (!child) break;
                append(std::move(*child));
                continue;
            }
            const auto data = takeData();
            if (!data) break;
            if (kind == XmlItem::Text)
                text += *data;
            else if (kind == XmlItem::CharacterData)
                append({CatalogueNode::Data::Text, *data});
            else if (kind == XmlItem::CommentOrInstruction)
                append({CatalogueNode::Data::CommentOrInstruction, *data});
            else
                break;
        }
        return std::nullopt;
    }

    std::span<const std::byte> left_;
    std::int64_t items_ = 0;  // but text
};

}  // namespace

std::optional<CatalogueNode> readCatalogue(const QString& path) {
    const auto bytes = readWholeFile(path);
    const std::string_view file(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    const auto converted = inUtf8(file);
    const std::string_view text = converted ? *converted : file;
    if (text.empty() || hasEndlessTag(text)) return std::nullopt;
    const auto items = parseByLibrary(text, converted.has_value());
    return CatalogueBuilder(items).build();
}

}  // namespace cinedisc
