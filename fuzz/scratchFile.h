// A file that is written again and again, in the folder for temporary files (TMPDIR; one in memory is much faster).

#pragma once

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <system_error>

#include <unistd.h>

class ScratchFile {
public:
    /// @param extension  with its dot; each extension of a process is a file of its own
    explicit ScratchFile(const std::string& extension)
        : path((std::filesystem::temp_directory_path() / ("fuzz" + std::to_string(getpid()) + extension)).string())
    {}
    ~ScratchFile()
    {
        std::error_code ignored;
        std::filesystem::remove(path, ignored);
    }
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;

    const char* name() const { return path.c_str(); }

    void write(std::string_view contents) const
    {
        std::FILE* const file = std::fopen(path.c_str(), "wb");
        const bool isWritten = file != nullptr && (contents.empty() || std::fwrite(contents.data(), 1, contents.size(),
                                                                                   file) == contents.size());
        if (!isWritten || std::fclose(file) != 0)
            throw std::system_error(errno, std::generic_category(), path);
    }

    std::string contents() const
    {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }

private:
    std::string path;
};
