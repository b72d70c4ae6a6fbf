#pragma once

#include "control/ezDICOMX.h"
#include "tests/control/FakeDicomFile.h"

#include <QImage>
#include <QScreen>
#include <QTest>
#include <gtest/gtest.h>

namespace cinedisc::test {

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
    int greyAt(int x, int y) { return qRed(seen().pixel(x, y)); }

    void drag(QPoint from, QPoint to) {
        QTest::mousePress(&view, Qt::LeftButton, {}, from);
        QTest::mouseMove(&view, to);
        QTest::mouseRelease(&view, Qt::LeftButton, {}, to);
    }
    void dragAndEscape(QPoint from, QPoint to) {
        QTest::mousePress(&view, Qt::LeftButton, {}, from);
        QTest::mouseMove(&view, to);
        QTest::keyClick(&view, Qt::Key_Escape);
        QTest::mouseRelease(&view, Qt::LeftButton, {}, to);
    }

    FakeLibrary fake;
    ezDICOMX view;
};

}  // namespace cinedisc::test
