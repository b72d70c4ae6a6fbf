#pragma once

#include <QTreeView>

namespace cinedisc {

/// The view of the patient tree: one column, nothing editable, long texts elided with the whole text as
/// tooltip.
class PatientTreeView final : public QTreeView {
    Q_OBJECT

  public:
    explicit PatientTreeView(QWidget* parent = nullptr);

    /// What stands in the tree's place while it is empty.
    void setHint(const QString& words);

  signals:
    /// A node was clicked, or Return was pressed on it. It is the current node by then.
    void nodeChosen(const QModelIndex& node);

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    void choose(const QModelIndex& node);

    QString hint_;
};

}  // namespace cinedisc
