#include "fuzzing/window/DiscVisit.h"

#include "app/Form1.h"
#include "control/ezDICOMX.h"
#include "platform/widgets/EventGuard.h"

#include <QAbstractButton>
#include <QAbstractSlider>
#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QDirIterator>
#include <QKeyEvent>
#include <QTimer>
#include <QTreeView>

#include <fcntl.h>
#include <fstream>
#include <sys/stat.h>
#include <unistd.h>

namespace cinedisc::fuzzing::window {

namespace {

void write(const QString& path, const Mutation::Content& content) {
    std::ofstream out(path.toStdString(), std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(content.data()), static_cast<std::streamsize>(content.size()));
}

/// Files and folders below a folder, in an order that is the same on every
/// disc. Links are not followed.
QStringList entriesBelow(const QString& folder) {
    QStringList all;
    for (QDirIterator i(folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                        QDirIterator::Subdirectories);
         i.hasNext();)
        all << i.next();
    all.sort();
    return all;
}

void remove(const QString& path) {
    const QFileInfo info(path);
    info.isDir() && !info.isSymLink() ? QDir(path).removeRecursively() : QFile::remove(path);
}

QByteArray oddName(std::mt19937& random) {
    const QByteArray names[] = {"\xFF\xFE.dcm",
                                "\xE2\x80\xAE"
                                "cod.exe.dcm",
                                "a\nb.dcm",
                                "<b>x</b>.dcm",
                                "%s%n.dcm",
                                " .dcm",
                                ".dcm",
                                QByteArray(251, 'n') + ".dcm",
                                "IM1.DCM",
                                "Patient000",
                                "Patient32767",
                                "Patient99999999999",
                                "\\..\\..\\x.dcm"};
    return names[random() % std::size(names)];
}

/// Puts something else in the place of a file or folder, or takes it away.
void spoil(const QString& path, const Mutation& files, std::mt19937& random) {
    const QByteArray name = QFile::encodeName(path), folder = QFile::encodeName(QFileInfo(path).path());
    const auto kind = random() % 12;
    if (kind == 0) return void(::rename(name, folder + '/' + oddName(random)));
    if (kind == 1 && QFileInfo(path).isFile()) return void(::truncate(name, random() % 4096));
    remove(path);
    switch (kind) {
        case 2:
            return void(::mkfifo(name, 0600));
        case 3:
            return void(::symlink("/dev/zero", name));
        case 4:
            return void(::symlink("..", name));
        case 5:
            return void(::symlink(name, name));
        case 6:
            return void(::mkdir(name, 0700));
        case 7:
            return void(::symlink(random() % 2 ? "/proc/self/mem" : "/dev/tty", name));
        case 8:
            return void(::mknod(name, S_IFCHR | 0600,
                                0x105));  // of the kind of /dev/zero, where that is allowed
        case 9:
            return write(path, {});
        case 10:
            return write(path, files(random()));
        default:
            return;
    }
}

class Visit {
  public:
    Visit(const QString& folder, const Mutation& files, unsigned number, Watch& watch)
        : folder_(folder), files_(files), random_(number), watch_(watch) {
        // Nobody is there to answer.
        QObject::connect(&answers_, &QTimer::timeout, &answers_, [] {
            if (auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget())) dialog->reject();
        });
        answers_.start(1);
    }

    void run() {
        std::unique_ptr<Form1> form;
        watch_.work("making the window", [&] {
            form = std::make_unique<Form1>(folder_);
            form->show();
        });
        form_ = form.get();
        view_ = form_->findChild<ezDICOMX*>("ezDicom");
        press("Open");
        for (int step = 0; step < 24; ++step) {
            if (random_() % 6 == 0)
                if (const auto all = entriesBelow(folder_); !all.isEmpty())
                    spoil(all[qsizetype(random_() % std::size_t(all.size()))], files_, random_);
            act();
            if (random_() % 3 == 0) watch_.await("the picture", [this] { return !view_->isReading(); });
        }
        watch_.work("closing the window", [&] { form.reset(); });
    }

  private:
    void press(const char* name) {
        auto* button = form_->findChild<QAbstractButton*>(name);
        watch_.work(name, [&] { button->click(); });
        watch_.work("events", [] { QCoreApplication::processEvents(); });
    }
    void act() {
        constexpr const char* buttons[] = {
            "cmdNext",           "cmdPrev",   "cmdNextImage", "cmdPrevImage", "cmdNextSeries",
            "cmdPreviousSeries", "Command2",  "cmdPatBack",   "cmdPlay",      "cmdReverse",
            "cmdHeader",         "cmdInvert", "Open",         "cmNext",       "cmdSerNext"};
        const auto chosen = random_() % (std::size(buttons) + 9);
        if (chosen < std::size(buttons)) return press(buttons[chosen]);
        auto& behaviour = form_->behaviour();
        auto* tree = form_->findChild<QTreeView*>("TreeView1");
        switch (chosen - std::size(buttons)) {
            case 0:
                return watch_.work("a preview", [&] {
                    EventGuard::run([&] { behaviour.thumb_Click(Int16(int(random_() % 5))); });
                });
            case 1:
                return watch_.work("the strip", [&] {
                    form_->sb1().putValue(1 + int(random_() % unsigned(form_->sb1().Max())));
                });
            case 2:
                return watch_.work("the cine", [&] {
                    for (int tick = 0; tick < 8; ++tick)
                        EventGuard::run([&] { behaviour.cine.Timer4_Timer(); });
                });
            case 3:
                return watch_.work("expanding the tree", [&] { tree->expandAll(); });
            default: {
                const int rows = tree->model()->rowCount();
                if (rows == 0) return;
                tree->setCurrentIndex(tree->model()->index(int(random_() % unsigned(rows)), 0));
                QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
                watch_.work("choosing a patient", [&] { QCoreApplication::sendEvent(tree, &enter); });
            }
        }
    }

    QString folder_;
    const Mutation& files_;
    std::mt19937 random_;
    Watch& watch_;
    QTimer answers_;
    Form1* form_ = nullptr;
    ezDICOMX* view_ = nullptr;
};

}  // namespace

void makeDamagedDisc(const QString& folder, const Mutation& files, const Mutation& catalogues,
                     unsigned number) {
    std::mt19937 random(number);
    for (unsigned patient = 0; patient < 1 + random() % 3; ++patient)
        for (unsigned series = 0; series < 1 + random() % 3; ++series) {
            const QString place = QString("%1/Dicom/Patient%2/Study1/Series%3")
                                      .arg(folder)
                                      .arg(patient, 3, 10, QChar(u'0'))
                                      .arg(series + 1);
            QDir().mkpath(place);
            for (unsigned file = 0; file < 1 + random() % 6; ++file)
                write(place + QString("/%1.dcm").arg(file + 1),
                      random() % 2 ? files(random()) : files.sound(random()));
        }
    write(folder + "/CD.xml", number % 2 ? catalogues(number) : catalogues.sound(number));
    for (auto faults = random() % 4; faults > 0; --faults) {
        const QStringList all = entriesBelow(folder);
        if (!all.isEmpty()) spoil(all[qsizetype(random() % std::size_t(all.size()))], files, random);
    }
}

void visitDisc(const QString& folder, const Mutation& files, unsigned number, Watch& watch) {
    const auto before = EventGuard::replaceFatalAction(
        [&](const RunTimeError& error) { watch.reportFault(std::string("untrapped: ") + error.what()); });
    Visit(folder, files, number, watch).run();
    EventGuard::replaceFatalAction(before);
}

}  // namespace cinedisc::fuzzing::window
