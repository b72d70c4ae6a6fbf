#include "platform/widgets/TextViewer.h"

#include "platform/RunTimeError.h"

#ifdef Q_OS_WIN
#include <windows.h>
// windows.h must come first
#include <shellapi.h>
#else
#include <QProcess>
#include <QStandardPaths>
#endif

namespace cinedisc {

#ifdef Q_OS_WIN

void openTextViewer(const QString& path) {
    const std::wstring argument = QString("\"%1\"").arg(path).toStdWString();
    const auto answer =
        ShellExecuteW(nullptr, L"open", L"notepad.exe", argument.c_str(), nullptr, SW_SHOWMAXIMIZED);
    constexpr INT_PTR lastErrorCode = 32;
    if (reinterpret_cast<INT_PTR>(answer) <= lastErrorCode) throw RunTimeError::fileNotFound();
}

#else

void openTextViewer(const QString& path) {
    // The desktop's own choice first, then editors that open a window by themselves.
    static constexpr const char* programs[] = {
        "xdg-open",   "gnome-text-editor", "gedit",   "kwrite", "kate", "mousepad", "xed",  "pluma",
        "featherpad", "leafpad",           "l3afpad", "geany",  "gvim", "emacs",    "xedit"};
    for (const char* name : programs) {
        const QString program = QStandardPaths::findExecutable(name);
        if (!program.isEmpty() && QProcess::startDetached(program, {path})) return;
    }
    throw RunTimeError::fileNotFound();
}

#endif

}  // namespace cinedisc
