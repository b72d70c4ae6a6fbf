#include "platform/FileListBox.h"
#include "platform/Folder.h"
#include "platform/NaturalOrder.h"
#include "platform/Paths.h"
#include "platform/RunTimeError.h"
#include "platform/io/ProgramArguments.h"
#include "platform/widgets/Icon.h"
#include "platform/widgets/IndicatorOption.h"
#include "platform/widgets/LabelAdapter.h"
#include "platform/widgets/OptionAdapter.h"
#include "platform/widgets/OptionHandler.h"
#include "platform/widgets/PopUpPanel.h"
#include "platform/widgets/RangeAdapter.h"
#include "platform/widgets/TimerAdapter.h"

#include <QLabel>
#include <QPushButton>
#include <QSlider>
#include <QTemporaryDir>
#include <QTest>
#include <QVBoxLayout>
#include <gmock/gmock.h>

namespace cinedisc {
namespace {

const auto throwsInvalidValue = testing::ThrowsMessage<RunTimeError>("380: Invalid property value");

/// A window with two widgets in a column.
struct Column : QWidget {
    Column(QWidget* first, QWidget* second) {
        auto* column = new QVBoxLayout(this);
        column->addWidget(first);
        column->addWidget(second);
        show();
    }
};

TEST(OptionTest, HandlersRunAtAPersonsClickAndWhenCodeChangesTheSelection) {
    QRadioButton *forward = new QRadioButton, *reverse = new QRadioButton;
    const Column window(forward, reverse);
    OptionAdapter Option9(*forward), Option10(*reverse);
    QString runs;
    connectOption(*forward, [&] { runs += "f"; });
    connectOption(*reverse, [&] { runs += "r"; });
    QTest::mouseClick(forward, Qt::LeftButton, {}, QPoint(6, forward->height() / 2));
    forward->click();
    EXPECT_EQ(runs, "ff") << "a click also when it is selected already";
    QTest::keyClick(reverse, Qt::Key_Space);
    for (OptionAdapter* option : {&Option9, &Option9, &Option10, &Option9}) option->putValue(true);
    EXPECT_EQ(runs, "ffrfrf");
    EXPECT_TRUE(Option9.Value() && !Option10.Value());
    Option9.putValue(false);
    EXPECT_FALSE(Option9.Value() || Option10.Value());
    EXPECT_EQ(runs, "ffrfrf");
    Option10.putValue(true);
    Option9.putValue(true);
    EXPECT_FALSE(Option10.Value()) << "still one group";
}

TEST(RangeAdapterTest, ChangesAreToldOnceAndValuesOutsideTheRangeRefused) {
    for (const MaxPull pull : {MaxPull::RaisesChange, MaxPull::Silent}) {
        QSlider slider;
        slider.setRange(1, 20);
        RangeAdapter range(slider, pull);
        QList<int> changes;
        QObject::connect(&slider, &QSlider::valueChanged, [&](int value) { changes << value; });
        for (const int value : {20, 20, 1, 20}) range.putValue(value);
        for (const int outside : {0, -1, 21, 32768})
            EXPECT_THAT([&] { range.putValue(outside); }, throwsInvalidValue) << outside;
        EXPECT_THROW(range.putMax(0), RunTimeError);
        EXPECT_EQ(slider.minimum(), 1);
        EXPECT_EQ(range.Max(), 20);
        range.putMax(6);
        EXPECT_EQ(range.Value(), 6);
        range.putMax(30);
        range.putValue(30);
        EXPECT_EQ(changes, pull == MaxPull::Silent ? (QList{20, 1, 20, 30}) : (QList{20, 1, 20, 6, 30}));
    }
}

TEST(TimerAdapterTest, IntervalAndEnabledAreIndependentAndThePeriodGoesOn) {
    QTimer timer, later;
    TimerAdapter Timer4(timer);
    EXPECT_EQ(timer.timerType(), Qt::PreciseTimer);
    Timer4.putInterval(20);
    EXPECT_FALSE(timer.isActive());
    Timer4.putEnabled(true);
    // A period begun anew would end after that of a timer which was started meanwhile.
    later.setTimerType(Qt::PreciseTimer);
    later.start(20);
    Timer4.putEnabled(true);
    Timer4.putInterval(20);
    QString order;
    QObject::connect(&timer, &QTimer::timeout, [&] { order += "first "; });
    QObject::connect(&later, &QTimer::timeout, [&] { order += "later "; });
    EXPECT_TRUE(QTest::qWaitFor([&] { return order.contains("later"); }));
    EXPECT_TRUE(order.startsWith("first")) << qPrintable(order);
    Timer4.putInterval(10);
    EXPECT_TRUE(Timer4.Enabled());
    Timer4.putEnabled(false);
    EXPECT_FALSE(timer.isActive());
    for (const int interval : {0, -5}) EXPECT_THAT([&] { Timer4.putInterval(interval); }, throwsInvalidValue);
    EXPECT_EQ(Timer4.Interval(), 10);
}

TEST(LabelAdapterTest, ATextFromADiscIsShownAsItStands) {
    QLabel label;
    LabelAdapter Label5(label);
    Label5.putCaption("<h1>R & D</h1>");
    EXPECT_EQ(label.text(), "<h1>R & D</h1>");
    EXPECT_EQ(Label5.Caption(), label.text());
    EXPECT_EQ(label.textFormat(), Qt::PlainText);
}

TEST(IndicatorOptionTest, TheWordsBesideItCanBeClicked) {
    auto* words = new QLabel("Loop");
    auto* option = new IndicatorOption("Continuos", *words, nullptr);
    const Column window(words, option);
    EXPECT_EQ(option->text(), "Continuos");
    EXPECT_EQ(option->accessibleName(), "Loop");
    EXPECT_LT(option->sizeHint().width(), option->fontMetrics().horizontalAdvance("Continuos"));
    QTest::mouseClick(words, Qt::RightButton);
    EXPECT_FALSE(option->isChecked());
    QTest::mouseClick(words, Qt::LeftButton);
    EXPECT_TRUE(option->isChecked());
}

TEST(PopUpPanelTest, ItOpensUnderItsButtonInsideTheWindowAndEscapeHidesIt) {
    QWidget window;
    window.resize(400, 300);
    QPushButton button("Zoom", &window);
    button.setGeometry(350, 10, 50, 30);
    PopUpPanel panel(button, window), second(button, window);
    auto* rows = new QVBoxLayout(&panel);
    rows->addWidget(new QPushButton("a rather wide choice"));
    auto* choice = new QRadioButton("in force");
    rows->addWidget(choice);
    choice->setChecked(true);
    window.show();
    EXPECT_FALSE(panel.isVisible() || panel.isWindow());
    button.setFocus();
    panel.show();
    EXPECT_GE(panel.y(), button.geometry().bottom());
    for (const QSize& smaller : {window.size(), QSize(300, 250)}) {
        window.resize(smaller);
        EXPECT_TRUE(window.rect().contains(panel.geometry()));
    }
    EXPECT_EQ(window.focusWidget(), choice);
    second.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    for (int press = 0; press < 2; ++press) QTest::keyClick(&window, Qt::Key_Escape);
    EXPECT_FALSE(panel.isVisible() || second.isVisible());
    EXPECT_EQ(window.focusWidget(), &button);
}

TEST(IconTest, EveryIconDrawsSomethingOfItsOwnAtBothDensities) {
    for (const qreal density : {1.0, 2.0}) {
        QImage empty(QSize(iconEdge, iconEdge) * density, QImage::Format_ARGB32_Premultiplied);
        empty.fill(Qt::transparent);
        QList<QImage> drawn{empty};
        for (int i = int(Icon::None) + 1; i <= int(Icon::Program); ++i) {
            const QImage image = drawnIcon(Icon(i)).pixmap(QSize(iconEdge, iconEdge), density).toImage();
            EXPECT_EQ(image.size(), empty.size());
            drawn << image.convertToFormat(empty.format());
            drawn.last().setDevicePixelRatio(1);
            EXPECT_EQ(drawn.indexOf(drawn.last()), i - int(Icon::None)) << "same as another";
        }
    }
    EXPECT_EQ(drawnCursor(Icon::Patient, QPoint(12, 6)).hotSpot(), QPoint(10, 5));
}

TEST(PathsTest, AProgramsOwnPathIsWrittenAsPeopleDo) {
    for (const auto& [told, usual] : {std::pair{R"(\\?\UNC\ward\discs\x.exe)", R"(\\ward\discs\x.exe)"},
                                      {R"(UNC\ward\discs\x.exe)", R"(\\ward\discs\x.exe)"},
                                      {R"(\\?\C:\UNC\x.exe)", R"(C:\UNC\x.exe)"},
                                      {R"(\\ward\UNC\x.exe)", R"(\\ward\UNC\x.exe)"},
                                      {"/media/UNC/x", "/media/UNC/x"}})
        EXPECT_EQ(withoutLongForm(told), usual);
    EXPECT_EQ(programFolder(), folderPath(QCoreApplication::applicationDirPath()));
#ifndef Q_OS_WIN  // where these come from elsewhere
    char program[] = "x", first[] = "-1", second[] = "b c", *arguments[] = {program, first, second};
    EXPECT_EQ(programArguments(3, arguments), (std::vector<std::string>{"-1", "b c"}));
    qputenv("CINEDISC_PROGRAM", "/a disc/cinedisc");
    EXPECT_EQ(programFolder(), folderPath("/a disc")) << "whatever program runs";
    qunsetenv("CINEDISC_PROGRAM");
#endif
}

TEST(FolderTest, OneThatIsNotSetHoldsNothingAndAListShowsWhatItsPatternNames) {
    const Folder none;
    EXPECT_THROW(none.Title(), RunTimeError);
    EXPECT_THROW(none.Items(), RunTimeError);
    EXPECT_THROW(none.ParentFolder(), RunTimeError);
    const QTemporaryDir folder;
    for (const char* name : {"b.bmp", "a.dcm", "A10.DCM", "a9.dcm"})
        EXPECT_TRUE(QFile(folder.filePath(name)).open(QFile::WriteOnly));
    FileListBox File1;
    File1.putPath(folder.path());
    EXPECT_EQ(File1.ListCount(), 3);
    EXPECT_EQ(File1.List(2), "A10.DCM");
    File1.putPattern("*.bmp;a9*");
    EXPECT_EQ(File1.ListCount(), 2);
}

TEST(NaturalOrderTest, NumbersCountAndLetterCaseDoesNot) {
    const QStringList sorted{"",        "1", "01a", "2",  "02b", "2c",  "10",
                             "010.dcm", "a", "A0",  "A1", "a01", "a1b", "b"};
    for (qsizetype i = 0; i < sorted.size(); ++i)
        for (qsizetype k = 0; k < sorted.size(); ++k)
            EXPECT_EQ(naturalLess(sorted[i], sorted[k]), i < k) << i << " " << k;
}

}  // namespace
}  // namespace cinedisc
