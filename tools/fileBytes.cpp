#include "tools/fileBytes.h"

#include "gsdfile/document.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

std::string lastError(const std::string& what)
{
    return what + ": " + std::generic_category().message(errno);
}

/// Reads to the end; positions in a file have 32 bits.
/// @param expected  how many bytes there may be
std::string readAll(int handle, std::size_t expected, std::string& problem)
{
    constexpr std::size_t kAtLeast = 4096;
    std::string bytes(std::max(expected + 1, kAtLeast), '\0'); // the last read finds the end
    std::size_t size = 0;
    for (;;) {
        if (size == bytes.size())
            bytes.resize(2 * size);
        const ssize_t count = read(handle, bytes.data() + size, bytes.size() - size);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            problem = lastError("cannot be read");
        else if (size + static_cast<std::size_t>(count) > typdescriptor::gsdfile::Document::kMostBytes)
            problem = "is larger than 4 GB";
        if (count <= 0 || !problem.empty())
            break;
        size += static_cast<std::size_t>(count);
    }
    bytes.resize(size);
    return bytes;
}

bool writeAll(int handle, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t count = write(handle, bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR)
            return false;
        bytes.remove_prefix(count < 0 ? 0 : static_cast<std::size_t>(count));
    }
    return fsync(handle) == 0;
}

} // namespace

std::string readFile(const std::string& name, std::string& problem)
{
    const int handle = open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK); // a pipe does not keep us waiting
    struct stat found = {};
    std::string bytes;
    if (handle < 0 || fstat(handle, &found) != 0 || !S_ISREG(found.st_mode)) {
        problem = whyUnreadable(name);
        if (problem.empty())
            problem = "cannot be read";
    } else {
        bytes = readAll(handle, static_cast<std::size_t>(found.st_size), problem);
    }
    if (handle >= 0)
        close(handle);
    return bytes;
}

std::string readStandardInput(std::string& problem)
{
    return readAll(STDIN_FILENO, 0, problem);
}

std::string replaceFile(const std::string& name, std::string_view bytes)
{
    std::error_code error;
    const fs::path real = fs::canonical(name, error);
    struct stat before = {};
    if (error || stat(real.c_str(), &before) != 0)
        return "no such file";
    if (access(real.c_str(), W_OK) != 0)
        return "may not be written";
    std::string beside = (real.parent_path() / ".typdesc-XXXXXX").string();
    const int handle = mkostemp(beside.data(), O_CLOEXEC);
    if (handle < 0)
        return lastError("cannot write beside it");
    const bool isOwned = fchown(handle, before.st_uid, before.st_gid) == 0; // else it is ours from now on
    const mode_t rights = before.st_mode & (isOwned ? 07777U : 0777U);
    const bool isWhole = writeAll(handle, bytes) && fchmod(handle, rights) == 0;
    if (close(handle) == 0 && isWhole && rename(beside.c_str(), real.c_str()) == 0)
        return {};
    std::string problem = lastError("cannot be written");
    unlink(beside.c_str());
    return problem;
}

std::string saveFile(const std::string& name, std::string_view bytes)
{
    std::error_code error;
    if (fs::is_regular_file(name, error))
        return replaceFile(name, bytes);
    std::ofstream sink(name, std::ios::binary);
    sink << bytes;
    sink.close();
    return sink ? std::string() : "cannot be written";
}

ScratchFile::ScratchFile(const std::string& name, std::string_view bytes)
{
    std::error_code error;
    std::string fresh = (fs::temp_directory_path(error) / "typdesc-XXXXXX").string();
    if (error || mkdtemp(fresh.data()) == nullptr)
        return;
    folder = fresh;
    const fs::path file = folder / fs::path(name).filename();
    std::ofstream sink(file, std::ios::binary);
    sink << bytes;
    sink.close();
    if (sink)
        place = file.string();
}

ScratchFile::~ScratchFile()
{
    std::error_code ignored;
    if (!folder.empty())
        fs::remove_all(folder, ignored);
}
