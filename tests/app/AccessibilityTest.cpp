#include "tests/app/Form1Fixture.h"

#include <QAccessible>
#include <QImage>

namespace cinedisc::test {
namespace {

class AccessibilityTest : public Form1Test {
  protected:
    void expectNamesAndRoles(QAccessibleInterface& at) {
        using Q = QAccessible;
        static const QList<Q::Role> used{Q::MenuItem, Q::ScrollBar, Q::Graphic, Q::Grip};
        if (at.state().focusable || used.contains(at.role())) {
            ++controls;
            const bool isGood =
                !at.text(Q::Name).isEmpty() && at.role() != Q::NoRole && at.role() != Q::Client;
            EXPECT_TRUE(isGood) << at.role() << qPrintable(at.object() ? at.object()->objectName() : "");
        }
        for (int i = 0; i < at.childCount(); ++i)
            if (auto* child = at.child(i)) expectNamesAndRoles(*child);
    }
    QAccessibleInterface& heard(QObject& object) { return *QAccessible::queryAccessibleInterface(&object); }
    /// The controls that Tab goes to, from the first; each must be seen to have the keyboard.
    std::string ring() {
        QStringList names;
        QWidget* const first = &find("Open");
        first->setFocus(Qt::TabFocusReason);
        do {
            QWidget* const stop = QApplication::focusWidget();
            const QRect place(stop->mapTo(&form, QPoint()), stop->size());
            const QImage with = form.grab(place).toImage();
            QTest::keyClick(stop, Qt::Key_Tab);
            const QImage without = form.grab(place).toImage();
            int seen = 0;
            for (int y = 0; y < with.height(); ++y)
                for (int x = 0; x < with.width(); ++x)
                    seen += contrast(with.pixel(x, y), without.pixel(x, y)) >= 3;
            EXPECT_GE(seen, 24) << qPrintable(stop->objectName());
            names << stop->objectName();
        } while (QApplication::focusWidget() != first && names.size() < 60);
        return names.join(' ').toStdString();
    }

    int controls = 0;
};

TEST_F(AccessibilityTest, AssistiveProgramsHearOfEveryControl) {
    expectNamesAndRoles(heard(form));
    openPatient();
    expectNamesAndRoles(heard(form));
    EXPECT_GT(controls, 100);
    EXPECT_EQ(heard(find("Frame5")).role(), QAccessible::Grouping);
    EXPECT_EQ(heard(find("Frame5")).text(QAccessible::Name), "Zoom");
    EXPECT_EQ(heard(find("Slider1")).text(QAccessible::Description), "50 ms a frame");
    EXPECT_TRUE(heard(find("ezDicom")).text(QAccessible::Name).endsWith("Frame 1 / 30"));
    heard(find("thumb(2)")).actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    walk({{"click cmdHeader", "ezDicom.FileName=3.dcm"}});
    EXPECT_EQ(heard(find("headerPage")).text(QAccessible::Name), "Header of the file");
    for (int i = 0; i < 5; ++i) {
        auto& preview = heard(find(QString("thumb(%1)").arg(i)));
        EXPECT_TRUE(preview.text(QAccessible::Name).startsWith(QString("Preview %1").arg(i + 1)));
        EXPECT_EQ(bool(preview.state().selected), i == 2);
    }
}

TEST_F(AccessibilityTest, TheTabKeyReachesEveryControlInReadingOrder) {
    openPatient();
    find("FraTree").show();
    QCoreApplication::processEvents();
    EXPECT_EQ(ring(),
              "Open cmdExport cmdWindow cmdMagnify cmdLabel cmdPanning cmdZoom cmdInvert cmdSmooth cmdHeader "
              "cmdOverlay Command3 cmdExit TreeView1 qt_splithandle_ezDicom ezDicom thumb(0) thumb(1) "
              "thumb(2) thumb(3) thumb(4) sb1 cmdReverse cmdStop cmdPlay Option9 cmdPrev Slider2 cmdNext "
              "Option4 Slider1 chkRecordedRate cmdPrevImage cmdNextImage CmdStudyBack cmdStudyNext "
              "cmdSeriesBack cmNext");
}

}  // namespace
}  // namespace cinedisc::test
