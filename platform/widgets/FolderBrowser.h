#pragma once

#include <QFileDialog>

namespace cinedisc {

/// Makes a folder browser of a file dialog: folders, each with the number of its images, which are counted in
/// a thread for the folders that are seen, so that a slow disc keeps nobody waiting.
void makeFolderBrowser(QFileDialog& dialog);

}  // namespace cinedisc
