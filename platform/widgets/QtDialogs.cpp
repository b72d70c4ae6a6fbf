#include "platform/widgets/QtDialogs.h"

#include "platform/Paths.h"
#include "platform/widgets/DrawnFileIcons.h"
#include "platform/widgets/FolderBrowser.h"
#include "platform/widgets/ProgramTitle.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QMessageBox>
#include <QSettings>
#include <QStandardPaths>

#include <memory>

namespace cinedisc {

namespace {

/// A file dialog reads its history from the user's settings and writes it there in its destructor. Settings
/// are kept away from it: under a path that can never become a folder.
void keepNoSettings() {
#ifndef Q_OS_WIN
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, "/dev/null");
#endif
}

#ifdef Q_OS_WIN
/// A file dialog that looks for its history makes the key of the toolkit's settings where there is none; this
/// removes what it made.
class UntouchedRegistry {
  public:
    UntouchedRegistry() {
        if (!software_.childGroups().contains(toolkit)) {
            made_ = toolkit;
            return;
        }
        software_.beginGroup(toolkit);
        const bool hasSettings = software_.childGroups().contains(settings);
        software_.endGroup();
        if (!hasSettings) made_ = QString("%1/%2").arg(toolkit, settings);
    }
    ~UntouchedRegistry() {
        if (!made_.isEmpty()) software_.remove(made_);
    }
    Q_DISABLE_COPY_MOVE(UntouchedRegistry)

  private:
    inline static const QString toolkit = "QtProject", settings = "OrganizationDefaults";
    QSettings software_{"HKEY_CURRENT_USER\\Software", QSettings::NativeFormat};
    QString made_;
};
#endif

/// Gives names as they are typed. The toolkit takes quotation marks for a list of names.
class SaveDialog : public QFileDialog {
  public:
    using QFileDialog::QFileDialog;
    QString name() const { return quoted_.isEmpty() ? selectedFiles().value(0) : quoted_; }

  protected:
    void accept() override {
        const QString typed = findChild<QLineEdit*>("fileNameEdit")->text();
        if (!typed.contains('"')) return QFileDialog::accept();
        const QString path = directory().absoluteFilePath(typed);
        if (QFileInfo(path).isDir()) return setDirectory(path);
        quoted_ = path;
        QDialog::accept();
    }

  private:
    QString quoted_;
};

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

template <typename Dialog>
std::unique_ptr<Dialog, Discard> fileDialog(QWidget* window, const QString& title, const QString& folder) {
    keepNoSettings();
#ifdef Q_OS_WIN
    const UntouchedRegistry untouched;
#endif
    std::unique_ptr<Dialog, Discard> dialog(new Dialog(window, title, folder));
    dialog->setOption(QFileDialog::DontUseNativeDialog);
    static DrawnFileIcons icons;
    dialog->setIconProvider(&icons);
    return dialog;
}

QString picturesFolder() {
    const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    return QDir(pictures).exists() ? pictures : QDir::homePath();
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
    const QString images = discFolder_.isEmpty() ? QString() : findIgnoringCase(discFolder_, {"Dicom"});
    const bool hasImages = !images.isEmpty() && QDir(images).exists();
    const auto dialog = fileDialog<QFileDialog>(window_, title, hasImages ? images : QDir::homePath());
    makeFolderBrowser(*dialog);
    return dialog->exec() == QDialog::Accepted ? dialog->selectedFiles().value(0) : QString();
}

QString QtDialogs::saveFileName(const QString& title, const QString& filter) {
    const bool isKnown = !saveFolder_.isEmpty() && QDir(saveFolder_).exists();
    const auto dialog = fileDialog<SaveDialog>(window_, title, isKnown ? saveFolder_ : picturesFolder());
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setFileMode(QFileDialog::AnyFile);
    dialog->setOption(QFileDialog::DontConfirmOverwrite);
    dialog->setNameFilters(nameFilters(filter));
    if (dialog->exec() != QDialog::Accepted) return {};
    saveFolder_ = QFileInfo(dialog->name()).absolutePath();
    return dialog->name();
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
