#include "platform/widgets/FolderBrowser.h"

#include "platform/widgets/ImageCountModel.h"

#include <QHeaderView>
#include <QSplitter>
#include <QTreeView>
#include <QUrl>

namespace cinedisc {

void makeFolderBrowser(QFileDialog& dialog) {
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    dialog.setOption(QFileDialog::ReadOnly);
    dialog.setViewMode(QFileDialog::Detail);
    dialog.setProxyModel(new ImageCountModel(&dialog));
    dialog.setSidebarUrls({QUrl("file:"), QUrl::fromLocalFile(dialog.directory().path()),
                           QUrl::fromLocalFile(QDir::homePath())});
    auto* folders = dialog.findChild<QTreeView*>("treeView");
    constexpr int nameColumn = 0, countColumn = 1, typeColumn = 2, dateColumn = 3;
    for (const int column : {typeColumn, dateColumn}) folders->hideColumn(column);
    folders->setColumnWidth(countColumn, folders->fontMetrics().averageCharWidth() * 12);
    dialog.findChild<QSplitter*>("splitter")->setSizes({150, 450});
    folders->header()->setSectionResizeMode(nameColumn, QHeaderView::Stretch);
}

}  // namespace cinedisc
