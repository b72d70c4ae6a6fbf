#include "viewerwindow/FilmCommand.h"

#include "control/FilmExport.h"
#include "control/ezDICOMX.h"
#include "platform/RunTimeError.h"
#include "platform/widgets/ProgramTitle.h"
#include "tools/CinePause.h"
#include "viewer/WindowWords.h"

#include <QMessageBox>
#include <QProgressDialog>

namespace cinedisc {

void FilmCommand::exportFilm() const {
    trapErrors([this] {
        if (ezDicom_.FrameCount() == 0) return;
        const CinePause pause(Timer4_);
        QString name = dialogs_.saveFileName(windowWords::saveDialogTitle(), "(*.avi)|*.avi");
        if (name.isEmpty()) return;
        if (!name.endsWith(".avi", Qt::CaseInsensitive)) name += ".avi";
        write(name);
    });
}

void FilmCommand::write(const QString& path) const {
    const auto film = ezDicom_.exportFilm(path, 1000.0 / Timer4_.Interval());
    QProgressDialog progress(windowWords::writingFilm(), windowWords::cancel(), 0, ezDicom_.FrameCount(),
                             ezDicom_.window());
    progress.setObjectName("FilmProgress");
    progress.setWindowTitle(programTitle);
    progress.setWindowModality(Qt::WindowModal);
    progress.setAutoReset(false);
    bool isWhole = false;
    QObject::connect(film.get(), &FilmExport::written, &progress, &QProgressDialog::setValue);
    QObject::connect(film.get(), &FilmExport::finished, &progress, [&](bool whole) {
        isWhole = whole;
        progress.done(QDialog::Accepted);
    });
    const bool wasEnded = progress.exec() == QDialog::Accepted;
    if (!wasEnded || isWhole) return;
    QMessageBox box(QMessageBox::Warning, programTitle, windowWords::filmFailed(), QMessageBox::Ok,
                    ezDicom_.window());
    box.exec();
}

}  // namespace cinedisc
