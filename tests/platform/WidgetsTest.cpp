#include "platform/FileListBox.h"
#include "platform/Folder.h"
#include "platform/NaturalOrder.h"
#include "platform/Paths.h"
#include "platform/RunTimeError.h"
#include "platform/io/ProgramArguments.h"
#include "platform/io/TextEncoding.h"
#include "platform/widgets/ElidedLabel.h"
#include "platform/widgets/Icon.h"
#include "platform/widgets/IndicatorOption.h"
#include "platform/widgets/LabelAdapter.h"
#include "platform/widgets/OptionAdapter.h"
#include "platform/widgets/OptionHandler.h"
#include "platform/widgets/PatientTreeView.h"
#include "platform/widgets/PlainTextDelegate.h"
#include "platform/widgets/PopUpPanel.h"
#include "platform/widgets/RangeAdapter.h"
#include "platform/widgets/TimerAdapter.h"
#include "platform/widgets/TreeAdapter.h"

#include <QHelpEvent>
#include <QLabel>
#include <QPushButton>
#include <QSlider>
#include <QTemporaryDir>
#include <QTest>
#include <QToolTip>
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
        range.putMax(6);
        EXPECT_EQ(range.Value(), 6);
        range.putMax(30);
        range.putValue(30);
        EXPECT_EQ(changes, pull == MaxPull::Silent ? (QList{20, 1, 20, 30}) : (QList{20, 1, 20, 6, 30}));
    }
}

TEST(TimerAdapterTest, IntervalAndEnabledAreIndependentAndThePeriodGoesOn) {
    QTimer timer;
    TimerAdapter Timer4(timer);
    EXPECT_EQ(timer.timerType(), Qt::PreciseTimer);
    Timer4.putInterval(20);
    EXPECT_FALSE(timer.isActive());
    Timer4.putEnabled(true);
    const int period = timer.timerId();
    Timer4.putEnabled(true);
    Timer4.putInterval(20);
    EXPECT_EQ(timer.timerId(), period) << "not begun anew";
    Timer4.putInterval(10);
    EXPECT_TRUE(Timer4.Enabled());
    Timer4.putEnabled(false);
    EXPECT_FALSE(timer.isActive());
    for (const int interval : {0, -5}) EXPECT_THAT([&] { Timer4.putInterval(interval); }, throwsInvalidValue);
    EXPECT_EQ(Timer4.Interval(), 10);
}

TEST(ElidedLabelTest, ATextFromADiscIsDrawnAsItStandsAndToldWholeWhereItIsCut) {
    ElidedLabel label("", "sample");
    LabelAdapter Label5(label);
    const auto tip = [&] {
        QHelpEvent event(QEvent::ToolTip, {2, 2}, {2, 2});
        QCoreApplication::sendEvent(&label, &event);
        return QToolTip::text();
    };
    label.setToolTip("help");
    label.resize(200, 20);
    const QImage empty = label.grab().toImage();
    Label5.putCaption("<b>R & D</b>");
    EXPECT_EQ(Label5.Caption(), "<b>R & D</b>");
    EXPECT_NE(label.grab().toImage(), empty);
    EXPECT_EQ(tip(), "help");
    label.resize(40, 20);
    EXPECT_EQ(tip(), "<p>&lt;b&gt;R &amp; D&lt;/b&gt;</p>");
}

TEST(IndicatorOptionTest, TheWordsBesideItCanBeClicked) {
    auto* words = new QLabel("Loop");
    auto* option = new IndicatorOption("Continuos", *words, nullptr);
    const Column window(words, option);
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
    QPushButton elsewhere("Open", &window), button("Zoom", &window);
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
    for (QWidget* const pressed :
         {static_cast<QWidget*>(choice), static_cast<QWidget*>(&button), static_cast<QWidget*>(&elsewhere)}) {
        panel.show();
        QTest::mousePress(pressed, Qt::LeftButton);
        EXPECT_EQ(panel.isVisible(), pressed != &elsewhere);
    }
}

