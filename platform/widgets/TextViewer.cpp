#include "platform/widgets/TextViewer.h"

#include "platform/RunTimeError.h"

#ifdef Q_OS_WIN
#include <windows.h>
// windows.h must come first
#include <shellapi.h>
#include <string>
#else
#include <QProcess>
#include <QProcessEnvironment>
#include <QStandardPaths>
#endif

namespace cinedisc {

#ifdef Q_OS_WIN

void openTextViewer(const QString& path) {
    const std::wstring argument = QString("\"%1\"").arg(path).toStdWString();
    std::wstring folder(MAX_PATH, L'\0');
    folder.resize(GetSystemDirectoryW(folder.data(), MAX_PATH));
    // The system's own first: a disc may hold a program of this name.
    for (const std::wstring& program : {folder + L"\\notepad.exe", std::wstring(L"notepad.exe")}) {
        const auto result = ShellExecuteW(nullptr, L"open", program.c_str(), argument.c_str(), folder.c_str(),
                                          SW_SHOWMAXIMIZED);
        constexpr INT_PTR lastErrorCode = 32;
        if (reinterpret_cast<INT_PTR>(result) > lastErrorCode) return;
    }
    throw RunTimeError::fileNotFound();
}

#else

namespace {

bool start(const QString& program, const QString& path) {
    // What the launcher of a disc says of this program's own parts is not for other programs.
    auto environment = QProcessEnvironment::systemEnvironment();
    for (const char* ours : {"CINEDISC_PROGRAM", "GCONV_PATH", "FONTCONFIG_FILE"}) environment.remove(ours);
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setProgram(program);
    process.setArguments({path});
    return process.startDetached();
}

}  // namespace

void openTextViewer(const QString& path) {
    // The desktop's own choice first, then editors that open a window by themselves.
    static constexpr const char* programs[] = {
        "xdg-open",   "gnome-text-editor", "gedit",   "kwrite", "kate", "mousepad", "xed",  "pluma",
        "featherpad", "leafpad",           "l3afpad", "geany",  "gvim", "emacs",    "xedit"};
    for (const char* name : programs) {
        const QString program = QStandardPaths::findExecutable(name);
        if (!program.isEmpty() && start(program, path)) return;
    }
    throw RunTimeError::fileNotFound();
}

#endif

}  // namespace cinedisc
