#include "catalogue/CatalogueReader.h"

#include "platform/io/RandomAccessFile.h"

#include <QFile>
#include <libxml/encoding.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <libxml/tree.h>

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

namespace cinedisc {

namespace {

constexpr std::uint64_t largestCatalogue = 256u << 20;
constexpr std::size_t largestExpansion = 8;          // times the file's size ...
constexpr std::size_t expansionAllowance = 1 << 20;  // ... and this many characters on top

using Document = std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)>;
using ParserContext = std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)>;

/// Texts are written in the successors of the encodings that are declared: the successor reads them all.
void nameSuccessors() {
    constexpr std::pair<const char*, const char*> successors[] = {
        {"GB2312", "GB18030"},  {"GBK", "GB18030"},  {"CP936", "GB18030"}, {"SHIFT_JIS", "CP932"},
        {"SHIFT-JIS", "CP932"}, {"X-SJIS", "CP932"}, {"EUC-KR", "CP949"},  {"KS_C_5601-1987", "CP949"},
    };
    for (const auto& [declared, read] : successors) xmlAddEncodingAlias(read, declared);
}

xmlParserInputPtr refuseEntity(const char*, const char*, xmlParserCtxtPtr) { return nullptr; }

std::vector<std::byte> readWholeFile(const QString& path) {
    const auto file = RandomAccessFile::open(QFile::encodeName(path).toStdString());
    if (!file || file->size() > largestCatalogue) return {};
    std::vector<std::byte> bytes(file->size());
    bytes.resize(file->readAt(0, bytes));
    return bytes;
}

Document parse(const std::vector<std::byte>& bytes) {
    xmlSetExternalEntityLoader(refuseEntity);
    nameSuccessors();
    const ParserContext context(xmlNewParserCtxt(), xmlFreeParserCtxt);
    if (!context || bytes.empty()) return {nullptr, xmlFreeDoc};
    return {xmlCtxtReadMemory(context.get(), reinterpret_cast<const char*>(bytes.data()),
                              static_cast<int>(bytes.size()), nullptr, nullptr,
                              XML_PARSE_NONET | XML_PARSE_NOENT | XML_PARSE_NOERROR | XML_PARSE_NOWARNING),
            xmlFreeDoc};
}

bool isAllXmlSpace(const QString& text) {
    return std::all_of(text.begin(), text.end(),
                       [](QChar c) { return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r'; });
}

/// Turns the parser's tree into ours and counts what entities have grown it to.
class Converter {
  public:
    explicit Converter(std::size_t fileSize)
        : charactersLeft_(fileSize * largestExpansion + expansionAllowance) {}

    CatalogueNode element(const xmlNode& node) {
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
        for (const xmlNode* child = node.children; child && !exceeded_; child = child->next) {
            // Text that entities have cut into pieces is one node.
            if (child->type == XML_TEXT_NODE) {
                text += data(*child);
                continue;
            }
            appendText();
            switch (child->type) {
                case XML_ELEMENT_NODE:
                    append(element(*child));
                    break;
                case XML_CDATA_SECTION_NODE:
                    append({CatalogueNode::Data::Text, data(*child)});
                    break;
                case XML_COMMENT_NODE:
                case XML_PI_NODE:
                    append({CatalogueNode::Data::CommentOrInstruction, data(*child)});
                    break;
                default:
                    break;
            }
        }
        appendText();
        return CatalogueNode(std::move(children), space);
    }

    bool exceeded() const { return exceeded_; }

  private:
    QString data(const xmlNode& node) {
        const QString text = QString::fromUtf8(reinterpret_cast<const char*>(node.content));
        const auto size = static_cast<std::size_t>(text.size());
        exceeded_ = exceeded_ || size > charactersLeft_;
        charactersLeft_ -= std::min(size, charactersLeft_);
        return text;
    }

    std::size_t charactersLeft_;
    bool exceeded_ = false;
};

}  // namespace

std::optional<CatalogueNode> readCatalogue(const QString& path) {
    const auto bytes = readWholeFile(path);
    const Document document = parse(bytes);
    const xmlNode* root = document ? xmlDocGetRootElement(document.get()) : nullptr;
    if (!root) return std::nullopt;
    Converter converter(bytes.size());
    CatalogueNode catalogue = converter.element(*root);
    if (converter.exceeded()) return std::nullopt;
    return catalogue;
}

}  // namespace cinedisc
