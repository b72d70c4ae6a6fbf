#pragma once

#include "platform/TreeControl.h"

#include <QIcon>

#include <functional>
#include <vector>

class QLabel;
class QModelIndex;
class QStandardItem;
class QStandardItemModel;

namespace cinedisc {

class PatientTreeView;

/// The patient tree on a view that somebody else owns; the nodes are the view's from then on. Text is in the
/// display role, the tag in Qt::UserRole, the icon in the decoration role.
class TreeAdapter final : public TreeControl {
  public:
    /// `remark` is where words about the tree stand. `icons` are counted from 1.
    TreeAdapter(PatientTreeView& view, QLabel& remark, std::vector<QIcon> icons);

    int nodeCount() const override;
    int addNode(int parent, const QString& text) override;
    void putImage(int node, int icon) override;
    void putTag(int node, const QString& tag) override;
    QString tag(int node) const override;
    QString text(int node) const override;
    void putExpanded(int node, bool expanded) override;
    void putRemark(const QString& words) override;
    int selectedNode() const override;

    /// Runs `handler` with the node that was clicked or opened with Return, under EventGuard. The node is
    /// selected.
    void onNodeClick(std::function<void(int node)> handler);

  private:
    QStandardItem& item(int node) const;
    int numberOf(const QModelIndex& index) const;

    PatientTreeView& view_;
    QLabel& remark_;
    QStandardItemModel* model_;
    std::vector<QIcon> icons_;
    std::vector<QStandardItem*> nodes_;
};

}  // namespace cinedisc
