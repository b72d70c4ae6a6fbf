#include "app/Form1.h"
#include "control/frames/ImageLibrary.h"
#include "tests/support/DiscBuilder.h"
#include "tests/support/ModalDialog.h"
#include "tests/support/SampleFile.h"
#include "tests/support/WindowTest.h"

#include <QCheckBox>
#include <QDialog>
#include <QLineEdit>
#include <QMenu>
#include <QSlider>
#include <QTemporaryDir>
#include <QTimer>
#include <QWheelEvent>

namespace cinedisc::test {
namespace {

class PictureCommandsTest : public WindowTest {
  protected:
    PictureCommandsTest() {
        ImageLibrary::shared().lookAhead(std::chrono::minutes(1));
        show();
        click("Open");
    }
    QWidget& window() override { return form; }
    void press(int key) { QTest::keyClick(QApplication::focusWidget(), Qt::Key(key)); }
    QString shownFile() { return QFileInfo(view("FileName").toString()).fileName(); }
    bool plays() { return form.findChild<QTimer*>("Timer4")->isActive(); }

    DiscBuilder disc{{patientOf("Cine", {{5, 6, 7}}), patientOf("Stills", {{1, 1, 1}})}, sampleFile};
    Form1 form{disc.path()};
};

TEST_F(PictureCommandsTest, KeysRunTheButtonsWhileThePictureOrAPreviewHasThem) {
    EXPECT_EQ(QApplication::focusWidget(), &find("TreeView1"));
    clickNode(0);
    click("cmdStop");
    for (const char* place : {"ezDicom", "thumb(1)"}) {
        find(place).setFocus();
        const struct {
            int key;
            const char* file;
            int frame;
        } steps[] = {{Qt::Key_Home, "1.dcm", 1},     {Qt::Key_Right, "1.dcm", 2},  {Qt::Key_End, "1.dcm", 5},
                     {Qt::Key_Left, "1.dcm", 4},     {Qt::Key_Down, "2.dcm", 1},   {Qt::Key_End, "2.dcm", 6},
                     {Qt::Key_PageDown, "3.dcm", 1}, {Qt::Key_PageUp, "2.dcm", 1}, {Qt::Key_Up, "1.dcm", 1}};
        for (const auto& step : steps) {
            press(step.key);
            EXPECT_EQ(shownFile(), step.file) << step.key;
            EXPECT_EQ(view("CurrentFrame"), step.frame) << step.key;
        }
        const int speed = find<QSlider>("Slider1").value();
        auto& recorded = find<QCheckBox>("chkRecordedRate");
        recorded.setChecked(true);
        press(Qt::Key_Plus);
        EXPECT_FALSE(recorded.isChecked()) << "the bar sets the speed again";
        EXPECT_EQ(find<QSlider>("Slider1").value(), speed + 1);
        press(Qt::Key_Minus);
        EXPECT_EQ(find<QSlider>("Slider1").value(), speed);
        press(Qt::Key_Space);
        EXPECT_TRUE(plays());
        press(Qt::Key_Space);
        EXPECT_FALSE(plays());
        press(Qt::Key_I);
        EXPECT_LT(view("Polarity").toInt(), 0);
        press(Qt::Key_I);
    }
    find("cmdInvert").setFocus();
    press(Qt::Key_Right);
    EXPECT_EQ(view("CurrentFrame"), 1);
    find("cmdInvert").setFocus();
    press(Qt::Key_Return);
    EXPECT_LT(view("Polarity").toInt(), 0);
}

TEST_F(PictureCommandsTest, StillsAreSteppedBySeriesButtonsAndTheWheelStepsFrames) {
    clickNode(1);
    EXPECT_EQ(QApplication::focusWidget(), &find("ezDicom"));
    press(Qt::Key_Down);
    EXPECT_EQ(shownFile(), "2.dcm");
    press(Qt::Key_Space);
    EXPECT_FALSE(plays());

    clickNode(0);
    click("cmdStop");
    find("ezDicom").setFocus();
    press(Qt::Key_Home);
    for (const int delta : {-60, -60, -240, 120}) roll("ezDicom", delta);
    EXPECT_EQ(view("CurrentFrame"), 3);
}

TEST_F(PictureCommandsTest, FullScreenHeaderAndKeysPageEndByEscapeInThatOrder) {
    clickNode(0);
    QWidget& picture = find("ezDicom");
    QWidget* const home = picture.parentWidget();
    QCoreApplication::processEvents();
    const QRect place = picture.geometry();
    press(Qt::Key_F11);
    EXPECT_TRUE(form.isFullScreen());
    EXPECT_EQ(picture.size(), form.size());
    press(Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), &picture);
    click("cmdHeader");
    picture.setFocus();
    press(Qt::Key_F1);
    EXPECT_TRUE(find("KeysPage").isVisible());
    press(Qt::Key_Escape);
    EXPECT_FALSE(find("KeysPage").isVisible());
    EXPECT_EQ(view("ShowHeader"), true);
    press(Qt::Key_Escape);
    EXPECT_EQ(view("ShowHeader"), false);
    EXPECT_TRUE(form.isFullScreen());
    press(Qt::Key_Escape);
    EXPECT_FALSE(form.isFullScreen());
    EXPECT_EQ(picture.parentWidget(), home);
    EXPECT_TRUE(QTest::qWaitFor([&] { return picture.geometry() == place; }));
}

TEST_F(PictureCommandsTest, TheMenuOfThePictureWritesAFilm) {
    clickNode(0);
    QTemporaryDir folder;
    QTimer chooser;
    QObject::connect(&chooser, &QTimer::timeout, [&] {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (!menu) return;
        chooser.stop();
        const auto actions = menu->actions();
        const auto film =
            std::ranges::find_if(actions, [](QAction* a) { return a->text().contains("film"); });
        menu->setActiveAction(*film);
        QTest::keyClick(menu, Qt::Key_Return);
    });
    chooser.start(0);
    const ModalDialog<QDialog> save([&](QDialog& dialog) {
        dialog.findChild<QLineEdit*>("fileNameEdit")->setText(folder.filePath("run"));
        dialog.accept();
    });
    emit find("ezDicom").customContextMenuRequested({5, 5});
    EXPECT_TRUE(QTest::qWaitFor([&] { return QFile::exists(folder.filePath("run.avi")); }));
    EXPECT_TRUE(QTest::qWaitFor([&] { return plays(); }));
}

}  // namespace
}  // namespace cinedisc::test
