#include "catalogue/XmlParser.h"

#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <libxml/tree.h>

#include <cstring>
#include <limits>
#include <memory>

namespace cinedisc {

namespace {

constexpr std::int64_t mostTextOfEntities = 16 << 20;
constexpr std::int64_t mostDeclarations = 1000;  // of entities: the parser looks for each among all before it

using Document = std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)>;
using ParserContext = std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)>;

xmlParserInputPtr refuseEntity(const char*, const char*, xmlParserCtxtPtr) { return nullptr; }

/// What is left of what a document may hold; the parser stops where it asks for more.
struct Bounds {
    std::int64_t nodes = mostXmlNodes, textOfEntities = mostTextOfEntities, declarations = mostDeclarations;

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

Document parse(std::string_view text, bool isUtf8) {
    xmlSetExternalEntityLoader(refuseEntity);
    const ParserContext context(xmlNewParserCtxt(), xmlFreeParserCtxt);
    if (!context || text.size() > std::numeric_limits<int>::max()) return {nullptr, xmlFreeDoc};
    Bounds bounds;
    bind(*context, bounds);
    return {xmlCtxtReadMemory(context.get(), text.data(), static_cast<int>(text.size()), nullptr,
                              isUtf8 ? "UTF-8" : nullptr,
                              XML_PARSE_NONET | XML_PARSE_NOENT | XML_PARSE_NOERROR | XML_PARSE_NOWARNING |
                                  (isUtf8 ? XML_PARSE_IGNORE_ENC : 0)),
            xmlFreeDoc};
}

void put(std::vector<std::byte>& items, XmlItem kind) { items.push_back(static_cast<std::byte>(kind)); }

void put(std::vector<std::byte>& items, XmlItem kind, const xmlNode& node) {
    const std::string_view data(node.content ? reinterpret_cast<const char*>(node.content) : "");
    const auto size = static_cast<std::uint32_t>(data.size());
    put(items, kind);
    const auto append = [&](const void* from, std::size_t count) {
        const auto* bytes = static_cast<const std::byte*>(from);
        items.insert(items.end(), bytes, bytes + count);
    };
    append(&size, sizeof size);
    append(data.data(), size);
}

void putElement(std::vector<std::byte>& items, const xmlNode& element) {
    put(items, XmlItem::Element);
    for (const xmlNode* child = element.children; child; child = child->next) {
        switch (child->type) {
            case XML_ELEMENT_NODE:
                putElement(items, *child);
                break;
            case XML_TEXT_NODE:
                put(items, XmlItem::Text, *child);
                break;
            case XML_CDATA_SECTION_NODE:
                put(items, XmlItem::CharacterData, *child);
                break;
            case XML_COMMENT_NODE:
            case XML_PI_NODE:
                put(items, XmlItem::CommentOrInstruction, *child);
                break;
            default:
                break;
        }
    }
    put(items, XmlItem::End);
}

}  // namespace

std::vector<std::byte> parseXml(std::string_view text, bool isUtf8) {
    const Document document = parse(text, isUtf8);
    const xmlNode* root = document ? xmlDocGetRootElement(document.get()) : nullptr;
    std::vector<std::byte> items;
    if (root) putElement(items, *root);
    return items;
}

}  // namespace cinedisc
