#include "discmaker/CommandLine.h"
#include "platform/io/ProgramArguments.h"

int main(int count, char** values) {
    return cinedisc::discmaker::runCommandLine(cinedisc::programArguments(count, values));
}
