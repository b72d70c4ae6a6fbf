#include "control/FilmExport.h"
#include "dicom/DecodeError.h"
#include "tests/control/ViewFixture.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtEndian>

#if __has_include(<sys/resource.h>)
#include <sys/resource.h>
#endif

namespace cinedisc {
namespace {

class Film : public test::ViewFixture {
  protected:
    /// Runs a film to its end; whether there is one.
    bool isWritten(double otherwiseRate = 12.5) {
        const auto film = view.exportFilm(path, otherwiseRate);
        QSignalSpy finished(film.get(), &FilmExport::finished);
        EXPECT_TRUE(finished.wait());
        return finished.value(0).value(0).toBool();
    }
    QStringList entries() { return QDir(folder.path()).entryList(QDir::Files | QDir::Hidden); }

    QTemporaryDir folder;
    QString path = folder.filePath("run.avi");
};

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
    for (qsizetype entry = index + 8; entry < film.size(); entry += 16) {
        const qsizetype chunk = movi + 8 + number(film, entry + 8);
        EXPECT_EQ(film.mid(chunk, 4), "00dc");
        EXPECT_EQ(number(film, chunk + 4), number(film, entry + 12));
        frames.append(QImage::fromData(film.mid(chunk + 8, number(film, entry + 12)), "jpeg"));
    }
    EXPECT_EQ(film.mid(108, 8), "vidsMJPG");
    EXPECT_EQ(number(film, 48), frames.size());
    EXPECT_EQ(number(film, 140), frames.size());
    return frames;
}

TEST_F(Film, HoldsEveryFrameAsItIsDisplayedAtTheRunsRate) {
    load(test::greyRun(77, 51, 3));
    view.putCurrentFrame(2);
    view.putPolarity(-1);
    view.putWindowCenter(100);
    view.putWindowWidth(150);
    ASSERT_TRUE(isWritten());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray film = file.readAll();
    EXPECT_EQ(number(film, 132) / double(number(film, 128)), 12.5);
    const auto frames = framesOf(film);
    ASSERT_EQ(frames.size(), 3);
    for (int frame = 1; frame <= 3; ++frame) {
        view.putCurrentFrame(frame);
        view.putExportFile(folder.filePath("one.bmp"));
        const QImage wanted(folder.filePath("one.bmp"));
        ASSERT_EQ(frames[frame - 1].size(), QSize(78, 52));
        for (const QPoint at : {QPoint(3, 4), QPoint(40, 20), QPoint(70, 47)}) {
            EXPECT_NEAR(qGray(frames[frame - 1].pixel(at)), qGray(wanted.pixel(at)), 8) << frame;
        }
    }
}

TEST_F(Film, LeavesNothingBehindThatIsNotWhole) {
    load(test::greyRun(64, 64, 200));
    {
        const auto film = view.exportFilm(path, 15);
        QSignalSpy written(film.get(), &FilmExport::written);
        ASSERT_TRUE(written.wait());
    }
    EXPECT_EQ(entries(), QStringList());
#if __has_include(<sys/resource.h>)
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit small{20000, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    EXPECT_FALSE(isWritten());
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_EQ(entries(), QStringList());
#endif
    view.putFileName("/gone");
    EXPECT_FALSE(isWritten());
    EXPECT_EQ(entries(), QStringList());
}

}  // namespace
}  // namespace cinedisc
