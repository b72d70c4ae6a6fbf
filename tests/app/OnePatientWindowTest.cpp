#include "app/Form1.h"
#include "tests/support/SampleFile.h"
#include "tests/support/WindowTest.h"
#include "tests/support/form/DiscWalk.h"

#include <QClipboard>
#include <QGuiApplication>

namespace cinedisc::test {
namespace {

/// The real window on odd discs of DICOM files.
class OnePatientWindowTest : public WindowTest {
  protected:
    QWidget& window() override { return *form; }
    bool warns() {
        return form->findChild<QWidget*>("wrongPatientBar") && find("wrongPatientBar").isVisible();
    }
    void clickNodeNumber(int number) {
        auto& tree = find<QTreeView>("TreeView1");
        const auto found = tree.model()->match(tree.model()->index(0, 0), Qt::UserRole + 1, number, 1,
                                               Qt::MatchExactly | Qt::MatchRecursive);
        tree.setCurrentIndex(found.value(0));
        emit tree.clicked(found.value(0));
    }
    QImage copied() {
        choose("mnuCopy");
        return QGuiApplication::clipboard()->image();
    }

    std::unique_ptr<Form1> form;
};

TEST_F(OnePatientWindowTest, WalksOverOddDiscs) {
    int shown = 0;
    for (unsigned seed = 101; seed <= 104 && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        OddDisc disc(seed, sampleFile);
        form = std::make_unique<Form1>(disc.disc().path());
        show();
        DiscWalk walk(disc, form->behaviour(),
                      {[this](int node) { clickNodeNumber(node); }, [this] { return warns(); }, {}});
        for (int i = 0; i < 250 && !HasFailure(); ++i) {
            walk.step();
            // The cine's own ticks, and drawing.
            QCoreApplication::processEvents();
        }
        shown += walk.picturesShown();
        form.reset();
    }
    EXPECT_GT(shown, 20);
}

/// Whatever the commands do: here the view is given another patient's file past all of them.
TEST_F(OnePatientWindowTest, TheViewWarnsByItself) {
    DiscBuilder twoPatients({patientOf("Alpha", {{3}}), patientOf("Alpha", {{1}, {2}})}, sampleFile);
    form = std::make_unique<Form1>(twoPatients.path());
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
