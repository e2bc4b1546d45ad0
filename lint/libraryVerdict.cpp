#include "lint/libraryVerdict.h"

#include "lint/rule.h"

#include "gsdfile/document.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <system_error>
#include <unistd.h>

namespace typdescriptor::lint {

namespace {

// A file with the given bytes for as long as it lives; the library takes it for a GSD file.
class TemporaryFile {
public:
    explicit TemporaryFile(std::string_view bytes)
    {
        constexpr std::string_view kExtension = ".gsd";
        std::error_code error;
        const std::filesystem::path folder = std::filesystem::temp_directory_path(error);
        if (error)
            return;
        std::string name = (folder / "typdesc-XXXXXX").string();
        name += kExtension;
        const int handle = mkstemps(name.data(), static_cast<int>(kExtension.size()));
        if (handle < 0)
            return;
        _name = name;
        std::FILE* file = fdopen(handle, "wb");
        const bool isWritten = file != nullptr && std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
        const bool isClosed = (file != nullptr ? std::fclose(file) : close(handle)) == 0;
        _isWhole = isWritten && isClosed;
    }
    ~TemporaryFile()
    {
        if (!_name.empty())
            static_cast<void>(std::remove(_name.c_str()));
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    // Empty when the file could not be written.
    std::string name() const { return _isWhole ? _name : std::string(); }

private:
    std::string _name;
    bool _isWhole = false;
};

std::shared_ptr<const LibraryVerdict> verdictOf(const std::string& path)
{
    auto verdict = std::make_shared<LibraryVerdict>();
    cTypDescriptor descriptor(path.c_str(), 0, nullptr);
    verdict->code = descriptor.getStatus();
    verdict->line = std::max(0, descriptor.getGsdErrLineNr());
    verdict->warnings.resize(static_cast<std::size_t>(descriptor.getGsdCntOfWarnings()));
    if (!verdict->warnings.empty())
        descriptor.getGsdWarnings(reinterpret_cast<char*>(verdict->warnings.data()));
    descriptor.getGsdFoundMandatories(verdict->mandatory.data());
    verdict->isCompiled = verdict->code == kOk;
    if (verdict->isCompiled)
        verdict->code = descriptor.checkTypeFileContents();
    return verdict;
}

// Whether the library takes a file of that name for a GSD file.
bool isGsdName(std::string_view name)
{
    const auto upper = [name](std::size_t fromEnd) {
        return std::toupper(static_cast<unsigned char>(name[name.size() - fromEnd]));
    };
    return name.size() >= 3 && upper(3) == 'G' && upper(2) == 'S';
}

} // namespace

const LibraryVerdict* Context::verdict() const
{
    if (libraryVerdict)
        return libraryVerdict.get();
    if (isGsdName(path)) {
        libraryVerdict = verdictOf(std::string(path));
    } else if (const TemporaryFile file(document.bytes()); !file.name().empty()) {
        libraryVerdict = verdictOf(file.name());
    }
    return libraryVerdict.get();
}

} // namespace typdescriptor::lint
