#include "platform/RunTimeError.h"
#include "platform/widgets/TextViewer.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <gmock/gmock.h>

namespace cinedisc {
namespace {

TEST(TextViewerLauncherTest, TheDesktopsOpenerComesFirstThenAnEditorAndBothGetThePathAsItIs) {
    const QTemporaryDir programs;
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", programs.path().toUtf8());
    qputenv("CINEDISC_PROGRAM", "ours");
    const QString file = "/disc of \"J\" $HOME; `x` 'y'/license.txt";
    EXPECT_THAT([&] { openTextViewer(file); }, testing::ThrowsMessage<RunTimeError>("53: File not found"));
    for (const QString program : {"mousepad", "xdg-open"}) {
        // A program that writes down what it was started with; the record appears whole or not at all.
        QFile script(programs.filePath(program)), record(programs.filePath("record"));
        ASSERT_TRUE(script.open(QFile::WriteOnly));
        script.write(
            "#!/bin/sh\nout=\"${0%/*}/record\"\nprintf '%s|%s|%s|%s' \"${0##*/}\" \"$#\" \"$1\" "
            "\"$CINEDISC_PROGRAM\" > "
            "\"$out.part\"\n/bin/mv \"$out.part\" \"$out\"\n");
        script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        script.close();
        openTextViewer(file);
        ASSERT_TRUE(QTest::qWaitFor([&] { return record.exists(); }) && record.open(QFile::ReadOnly));
        EXPECT_EQ(QString::fromUtf8(record.readAll()), program + "|1|" + file + "|");
        record.remove();
    }
    qputenv("PATH", path);
    qunsetenv("CINEDISC_PROGRAM");
}

}  // namespace
}  // namespace cinedisc
