#include "app/Form1.h"
#include "control/frames/ImageLibrary.h"
#include "panels/Theme.h"
#include "tests/support/DiscBuilder.h"
#include "tests/support/SampleFile.h"
#include "tests/support/WindowTest.h"

#include <QAccessible>
#include <QImage>

#include <cmath>

namespace cinedisc::test {
namespace {

/// Nearly the relative luminance of the Web Content Accessibility Guidelines, and what they add to it.
double luminance(QRgb colour) {
    const auto linear = [](int value) { return std::pow(value / 255.0, 2.2); };
    return 0.05 + 0.2126 * linear(qRed(colour)) + 0.7152 * linear(qGreen(colour)) +
           0.0722 * linear(qBlue(colour));
}

class AccessibilityTest : public WindowTest {
  protected:
    static void SetUpTestSuite() { applyTheme(*qApp); }
    AccessibilityTest() {
        ImageLibrary::shared().lookAhead(std::chrono::minutes(1));
        show();
        click("Open");
    }
    QWidget& window() override { return form; }
    int namelessOrWithoutRole(QAccessibleInterface& at) {
        using Q = QAccessible;
        static const QList<Q::Role> used{Q::MenuItem, Q::ScrollBar, Q::Graphic, Q::Grip};
        int faults = 0;
        if (at.state().focusable || used.contains(at.role())) {
            ++controls;
            const bool isGood =
                !at.text(Q::Name).isEmpty() && at.role() != Q::NoRole && at.role() != Q::Client;
            EXPECT_TRUE(isGood) << at.role() << qPrintable(at.object() ? at.object()->objectName() : "");
            faults += !isGood;
        }
        for (int i = 0; i < at.childCount(); ++i)
            if (auto* child = at.child(i)) faults += namelessOrWithoutRole(*child);
        return faults;
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
                    seen +=
                        std::abs(std::log(luminance(with.pixel(x, y)) / luminance(without.pixel(x, y)))) >=
                        std::log(3);
            EXPECT_GE(seen, 24) << qPrintable(stop->objectName());
            names << stop->objectName();
        } while (QApplication::focusWidget() != first && names.size() < 60);
        return names.join(' ').toStdString();
    }

    DiscBuilder disc{{patientOf("Cine", {{5, 6, 7}})}, sampleFile};
    Form1 form{disc.path()};
    int controls = 0;
};

TEST_F(AccessibilityTest, AssistiveProgramsHearOfEveryControl) {
    EXPECT_EQ(namelessOrWithoutRole(heard(form)), 0);
    clickNode(0);
    click("cmdStop");
    EXPECT_EQ(namelessOrWithoutRole(heard(form)), 0);
    EXPECT_GT(controls, 100);
    EXPECT_EQ(heard(find("Frame5")).role(), QAccessible::Grouping);
    EXPECT_EQ(heard(find("Frame5")).text(QAccessible::Name), "Zoom");
    EXPECT_EQ(heard(find("Slider1")).text(QAccessible::Description), "50 ms a frame");
    EXPECT_TRUE(heard(find("ezDicom")).text(QAccessible::Name).endsWith("Frame 1 / 5"));
    heard(find("thumb(2)")).actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(view("FileName").toString().endsWith("3.dcm"));
    for (int i = 0; i < 5; ++i) {
        auto& preview = heard(find(QString("thumb(%1)").arg(i)));
        EXPECT_TRUE(preview.text(QAccessible::Name).startsWith(QString("Preview %1").arg(i + 1)));
        EXPECT_EQ(bool(preview.state().selected), i == 2);
    }
}

TEST_F(AccessibilityTest, TheTabKeyReachesEveryControlInReadingOrder) {
    const QString tools =
        "Open cmdExport cmdWindow cmdMagnify cmdLabel cmdPanning cmdZoom cmdInvert "
        "cmdSmooth cmdHeader cmdOverlay Command3 cmdExit ";
    const QString others =
        "ezDicom thumb(0) thumb(1) thumb(2) thumb(3) thumb(4) sb1 cmdReverse cmdStop cmdPlay Option9 cmdPrev "
        "Slider2 cmdNext Option4 Slider1 chkRecordedRate cmdPrevImage cmdNextImage CmdStudyBack cmdStudyNext "
        "cmdSeriesBack cmNext";
    QStringList withoutFiles = (tools + "TreeView1 qt_splithandle_ezDicom " + others).split(' ');
    withoutFiles.removeIf([&](const QString& name) {
        auto* control = form.findChild<QWidget*>(name);
        return control && !control->isEnabled();
    });
    EXPECT_LT(withoutFiles.size(), 32) << "commands that can do nothing yet";
    EXPECT_EQ(ring(), withoutFiles.join(' ').toStdString());
    clickNode(0);
    click("cmdStop");
    QCoreApplication::processEvents();
    EXPECT_EQ(ring(), (tools + others).toStdString());
}

}  // namespace
}  // namespace cinedisc::test
