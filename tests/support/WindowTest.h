#pragma once

#include "platform/widgets/EventGuard.h"

#include <QAction>
#include <QLabel>
#include <QTest>
#include <QTreeView>
#include <QWheelEvent>
#include <QWidget>
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
    QVariant view(const char* member) { return find("ezDicom").property(member); }
    QVariant preview(int index, const char* member) {
        return find(QString("thumb(%1)").arg(index)).property(member);
    }
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

    /// Uses every display tool by its button and by its menu item; a file is loaded and not inverted.
    void expectEveryDisplayToolWorks();
    /// With the keyboard on each of these controls; "" is where opening a pop-up puts it.
    void expectEscapeHidesThePopUps(const QStringList& places);

  private:
    QWidget* openPopUp(const QString& button, const QString& panel);

    EventGuard::FatalAction programsFatalAction_ = EventGuard::replaceFatalAction(
        [](const RunTimeError& error) { ADD_FAILURE() << "untrapped: " << error.what(); });
};

}  // namespace cinedisc::test
