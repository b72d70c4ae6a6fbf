#pragma once

#include "control/ezDICOMX.h"
#include "tests/control/FakeDicomFile.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QLineEdit>
#include <QScreen>
#include <QTest>
#include <gtest/gtest.h>

namespace cinedisc::test {

/// Where two pictures differ by so many greys.
inline QRect changed(const QImage& before, const QImage& after, int by = 0) {
    QRect all;
    for (int y = 0; y < before.height(); ++y)
        for (int x = 0; x < before.width(); ++x)
            if (const QRgb a = before.pixel(x, y), b = after.pixel(x, y);
                a != b && std::abs(qRed(a) - qRed(b)) >= by)
                all |= QRect(x, y, 1, 1);
    return all;
}

/// A view over files that a test makes, shown in a window.
class ViewFixture : public testing::Test {
  protected:
    explicit ViewFixture(ViewRole role = ViewRole::Main, QSize size = {140, 120})
        : view(role, nullptr, fake.library) {
        view.resize(size);
        view.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&view));
    }

    /// Loads a file made by a test.
    void load(std::shared_ptr<const dicom::DicomFile> file, const QString& path = "/run") {
        fake.files[path.toStdString()] = std::move(file);
        view.putFileName(path);
    }

    QImage seen() { return view.grab().toImage().convertToFormat(QImage::Format_RGB32); }
    /// What the window has on the screen, drawn when it last was.
    QImage onScreen() const {
        const QPixmap shown = view.screen()->grabWindow(view.winId());
        return shown.copy(view.rect()).toImage().convertToFormat(QImage::Format_RGB32);
    }
    QImage copied() {
        EXPECT_TRUE(view.CopyToClipboard());
        return QGuiApplication::clipboard()->image().convertToFormat(QImage::Format_RGB32);
    }
    int greyAt(int x, int y) { return qRed(seen().pixel(x, y)); }
    QLineEdit* editor() { return view.findChild<QLineEdit*>("labelEditor"); }

    /// Does one step after the other, divided by ";": "ZoomPercent 200" puts, "ZoomPercent is 200" expects,
    /// "drag 1 2 30 40", "keep a" remembers what is seen, "like a" and "unlike a" expect it ... and a
    /// fixture's own words.
    void run(const QString& script) {
        for (const QString& step : script.split(';')) {
            SCOPED_TRACE(qPrintable(step));
            QStringList words = step.simplified().split(' ');
            const QString what = words.takeFirst(), first = words.value(0), value = words.join(' ');
            if (ownWords.contains(what)) ownWords[what](value);
            const QPoint at(first.toInt(), words.value(1).toInt());
            const QPoint to(words.value(2).toInt(), words.value(3).toInt());
            QWidget* const typedIn =
                editor() && editor()->isVisible() ? editor() : static_cast<QWidget*>(&view);
            const auto button = words.value(2) == "right" ? Qt::RightButton : Qt::LeftButton;
            if (what == "press" || what == "click" || what == "drag")
                QTest::mousePress(&view, button, {}, at);
            if (what == "move") QTest::mouseMove(&view, at);
            if (what == "drag") QTest::mouseMove(&view, to);
            if (what == "double") QTest::mouseDClick(&view, button, {}, at);
            if (what == "release" || what == "click" || what == "drag" || what == "double")
                QTest::mouseRelease(&view, button, {}, what == "drag" ? to : at);
            if (what == "type") QTest::keyClicks(typedIn, value);
            if (what == "key") QTest::keySequence(typedIn, QKeySequence(first));
            if (what == "keep") kept_[first] = seen();
            if (what == "like" || what == "unlike") {
                EXPECT_EQ(seen() == kept_[first], what == "like");
            }
            if (!what.front().isUpper()) continue;
            EXPECT_TRUE(first == "is" || view.setProperty(qPrintable(what), value));
            if (first == "is") {
                EXPECT_EQ("is " + view.property(qPrintable(what)).toString(), value);
            }
        }
    }

    FakeLibrary fake;
    ezDICOMX view;
    std::map<QString, std::function<void(const QString&)>> ownWords;

  private:
    std::map<QString, QImage> kept_;
};

}  // namespace cinedisc::test
