// What typdesc tells the shell.

#pragma once

enum ExitStatus : int {
    kExitGood = 0,
    kExitFindings = 1, // a file was read and something is wrong with it
    kExitUnusable = 2, // wrong usage, or a file that cannot be read or written
};
