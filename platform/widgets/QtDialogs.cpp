#include "platform/widgets/QtDialogs.h"

#include "platform/widgets/ProgramTitle.h"

#include <QDir>
#include <QFileDialog>
#include <QMessageBox>
#include <QSettings>
#include <QStandardPaths>

namespace cinedisc {

namespace {

/// A file dialog reads its history from the user's settings and writes it there in its destructor. Settings
/// are kept away from it: under a path that can never become a folder.
void keepNoSettings() {
#ifndef Q_OS_WIN
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, "/dev/null");
#endif
}

struct Discard {
    void operator()(QFileDialog* dialog) const {
#ifdef Q_OS_WIN
        // The settings are the registry here, out of keepNoSettings' reach: only a dialog that stays does not
        // write.
        dialog->hide();
        dialog->setParent(nullptr);
#else
        delete dialog;
#endif
    }
};

using FileDialog = std::unique_ptr<QFileDialog, Discard>;

FileDialog fileDialog(QWidget* window, const QString& title, const QString& folder) {
    keepNoSettings();
    FileDialog dialog(new QFileDialog(window, title, folder));
    dialog->setOption(QFileDialog::DontUseNativeDialog);
    return dialog;
}

QString picturesFolder() {
    const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    return QDir(pictures).exists() ? pictures : QDir::homePath();
}

QString chosen(QFileDialog& dialog) {
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

}  // namespace

QtDialogs::QtDialogs(QWidget* window) : window_(window) {}

bool QtDialogs::askYesNo(const QString& question) {
    QMessageBox box(QMessageBox::Question, programTitle, question, QMessageBox::Yes | QMessageBox::No,
                    window_);
    box.setTextFormat(Qt::PlainText);
    box.setDefaultButton(QMessageBox::Yes);
    return box.exec() == QMessageBox::Yes;
}

QString QtDialogs::browseForFolder(const QString& title) {
    const FileDialog dialog = fileDialog(window_, title, QDir::homePath());
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    dialog->setOption(QFileDialog::ReadOnly);
    return chosen(*dialog);
}

QString QtDialogs::saveFileName(const QString& title, const QString& filter) {
    const FileDialog dialog = fileDialog(window_, title, picturesFolder());
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setFileMode(QFileDialog::AnyFile);
    dialog->setOption(QFileDialog::DontConfirmOverwrite);
    dialog->setNameFilters(nameFilters(filter));
    return chosen(*dialog);
}

QStringList nameFilters(const QString& filter) {
    const QStringList parts = filter.split('|');
    QStringList answer;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        const QString patterns = QString(parts[i + 1]).replace(';', ' ');
        const QString shown = QString("(%1)").arg(patterns);
        answer += parts[i].endsWith(shown) ? parts[i] : QString("%1 %2").arg(parts[i], shown);
    }
    return answer;
}

}  // namespace cinedisc
