#pragma once

#include <QString>

#include <optional>
#include <vector>

namespace cinedisc {

/// A node of the catalogue: an element, or a comment, processing instruction or text between elements. Names
/// and attributes are not kept: everything is found by position.
class CatalogueNode {
  public:
    /// An element holds children, any other node its own data. White space alone is no child, but belongs to
    /// the text: that before a child goes with it, that behind the last one with the element.
    explicit CatalogueNode(std::vector<CatalogueNode> children, QString spaceAtEnd = {})
        : spaceAtEnd_(std::move(spaceAtEnd)), children_(std::move(children)) {}
    enum class Data { Text, CommentOrInstruction };
    CatalogueNode(Data kind, QString data) : kind_(kind), data_(std::move(data)) {}

    /// Character data of the node and all below it, comments inside left out, outer white space trimmed.
    QString text() const;
    const std::vector<CatalogueNode>& children() const { return children_; }
    void setSpaceBefore(QString space) { spaceBefore_ = std::move(space); }

    /// First child; run-time error 91 when there is none.
    const CatalogueNode& first() const;
    /// The siblings after the first child, which are the next level of the catalogue. There is always one:
    /// run-time error 91 otherwise.
    std::vector<CatalogueNode>::const_iterator nextLevelBegin() const;
    std::vector<CatalogueNode>::const_iterator nextLevelEnd() const { return children_.end(); }

  private:
    void appendText(QString& all) const;

    std::optional<Data> kind_;
    QString data_;
    QString spaceBefore_;
    QString spaceAtEnd_;
    std::vector<CatalogueNode> children_;
};

}  // namespace cinedisc
