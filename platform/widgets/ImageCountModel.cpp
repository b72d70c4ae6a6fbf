#include "platform/widgets/ImageCountModel.h"

#include <QDirIterator>
#include <QFileSystemModel>

#include <condition_variable>
#include <map>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace cinedisc {

namespace {

constexpr int countColumn = 1;

int imagesIn(const QString& folder) {
    int images = 0;
    for (QDirIterator file(folder, {"*.dcm"}, QDir::Files); file.hasNext(); file.next()) ++images;
    return images;
}

}  // namespace

struct ImageCountModel::Counter {
    struct Images {
        int here = 0, below = 0;
    };
    std::mutex mutex;
    std::condition_variable changed;
    ImageCountModel* model = nullptr;  ///< null when it has gone
    std::vector<QString> asked;
    std::map<QString, Images> counts;  ///< none while they are being counted

    static Images imagesOf(const QString& folder);
    static void loop(const std::shared_ptr<Counter>& self) {
        std::unique_lock lock(self->mutex);
        for (;;) {
            self->changed.wait(lock, [&] { return !self->model || !self->asked.empty(); });
            if (!self->model) return;
            const QString folder = self->asked.back();
            self->asked.pop_back();
            lock.unlock();
            const Images images = imagesOf(folder);
            lock.lock();
            self->counts[folder] = images;
            if (self->model)
                QMetaObject::invokeMethod(self->model,
                                          [model = self->model, folder] { model->tell(folder); });
        }
    }
};

/// As deep as a disc's patients go: study, series. Other places may have no end.
ImageCountModel::Counter::Images ImageCountModel::Counter::imagesOf(const QString& folder) {
    constexpr int deepest = 2;
    constexpr std::size_t mostFolders = 300;
    std::vector<std::pair<QString, int>> folders{{folder, 0}};
    Images images;
    for (std::size_t i = 0; i < folders.size(); ++i) {
        const auto [path, depth] = folders[i];
        (depth == 0 ? images.here : images.below) += imagesIn(path);
        if (depth == deepest) continue;
        QDirIterator inner(path, QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks);
        while (inner.hasNext() && folders.size() < mostFolders) folders.emplace_back(inner.next(), depth + 1);
    }
    return images;
}

ImageCountModel::ImageCountModel(QObject* parent)
    : QSortFilterProxyModel(parent), counter_(std::make_shared<Counter>()) {
    counter_->model = this;
    std::thread([counter = counter_] { Counter::loop(counter); }).detach();
}

ImageCountModel::~ImageCountModel() {
    const std::lock_guard lock(counter_->mutex);
    counter_->model = nullptr;
    counter_->changed.notify_all();
}

QVariant ImageCountModel::data(const QModelIndex& index, int role) const {
    if (index.column() != countColumn || role != Qt::DisplayRole)
        return QSortFilterProxyModel::data(index, role);
    const QString folder = mapToSource(index).data(QFileSystemModel::FilePathRole).toString();
    const std::lock_guard lock(counter_->mutex);
    const auto [count, isNew] = counter_->counts.try_emplace(folder);
    if (isNew) {
        counter_->asked.push_back(folder);
        counter_->changed.notify_all();
    }
    const auto [here, below] = count->second;
    if (here > 0) return here;
    return below > 0 ? tr("%1 below").arg(below) : QVariant();
}

void ImageCountModel::tell(const QString& folder) {
    const auto* files = qobject_cast<QFileSystemModel*>(sourceModel());
    if (!files) return;
    const QModelIndex place = mapFromSource(files->index(folder, countColumn));
    if (place.isValid()) emit dataChanged(place, place);
}

QVariant ImageCountModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (section == countColumn && orientation == Qt::Horizontal && role == Qt::DisplayRole)
        return tr("Images");
    return QSortFilterProxyModel::headerData(section, orientation, role);
}

}  // namespace cinedisc
