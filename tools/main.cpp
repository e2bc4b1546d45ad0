// typdesc: a command-line host of the library, for device and tool engineers.

#include "tools/commands.h"
#include "tools/exitStatus.h"
#include "tools/terminal.h"

#include <exception>
#include <iostream>

int main(int argc, char** argv)
{
    int status = kExitGood;
    try {
        CLI::App app("Compiles, checks, shows and applies PROFIBUS-DP device types.", "typdesc");
        app.set_version_flag("--version", "typdesc " TYPDESC_VERSION);
        app.require_subcommand(1);
        addCheckCommand(app, status);
        addCompileCommand(app, status);
        addShowCommand(app, status);
        addDiagCommand(app, status);
        addConfigCommand(app, status);
        try {
            app.parse(argc, argv);
        } catch (const CLI::ParseError& error) {
            status = app.exit(error) == 0 ? kExitGood : kExitUnusable;
        }
    } catch (const std::exception& error) {
        reportProblem("failed", error.what());
        return kExitUnusable;
    }
    if (std::cout.flush())
        return status;
    reportProblem("standard output", "cannot be written");
    return kExitUnusable;
}