TEST(TreeAdapterTest, AMouseClickAndReturnOpenANodeAlsoInTheFullestCatalogue) {
    PatientTreeView view;
    QLabel remark;
    TreeAdapter tree(view, remark, {drawnIcon(Icon::Patient)});
    QList<int> clicked;
    tree.onNodeClick([&](int node) {
        EXPECT_EQ(tree.selectedNode(), node);
        clicked += node;
    });
    view.resize(300, 400);
    view.show();
    const QImage empty = view.grab().toImage();
    view.setHint("Open a disc.");
    EXPECT_NE(view.grab().toImage(), empty);
    constexpr int patients = 32768;
    for (int i = 0; i < patients; ++i) {
        const int patient = tree.addNode(0, i ? QString::number(i) : "<b>R&D</b>");
        tree.addNode(tree.addNode(tree.addNode(patient, "study"), "series"), "entry");
    }
    tree.putTag(1, "Patient001");
    tree.putImage(1, 1);
    const QModelIndex first = view.model()->index(0, 0);
    EXPECT_FALSE(first.data(Qt::DecorationRole).value<QIcon>().isNull());
    EXPECT_EQ(tree.tag(1), "Patient001");

    EXPECT_NE(view.grab().toImage(), empty);
    EXPECT_TRUE(view.accessibleDescription() == "Open a disc." && view.viewport()->y() == view.frameWidth());
    const QModelIndex last = view.model()->index(patients - 1, 0);
    view.scrollTo(last);
    const QPoint center = view.visualRect(last).center();
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, center);
    QTest::keyClick(&view, Qt::Key_Up);
    const int node = 4 * patients - 3;
    EXPECT_EQ(clicked, QList<int>{node}) << "moving the selection opens nothing";
    QTest::keyClick(&view, Qt::Key_Return);
    EXPECT_EQ(clicked, (QList<int>{node, node - 4}));
    // Expanding and collapsing is no click.
    for (const bool expanded : {true, false}) {
        tree.putExpanded(node, expanded);
        EXPECT_EQ(view.isExpanded(last), expanded);
    }
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {},
                      QPoint(view.visualRect(last).left() / 2, center.y()));
    EXPECT_TRUE(view.isExpanded(last));
    EXPECT_EQ(clicked.size(), 2);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, center);
    QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, center);
    EXPECT_TRUE(view.isExpanded(last)) << "nor is a double click more than a click";
    const auto tip = [&] {
        QHelpEvent event(QEvent::ToolTip, {60, 5}, {60, 5});
        QCoreApplication::sendEvent(view.viewport(), &event);
        return QToolTip::text();
    };
    view.scrollTo(first);
    EXPECT_EQ(tip(), "");
    view.resize(70, 400);
    EXPECT_EQ(tip(), "<p>&lt;b&gt;R&amp;D&lt;/b&gt;</p>") << "which is cut";
    for (const char* words : {"damaged", ""}) {
        tree.putRemark(words);
        EXPECT_EQ(remark.text(), words);
        EXPECT_EQ(remark.isHidden(), *words == 0);
    }
}

TEST(PlainTextTest, ATextFromADiscIsDrawnAsOneLineOfBoundedLength) {
    EXPECT_EQ(oneLine("a\nb\tc\u2028d\r\n"), "a b c d  ");
    EXPECT_LT(oneLine(QString(1'000'000, 'x')).size(), 1000);
}

