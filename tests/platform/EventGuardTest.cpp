#include "platform/widgets/DrawWindows.h"
#include "platform/widgets/EndProgram.h"
#include "platform/widgets/EventGuard.h"
#include "tests/support/ModalDialog.h"

#include <QClipboard>
#include <QCloseEvent>
#include <QMessageBox>
#include <QTest>
#include <QWindow>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

namespace cinedisc {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class EventGuardTest : public testing::Test {
  protected:
    void SetUp() override {
        testing::GTEST_FLAG(death_test_style) = "threadsafe";
        former = EventGuard::replaceFatalAction([this](const RunTimeError& error) {
            told += error.number();
            if (whileTelling) whileTelling();
        });
    }
    void TearDown() override { EventGuard::replaceFatalAction(former); }

    EventGuard::FatalAction former;
    std::function<void()> whileTelling;
    QList<int> told;
};

TEST_F(EventGuardTest, EveryKindOfExceptionIsToldAsARunTimeErrorAndNoOtherHandlerRunsMeanwhile) {
    int runs = 0;
    const auto handler = EventGuard::guarded([&] { ++runs; });
    whileTelling = [&] {
        handler();
        EventGuard::protect([] { throw std::bad_alloc(); });
    };
    EventGuard::run([] { throw RunTimeError::objectNotSet(); });
    EventGuard::run([] { throw std::bad_alloc(); });
    EventGuard::run([] { throw std::length_error("x"); });
    EventGuard::run([] { throw 1; });
    EXPECT_EQ(told, (QList<int>{91, 7, 51, 51})) << "one box each is enough";
    EXPECT_EQ(runs, 0);
    handler();
    EXPECT_EQ(runs, 1);
}

TEST_F(EventGuardTest, WhileAHandlerWaitsWindowsAreDrawnAndNothingElseBegins) {
    struct : QWidget {
        void paintEvent(QPaintEvent*) override { ++drawn; }
        int drawn = 0;
    } window;
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    int ticks = 0, runs = 0;
    QTimer clock;
    QObject::connect(&clock, &QTimer::timeout, [&] { ++ticks; });
    clock.start(0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return ticks > 0; }));

    const QSize size = window.size(), wider = size + QSize(30, 20);
    QMetaObject::invokeMethod(&window, EventGuard::guarded([&] { ++runs; }), Qt::QueuedConnection);
    window.windowHandle()->resize(wider);
    QCoreApplication::postEvent(window.windowHandle(), new QCloseEvent);
    window.update();
    ticks = 0;
    const int drawn = window.drawn;
    for (const QDeadlineTimer end(20000); window.drawn == drawn && !end.hasExpired();) drawWindows();
    EXPECT_GT(window.drawn, drawn);
    EXPECT_EQ(ticks + runs, 0);
    EXPECT_EQ(window.size(), size);
    EXPECT_TRUE(QTest::qWaitFor([&] { return ticks > 0 && window.size() == wider && !window.isVisible(); }));
}

/// Tells what must not happen when a program ends at once.
class Window : public QWidget {
  public:
    ~Window() override { fprintf(stderr, "destroyed "); }

  protected:
    void closeEvent(QCloseEvent*) override { fprintf(stderr, "unloaded "); }
};

const auto ended = Not(testing::AnyOf(HasSubstr("unloaded"), HasSubstr("destroyed")));

TEST_F(EventGuardTest, AnUntrappedErrorShowsItsBoxAndEndsTheProcessWithoutUnloading) {
    const auto fail = [this] {
        EventGuard::replaceFatalAction(former);
        Window window;
        window.show();
        test::ModalDialog<QMessageBox> answer([](QMessageBox& shown) {
            fprintf(stderr, "[%s|%s|%d] ", qPrintable(shown.windowTitle()), qPrintable(shown.text()),
                    shown.textFormat() == Qt::PlainText);
            shown.accept();
        });
        EventGuard::run([] { throw RunTimeError::objectNotSet(); });
    };
    const auto box = HasSubstr(
        "[Cine Disc Viewer|Run-time error '91':\n\nObject variable or With block variable not set|1]");
    EXPECT_EXIT(fail(), testing::ExitedWithCode(1), AllOf(box, ended));
}

TEST_F(EventGuardTest, TheProgramEndsAtOnceWithoutUnloadingAlsoWithACopyOnTheClipboard) {
    const auto end = [](const QString& copied) {
        auto* window = new Window;
        window->show();
        if (!copied.isEmpty()) QGuiApplication::clipboard()->setText(copied);
        endProgram();
    };
    EXPECT_EXIT(end(""), testing::ExitedWithCode(0), ended);
    EXPECT_EXIT(end("header"), testing::ExitedWithCode(0), ended);
}

}  // namespace
}  // namespace cinedisc
