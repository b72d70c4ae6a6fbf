#pragma once

#include <QSortFilterProxyModel>

#include <memory>

namespace cinedisc {

/// A file system model whose second column tells how many image files a folder holds; where it has none
/// itself, how many lie below it; "" before they have been counted. Counts in a thread what is asked for, the
/// last asked first; what hangs there holds up nobody.
class ImageCountModel final : public QSortFilterProxyModel {
    Q_OBJECT

  public:
    explicit ImageCountModel(QObject* parent = nullptr);
    ~ImageCountModel() override;

    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  private:
    struct Counter;
    void tell(const QString& folder);

    const std::shared_ptr<Counter> counter_;  ///< shared with the thread
};

}  // namespace cinedisc
