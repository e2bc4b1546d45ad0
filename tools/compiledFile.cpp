#include "tools/compiledFile.h"

#include <chrono>
#include <fstream>
#include <iostream>
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

std::string contentsOf(const fs::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// A type file made of a GSD file ends with the record of the maximum response delay, which stands nowhere else.
bool isWholeTypeFile(const std::string& text)
{
    constexpr std::string_view kLastTag = "MRD";
    constexpr std::string_view kLastEnd = ";\r\n";
    constexpr std::size_t kMaxDigits = 5;
    const std::size_t start = text.rfind(kLastTag);
    if (start == std::string::npos || !text.ends_with(kLastEnd))
        return false;
    const std::size_t digits = text.find_first_not_of("0123456789", start + kLastTag.size()) - start - kLastTag.size();
    return digits <= kMaxDigits && start + kLastTag.size() + digits + kLastEnd.size() == text.size();
}

/// Where a file of that name really is, or will be: a link is followed, also one to a file that is not there yet.
fs::path placeOf(const fs::path& name)
{
    constexpr int kMostLinks = 40;
    std::error_code error;
    fs::path place = fs::canonical(name, error);
    if (!error || fs::exists(name, error)) // what a process has open is there, but has no name of its own
        return error ? name : place;
    place = name;
    for (int links = 0; links < kMostLinks && fs::is_symlink(place, error); ++links)
        place = place.parent_path() / fs::read_symlink(place, error);
    return place;
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

CompiledFile::CompiledFile(const std::string& gsdName, const std::string& outputName)
    : sourcePath(gsdName), targetPath(outputName)
{
    std::error_code error;
    const fs::path place = placeOf(targetPath);
    if (!isStandardOutput() && (!fs::exists(place, error) || fs::is_regular_file(place, error)))
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
    const std::string text = contentsOf(written);
    if (!isWholeTypeFile(text))
        return "cannot be written";
    if (targetPath.empty())
        targetPath = written.filename();
    if (isStandardOutput()) {
        std::cout << text << std::flush; // a failure is seen at the end of the program, as for any other output
        return {};
    }

    std::error_code ignored;
    const fs::path place = placeOf(targetPath);
    if (fs::equivalent(place, sourcePath, ignored))
        return "is the GSD file itself";
    if (fs::is_directory(place, ignored))
        return "is a directory";
    const bool isThere = fs::exists(place, ignored);
    if (!isThere && fs::is_symlink(place, ignored))
        return "is a link that leads nowhere";
    if (isThere && !fs::is_regular_file(place, ignored))
        return sendTo(place, text);
    if (isThere && !std::ofstream(place, std::ios::app))
        return "may not be written";
    if (!isBeside)
        return kNoFolder;
    std::error_code error;
    if (isThere)
        fs::permissions(written, fs::status(place).permissions(), error);
    if (!error)
        fs::rename(written, place, error);
    return error ? error.message() : std::string();
}

/// A device or a pipe may keep its writer waiting, and a writer may be killed: by then the folder is gone.
std::string CompiledFile::sendTo(const fs::path& place, const std::string& text)
{
    removeFolder();
    std::ofstream sink(place, std::ios::binary);
    sink << text;
    sink.close();
    return sink ? std::string() : "cannot be written";
}
