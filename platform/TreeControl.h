#pragma once

#include <QString>

namespace cinedisc {

/// The patient tree as the loader and the click handler see it. Nodes are counted from 1 in the order of
/// adding.
class TreeControl {
  public:
    virtual ~TreeControl() = default;
    virtual int nodeCount() const = 0;
    /// Adds a node under `parent` (0: a root node) and returns its index.
    virtual int addNode(int parent, const QString& text) = 0;
    /// Icon number 1 is the patient's.
    virtual void putImage(int node, int icon) = 0;
    virtual void putTag(int node, const QString& tag) = 0;
    virtual QString tag(int node) const = 0;
    virtual QString text(int node) const = 0;
    virtual void putExpanded(int node, bool expanded) = 0;
    /// Words above the nodes, or in their place when there are none; "" for none.
    virtual void putRemark(const QString& words) = 0;
    /// Index of the selected node, 0 when none.
    virtual int selectedNode() const = 0;
};

}  // namespace cinedisc
