// Files as the descriptor opens them.

#pragma once

#include "gsd/file.h"

#include <cstdio>
#include <utility>

/// Opens a file. One that gets the descriptor number 0 counts as not opened: hosts take 0 for no file.
/// @param mode  "rb" or "wb"
inline File openFile(const char* name, const char* mode)
{
    File file(std::fopen(name, mode));
#if defined(_WIN32)
    const int number = file ? _fileno(file.get()) : 0;
#else
    const int number = file ? fileno(file.get()) : 0;
#endif
    return number > 0 ? std::move(file) : File();
}
