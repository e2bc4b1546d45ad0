// Files as the descriptor opens them.

#pragma once

#include "gsd/stream.h"
#include "typefile/scan.h"

#include <cerrno>
#include <cstdio>
#include <string_view>
#include <utility>

#if defined(_WIN32)
#include <io.h>
#else
#include <unistd.h>
#endif

namespace typdescriptor::internal {

/// "G" and "S" before the last letter, which is the language.
inline bool isGsdFileName(std::string_view name)
{
    return name.size() >= 3 && toUpper(name[name.size() - 3]) == 'G' && toUpper(name[name.size() - 2]) == 'S';
}

inline int fileNumber(std::FILE* file)
{
#if defined(_WIN32)
    return _fileno(file);
#else
    return fileno(file);
#endif
}

/// Opens a file. One that gets the descriptor number 0 counts as not opened: hosts take 0 for no file.
/// @param mode  "rb" or "ab"
inline File openFile(const char* name, const char* mode)
{
    File file(std::fopen(name, mode));
    return file && fileNumber(file.get()) > 0 ? std::move(file) : File();
}

/// Opens a file to write it anew. It loses what it holds only when that has succeeded, so that a refused one is as it
/// was.
inline File openEmptied(const char* name)
{
    File file = openFile(name, "ab");
    if (!file)
        return file;
#if defined(_WIN32)
    const int problem = _chsize_s(fileNumber(file.get()), 0);
#else
    const int problem = ftruncate(fileNumber(file.get()), 0) == 0 ? 0 : errno;
#endif
    // A device or a pipe holds nothing that could be cut off.
    return problem == 0 || problem == EINVAL ? std::move(file) : File();
}

} // namespace typdescriptor::internal
