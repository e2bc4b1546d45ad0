// Whole files: read at once, written whole or not at all.

#pragma once

#include "host/inputFile.h"

#include <filesystem>
#include <string>
#include <string_view>

using typdescriptor::whyUnreadable;

/// Reads a file, or standard input.
/// @param problem  receives why that is not possible; it stays empty otherwise
std::string readFile(const std::string& name, std::string& problem);
std::string readStandardInput(std::string& problem);

/// Puts other bytes into a file, whole or not at all: they are written beside it, and what is there then takes its name,
/// its permissions and, where that is allowed, its owner. A link is followed.
/// @return empty, or what went wrong
std::string replaceFile(const std::string& name, std::string_view bytes);

/// Makes a file of bytes, or puts them into the one that is there, whole or not at all.
/// @return empty, or what went wrong
std::string saveFile(const std::string& name, std::string_view bytes);

/// Bytes under a file name of their own choice, for as long as the object lives: the library reads files alone, and the
/// name tells it the kind and the language.
class ScratchFile {
public:
    /// @param name  only its last part counts
    ScratchFile(const std::string& name, std::string_view bytes);
    ~ScratchFile();
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;

    /// Empty when the file could not be written.
    const std::string& path() const { return place; }

private:
    std::filesystem::path folder;
    std::string place;
};
