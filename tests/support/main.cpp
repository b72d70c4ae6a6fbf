#include <QApplication>
#include <gtest/gtest.h>

namespace {

/// A warning that the toolkit logs during a test is a fault of the program: it fails the test.
void failOnWarning(QtMsgType type, const QMessageLogContext&, const QString& message) {
    fprintf(stderr, "%s\n", qPrintable(message));
    // The platform that shows nothing says so of windows' finer points.
    if (message.startsWith("This plugin does not support")) return;
#ifdef Q_OS_WIN
    if (message.startsWith("QTemporaryDir: Unable to remove")) return;  // some of its files are still open
#endif
    if (type != QtDebugMsg && type != QtInfoMsg) ADD_FAILURE() << "logged: " << qPrintable(message);
}

}  // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
#ifdef Q_OS_WIN
    qputenv("QT_QPA_FONTDIR", "C:/Windows/Fonts");  // the platform without a screen knows no fonts of its own
#endif
    testing::InitGoogleTest(&argc, argv);
    QApplication application(argc, argv);
    qInstallMessageHandler(failOnWarning);
    return RUN_ALL_TESTS();
}
