#include "discmaker/CommandLine.h"
#include "platform/io/ProgramArguments.h"

#include <QCoreApplication>

#include <filesystem>

int main(int count, char** values) {
    const auto arguments = cinedisc::programArguments(count, values);
    const std::filesystem::path program = cinedisc::programPath();
    const QCoreApplication application(count, values);
    return cinedisc::discmaker::runCommandLine(arguments, program.parent_path());
}
