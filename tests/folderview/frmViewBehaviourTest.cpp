#include "folderview/frmViewBehaviour.h"
#include "tests/support/DiscBuilder.h"
#include "tests/support/RecordingWindow.h"

#include <gtest/gtest.h>

namespace cinedisc::test {
namespace {

/// The folder viewer's behaviour with every control a stand-in. Files "1.dcm", "2.dcm" ... have three frames.
struct FolderBehaviour : testing::Test, private MouseWheelHook, private ExportFormatDialog {
    FolderBehaviour() {
        controls.sb1.changed = [this] { behaviour.sb1_Change(); };
    }
    void MouseHook() override {}
    void MouseUnhook() override {}
    QString chooseFormat() override { return {}; }

    void open(int files) {
        for (int i = 1; i <= files; ++i) DiscBuilder::write(folder.filePath(QString("%1.dcm").arg(i)), "3");
        dialogs.folder = folder.path();
        behaviour.cmdOpen_Click();
    }
    /// What was put since the last call.
    QStringList puts() {
        const QStringList all = controls.putsWithoutFolders();
        controls.journal.clear();
        return all;
    }

    QTemporaryDir folder;
    RecordingWindow controls;
    RecordingPanel Frame5{"Frame5", controls.journal, false};
    RecordingPanel Frame6{"Frame6", controls.journal, false};
    RecordingOption Option1{"Option1", controls.journal};
    RecordingOption Option2{"Option2", controls.journal};
    RecordingOption Option3{"Option3", controls.journal};
    AnsweringDialogs dialogs;
    DisplayTools::Controls tools{controls.ezDicom, Frame5, Frame6, Option1, Option2, Option3};
    ExportCommand::Format exportFormat{*this, [](const QString&) {}};
    frmViewBehaviour behaviour{{controls.controls, tools, exportFormat, *this, dialogs}};
};

TEST_F(FolderBehaviour, OpeningFitsEveryFilledPreviewAfterItsFile) {
    open(7);
    QStringList expected;
    for (int i = 0; i < 5; ++i) expected << QString("thumb(%1).ThumbIndex=-1").arg(i);
    expected << "sb1.Max=8"
             << "ezDicom.BestFit=True";
    for (int i = 0; i < 5; ++i) {
        expected << QString("thumb(%1).BackgroundFill=False").arg(i)
                 << QString("thumb(%1).FileName=%2.dcm").arg(i).arg(i + 1)
                 << QString("thumb(%1).BestFit=True").arg(i);
    }
    expected << "sb1.Value=5";
    for (int i = 0; i < 5; ++i) {
        expected << QString("thumb(%1).ThumbStyle=2").arg(i) << QString("thumb(%1).BestFit=True").arg(i);
    }
    EXPECT_EQ(puts(), expected);
    EXPECT_EQ(behaviour.strip.ThumbFillCount(), 4);
}

TEST_F(FolderBehaviour, ScrollingPutsFilesWithoutTellingThePreviewsToFit) {
    open(7);
    puts();
    controls.sb1.putValue(7);
    EXPECT_EQ(controls.stripNames(), (QStringList{"3", "4", "5", "6", "7"}));
    EXPECT_EQ(puts().mid(0, 5),
              (QStringList{"sb1.Value=7", "thumb(0).BackgroundFill=False", "thumb(0).FileName=3.dcm",
                           "thumb(1).BackgroundFill=False", "thumb(1).FileName=4.dcm"}));
}

TEST_F(FolderBehaviour, EitherOptionOpensAPreviewAtItsLastFrame) {
    open(3);
    struct Case {
        RecordingOption *direction, *endOfRun;
        bool atEnd;
    };
    for (const Case& c : {Case{&controls.Option9, &controls.Option4, false},
                          {&controls.Option9, &controls.Option11, true},
                          {&controls.Option10, &controls.Option4, true},
                          {&controls.Option10, &controls.Option11, true}}) {
        c.direction->putValue(true);
        c.endOfRun->putValue(true);
        controls.sb1.putValue(1);
        puts();
        behaviour.thumb_Click(1);
        QStringList expected{"ezDicom.FileName=2.dcm"};
        if (c.atEnd) expected << "ezDicom.CurrentFrame=3";
        expected << "sb1.Value=2";
        const QStringList all = puts();
        EXPECT_EQ(all.mid(0, expected.size()), expected);
        EXPECT_EQ(all.mid(all.size() - 2),
                  (QStringList{"lblImg.Caption=Image : 2/3", "Timer4.Enabled=True"}));
    }
}

TEST_F(FolderBehaviour, AnEmptyPreviewOpensNothing) {
    open(2);
    puts();
    behaviour.thumb_Click(2);
    EXPECT_EQ(puts(), QStringList());
}

TEST_F(FolderBehaviour, AClickTrapsNoErrorAndStartsNoCineThen) {
    open(3);
    controls.sb1.putMax(2);
    EXPECT_THROW(behaviour.thumb_Click(2), RunTimeError);
    EXPECT_FALSE(controls.Timer4.Enabled());
}

}  // namespace
}  // namespace cinedisc::test
