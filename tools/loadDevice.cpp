#include "tools/loadDevice.h"

#include "host/hexBytes.h"
#include "host/loadDevice.h"
#include "tools/reportText.h"
#include "tools/terminal.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <filesystem>
#include <iostream>
#include <string_view>
#include <vector>

using namespace typdescriptor;

namespace fs = std::filesystem;

namespace {

ExitStatus loadFile(const std::string& file, Device& device)
{
    try {
        device = typdescriptor::loadDevice(file);
        return kExitGood;
    } catch (const LoadError& error) {
        if (error.code == kOk) {
            std::cerr << "typdesc: " << error.what() << '\n';
            return kExitUnusable;
        }
        const FileReport report = refusalReport(file, error.code);
        std::cerr << reportText(report, false);
        if (!report.problem.empty())
            reportProblem(file, report.problem);
        return kExitFindings;
    }
}

char lower(char c)
{
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

/// The name without its extension: the languages of one device differ in that alone.
std::string stemOf(const std::string& file)
{
    std::string stem = fs::path(file).replace_extension().string();
    std::transform(stem.begin(), stem.end(), stem.begin(), lower);
    return stem;
}

/// English ahead of the default language, that ahead of the others, GSD files ahead of type files.
std::size_t rankOf(const std::string& file)
{
    constexpr std::string_view kOrder = "ed";
    if (!isGsdFileName(file))
        return kOrder.size() + 1;
    return std::min(kOrder.find(lower(file.back())), kOrder.size());
}

/// The one file that is meant; empty, and said, when there is none or more than one device.
std::string fileIn(const DeviceChoice& choice, unsigned ident)
{
    std::vector<std::string> files = findDevices(choice.path, ident, {choice.isRecursive});
    // A type file beside them may have been compiled from any of them, under a name of its own.
    if (std::any_of(files.begin(), files.end(), isGsdFileName))
        std::erase_if(files, [](const std::string& file) { return !isGsdFileName(file); });
    if (files.empty()) {
        reportProblem(choice.path, "no file states ident number " + hexWord(ident));
        return {};
    }
    const std::string stem = stemOf(files.front());
    if (std::any_of(files.begin(), files.end(), [&stem](const std::string& file) { return stemOf(file) != stem; })) {
        std::string names;
        for (const std::string& file : files)
            names += (names.empty() ? "" : ", ") + file;
        reportProblem(choice.path, "several devices state ident number " + hexWord(ident) + ": " + names);
        return {};
    }
    return *std::min_element(files.begin(), files.end(), [](const std::string& left, const std::string& right) {
        return rankOf(left) < rankOf(right);
    });
}

} // namespace

bool DeviceChoice::isFolder() const
{
    std::error_code error;
    return fs::is_directory(path, error);
}

FileReport refusalReport(const std::string& file, int code)
{
    FileReport report;
    report.file = file;
    checkFile(report, {{}, true, false});
    if (!isFailed(report)) // no rule knows why
        report.problem = std::string(resultText(code)) + " (" + std::to_string(code) + ')';
    return report;
}

std::optional<unsigned> identFromArgument(const std::string& text)
{
    constexpr unsigned kLargest = 0xFFFF;
    const bool isHex = text.starts_with("0x") || text.starts_with("0X");
    const char* const end = text.data() + text.size();
    unsigned ident = 0;
    const auto read = std::from_chars(text.data() + (isHex ? 2 : 0), end, ident, isHex ? 16 : 10);
    if (read.ec != std::errc() || read.ptr != end || ident > kLargest)
        return std::nullopt;
    return ident;
}

ExitStatus loadDevice(const DeviceChoice& folder, unsigned ident, Device& device)
{
    try {
        const std::string file = fileIn(folder, ident);
        return file.empty() ? kExitUnusable : loadFile(file, device);
    } catch (const LoadError& error) {
        std::cerr << "typdesc: " << error.what() << '\n';
        return kExitUnusable;
    }
}

ExitStatus loadDevice(const DeviceChoice& choice, Device& device)
{
    const std::optional<unsigned> ident = identFromArgument(choice.ident);
    if (!choice.ident.empty() && !ident) {
        reportProblem("--ident", '"' + choice.ident + "\" is no ident number: expected one like 0x0C21 or 3105");
        return kExitUnusable;
    }
    if (choice.isFolder()) {
        if (ident)
            return loadDevice(choice, *ident, device);
        reportProblem(choice.path, "is a folder: --ident tells which of its devices is meant");
        return kExitUnusable;
    }
    const ExitStatus status = loadFile(choice.path, device);
    if (status != kExitGood || !ident || *ident == device.header.identNumber)
        return status;
    reportProblem(choice.path,
                  "states ident number " + hexWord(device.header.identNumber) + ", not " + hexWord(*ident));
    return kExitUnusable;
}
