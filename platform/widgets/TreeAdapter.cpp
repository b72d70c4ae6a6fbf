#include "platform/widgets/TreeAdapter.h"

#include "platform/widgets/EventGuard.h"
#include "platform/widgets/PatientTreeView.h"

#include <QLabel>
#include <QStandardItemModel>

#include <utility>

namespace cinedisc {

namespace {

constexpr int tagRole = Qt::UserRole;
constexpr int numberRole = Qt::UserRole + 1;

}  // namespace

TreeAdapter::TreeAdapter(PatientTreeView& view, QLabel& remark, std::vector<QIcon> icons)
    : view_(view), remark_(remark), model_(new QStandardItemModel(&view)), icons_(std::move(icons)) {
    view_.setModel(model_);
}

int TreeAdapter::nodeCount() const { return static_cast<int>(nodes_.size()); }

int TreeAdapter::addNode(int parent, const QString& text) {
    QStandardItem& owner = parent == 0 ? *model_->invisibleRootItem() : item(parent);
    const int number = nodeCount() + 1;
    auto* added = new QStandardItem(text);
    added->setFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled);
    added->setData(number, numberRole);
    owner.appendRow(added);
    nodes_.push_back(added);
    return number;
}

void TreeAdapter::putImage(int node, int icon) {
    item(node).setIcon(icons_.at(static_cast<std::size_t>(icon) - 1));
}

void TreeAdapter::putTag(int node, const QString& tag) { item(node).setData(tag, tagRole); }

QString TreeAdapter::tag(int node) const { return item(node).data(tagRole).toString(); }

QString TreeAdapter::text(int node) const { return item(node).text(); }

void TreeAdapter::putExpanded(int node, bool expanded) { view_.setExpanded(item(node).index(), expanded); }

void TreeAdapter::putRemark(const QString& words) {
    remark_.setText(words);
    remark_.setVisible(!words.isEmpty());
    // What is wrong stands alone.
    if (!words.isEmpty()) view_.setHint({});
}

int TreeAdapter::selectedNode() const { return numberOf(view_.currentIndex()); }

void TreeAdapter::onNodeClick(std::function<void(int)> handler) {
    QObject::connect(&view_, &PatientTreeView::nodeChosen, &view_,
                     [this, handler = std::move(handler)](const QModelIndex& index) {
                         EventGuard::run([&] { handler(numberOf(index)); });
                     });
}

QStandardItem& TreeAdapter::item(int node) const { return *nodes_.at(static_cast<std::size_t>(node) - 1); }

int TreeAdapter::numberOf(const QModelIndex& index) const { return index.data(numberRole).toInt(); }

}  // namespace cinedisc
