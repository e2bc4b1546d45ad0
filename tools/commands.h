// The subcommands of typdesc. Each adds itself, with its options, to the command line; when it is chosen it leaves its
// ExitStatus in `status`.

#pragma once

#include "tools/loadDevice.h"

#include <CLI/CLI.hpp>

void addCheckCommand(CLI::App& app, int& status);
void addCompileCommand(CLI::App& app, int& status);
void addConfigCommand(CLI::App& app, int& status);
void addDiagCommand(CLI::App& app, int& status);
void addShowCommand(CLI::App& app, int& status);

/// FILE and what tells which device of a folder it is. The choice must live as long as the command.
void addDeviceOptions(CLI::App& command, DeviceChoice& choice);
