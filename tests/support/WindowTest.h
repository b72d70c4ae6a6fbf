#pragma once

#include "platform/widgets/EventGuard.h"
#include "tests/support/SampleFile.h"

#include <QAbstractButton>
#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QTest>
#include <QTreeView>
#include <QWheelEvent>
#include <gtest/gtest.h>

#include <stdexcept>

namespace cinedisc::test {

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
    QString text(const QString& label) { return find<QLabel>(label).text(); }
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
    void expectTheButtonsAndMenuItems(QStringList names) {
        QStringList commands;
        for (const QAction* action : window().findChildren<QAction*>())
            if (action->objectName().startsWith("mnu") && !action->menu()) commands << action->objectName();
        for (const QPushButton* button : window().findChildren<QPushButton*>())
            commands << button->objectName();
        names.sort();
        commands.sort();
        EXPECT_EQ(commands.join(' ').toStdString(), names.join(' ').toStdString());
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
    QWidget* openPopUp(const QString& button, const QString& panel) {
        click(button);
        EXPECT_TRUE(find(panel).isVisible());
        return &find(panel);
    }

    EventGuard::FatalAction programsFatalAction_ = EventGuard::replaceFatalAction(
        [](const RunTimeError& error) { ADD_FAILURE() << "untrapped: " << error.what(); });
};

}  // namespace cinedisc::test
