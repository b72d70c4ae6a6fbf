#pragma once

#include "platform/widgets/EventGuard.h"
#include "tests/support/SampleFile.h"

#include <QAbstractButton>
#include <QAction>
#include <QClipboard>
#include <QDir>
#include <QGuiApplication>
#include <QLabel>
#include <QMenu>
#include <QTest>
#include <QTreeView>
#include <QWheelEvent>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>
#include <vector>

namespace cinedisc::test {

/// How many times lighter sight takes one colour than the other, nearly as the Web Content Accessibility
/// Guidelines have it.
inline double contrast(QRgb one, QRgb other) {
    const auto luminance = [](QRgb colour) {
        const auto linear = [](int value) { return std::pow(value / 255.0, 2.2); };
        return 0.05 + 0.2126 * linear(qRed(colour)) + 0.7152 * linear(qGreen(colour)) +
               0.0722 * linear(qBlue(colour));
    };
    const auto [less, more] = std::minmax({luminance(one), luminance(other)});
    return more / less;
}

/// Drives a viewer window by the names of its controls. An untrapped run-time error fails the test.
class WindowTest : public testing::Test {
  protected:
    ~WindowTest() override { EventGuard::replaceFatalAction(programsFatalAction_); }

    virtual QWidget& window() = 0;

