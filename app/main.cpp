// What the command line asks for.

#include <cstdio>
#include <string>
#include <system_error>
#include <vector>

#include "app/CommandLine.h"
#include "app/Version.h"
#include "app/linux/LinuxProgram.h"
#include "platform/linux/PosixProcess.h"

int main(int argc, char** argv) {
    using namespace noctra;
    PosixProcess* process = nullptr;
    try {
        process = &PosixProcess::start();
    } catch (const std::system_error& error) {
        return failToRun(std::string("cannot start a thread: ") + error.what());
    }
    const CommandLine commandLine =
        parseCommandLine(std::vector<std::string>(argv + 1, argv + argc));
    switch (commandLine.action) {
    case CommandLine::Action::help:
        std::fputs(helpText().c_str(), stdout);
        return 0;
    case CommandLine::Action::version:
        std::printf("noctra %s\n", std::string(programVersion).c_str());
        return 0;
    case CommandLine::Action::refuse:
        std::fprintf(stderr, "%s\n", std::string(usageLine).c_str());
        return 2;
    case CommandLine::Action::run:
        break;
    }
    return runLinuxProgram(*process, argc, argv, commandLine.urls);
}
