// A compilation whose written type file is known to be whole.
//
// The library does not report a type file that it cannot write. So it is told to write into a fresh folder beside the
// place where the file is to go, the file found there is looked at, and only a whole one takes the place of what may
// stand there already. For standard output, a device or a pipe the system's temporary folder serves, and what the file
// holds is sent.

#pragma once

#include "descriptor/cTypDescriptor.h"

#include <filesystem>
#include <memory>
#include <string>

class CompiledFile {
public:
    /// Compiles a GSD file.
    /// @param outputName  where the type file goes; "-": to standard output; empty: the library's default name in the
    ///                    current directory
    CompiledFile(const std::string& gsdName, const std::string& outputName);
    ~CompiledFile();
    CompiledFile(const CompiledFile&) = delete;
    CompiledFile& operator=(const CompiledFile&) = delete;

    cTypDescriptor& descriptor() { return *compiled; }

    /// Puts the type file in its place. A file there is replaced at once or stays as it was, and hands on its
    /// permissions; the GSD file itself is never replaced.
    /// @return empty, or what went wrong
    std::string put();

    /// Where the type file goes; known once put() has succeeded when it has the default name.
    const std::filesystem::path& target() const { return targetPath; }
    bool isStandardOutput() const { return targetPath == "-"; }

private:
    void removeFolder();
    std::string sendTo(const std::filesystem::path& place, const std::string& text);

    std::filesystem::path folder; // empty when it cannot be made
    bool isBeside = false;        // else the folder is in the system's temporary one
    std::filesystem::path sourcePath;
    std::filesystem::path targetPath;
    std::unique_ptr<cTypDescriptor> compiled;
};
