#include "host/inputFile.h"

#include <cctype>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

namespace fs = std::filesystem;

namespace typdescriptor {

bool isGsdFileName(const std::string& name)
{
    const auto upper = [&name](std::size_t fromEnd) {
        return std::toupper(static_cast<unsigned char>(name[name.size() - fromEnd]));
    };
    return name.size() >= 3 && upper(3) == 'G' && upper(2) == 'S';
}

bool isDeviceFileName(const std::string& name)
{
    constexpr std::size_t kExtension = 4; // with its dot
    if (name.size() <= kExtension || name[name.size() - kExtension] != '.')
        return false;
    return isGsdFileName(name) || name.ends_with(".410");
}

std::string whyUnreadable(const std::string& file)
{
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    if (status.type() == fs::file_type::not_found)
        return fs::is_symlink(file, error) ? "is a broken link" : "no such file or folder";
    if (error)
        return "cannot be read: " + error.message();
    if (status.type() == fs::file_type::directory)
        return "is a folder";
    if (status.type() != fs::file_type::regular)
        return "is not a file";
    errno = 0;
    if (!std::ifstream(file, std::ios::binary))
        return errno != 0 ? "cannot be read: " + std::generic_category().message(errno) : "cannot be read";
    return {};
}

std::string bytesOfFile(const std::string& file, std::string& problem)
{
    problem = whyUnreadable(file);
    if (!problem.empty())
        return {};
    std::ifstream stream(file, std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(stream), {}};
    if (stream.bad())
        problem = "cannot be read";
    return bytes;
}

} // namespace typdescriptor
