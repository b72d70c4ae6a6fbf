#include "catalogue/CatalogueNode.h"

#include "platform/RunTimeError.h"

namespace cinedisc {

namespace {

bool isXmlSpace(QChar c) { return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r'; }

QString trimmedXmlSpace(QStringView text) {
    while (!text.isEmpty() && isXmlSpace(text.front())) text = text.sliced(1);
    while (!text.isEmpty() && isXmlSpace(text.back())) text.chop(1);
    return text.toString();
}

}  // namespace

QString CatalogueNode::text() const {
    if (kind_) return trimmedXmlSpace(data_);
    QString all;
    appendText(all);
    return trimmedXmlSpace(all);
}

void CatalogueNode::appendText(QString& all) const {
    if (kind_ == Data::Text) all += data_;
    for (const CatalogueNode& child : children_) {
        all += child.spaceBefore_;
        child.appendText(all);
    }
    all += spaceAtEnd_;
}

const CatalogueNode& CatalogueNode::first() const {
    if (children_.empty()) throw RunTimeError::objectNotSet();
    return children_.front();
}

std::vector<CatalogueNode>::const_iterator CatalogueNode::nextLevelBegin() const {
    if (children_.size() < 2) throw RunTimeError::objectNotSet();
    return children_.begin() + 1;
}

}  // namespace cinedisc
