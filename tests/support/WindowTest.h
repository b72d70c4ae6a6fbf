#pragma once

#include "platform/widgets/EventGuard.h"

#include <QAction>
#include <QLabel>
#include <QTest>
#include <QTreeView>
#include <gtest/gtest.h>

#include <stdexcept>

namespace cinedisc::test {

/// Drives a viewer window by the names of its controls. An untrapped run-time error fails the test.
class WindowTest : public testing::Test {
  protected:
    ~WindowTest() override { EventGuard::replaceFatalAction(programsFatalAction_); }

    virtual QWidget& window() = 0;

    void show();
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
    void clickNode(int row);
    void roll(const QString& name, int delta);
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

    void expectThatNoNameOccursTwice();
    void expectTheButtonsAndMenuItems(QStringList names);
    /// Uses every display tool by its button and by its menu item, and the keys; a file is loaded and not
    /// inverted.
    void expectEveryDisplayToolWorks();
    /// With the keyboard on each of these controls; "" is where opening a pop-up puts it.
    void expectEscapeHidesThePopUps(const QStringList& places);
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
    QWidget* openPopUp(const QString& button, const QString& panel);

    EventGuard::FatalAction programsFatalAction_ = EventGuard::replaceFatalAction(
        [](const RunTimeError& error) { ADD_FAILURE() << "untrapped: " << error.what(); });
};

}  // namespace cinedisc::test