TEST(IconTest, EveryIconDrawsWhatIsItsOwnAtBothDensitiesInTheColourOfItsState) {
    const auto drawn = [](Icon icon, qreal density = 1, QIcon::Mode mode = {}, QIcon::State on = QIcon::Off) {
        QImage image = drawnIcon(icon).pixmap(QSize(iconEdge, iconEdge), density, mode, on).toImage();
        image.setDevicePixelRatio(1);
        return image.convertToFormat(QImage::Format_ARGB32);
    };
    /// How many thousandths of a picture are covered, or are so in a colour.
    const auto ink = [](const QImage& image, QRgb colour = 0) {
        double sum = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                sum += colour ? image.pixel(x, y) == colour : qAlpha(image.pixel(x, y)) / 255.0;
        return 1000 * sum / image.width() / image.height();
    };
    constexpr int inks[] = {0,   238, 175, 183, 94,  130, 205, 211, 190, 312, 142, 128,
                            183, 140, 140, 164, 164, 170, 170, 54,  54,  233, 847};
    for (const qreal density : {1.0, 2.0})
        for (int i = 0; i <= int(Icon::Program); ++i)
            EXPECT_NEAR(ink(drawn(Icon(i), density)), inks[i], 8) << i;
    for (int i = int(Icon::Play); i < int(Icon::Patient); i += 2)  // and the same mirrored
        EXPECT_NEAR(ink(drawn(Icon(i)).copy(0, 0, 7, 20)), ink(drawn(Icon(i + 1)).copy(13, 0, 7, 20)), 8);
    EXPECT_GT(ink(drawn(Icon::Play).copy(0, 0, 10, 20)), ink(drawn(Icon::Play).copy(10, 0, 10, 20)));
    using P = QPalette;
    const P palette = QGuiApplication::palette();
    for (const auto& [mode, on, colour] :
         {std::tuple{QIcon::Normal, QIcon::Off, palette.color(P::ButtonText)},
          {QIcon::Disabled, QIcon::Off, palette.color(P::Disabled, P::ButtonText)},
          {QIcon::Disabled, QIcon::On, palette.color(P::Base)}})
        EXPECT_EQ(drawn(Icon::Play, 1, mode, on).pixelColor(10, 10), colour);
    const QCursor cursor = drawnCursor(Icon::Magnify, QPoint(12, 6));
    EXPECT_EQ(cursor.hotSpot(), QPoint(10, 5));
    EXPECT_NEAR(ink(cursor.pixmap().toImage()), 355, 8);
    EXPECT_NEAR(ink(cursor.pixmap().toImage(), 0xffffffff), 38, 8);
    EXPECT_NEAR(ink(drawn(Icon::Program), 0xff1c2733), 300, 8);
    EXPECT_NEAR(ink(drawn(Icon::Program, 4), 0xff31404f), 40, 5);
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

TEST(TextEncodingTest, AByteThatDoesNotBelongIsReplacedAndWhatFollowsIsRead) {
    EXPECT_EQ(decodeText("a\xFFz\xFF", "UTF-8"), "a\xEF\xBF\xBDz\xEF\xBF\xBD");
#ifndef Q_OS_WIN  // where not every machine knows this encoding
    EXPECT_EQ(decodeText("\x1B$B0\xFFz", "ISO-2022-JP"), "\xEF\xBF\xBD\xEF\xBF\xBDz");
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
    EXPECT_EQ(File1.positionOf(File1.fullPath(2)), 2);
    const std::function<void()> afresh[] = {[&] { File1.putPath(folder.path()); }, [&] { File1.Refresh(); },
                                            [&] { File1.putPattern("*.bmp;a9*"); }};
    for (const auto& list : afresh) {
        File1.putListIndex(1);
        list();
        EXPECT_EQ(File1.ListIndex(), -1);
    }
    EXPECT_EQ(File1.ListCount(), 2);
    for (const char* name : {"b", "a10"}) QDir(folder.path()).mkdir(name);
    const FolderItems items = Folder::NameSpace(folder.path()).Items();
    QString names;
    for (const FolderItem& item : items) names += QFileInfo(item.Path()).fileName() + " ";
    EXPECT_EQ(names, "a10 b a.dcm a9.dcm A10.DCM b.bmp ");
    EXPECT_EQ(items.subFolders().Count(), 2);
    EXPECT_TRUE(items.Item().IsFolder());
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
