#include "tools/compiledFile.h"

#include <chrono>
#include <fstream>
#include <iterator>
#include <string_view>
#include <system_error>

namespace fs = std::filesystem;

namespace {

/// Makes a folder of our own beside the place where a file is to go; empty when that is not possible.
fs::path makeFolder(const fs::path& parent)
{
    const auto now = static_cast<unsigned long long>(std::chrono::steady_clock::now().time_since_epoch().count());
    for (unsigned long long attempt = 0; attempt < 100; ++attempt) {
        const fs::path folder = parent / (".typdesc-" + std::to_string(now + attempt));
        std::error_code error;
        if (fs::create_directory(folder, error))
            return folder;
        if (error)
            break;
    }
    return {};
}

/// The one file in a folder; empty when there is none.
fs::path onlyFile(const fs::path& folder)
{
    std::error_code error;
    const fs::directory_iterator entries(folder, error);
    return entries == fs::directory_iterator() ? fs::path() : entries->path();
}

/// A type file made of a GSD file ends with the record of the maximum response delay, which stands nowhere else.
bool isWholeTypeFile(const fs::path& file)
{
    constexpr std::string_view kLastTag = "MRD";
    constexpr std::string_view kLastEnd = ";\r\n";
    constexpr std::size_t kMaxDigits = 5;
    std::ifstream stream(file, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    const std::size_t start = text.rfind(kLastTag);
    if (start == std::string::npos || !text.ends_with(kLastEnd))
        return false;
    const std::size_t digits = text.find_first_not_of("0123456789", start + kLastTag.size()) - start - kLastTag.size();
    return digits <= kMaxDigits && start + kLastTag.size() + digits + kLastEnd.size() == text.size();
}

/// Changes the current directory for as long as it lives.
class InDirectory {
public:
    explicit InDirectory(const fs::path& directory) : before(fs::current_path()) { fs::current_path(directory); }
    ~InDirectory()
    {
        std::error_code ignored;
        fs::current_path(before, ignored);
    }
    InDirectory(const InDirectory&) = delete;
    InDirectory& operator=(const InDirectory&) = delete;

private:
    fs::path before;
};

} // namespace

CompiledFile::CompiledFile(const std::string& gsdName, const std::string& outputName) : targetPath(outputName)
{
    const fs::path parent = targetPath.parent_path();
    folder = makeFolder(fs::absolute(parent.empty() ? "." : parent));
    if (folder.empty()) {
        compiled = std::make_unique<cTypDescriptor>(gsdName.c_str(), 0, nullptr);
        return;
    }
    const std::string gsdPath = fs::absolute(gsdName).string();
    const InDirectory inFolder(folder);
    const std::string name = targetPath.filename().string();
    compiled = std::make_unique<cTypDescriptor>(gsdPath.c_str(), 1, outputName.empty() ? nullptr : name.c_str());
}

CompiledFile::~CompiledFile()
{
    if (folder.empty())
        return;
    std::error_code ignored;
    fs::remove_all(folder, ignored);
}

std::string CompiledFile::put()
{
    if (folder.empty())
        return "cannot write into this folder";
    const fs::path written = onlyFile(folder);
    if (written.empty() || !isWholeTypeFile(written))
        return "cannot be written";
    if (targetPath.empty())
        targetPath = written.filename();

    std::error_code error;
    if (!fs::exists(targetPath, error) || fs::is_regular_file(targetPath, error)) {
        fs::rename(written, targetPath, error);
        return error ? error.message() : std::string();
    }
    if (fs::is_directory(targetPath, error))
        return "is a directory";
    // A device or a pipe is written to and stays what it is.
    std::ifstream source(written, std::ios::binary);
    std::ofstream sink(targetPath, std::ios::binary);
    sink << source.rdbuf();
    sink.close();
    return sink ? std::string() : "cannot be written";
}
