#include "app/Form1.h"
#include "control/frames/ImageLibrary.h"
#include "panels/Theme.h"
#include "tests/support/DiscBuilder.h"
#include "tests/support/SampleFile.h"
#include "tests/support/WindowTest.h"

#include <QAccessible>
#include <QImage>

#include <cmath>
#include <set>

namespace cinedisc::test {
namespace {

/// Contrast of two colours as the Web Content Accessibility Guidelines define it, 1 to 21.
double contrast(QRgb a, QRgb b) {
    const auto luminance = [](QRgb colour) {
        const auto linear = [](int value) {
            const double c = value / 255.0;
            return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(qRed(colour)) + 0.7152 * linear(qGreen(colour)) +
               0.0722 * linear(qBlue(colour));
    };
    const double lighter = std::max(luminance(a), luminance(b)),
                 darker = std::min(luminance(a), luminance(b));
    return (lighter + 0.05) / (darker + 0.05);
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
    /// Every control that can be used, with its children.
    void expectNames(QAccessibleInterface* at) {
        using Q = QAccessible;
        static const std::set<Q::Role> used{Q::PushButton, Q::RadioButton, Q::CheckBox,     Q::Slider,
                                            Q::ScrollBar,  Q::MenuItem,    Q::ListItem,     Q::Tree,
                                            Q::TreeItem,   Q::Graphic,     Q::EditableText, Q::Grip};
        if (at->state().focusable || used.contains(at->role())) {
            const QString name = at->object() ? at->object()->objectName() : QString();
            EXPECT_FALSE(at->text(Q::Name).isEmpty()) << qPrintable(name) << " role " << at->role();
            EXPECT_TRUE(at->role() != Q::NoRole && at->role() != Q::Client) << qPrintable(name);
            ++controls;
        }
        for (int i = 0; i < at->childCount(); ++i)
            if (auto* child = at->child(i)) expectNames(child);
    }
    QAccessibleInterface& heard(const QString& name) {
        return *QAccessible::queryAccessibleInterface(&find(name));
    }
    QImage seen() { return form.grab().toImage().convertToFormat(QImage::Format_RGB32); }
    /// Pixels of a control that differ as much as the eye needs.
    static int changedPixels(const QImage& before, const QImage& after, const QRect& place) {
        int changed = 0;
        for (int y = place.top(); y <= place.bottom(); ++y)
            for (int x = place.left(); x <= place.right(); ++x)
                changed += contrast(before.pixel(x, y), after.pixel(x, y)) >= 3;
        return changed;
    }

    DiscBuilder disc{{patientOf("Cine", {{5, 6, 7}})}, sampleFile};
    Form1 form{disc.path()};
    int controls = 0;
};

TEST_F(AccessibilityTest, EveryControlHasARoleAndAName) {
    expectNames(QAccessible::queryAccessibleInterface(&form));
    clickNode(0);
    click("cmdStop");
    for (const char* opener : {"cmdZoom", "cmdOverlay"}) {
        click(opener);
        expectNames(QAccessible::queryAccessibleInterface(&form));
    }
    EXPECT_GT(controls, 150);
    EXPECT_EQ(heard("Frame5").role(), QAccessible::Grouping);
    EXPECT_EQ(heard("Frame5").text(QAccessible::Name), "Zoom");
    EXPECT_EQ(heard("Slider1").text(QAccessible::Description), "50 ms a frame");
    EXPECT_EQ(heard("ezDicom").role(), QAccessible::Graphic);
    EXPECT_TRUE(heard("ezDicom").text(QAccessible::Name).contains("Frame 1 / 5"));
    for (int i = 0; i < 5; ++i) {
        auto& preview = heard(QString("thumb(%1)").arg(i));
        EXPECT_TRUE(preview.text(QAccessible::Name).startsWith(QString("Preview %1").arg(i + 1)));
        EXPECT_EQ(bool(preview.state().selected), i == 0);
    }
    heard("thumb(2)").actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(view("FileName").toString().endsWith("3.dcm"));
}

TEST_F(AccessibilityTest, TheTabKeyReachesEveryControlInReadingOrderAndShowsWhereItIs) {
    const auto ring = [&] {
        QStringList names;
        QWidget* const first = &find("Open");
        first->setFocus(Qt::TabFocusReason);
        do {
            const QWidget& stop = *QApplication::focusWidget();
            const QString name = stop.objectName();
            const QRect place(stop.mapTo(&form, QPoint()), stop.size());
            const QImage with = seen();
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            EXPECT_GE(changedPixels(seen(), with, place), 16) << qPrintable(name);
            names << name;
        } while (QApplication::focusWidget() != first && names.size() < 60);
        return names.join(' ').toStdString();
    };
    const std::string tools =
        "Open cmdExport cmdWindow cmdMagnify cmdLabel cmdPanning cmdZoom cmdInvert cmdSmooth "
        "cmdHeader cmdOverlay Command3 cmdExit ";
    const std::string picture = "ezDicom thumb(0) thumb(1) thumb(2) thumb(3) thumb(4) sb1 ";
    const std::string cine =
        "cmdReverse cmdStop cmdPlay Option9 cmdPrev Slider2 cmdNext Option4 Slider1 "
        "chkRecordedRate cmdPrevImage cmdNextImage CmdStudyBack cmdStudyNext cmdSeriesBack "
        "cmNext";
    EXPECT_EQ(ring(), tools + "TreeView1 qt_splithandle_ezDicom " + picture + cine);
    clickNode(0);
    click("cmdStop");
    EXPECT_EQ(ring(), tools + picture + cine);
}

}  // namespace
}  // namespace cinedisc::test
