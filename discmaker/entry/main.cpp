#include "discmaker/CommandLine.h"

#include <string>
#include <vector>

int main(int count, char** values) {
    const std::vector<std::string> arguments(values + 1, values + count);
    return cinedisc::discmaker::runCommandLine(arguments);
}
