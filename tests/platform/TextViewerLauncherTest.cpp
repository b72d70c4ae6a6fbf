#include "platform/RunTimeError.h"
#include "platform/widgets/TextViewer.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

namespace cinedisc {
namespace {

/// A search path with programs that write down what they were started with.
class TextViewerLauncherTest : public testing::Test {
  protected:
    void SetUp() override {
        path = qgetenv("PATH");
        qputenv("PATH", programs.path().toUtf8());
    }
    void TearDown() override { qputenv("PATH", path); }

    void addProgram(const QString& name) {
        QFile script(programs.filePath(name));
        ASSERT_TRUE(script.open(QFile::WriteOnly));
        // The record appears whole or not at all.
        script.write(
            "#!/bin/sh\nout=\"${0%/*}/record\"\nprintf '%s|%s|%s' \"${0##*/}\" \"$#\" \"$1\" > "
            "\"$out.part\"\n"
            "/bin/mv \"$out.part\" \"$out\"\n");
        script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    QString record() {
        QFile file(programs.filePath("record"));
        if (!QTest::qWaitFor([&] { return file.exists(); })) return "nothing started";
        return file.open(QFile::ReadOnly) ? QString::fromUtf8(file.readAll()) : "unreadable";
    }

    QTemporaryDir programs;
    QByteArray path;
};

TEST_F(TextViewerLauncherTest, TheDesktopsOpenerComesFirstThenAnEditorAndBothGetThePathAsItIs) {
    const QString file = "/disc of \"J\" $HOME; `x` 'y'/license.txt";
    try {
        openTextViewer(file);
        ADD_FAILURE() << "something was started";
    } catch (const RunTimeError& error) {
        EXPECT_EQ(error.number(), 53);
    }
    for (const QString program : {"mousepad", "xdg-open"}) {
        addProgram(program);
        openTextViewer(file);
        EXPECT_EQ(record(), program + "|1|" + file);
        QFile::remove(programs.filePath("record"));
    }
}

}  // namespace
}  // namespace cinedisc
