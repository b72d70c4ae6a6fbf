#include "catalogue/CatalogueReader.h"

#include "platform/io/RandomAccessFile.h"
#include "platform/io/TextEncoding.h"

#include <QRegularExpression>
#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <libxml/tree.h>

#include <algorithm>
#include <iterator>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace cinedisc {

namespace {

// Twice what 32,766 patients need, who are all that can be counted.
constexpr std::uint64_t largestCatalogue = 64u << 20;
constexpr std::int64_t mostNodes = 1'000'000;
constexpr std::int64_t mostTextOfEntities = 16 << 20;
constexpr std::int64_t mostDeclarations = 1000;  // of entities: the parser looks for each among all before it

using Document = std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)>;
using ParserContext = std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)>;

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

xmlParserInputPtr refuseEntity(const char*, const char*, xmlParserCtxtPtr) { return nullptr; }

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

/// What is left of what a document may hold; the parser stops where it asks for more.
struct Bounds {
    std::int64_t nodes = mostNodes, textOfEntities = mostTextOfEntities, declarations = mostDeclarations;

    static bool stop(void* parser) {
        auto* context = static_cast<xmlParserCtxtPtr>(parser);
        xmlStopParser(context);
        context->wellFormed = 0;
        return false;
    }
    /// One of what the member counts.
    template <auto left>
    static bool take(void* parser) {
        auto& bounds = *static_cast<Bounds*>(static_cast<xmlParserCtxtPtr>(parser)->_private);
        return --(bounds.*left) >= 0 || stop(parser);
    }
};

/// The parser's own handler of what becomes a node, within the bounds.
template <auto handler, typename = decltype(handler)>
struct Node;
template <auto handler, typename... Arguments>
struct Node<handler, void (*)(void*, Arguments...)> {
    static void handle(void* parser, Arguments... arguments) {
        if (Bounds::take<&Bounds::nodes>(parser)) handler(parser, arguments...);
    }
};

/// Attributes and name spaces are left out: nobody asks for them.
void startElement(void* parser, const xmlChar* name, const xmlChar*, const xmlChar*, int, const xmlChar**,
                  int, int, const xmlChar**) {
    if (Bounds::take<&Bounds::nodes>(parser))
        xmlSAX2StartElementNs(parser, name, nullptr, nullptr, 0, nullptr, 0, 0, nullptr);
}

void endElement(void* parser, const xmlChar* name, const xmlChar*, const xmlChar*) {
    xmlSAX2EndElementNs(parser, name, nullptr, nullptr);
}

/// An entity that holds more than text would be copied, node for node, wherever it is named.
void declareEntity(void* parser, const xmlChar* name, int type, const xmlChar* publicId,
                   const xmlChar* systemId, xmlChar* content) {
    const std::string_view text(content ? reinterpret_cast<const char*>(content) : "");
    if (text.find_first_of("<&") != text.npos)
        Bounds::stop(parser);
    else if (Bounds::take<&Bounds::declarations>(parser))
        xmlSAX2EntityDecl(parser, name, type, publicId, systemId, content);
}

xmlEntityPtr entityOf(void* parser, const xmlChar* name) {
    const xmlEntityPtr entity = xmlSAX2GetEntity(parser, name);
    auto& bounds = *static_cast<Bounds*>(static_cast<xmlParserCtxtPtr>(parser)->_private);
    if (entity && (bounds.textOfEntities -= entity->length) < 0) Bounds::stop(parser);
    return entity;
}

/// Attributes with a value of their own would be added to each element, and compared with one another.
void declareAttribute(void* parser, const xmlChar*, const xmlChar*, int, int, const xmlChar* value,
                      xmlEnumerationPtr choices) {
    if (value) Bounds::stop(parser);
    xmlFreeEnumeration(choices);
}

void bind(xmlParserCtxt& context, Bounds& bounds) {
    context._private = &bounds;
    auto& handlers = *context.sax;
    handlers.startElementNs = startElement;
    handlers.endElementNs = endElement;
    handlers.characters = handlers.ignorableWhitespace = Node<&xmlSAX2Characters>::handle;
    handlers.cdataBlock = Node<&xmlSAX2CDataBlock>::handle;
    handlers.comment = Node<&xmlSAX2Comment>::handle;
    handlers.processingInstruction = Node<&xmlSAX2ProcessingInstruction>::handle;
    handlers.entityDecl = declareEntity;
    handlers.getEntity = entityOf;
    handlers.attributeDecl = declareAttribute;
    // Nobody asks whether the document is valid, and the parser would print what is not.
    handlers.elementDecl = nullptr;
    handlers.notationDecl = nullptr;
    handlers.unparsedEntityDecl = nullptr;
}

Document parse(const std::vector<std::byte>& bytes) {
    xmlSetExternalEntityLoader(refuseEntity);
    const std::string_view file(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    const auto converted = inUtf8(file);
    const std::string_view text = converted ? *converted : file;
    const ParserContext context(xmlNewParserCtxt(), xmlFreeParserCtxt);
    if (!context || text.empty() || text.size() > std::numeric_limits<int>::max() || hasEndlessTag(text))
        return {nullptr, xmlFreeDoc};
    Bounds bounds;
    bind(*context, bounds);
    return {xmlCtxtReadMemory(context.get(), text.data(), static_cast<int>(text.size()), nullptr,
                              converted ? "UTF-8" : nullptr,
                              XML_PARSE_NONET | XML_PARSE_NOENT | XML_PARSE_NOERROR | XML_PARSE_NOWARNING |
                                  (converted ? XML_PARSE_IGNORE_ENC : 0)),
            xmlFreeDoc};
}

bool isAllXmlSpace(const QString& text) {
    return std::all_of(text.begin(), text.end(),
                       [](QChar c) { return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r'; });
}

QString textOf(const xmlNode& node) { return QString::fromUtf8(reinterpret_cast<const char*>(node.content)); }

CatalogueNode toCatalogue(const xmlNode& element) {
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
    for (const xmlNode* child = element.children; child; child = child->next) {
        // Text that entities have cut into pieces is one node.
        if (child->type == XML_TEXT_NODE) {
            text += textOf(*child);
            continue;
        }
        appendText();
        switch (child->type) {
            case XML_ELEMENT_NODE:
                append(toCatalogue(*child));
                break;
            case XML_CDATA_SECTION_NODE:
                append({CatalogueNode::Data::Text, textOf(*child)});
                break;
            case XML_COMMENT_NODE:
            case XML_PI_NODE:
                append({CatalogueNode::Data::CommentOrInstruction, textOf(*child)});
                break;
            default:
                break;
        }
    }
    appendText();
    return CatalogueNode(std::move(children), space);
}

}  // namespace

std::optional<CatalogueNode> readCatalogue(const QString& path) {
    const auto bytes = readWholeFile(path);
    const Document document = parse(bytes);
    const xmlNode* root = document ? xmlDocGetRootElement(document.get()) : nullptr;
    if (!root) return std::nullopt;
    return toCatalogue(*root);
}

}  // namespace cinedisc
