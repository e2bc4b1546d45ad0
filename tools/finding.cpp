#include "tools/finding.h"

#include "tools/device.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace fs = std::filesystem;

namespace {

constexpr std::array<const char*, 18> kMandatoryKeywords = {
    "Vendor_Name",  "Model_Name",       "Revision",         "Ident_Number",  "Protocol_Ident",
    "Station_Type", "Hardware_Release", "Software_Release", "Module",        "Min_Slave_Intervall",
    "a baud rate",  "a MaxTsdr",        "Max_Module",       "Max_Input_Len", "Max_Output_Len",
    "Max_Data_Len", "Slave_Family",     "Max_Diag_Data_Len"};

/// Where the check of a type file stops with a code: a record by its number, or a group by the tag of its first one.
struct Place {
    int code;
    long record;
    const char* tag;
    const char* text;
};
constexpr std::array<Place, 13> kPlaces = {
    Place{kErrModelName, 2, "", "model name"},
    Place{kErrIdentNumber, 7, "", "ident number"},
    Place{kErrSlaveInterval, 22, "", "minimum slave interval"},
    Place{kErrBaudRates, 23, "", "baud rates"},
    Place{kErrInputLen, 24, "", "maximum input length"},
    Place{kErrOutputLen, 25, "", "maximum output length"},
    Place{kErrNoData, 25, "", "maximum input and output length"},
    Place{kErrMaxModule, 26, "", "maximum number of modules"},
    Place{kErrDiagLen, 27, "", "maximum diagnostic length"},
    Place{kErrDeviceDiag, 0, "DKM", "in the group that begins here"},
    Place{kErrChannelDiag, 0, "DKK", "in the group that begins here"},
    Place{kErrOrderList, 0, "MLFB", "in the list that begins here, or in what refers to a block"},
    Place{kErrModuleList, 0, "LSK", "in the lists that begin here, or in what refers to a block"},
};

std::string missingKeywords(const cTypDescriptor& descriptor)
{
    std::array<unsigned char, kMandatoryKeywords.size()> found{};
    descriptor.getGsdFoundMandatories(found.data());
    std::string names;
    for (std::size_t i = 0; i < found.size(); ++i) {
        if (found[i] == 0)
            names.append(names.empty() ? "missing: " : ", ").append(kMandatoryKeywords[i]);
    }
    return names;
}

Finding gsdFinding(const SourceText& source, bool isError, int code, long line)
{
    Finding finding;
    finding.isError = isError;
    finding.code = code;
    finding.line = line;
    if (Excerpt excerpt = source.gsdExcerpt(line); excerpt.line > 0)
        finding.excerpt = std::move(excerpt);
    return finding;
}

void locateInTypeFile(Finding& finding, const std::string& file)
{
    const auto place =
        std::find_if(kPlaces.begin(), kPlaces.end(), [&finding](const Place& row) { return row.code == finding.code; });
    if (place == kPlaces.end())
        return;
    const SourceText source(file);
    Excerpt excerpt = place->record > 0 ? source.typeFileExcerpt(place->record) : source.groupExcerpt(place->tag);
    if (excerpt.line == 0)
        return;
    finding.line = excerpt.line;
    finding.detail = place->text;
    finding.excerpt = std::move(excerpt);
}

} // namespace

bool FileReport::isFailed() const
{
    return std::any_of(findings.begin(), findings.end(), [](const Finding& finding) { return finding.isError; });
}

bool FileReport::hasWarnings() const
{
    return std::any_of(findings.begin(), findings.end(), [](const Finding& finding) { return !finding.isError; });
}

void Totals::add(const FileReport& report)
{
    ++files;
    if (!report.problem.empty())
        ++unreadable;
    else if (report.isFailed())
        ++failed;
    else if (report.hasWarnings())
        ++withWarnings;
    else
        ++ok;
}

ExitStatus Totals::exitStatus() const
{
    if (unreadable > 0)
        return kExitUnusable;
    return failed + withWarnings > 0 ? kExitFindings : kExitGood;
}

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

std::vector<Finding> compilationFindings(const cTypDescriptor& descriptor, const std::string& file)
{
    std::vector<Finding> findings;
    const std::vector<GSD_WARNING_ITEM> warnings = warningsOf(descriptor);
    if (warnings.empty() && descriptor.getStatus() == kOk)
        return findings;
    const SourceText source(file);
    for (const GSD_WARNING_ITEM& warning : warnings)
        findings.push_back(gsdFinding(source, false, warning.code, warning.lineNumber));
    if (descriptor.getStatus() == kOk)
        return findings;
    findings.push_back(gsdFinding(source, true, descriptor.getStatus(), std::max(0, descriptor.getGsdErrLineNr())));
    if (descriptor.getStatus() == kErrGsdMandatory)
        findings.back().detail = missingKeywords(descriptor);
    return findings;
}

std::vector<Finding> checkFindings(cTypDescriptor& descriptor, const std::string& file)
{
    Finding finding;
    finding.code = descriptor.checkTypeFileContents();
    if (finding.code >= 0)
        return {};
    if (isGsdFileName(file))
        finding.detail = "the compiled type file is refused";
    else
        locateInTypeFile(finding, file);
    return {finding};
}

std::vector<Finding> findingsOf(cTypDescriptor& descriptor, const std::string& file)
{
    std::vector<Finding> findings = compilationFindings(descriptor, file);
    if (descriptor.getStatus() != kOk)
        return findings;
    const std::vector<Finding> checked = checkFindings(descriptor, file);
    findings.insert(findings.end(), checked.begin(), checked.end());
    return findings;
}

FileReport checkFile(const std::string& file)
{
    FileReport report;
    report.file = file;
    report.problem = whyUnreadable(file);
    if (!report.problem.empty())
        return report;
    cTypDescriptor descriptor(file.c_str(), 0, nullptr);
    report.findings = findingsOf(descriptor, file);
    if (descriptor.getStatus() == kErrFile && !isGsdFileName(file))
        report.findings.back().detail = "a type file has 1 to 65534 bytes";
    return report;
}
