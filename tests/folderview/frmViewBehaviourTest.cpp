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

TEST_F(FolderBehaviour, OpeningFitsEveryFilledPreviewAfterItsFileAndScrollingDoesNot) {
    open(7);
    QString first = "sb1.Max=8|ezDicom.BestFit=True|", last = "sb1.Value=5|";
    for (int i = 0; i < 5; ++i) {
        const QString thumb = QString("thumb(%1).").arg(i);
        first.insert(first.indexOf("sb1"), thumb + "ThumbIndex=-1|");
        first += QString("%1BackgroundFill=False|%1FileName=%2.dcm|%1BestFit=True|").arg(thumb).arg(i + 1);
        last += QString("%1ThumbStyle=2|%1BestFit=True|").arg(thumb);
    }
    EXPECT_EQ(puts().join('|') + '|', first + last);
    controls.sb1.putValue(7);
    EXPECT_EQ(puts().mid(0, 4).join('|'),
              "sb1.Value=7|thumb(0).BackgroundFill=False|thumb(0).FileName=3.dcm|"
              "thumb(1).BackgroundFill=False");
}

TEST_F(FolderBehaviour, EitherOptionOpensAPreviewAtItsLastFrame) {
    open(3);
    for (const auto& [direction, endOfRun, frame] :
         {std::tuple{&controls.Option9, &controls.Option4, ""},
          {&controls.Option9, &controls.Option11, "ezDicom.CurrentFrame=3|"},
          {&controls.Option10, &controls.Option4, "ezDicom.CurrentFrame=3|"}}) {
        direction->putValue(true);
        endOfRun->putValue(true);
        controls.sb1.putValue(1);
        puts();
        behaviour.thumb_Click(1);
        const QString all = puts().join('|');
        EXPECT_TRUE(all.startsWith(QString("ezDicom.FileName=2.dcm|%1sb1.Value=2|").arg(frame)));
        EXPECT_TRUE(all.endsWith("|lblImg.Caption=Image : 2/3|Timer4.Enabled=True"));
    }
    behaviour.thumb_Click(3);
    EXPECT_EQ(puts(), QStringList()) << "an empty preview opens nothing";
    // Nothing is trapped here, and no cine starts then.
    controls.Timer4.putEnabled(false);
    controls.sb1.putMax(2);
    EXPECT_THROW(behaviour.thumb_Click(2), RunTimeError);
    EXPECT_FALSE(controls.Timer4.Enabled());
}

}  // namespace
}  // namespace cinedisc::test