    void show() {
        window().show();
        // Where no window manager does so.
        window().activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window()));
    }
    template <typename Control = QWidget>
    Control& find(const QString& name) {
        auto* control = window().findChild<Control*>(name);
        if (!control) throw std::runtime_error("no control " + name.toStdString());
        return *control;
    }
    void click(const QString& name) { QTest::mouseClick(&find(name), Qt::LeftButton); }
    void choose(const QString& menuItem) { find<QAction>(menuItem).trigger(); }
    QVariant property(const QString& name, const char* member) {
        return find<QObject>(name).property(member);
    }
    QVariant view(const char* member) { return property("ezDicom", member); }
    /// Does what the first of each pair says, divided by "; ": "click cmdStop", "choose mnuStop", "node 1"
    /// (of the tree's first level), "focus sb1", "key Home" in the control that has the keyboard, "roll sb1
    /// -120" or a put, "Slider2.value=20". Then expects the second: "Timer4.active=false". The window's own
    /// properties stand without a name; of paths the end is given.
    void walk(const std::vector<std::pair<QString, QString>>& steps) {
        for (const auto& [acts, expected] : steps) {
            SCOPED_TRACE(qPrintable(acts));
            for (const QString& act : acts.split("; ", Qt::SkipEmptyParts)) {
                const QString what = act.section(' ', 0, 0), name = act.section(' ', 1, 1);
                if (what == "click") click(name);
                if (what == "choose") choose(name);
                if (what == "node") clickNode(name.toInt());
                if (what == "focus") find(name).setFocus();
                if (what == "roll") roll(name, act.section(' ', 2).toInt());
                if (what == "key") QTest::keySequence(QApplication::focusWidget(), QKeySequence(name));
                const bool isPut = what.contains('=');
                EXPECT_TRUE(isPut ? named(act)->setProperty(memberOf(act), act.section('=', 1))
                                  : QString("click choose node focus roll key").contains(what));
            }
            for (const QString& each : expected.split("; ", Qt::SkipEmptyParts)) {
                const QVariant held = named(each)->property(memberOf(each));
                QString value = held.isValid() ? held.toString() : "no property";
                const QString wanted = each.section('=', 1);
                if (value.contains(QDir::separator()) && !wanted.isEmpty())
                    value = QDir::fromNativeSeparators(value).right(wanted.size());
                EXPECT_EQ(value.toStdString(), wanted.toStdString()) << qPrintable(each);
            }
        }
    }
    /// Clicks a node of the patient tree's first level.
    void clickNode(int row) {
        auto& tree = find<QTreeView>("TreeView1");
        const QModelIndex node = tree.model()->index(row, 0);
        tree.scrollTo(node);
        QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, tree.visualRect(node).center());
    }
    void roll(const QString& name, int delta) {
        QWidget& target = find(name);
        QWheelEvent event(QPointF(2, 2), target.mapToGlobal(QPointF(2, 2)), {}, {0, delta}, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&target, &event);
    }
    /// "name=text" of each control of a class whose name is the design's, sorted and joined by "|".
    template <typename Control>
    std::string captionsIn(const QWidget& place) {
        QStringList all;
        for (const Control* control : place.findChildren<Control*>()) {
            const QString name = control->objectName();
            if (!name.isEmpty() && !name.startsWith("qt_")) all << name + '=' + control->text();
        }
        all.sort();
        return all.join('|').toStdString();
    }

    void expectThatNoNameOccursTwice() {
        QStringList names;
        for (const QWidget* widget : window().findChildren<QWidget*>())
            if (!widget->objectName().startsWith("qt_")) names << widget->objectName();
        names.removeAll("");
        EXPECT_EQ(names.removeDuplicates(), 0);
    }
    /// Uses every display tool by its button and by its menu item, and the keys; a file is loaded and not
    /// inverted.
    void expectEveryDisplayToolWorks() {
        const bool smooth = view("Smooth").toBool();
        struct Case {
            QString control;
            const char* member;
            QVariant value;
        };
        for (const Case& c : {Case{"cmdFit(1)", "ZoomPercent", 100}, {"cmdFit(1)", "BestFit", false},
                              {"cmdFit(2)", "ZoomPercent", 50},      {"cmdFit(3)", "ZoomPercent", 150},
                              {"cmdFit(4)", "ZoomPercent", 200},     {"cmdFit(0)", "BestFit", true},
                              {"cmdFit(0)", "ZoomPercent", 200},     {"mnu50", "ZoomPercent", 50},
                              {"mnu50", "BestFit", false},           {"mnu100", "ZoomPercent", 100},
                              {"mnu150", "ZoomPercent", 150},        {"mnu200", "ZoomPercent", 200},
                              {"mnuBestFit", "BestFit", true},       {"mnuBestFit", "ZoomPercent", 200},
                              {"cmdInvert", "Polarity", -1},         {"mnuInvert", "Polarity", 1},
                              {"cmdSmooth", "Smooth", !smooth},      {"mnuSmooth", "Smooth", smooth},
                              {"cmdHeader", "ShowHeader", true},     {"mnuHeader", "ShowHeader", false},
                              {"cmdMagnify", "MouseMode", 3},        {"cmdPanning", "MouseMode", 4},
                              {"cmdLabel", "MouseMode", 5},          {"cmdWindow", "MouseMode", 1},
                              {"mnuMagnify", "MouseMode", 3},        {"mnuPanning", "MouseMode", 4},
                              {"mnuLabel", "MouseMode", 5},          {"mnuWindow", "MouseMode", 1},
                              {"Option1", "BackgroundFill", false},  {"Option2", "BackgroundFill", true},
                              {"Option2", "BackgroundColor", 1},     {"Option3", "BackgroundColor", 0},
                              {"mnuNone", "BackgroundFill", false},  {"mnuBlack", "BackgroundColor", 1},
                              {"mnuBlack", "BackgroundFill", true},  {"mnuWhite", "BackgroundColor", 0},
                              {"Command3", "Option256", true}}) {
            QWidget* popUp = nullptr;
            if (c.control.startsWith("cmdFit")) popUp = openPopUp("cmdZoom", "Frame5");
            if (c.control.startsWith("Option")) popUp = openPopUp("cmdOverlay", "Frame6");
            c.control.startsWith("mnu") ? choose(c.control) : find<QAbstractButton>(c.control).click();
            EXPECT_EQ(view(c.member), c.value) << qPrintable(c.control);
            EXPECT_FALSE(popUp && popUp->isVisible()) << qPrintable(c.control);
        }
        openPopUp("cmdOverlay", "Frame6");
        find<QAbstractButton>("Option3").click();
        EXPECT_FALSE(find("Frame6").isVisible()) << "also with the choice in force";
        QGuiApplication::clipboard()->clear();
        QTest::keyClick(&window(), Qt::Key_C, Qt::ControlModifier);
        EXPECT_EQ(QGuiApplication::clipboard()->image().size(), sampleSize);
    }
    /// With the keyboard on each of these controls; "" is where opening a pop-up puts it.
    void expectEscapeHidesThePopUps(const QStringList& places) {
        for (const auto& [button, panel] : {std::pair{"cmdZoom", "Frame5"}, {"cmdOverlay", "Frame6"}}) {
            for (const QString& place : places) {
                const QWidget* popUp = openPopUp(button, panel);
                if (!place.isEmpty()) find(place).setFocus();
                QTest::keyClick(window().focusWidget(), Qt::Key_Escape);
                EXPECT_FALSE(popUp->isVisible()) << panel << " with the keyboard on " << qPrintable(place);
            }
        }
    }
    /// Number of the run-time error that ends the program in `act`; 0 for none.
    template <typename Act>
    int fatalErrorOf(Act&& act) {
        int number = 0;
        const auto before =
            EventGuard::replaceFatalAction([&](const RunTimeError& error) { number = error.number(); });
        act();
        EventGuard::replaceFatalAction(before);
        return number;
    }

  private:
    QObject* named(const QString& put) {
        const QString name = put.section('=', 0, 0);
        return name.contains('.') ? &find<QObject>(name.section('.', 0, 0)) : &window();
    }
    static QByteArray memberOf(const QString& put) {
        return put.section('=', 0, 0).section('.', -1).toLatin1();
    }
    QWidget* openPopUp(const QString& button, const QString& panel) {
        click(button);
        EXPECT_TRUE(find(panel).isVisible());
        return &find(panel);
    }

    EventGuard::FatalAction programsFatalAction_ = EventGuard::replaceFatalAction(
        [](const RunTimeError& error) { ADD_FAILURE() << "untrapped: " << error.what(); });
};

}  // namespace cinedisc::test
