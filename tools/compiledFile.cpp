#include "tools/compiledFile.h"

#include <chrono>
#include <fstream>
#include <iterator>
#include <string_view>
#include <system_error>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

/// Makes a folder of our own beside the place where a file is to go; empty when that is not possible.
fs::path makeFolder(const fs::path& parent)
{
    const auto now = static_cast<unsigned long long>(std::chrono::steady_clock::now().time_since_epoch().count());
    for (unsigned long long attempt = 0; attempt < 100; ++attempt) {
        fs::path folder = parent / (".typdesc-" + std::to_string(now + attempt));
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

/// Where a file of that name really is: a link that leads to something is followed.
fs::path placeOf(const fs::path& name)
{
    std::error_code error;
    fs::path place = fs::canonical(name, error);
    return error ? name : place;
}

fs::path folderOf(const fs::path& name)
{
    const fs::path parent = name.parent_path();
    return fs::absolute(parent.empty() ? "." : parent);
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
    std::error_code error;
    const fs::path place = placeOf(targetPath);
    if (!fs::exists(place, error) || fs::is_regular_file(place, error))
        folder = makeFolder(folderOf(place));
    isBeside = !folder.empty();
    if (!isBeside)
        folder = makeFolder(fs::temp_directory_path(error));
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
    removeFolder();
}

void CompiledFile::removeFolder()
{
    std::error_code ignored;
    if (!folder.empty())
        fs::remove_all(folder, ignored);
    folder.clear();
}

std::string CompiledFile::put()
{
    constexpr const char* kNoFolder = "cannot write into this folder";
    if (folder.empty())
        return kNoFolder;
    const fs::path written = onlyFile(folder);
    if (written.empty() || !isWholeTypeFile(written))
        return "cannot be written";
    if (targetPath.empty())
        targetPath = written.filename();

    std::error_code error;
    const fs::path place = placeOf(targetPath);
    const bool isThere = fs::exists(place, error);
    if (!isThere && !isBeside)
        return kNoFolder;
    if (fs::is_directory(place, error))
        return "is a directory";
    if (isThere && access(place.c_str(), W_OK) != 0)
        return "may not be written";
    if (isBeside && (!isThere || fs::is_regular_file(place, error))) {
        fs::rename(written, place, error);
        if (!error)
            return {};
        if (error != std::errc::cross_device_link)
            return error.message();
    }
    return copyTo(place, written);
}

/// A device or a pipe may keep its writer waiting, and a writer may be killed: by then the folder is gone.
std::string CompiledFile::copyTo(const fs::path& place, const fs::path& written)
{
    std::ifstream source(written, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(source), {}};
    source.close();
    removeFolder();
    std::ofstream sink(place, std::ios::binary);
    sink << text;
    sink.close();
    return sink ? std::string() : "cannot be written";
}
