#include "control/FilmExport.h"
#include "control/HeaderPage.h"
#include "dicom/Tags.h"
#include "platform/RunTimeError.h"
#include "tests/control/ViewFixture.h"
#include "tests/support/DiscBuilder.h"

#include <QAction>
#include <QImageReader>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QtEndian>

#if __has_include(<sys/resource.h>)
#include <sys/resource.h>
#endif

namespace cinedisc::test {
namespace {

class Export : public ViewFixture {
  protected:
    QString file(const QString& name) { return folder.filePath(name); }
    QStringList entries() { return QDir(folder.path()).entryList(QDir::Files | QDir::Hidden, QDir::Name); }
    /// Of an export.
    int error(const QString& path) {
        try {
            view.putExportFile(path);
        } catch (const RunTimeError& error) {
            return error.number();
        }
        return 0;
    }
    /// Runs a film to its end; whether there is one.
    bool isFilmWritten(double otherwiseRate = 15) {
        const auto film = view.exportFilm(file("run.avi"), otherwiseRate);
        QSignalSpy finished(film.get(), &FilmExport::finished);
        EXPECT_TRUE(finished.wait());
        for (int i = 0; i < 3; ++i) QCoreApplication::processEvents();
        EXPECT_EQ(finished.size(), 1);
        return finished.value(0).value(0).toBool();
    }
    static QByteArray contents(const QString& path) {
        QFile read(path);
        EXPECT_TRUE(read.open(QIODevice::ReadOnly)) << qPrintable(path);
        return read.readAll();
    }
    /// While no file can become longer than this, as on a full disc.
    template <typename Act>
    static void withFilesUpTo([[maybe_unused]] unsigned bytes, [[maybe_unused]] const Act& act) {
#ifdef RLIMIT_FSIZE
        rlimit before{};
        ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
        const rlimit small{bytes, before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
        act();
        setrlimit(RLIMIT_FSIZE, &before);
#endif
    }
    QTemporaryDir folder;
};

TEST_F(Export, WritesAndCopiesPixelForPixelWhateverTheViewShows) {
    const auto tall = greyRun(77, 51, 2);
    tall->aspect = 0.5;
    tall->shutterShapes.rectangle = dicom::Shutter::Rectangle{11, 60, 1, 40};
    load(tall);
    run("CurrentFrame 2; Polarity -1; WindowCenter 100; WindowWidth 150; ZoomPercent 300; ShowHeader 1");
    view.putExportFile(file("a.bmp"));
    view.putExportFile(file("a.jpg"));
    ASSERT_TRUE(view.CopyToClipboard());
    const auto* data = QGuiApplication::clipboard()->mimeData();
#ifndef Q_OS_WIN
    EXPECT_EQ(data->formats(), (QStringList{"image/png", "image/bmp", "image/jpeg"})) << "the best first";
#endif
    run("ShowHeader 0; ZoomPercent 100");
    view.resize(77, 102);
    const QImage expected = seen();
    for (const auto& image :
         {QImage(file("a.bmp")), QGuiApplication::clipboard()->image(),
          QImage::fromData(data->data("image/png")), QImage::fromData(data->data("image/bmp"))})
        EXPECT_EQ(image.convertToFormat(QImage::Format_RGB32), expected);
    EXPECT_EQ(data->data("image/jpeg"), contents(file("a.jpg")));
}

TEST_F(Export, PicksTheEncodingByTheExtensionThenByTheFormatAndKeepsColour) {
    const auto colour = [](int x, int y) { return (x + y) % 2 ? qRgb(220, 30, 40) : qRgb(40, 60, 210); };
    load(colourRun(400, 400, colour));
    run("WindowCenter 5; WindowWidth 5; WindowCenter is 127.5; WindowWidth is 255; Polarity -1");
    const QString cases[] = {"a.bmp JPEG bmp",  "b.BmP  bmp",      "c.jpg BMP jpeg",
                             "d.JPEG BMP jpeg", "e BMP bmp",       "f JPEG jpeg",
                             "g.png BMP bmp",   "h.dcm JPEG jpeg", "i  jpeg"};
    for (const QString& each : cases) {
        const QStringList words = each.split(' ');
        view.putExportFormat(words[1]);
        view.putExportFile(file(words[0]));
        EXPECT_EQ(QImageReader::imageFormat(file(words[0])), words[2]) << qPrintable(each);
        const QImage read = QImage::fromData(contents(file(words[0])));
        for (int i = 0; i < 126; ++i) {
            const QPoint at(330 + i / 2, 330 + (i + 1) / 2);  // every pixel has its own colour
            const QRgb wanted = ~colour(at.x(), at.y()), seen = read.pixel(at);
            EXPECT_NEAR(qRed(seen), qRed(wanted), 12) << qPrintable(each);
            EXPECT_NEAR(qBlue(seen), qBlue(wanted), 12) << qPrintable(each);
        }
    }
    EXPECT_EQ(entries().size(), 9) << "nothing else is left";
}

TEST_F(Export, RaisesAnErrorAndLeavesWhatWasThere) {
    EXPECT_EQ(error(file("a.bmp")), 75) << "nothing is loaded";
    load(greyRun(8, 8, 1));
    EXPECT_EQ(error(file("no/such/folder/a.bmp")), 76);
    EXPECT_EQ(error(""), 75);
    ASSERT_TRUE(QDir(folder.path()).mkdir("b.bmp"));
    EXPECT_EQ(error(file("b.bmp")), 75) << "a folder";

    DiscBuilder::write(file("old.jpg"), "what was there");
    load(greyRun(65535, 1, 1), "/wide");  // more than a JPEG can hold
    EXPECT_EQ(error(file("old.jpg")), 75);
    load(greyRun(300, 300, 1), "/large");
    std::vector<int> errors;
    withFilesUpTo(10000, [&] { errors = {error(file("old.jpg")), error(file("new.bmp"))}; });
    for (const int met : errors) EXPECT_EQ(met, 75);
    EXPECT_EQ(contents(file("old.jpg")), "what was there");
    EXPECT_EQ(entries(), QStringList{"old.jpg"});
}

TEST_F(Export, CopiesNothingWhenThereIsNoPicture) {
    QGuiApplication::clipboard()->setText("mine");
    view.putFileName("/nowhere");
    EXPECT_FALSE(view.CopyToClipboard() || view.CopyHeaderToClipboard());
    const auto file = greyRun(8, 8, 2);
    file->broken = {0};
    file->readingBehind = [] { throw std::bad_alloc(); };
    load(file);
    EXPECT_FALSE(view.CopyToClipboard() || view.CopyHeaderToClipboard());
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "mine");
    run("ShowHeader 1");
    EXPECT_EQ(view.findChild<QPlainTextEdit*>()->toPlainText(), "The header is too large to be shown.");
    file->readingBehind = {};
    EXPECT_TRUE(view.CopyHeaderToClipboard()) << "the header can be read";
}

TEST_F(Export, CopiesTheHeaderFromItsPageAndWhole) {
    const auto file = greyRun(8, 8, 1);
    put(*file, {0x0010, 0x4000}, "<i>DOE</i>" + std::string(9000, 'x'));
    load(file);
    QAction copiesPicture;
    copiesPicture.setShortcut(QKeySequence::Copy);
    view.addAction(&copiesPicture);
    QSignalSpy pictures(&copiesPicture, &QAction::triggered);
    view.putShowHeader(true);
    view.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&view));
    auto* page = view.findChild<QPlainTextEdit*>("headerPage");
    page->setFocus();
    QTest::keyClick(page, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(pictures.count(), 1) << "nothing is selected";
    for (const auto key : {Qt::Key_A, Qt::Key_C}) QTest::keyClick(page, key, Qt::ControlModifier);
    EXPECT_EQ(pictures.count(), 1);
    const QString shown = page->toPlainText();
    EXPECT_TRUE(shown.contains("<i>DOE</i>xxx"));
    EXPECT_EQ(QGuiApplication::clipboard()->text(), shown);
    EXPECT_LT(shown.size(), 9000) << "the page cuts what is very long";
    EXPECT_TRUE(view.CopyHeaderToClipboard());
    EXPECT_TRUE(QGuiApplication::clipboard()->text().contains(QString(9000, 'x')));
    const QString endless = QString("line\n").repeated(100'000) + QString(500'000, 'x');
    static_cast<HeaderPage*>(page)->putText(endless);
    EXPECT_LT(page->document()->characterCount(), 300'000) << "the window goes on meanwhile";
    EXPECT_TRUE(QTest::qWaitFor([&] { return page->document()->characterCount() > endless.size(); }));
    for (int i = 0; i < 3; ++i) QCoreApplication::processEvents();  // and no more comes
    EXPECT_EQ(page->toPlainText(), endless);
}

quint32 number(const QByteArray& bytes, qsizetype at) {
    return qFromLittleEndian<quint32>(bytes.constData() + at);
}

/// The frames that the index of a film leads to; every size on the way must agree.
QList<QImage> framesOf(const QByteArray& film) {
    EXPECT_EQ(film.left(4) + film.mid(8, 4), "RIFFAVI ");
    EXPECT_EQ(number(film, 4) + 8, film.size());
    const qsizetype movi = 12 + 8 + number(film, 16);
    const qsizetype index = movi + 8 + number(film, movi + 4);
    EXPECT_EQ(film.mid(movi + 8, 4) + film.mid(index, 4), "moviidx1");
    QList<QImage> frames;
    quint32 largest = 0;
    for (qsizetype entry = index + 8; entry < film.size(); entry += 16) {
        const qsizetype chunk = movi + 8 + number(film, entry + 8);
        EXPECT_EQ(film.mid(chunk, 4), "00dc");
        EXPECT_EQ(number(film, chunk + 4), number(film, entry + 12));
        EXPECT_EQ(number(film, entry + 4), 16U) << "can be begun with";
        largest = std::max(largest, number(film, chunk + 4));
        frames.append(QImage::fromData(film.mid(chunk + 8, number(film, entry + 12)), "jpeg"));
    }
    for (const int buffer : {60, 144}) EXPECT_EQ(number(film, buffer), largest + largest % 2 + 8);
    return frames;
}

TEST_F(Export, FilmHoldsEveryFrameAsItIsDisplayedAtTheRunsRate) {
    const auto run3 = greyRun(77, 51, 3);
    run3->broken = {1};
    load(run3);
    run("MouseMode 5; click 50 60; type LAD; key Return; CurrentFrame 2; Polarity -1; WindowCenter 100; "
        "WindowWidth 150");
    put(*run3, dicom::tags::CineRate, "12.5");
    ASSERT_TRUE(isFilmWritten(20));
    const QByteArray film = contents(file("run.avi"));
    const auto frames = framesOf(film);
    ASSERT_EQ(frames.size(), 3);
    EXPECT_EQ(film.mid(108, 8) + film.mid(188, 4), "vidsMJPGMJPG");
    const std::pair<int, quint32> header[] = {
        {32, 80000},       {44, 16},    {48, 3},      {56, 1},   {64, 78},
        {68, 52},          {128, 1000}, {132, 12500}, {140, 3},  {160, 78 | 52 << 16},
        {168, 40},         {172, 40},   {176, 78},    {180, 52}, {184, 1 | 24 << 16},
        {192, 78 * 52 * 3}};
    for (const auto& [at, value] : header) EXPECT_EQ(number(film, at), value) << at;
    EXPECT_EQ(frames[1].size(), QSize(78, 52)) << "its notice keeps the others' time";
    for (const int frame : {1, 3}) {
        view.putCurrentFrame(frame);
        view.putExportFile(file("one.bmp"));
        const QImage wanted(file("one.bmp"));
        EXPECT_TRUE(changed(frames[frame - 1].copy(wanted.rect()), wanted, 60).isEmpty()) << "with its label";
        for (const QPoint at : {QPoint(3, 4), QPoint(40, 20), QPoint(70, 47)})
            EXPECT_NEAR(qGray(frames[frame - 1].pixel(at)), qGray(wanted.pixel(at)), 8) << frame;
    }
}

TEST_F(Export, FilmThatIsNotWholeLeavesNothingBehind) {
    load(greyRun(64, 64, 200));
    {
        const auto film = view.exportFilm(file("run.avi"), 15);
        ASSERT_TRUE(QSignalSpy(film.get(), &FilmExport::written).wait());
    }
    EXPECT_EQ(entries(), QStringList());
    withFilesUpTo(20000, [&] { EXPECT_FALSE(isFilmWritten()); });
    view.putFileName("/gone");
    EXPECT_FALSE(isFilmWritten());
    EXPECT_EQ(entries(), QStringList());
}

}  // namespace
}  // namespace cinedisc::test
