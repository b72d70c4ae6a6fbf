#include "tests/app/Form1Fixture.h"
#include "tests/support/ModalDialog.h"
#include "viewer/WindowWords.h"

#include <QContextMenuEvent>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QRegularExpression>

namespace cinedisc::test {
namespace {

TEST_F(Form1Test, KeysRunTheButtonsWhileThePictureOrAPreviewHasThem) {
    walk({{"click Open", "TreeView1.focus=true"},
          {"focus sb1; choose mnuOpenCD", "TreeView1.focus=true"},
          {"node 0; click cmdStop; click Option10; click Option9; click chkRecordedRate",
           "ezDicom.focus=true"}});
    for (const char* place : {"ezDicom", "thumb(1)"}) {
        walk({{QString("focus ") + place, ""},
              {"key Home", "ezDicom.FileName=1.dcm; ezDicom.CurrentFrame=1"},
              {"key Right", "ezDicom.FileName=1.dcm; ezDicom.CurrentFrame=2"},
              {"key End", "ezDicom.CurrentFrame=30"},
              {"key Left", "ezDicom.CurrentFrame=29"},
              {"key Down", "ezDicom.FileName=2.dcm; ezDicom.CurrentFrame=1"},
              {"key End", "ezDicom.CurrentFrame=4"},
              {"key PgDown", "ezDicom.FileName=3.dcm; ezDicom.CurrentFrame=1"},
              {"key PgUp", "ezDicom.FileName=2.dcm"},
              {"key Up", "ezDicom.FileName=1.dcm"},
              {"chkRecordedRate.checked=true", "Slider1.value=5"},
              {"key +", "chkRecordedRate.checked=false; Slider1.value=6"},
              {"key -", "Slider1.value=5"},
              {"key Space", "Timer4.active=true"},
              {"key Space", "Timer4.active=false"},
              {"key I", "ezDicom.Polarity=-1"},
              {"key I", "ezDicom.Polarity=1"}});
    }
    walk({{"key Home; focus cmdInvert; key Right", "ezDicom.CurrentFrame=1"}});
    walk({{"focus cmdInvert; key Return", "ezDicom.Polarity=-1"}});
}

TEST_F(Form1Test, TheRateIsToldAndThatOfTheRecordingCanBeTaken) {
    openPatient();
    const auto rate = [this](const QString& words) {
        const auto& shown = find<QLabel>("lblRate");
        return QTest::qWaitFor([&] { return QRegularExpression(words).match(shown.text()).hasMatch(); });
    };
    EXPECT_TRUE(rate("^recorded 31 fps$"));
    walk({{"chkRecordedRate.checked=true", "Timer4.interval=32"},
          {"chkRecordedRate.checked=false", "Timer4.interval=50"},
          {"chkRecordedRate.checked=true; Slider1.value=9", "Timer4.interval=10"},
          {"chkRecordedRate.checked=true; click cmdPlay", ""}});
    EXPECT_TRUE(rate("^[1-9]\\d*(\\.\\d)? fps \\(recorded 31\\)$"));
    walk({{"click cmdStop", ""}});
    EXPECT_TRUE(rate("^recorded 31 fps$"));
    find("ezDicom").setProperty("FileName", "");
    EXPECT_TRUE(rate("^$"));
}

TEST_F(Form1Test, StillsAreSteppedBySeriesButtonsAndTheWheelStepsFrames) {
    walk({{"click Open; node 1", "ezDicom.focus=true"},
          {"key Down", "ezDicom.FileName=2.dcm"},
          {"key Space", "Timer4.active=false"},
          {"node 0; click cmdStop; focus ezDicom; key Home; roll ezDicom -60", "ezDicom.CurrentFrame=1"},
          {"roll ezDicom -60", "ezDicom.CurrentFrame=2"},
          {"roll ezDicom -240", "ezDicom.CurrentFrame=4"},
          {"roll ezDicom 120", "ezDicom.CurrentFrame=3"}});
}

TEST_F(Form1Test, FullScreenHeaderAndKeysPageEndByEscapeInThatOrder) {
    walk({{"click Open; node 0; FraTree.visible=true", ""}});
    QWidget& picture = find("ezDicom");
    QWidget* const home = picture.parentWidget();
    QCoreApplication::processEvents();
    const QRect place = picture.geometry();
    walk({{"key F11", "fullScreen=true"}});
    EXPECT_EQ(picture.size(), form.size());
    walk({{"key Tab", "ezDicom.focus=true"},
          {"click cmdHeader; focus ezDicom; key F1", "KeysPage.visible=true"},
          {"key Esc", "KeysPage.visible=false; ezDicom.ShowHeader=true"},
          {"key Esc", "ezDicom.ShowHeader=false; fullScreen=true"},
          {"key Esc", "fullScreen=false"}});
    EXPECT_EQ(picture.parentWidget(), home);
    EXPECT_TRUE(QTest::qWaitFor([&] { return picture.geometry() == place; }));
    walk({{"key F1", ""}});
    EXPECT_EQ(partsOf(find("KeysPage")).size(), 20);
    for (const QSize size : {form.size(), QSize(300, 300)}) {
        settle(size);
        const QRect page = find("KeysPage").geometry();
        EXPECT_TRUE(picture.rect().contains(page));
        EXPECT_LE((page.center() - picture.rect().center()).manhattanLength(), 2);
    }
}

TEST_F(Form1Test, TheMenuOfThePictureWritesAFilm) {
    QTemporaryDir folder;
    QString items;
    const auto openMenu = [&](Qt::Key key) {
        QTimer::singleShot(0, [&, key] {
            auto& menu = *qobject_cast<QMenu*>(QApplication::activePopupWidget());
            items = outline(menu.actions());
            menu.setActiveAction(menu.actions().at(menu.actions().size() - 4));
            QTest::keyClick(&menu, key);
        });
        QContextMenuEvent event(QContextMenuEvent::Mouse, {5, 5}, {5, 5});
        QCoreApplication::sendEvent(&find("ezDicom"), &event);
    };
    openMenu(Qt::Key_Escape);
    EXPECT_TRUE(items.contains("=Export run as film...!|"));
    walk({{"click Open; node 0", ""}});
    QStringList told;
    for (const char* name : {"run", "no folder/run"}) {
        ModalDialog<QMessageBox> failed([&](QMessageBox& box) {
            told << box.text();
            box.accept();
        });
        const ModalDialog<QFileDialog> save([&](QFileDialog& dialog) {
            dialog.findChild<QLineEdit*>("fileNameEdit")->setText(folder.filePath(name));
            static_cast<QDialog&>(dialog).accept();
        });
        openMenu(Qt::Key_Return);
        EXPECT_TRUE(QTest::qWaitFor([&] { return property("Timer4", "active").toBool(); }));
    }
    EXPECT_EQ(items.toStdString(),
              "=Play+|=Play backward-|=Stop-||=Window+|=Magnify-|=Panning-|=Label-||=Zoom{=Best fit+|=50%-|"
              "=100%-|=150%-|=200%-}|=Invert-|=Smooth+|=Header-||=Copy image|=Export image...|=Export run as "
              "film...||=Full screen|=Keys");
    EXPECT_TRUE(QFile::exists(folder.filePath("run.avi")));
    EXPECT_EQ(told, QStringList{windowWords::filmFailed()});
}

}  // namespace
}  // namespace cinedisc::test
