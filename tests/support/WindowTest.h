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
#include <map>
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
    /// The controls of a place that hold no others, and where they lie in it.
    static QMap<const QWidget*, QRect> partsOf(const QWidget& place) {
        QMap<const QWidget*, QRect> parts;
        for (const auto* widget : place.findChildren<QWidget*>()) {
            const bool isWhole = widget->findChildren<QWidget*>().isEmpty() ||
                                 widget->inherits("QTreeView") || widget->objectName() == "ezDicom";
            if (isWhole && widget->isVisible() && !widget->objectName().startsWith("qt_scroll"))
                parts[widget] = QRect(widget->mapTo(&place, QPoint()), widget->size());
        }
        return parts;
    }
    /// A place's rows from above: the room over each, then its controls with their texts and the room between
    /// them. A text is aligned to the "<" left, the ">" right or the "^" middle. "+" marks what is wider than
    /// it needs, "|" a line. Room is told where the design has it; "_" is any other, "/" none.
    static std::string rowsOf(const QWidget& place) {
        std::map<int, std::map<int, const QWidget*>> rows;  // by the middle, then from the left
        const auto parts = partsOf(place);
        for (const auto& [part, at] : parts.asKeyValueRange()) {
            const auto row = rows.lower_bound(at.center().y() - 1);
            const bool isNew = row == rows.end() || row->first > at.center().y() + 1;
            rows[isNew ? at.center().y() : row->first][at.x()] = part;
        }
        const auto room = [](int gap) {
            if (gap < 0) return QString("/");
            return QList{0, 1, 4, 5, 8, 9, 12, 17}.contains(gap) ? QString::number(gap) : QString("_");
        };
        QString told;
        int above = 0;
        for (const auto& [middle, row] : rows) {
            QRect all;
            QString line;
            int left = 0;
            for (const auto& [x, part] : row) {
                const auto* label = qobject_cast<const QLabel*>(part);
                const auto* button = qobject_cast<const QAbstractButton*>(part);
                line += " " + room(x - left) + " " + part->objectName();
                if (button)
                    line += "=" + (button->text().isEmpty() ? button->toolTip().section(':', 0, 0)
                                                            : button->text());
                if (label) line += "?<>?^"[label->alignment() & 7] + label->text();
                if (part->inherits("cinedisc::GroupLine"))
                    line += "|";
                else
                    all |= parts[part];
                if (!button && part->width() > part->sizeHint().width() + 3) line += "+";
                left = x + part->width();
            }
            told += room(all.top() - above) + line + " " + room(place.width() - left) + "\n";
            above = all.bottom() + 1;
        }
        return (told + room(place.height() - above)).toStdString();
    }

    /// Uses every display tool by its button and by its menu item, which is marked as in force then, and the
    /// keys; a file is loaded.
    void expectEveryDisplayToolWorks() {
        for (const QString& name :
             QString(
                 "cmdFit(1) cmdFit(2) cmdFit(3) cmdFit(4) cmdFit(0) mnu50 mnu100 mnu150 mnu200 mnuBestFit "
                 "cmdInvert mnuInvert cmdSmooth mnuSmooth cmdHeader mnuHeader cmdMagnify cmdPanning "
                 "cmdLabel cmdWindow mnuMagnify mnuPanning mnuLabel mnuWindow Option1=mnuNone "
                 "Option2=mnuBlack Option3=mnuWhite mnuNone mnuBlack mnuWhite")
                 .split(' ')) {
            QWidget* popUp = nullptr;
            if (name.startsWith("cmdFit")) popUp = openPopUp("cmdZoom", "Frame5");
            if (name.startsWith("Option")) popUp = openPopUp("cmdOverlay", "Frame6");
            const QString tool = name.section('=', 0, 0), marked = name.section('=', -1);
            const char* mark = marked.startsWith("mnu") ? "checked" : "active";
            const bool turnsOver = QString("Invert Smooth Header").contains(tool.mid(3));
            const bool isInForce = !turnsOver || !property(marked, mark).toBool();
            tool.startsWith("mnu") ? choose(tool) : find<QAbstractButton>(tool).click();
            EXPECT_EQ(property(marked, mark), isInForce) << qPrintable(name);
            EXPECT_FALSE(popUp && popUp->isVisible()) << qPrintable(name);
        }
        click("Command3");
        EXPECT_EQ(view("Option256"), true);
        QGuiApplication::clipboard()->clear();
        QTest::keyClick(&window(), Qt::Key_C, Qt::ControlModifier);
        EXPECT_EQ(QGuiApplication::clipboard()->image().size(), sampleSize);
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
