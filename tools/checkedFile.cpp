#include "tools/checkedFile.h"

#include "tools/fileBytes.h"

#include "lint/typeFile.h"

#include <algorithm>
#include <filesystem>
#include <optional>

namespace fs = std::filesystem;
namespace gsdfile = typdescriptor::gsdfile;

namespace {

bool hasSeverity(const FileReport& report, lint::Severity severity)
{
    return std::any_of(report.findings.begin(), report.findings.end(),
                       [severity](const lint::Finding& finding) { return finding.severity == severity; });
}

/// What the rules find in a document whose bytes the library can read in a file.
std::vector<lint::Finding> findingsIn(const gsdfile::Document& document, const std::string& name,
                                      const std::string& path, const std::vector<const lint::Rule*>& leftOut)
{
    if (!isGsdFileName(name))
        return lint::checkTypeFile(document.bytes(), path);
    const std::string fileName = fs::path(name).filename().string();
    lint::Options options;
    options.fileName = fileName;
    options.path = path;
    options.leftOut = leftOut;
    return lint::check(document, options);
}

/// Checks bytes. When the file has other ones, the library is given a copy of them.
void checkBytes(FileReport& report, std::string bytes, bool isInFile, const CheckOptions& options)
{
    std::optional<ScratchFile> copy;
    if (!isInFile)
        copy.emplace(report.file, bytes);
    const std::string& path = copy ? copy->path() : report.file;
    if (path.empty()) {
        report.problem = "cannot write a copy for the library into the folder of temporary files";
        return;
    }
    report.document = std::make_unique<gsdfile::Document>(std::move(bytes));
    report.findings = findingsIn(*report.document, report.file, path, options.leftOut);
    if (options.areErrorsOnly)
        std::erase_if(report.findings,
                      [](const lint::Finding& finding) { return finding.severity != lint::Severity::error; });
    for (lint::Finding& finding : report.findings) {
        if (options.areWarningsErrors && finding.severity == lint::Severity::warning)
            finding.severity = lint::Severity::error;
    }
}

} // namespace

bool isFailed(const FileReport& report)
{
    return hasSeverity(report, lint::Severity::error);
}

void Totals::add(const FileReport& report)
{
    ++files;
    if (!report.problem.empty())
        ++unreadable;
    else if (isFailed(report))
        ++failed;
    else if (hasSeverity(report, lint::Severity::warning))
        ++withWarnings;
    else
        ++ok;
    mended += report.before.empty() ? 0U : 1U;
    for (const lint::Finding& finding : report.findings) {
        ++findings[static_cast<std::size_t>(finding.severity)];
        mendable += finding.mend.empty() ? 0U : 1U;
    }
}

Totals& Totals::operator+=(const Totals& more)
{
    files += more.files;
    ok += more.ok;
    withWarnings += more.withWarnings;
    failed += more.failed;
    unreadable += more.unreadable;
    mended += more.mended;
    mendable += more.mendable;
    for (std::size_t i = 0; i < std::size(findings); ++i)
        findings[i] += more.findings[i];
    return *this;
}

ExitStatus Totals::exitStatus() const
{
    if (unreadable > 0)
        return kExitUnusable;
    return failed > 0 ? kExitFindings : kExitGood;
}

void checkFile(FileReport& report, const CheckOptions& options)
{
    std::string bytes =
        report.isStandardInput ? readStandardInput(report.problem) : readFile(report.file, report.problem);
    if (report.problem.empty())
        checkBytes(report, std::move(bytes), !report.isStandardInput, options);
}

void mend(FileReport& report, const CheckOptions& options)
{
    constexpr int kMostRounds = 10; // what a mend brings to light is mended in the next one
    if (report.document == nullptr)
        return;
    std::string before(report.document->bytes());
    for (int round = 0; round < kMostRounds && report.problem.empty(); ++round) {
        std::string after = lint::mended(report.document->bytes(), report.findings);
        if (after == report.document->bytes())
            break;
        checkBytes(report, std::move(after), false, options);
    }
    if (before != report.document->bytes())
        report.before = std::move(before);
}
