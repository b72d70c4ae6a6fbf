#include "app/Form1.h"
#include "tests/support/DiscBuilder.h"
#include "tests/support/SampleFile.h"
#include "tests/support/WindowTest.h"

#include <QClipboard>
#include <QGuiApplication>

namespace cinedisc::test {
namespace {

/// The real window on a disc of two patients of one name.
class OnePatientWindowTest : public WindowTest {
  protected:
    QWidget& window() override { return form; }
    bool warns() {
        return form.findChild<QWidget*>("wrongPatientBar") && find("wrongPatientBar").isVisible();
    }
    QImage copied() {
        choose("mnuCopy");
        return QGuiApplication::clipboard()->image();
    }

    DiscBuilder twoPatients{{patientOf("Alpha", {{3}}), patientOf("Alpha", {{1}, {2}})}, sampleFile};
    Form1 form{twoPatients.path()};
};

/// Whatever the commands do: here the view is given another patient's file past all of them.
TEST_F(OnePatientWindowTest, TheViewWarnsByItself) {
    show();
    click("Open");
    QWidget& ezDicom = find("ezDicom");
    const QString others = twoPatients.path({"Dicom", "Patient001", "Study1", "Series2", "1.dcm"});
    ezDicom.setProperty("FileName", others);
    EXPECT_FALSE(warns());  // nobody's name is shown yet
    const QImage plain = copied();
    clickNode(0);
    click("cmdStop");
    EXPECT_FALSE(warns());
    for (const QString& path : {others, twoPatients.path({"Dicom", "Patient000", "..", "Patient001", "x"}),
                                twoPatients.path({"Dicom", "Patient0000", "1.dcm"}), QString("/1.dcm")}) {
        ezDicom.setProperty("FileName", path);
        EXPECT_TRUE(warns()) << qPrintable(path);
        EXPECT_EQ(view("FileName"), path);
    }
    ezDicom.setProperty("FileName", others);
    EXPECT_EQ(copied(), plain);
    choose("mnuHeader");
    EXPECT_TRUE(warns());
    EXPECT_GE(find("headerPage").geometry().top(), find("wrongPatientBar").geometry().bottom());
    // It is all its own colour, as wide as the view.
    const QImage bar = find("wrongPatientBar").grab().toImage();
    EXPECT_EQ(bar.pixelColor(2, 2), QColor(0xc4, 0x00, 0x6a));
    EXPECT_GE(bar.width() + 4, int(ezDicom.width() * bar.devicePixelRatio()));
    choose("mnuHeader");
    walk({{"click cmdStudyNext", "Label5.text=Alpha"}});  // to the patient whose file it is
    EXPECT_FALSE(warns());
}

}  // namespace
}  // namespace cinedisc::test
