#pragma once

#include <QStringList>
#include <QWidget>
#include <gtest/gtest.h>

namespace cinedisc::test {

/// "name=text" of each control of a class whose name is the design's, sorted and joined by "|". No name may
/// occur twice.
template <typename Control>
std::string captionsOf(const QWidget& window) {
    QStringList all;
    for (const Control* control : window.findChildren<Control*>()) {
        const QString name = control->objectName();
        if (!name.isEmpty() && !name.startsWith("qt_")) all << name + '=' + control->text();
    }
    all.sort();
    EXPECT_EQ(all.removeDuplicates(), 0) << qPrintable(all.join('|'));
    return all.join('|').toStdString();
}

inline void expectUniqueNames(const QWidget& window) {
    QStringList names;
    for (const QWidget* widget : window.findChildren<QWidget*>())
        if (!widget->objectName().startsWith("qt_")) names << widget->objectName();
    names.removeAll("");
    EXPECT_EQ(names.removeDuplicates(), 0);
}

}  // namespace cinedisc::test
