#include "host/loadDevice.h"

#include "host/gsdFacts.h"
#include "host/inputFile.h"

#include "gsdfile/document.h"
#include "gsdfile/keywords.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace fs = std::filesystem;

namespace typdescriptor {

namespace {

[[noreturn]] void refuse(const std::string& file, const std::string& problem)
{
    throw LoadError(file + ": " + problem, 0, -1);
}

[[noreturn]] void refuse(const std::string& file, int code, int line)
{
    const std::string place = line > 0 ? file + ':' + std::to_string(line) : file;
    throw LoadError(place + ": " + resultText(code) + " (" + std::to_string(code) + ')', code, line);
}

std::string bytesOf(const std::string& file)
{
    std::string problem;
    std::string bytes = bytesOfFile(file, problem);
    if (!problem.empty())
        refuse(file, problem);
    return bytes;
}

std::optional<unsigned> identNumberInGsd(std::string gsd)
{
    constexpr std::int64_t kLargest = 0xFFFF;
    const gsdfile::Document document(std::move(gsd));
    for (const gsdfile::Statement& statement : document.statements()) {
        const bool isIdent =
            statement.keyword != nullptr && std::string_view(statement.keyword->name) == "Ident_Number";
        if (!isIdent || statement.values.empty() || statement.values.front().kind != gsdfile::Value::number)
            continue;
        const std::int64_t number = statement.values.front().first.value;
        if (number >= 0 && number <= kLargest)
            return static_cast<unsigned>(number);
    }
    return std::nullopt;
}

std::optional<unsigned> identNumberInTypeFile(const std::string& file)
{
    cTypDescriptor descriptor(file.c_str(), 0, nullptr);
    SLAVE_TYPE_HEADER_INFO header = {};
    if (descriptor.getStatus() != kOk || descriptor.checkTypeFileContents() < 0)
        return std::nullopt;
    descriptor.getSlaveTypeHeader(&header);
    return header.identNumber;
}

/// Adds the files of a folder; what cannot be looked into is passed over.
template <class Iterator>
void addFiles(const std::string& folder, std::vector<std::string>& files)
{
    std::error_code error;
    Iterator entry(folder, fs::directory_options::skip_permission_denied, error);
    if (error)
        refuse(folder, "cannot be read: " + error.message());
    for (; entry != Iterator(); entry.increment(error)) {
        std::error_code ignored;
        if (isDeviceFileName(entry->path().filename().string()) && entry->is_regular_file(ignored))
            files.push_back(entry->path().string());
        if (error)
            break;
    }
}

} // namespace

Device loadDevice(const std::string& file, LoadOptions options)
{
    if (const std::string problem = whyUnreadable(file); !problem.empty())
        refuse(file, problem);
    cTypDescriptor descriptor(file.c_str(), 0, nullptr);
    const int code = descriptor.getStatus() != kOk ? descriptor.getStatus() : descriptor.checkTypeFileContents();
    if (code < 0)
        refuse(file, code, descriptor.getGsdErrLineNr());
    Device device = readDevice(descriptor);
    if (device.isFromGsd && options.withGsdFacts)
        addGsdFacts(device, bytesOf(file));
    return device;
}

std::optional<unsigned> identNumberOf(const std::string& file)
{
    std::string problem;
    if (!isGsdFileName(file))
        return whyUnreadable(file).empty() ? identNumberInTypeFile(file) : std::nullopt;
    std::string gsd = bytesOfFile(file, problem);
    return problem.empty() ? identNumberInGsd(std::move(gsd)) : std::nullopt;
}

std::vector<std::string> findDevices(const std::string& folder, unsigned identNumber, FindOptions options)
{
    std::vector<std::string> files;
    if (options.isRecursive)
        addFiles<fs::recursive_directory_iterator>(folder, files);
    else
        addFiles<fs::directory_iterator>(folder, files);
    std::sort(files.begin(), files.end());
    files.erase(std::remove_if(files.begin(), files.end(),
                               [identNumber](const std::string& file) { return identNumberOf(file) != identNumber; }),
                files.end());
    return files;
}

} // namespace typdescriptor
