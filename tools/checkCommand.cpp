// typdesc check: says what is wrong with files and with folders full of them.

#include "tools/commands.h"
#include "tools/exitStatus.h"
#include "tools/finding.h"
#include "tools/findingJson.h"
#include "tools/findingText.h"
#include "tools/terminal.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

struct Options {
    std::vector<std::string> paths;
    std::string format = "text";
    bool isRecursive = false;
    bool areWarningsLeftOut = false;
};

/// A line on a terminal that says how far the work has come, once it takes longer than half a second.
class Progress {
public:
    explicit Progress(std::size_t count) : total(count), isWanted(isErrorTerminal()), start(Clock::now()), last(start)
    {}

    void show(std::size_t done)
    {
        const Clock::time_point now = Clock::now();
        if (!isWanted || now - start < kPatience || now - last < kPause)
            return;
        last = now;
        isShown = true;
        const std::chrono::duration<double> seconds = now - start;
        const auto rate = static_cast<unsigned>(static_cast<double>(done) / seconds.count());
        std::cerr << "\rchecking " << done << '/' << total << ", " << rate << " files/s\x1b[K" << std::flush;
    }

    /// Makes room for other output.
    void hide()
    {
        if (isShown)
            std::cerr << "\r\x1b[K" << std::flush;
        isShown = false;
    }

private:
    using Clock = std::chrono::steady_clock;

    static constexpr std::chrono::milliseconds kPatience{500};
    static constexpr std::chrono::milliseconds kPause{100};

    std::size_t total;
    bool isWanted;
    bool isShown = false;
    Clock::time_point start;
    Clock::time_point last;
};

/// A report of a file that is still to be checked, or of what cannot be read.
FileReport pendingReport(const std::string& path, const std::string& problem = {})
{
    FileReport report;
    report.file = path;
    report.problem = problem;
    return report;
}

/// Adds a report for each file of a folder that is to be checked, and one with a problem for each folder that cannot be
/// read to its end. Links to folders are not followed: they may lead back.
void addFilesOf(const fs::path& folder, bool isRecursive, std::vector<FileReport>& reports)
{
    std::error_code error;
    for (fs::directory_iterator entry(folder, error); !error && entry != fs::directory_iterator();
         entry.increment(error)) {
        std::error_code unknown;
        const bool isFolder = entry->is_directory(unknown);
        if (isFolder && isRecursive && !entry->is_symlink(unknown))
            addFilesOf(entry->path(), isRecursive, reports);
        if (isFolder || !isDeviceFileName(entry->path().filename().string()))
            continue;
        const bool isThere = entry->exists(unknown); // else a broken link, or a file that may not be looked at
        if (!isThere || entry->is_regular_file(unknown))
            reports.push_back(pendingReport(entry->path().string()));
    }
    if (error)
        reports.push_back(pendingReport(folder.string(), "cannot be read: " + error.message()));
}

/// A report without findings for each file to look at, those of a folder in the order of their names. A folder that
/// gives none, or not all of them, has a report of its own with its problem.
std::vector<FileReport> collectFiles(const Options& options)
{
    std::vector<FileReport> reports;
    for (const std::string& path : options.paths) {
        std::error_code error;
        if (!fs::is_directory(path, error)) {
            reports.push_back(pendingReport(path));
            continue;
        }
        std::vector<FileReport> found;
        addFilesOf(path, options.isRecursive, found);
        if (found.empty())
            found.push_back(pendingReport(path, "the folder has no GSD file and no type file (.410)"));
        std::sort(found.begin(), found.end(),
                  [](const FileReport& left, const FileReport& right) { return left.file < right.file; });
        std::move(found.begin(), found.end(), std::back_inserter(reports));
    }
    return reports;
}

void leaveOutWarnings(FileReport& report)
{
    std::erase_if(report.findings, [](const Finding& finding) { return !finding.isError; });
}

ExitStatus check(const Options& options)
{
    const bool isText = options.format == "text";
    const bool inColour = isText && isColourWanted();
    std::vector<FileReport> reports = collectFiles(options);
    Totals totals;
    Progress progress(reports.size());
    for (FileReport& report : reports) {
        if (report.problem.empty())
            report = checkFile(report.file);
        if (options.areWarningsLeftOut)
            leaveOutWarnings(report);
        totals.add(report);
        if (!report.problem.empty() || (isText && !report.findings.empty()))
            progress.hide();
        if (!report.problem.empty())
            reportProblem(report.file, report.problem);
        if (isText) {
            print(findingsText(report, inColour));
            report.findings.clear(); // printed: only the totals are left to tell
        }
        progress.show(totals.files);
    }
    progress.hide();
    if (isText)
        print(totalsText(totals));
    else if (options.format == "json")
        print(jsonText(findingsJson(reports, totals)));
    else
        print(jsonText(sarif(reports)));
    return totals.exitStatus();
}

} // namespace

void addCheckCommand(CLI::App& app, int& status)
{
    CLI::App* command = app.add_subcommand("check", "Say what is wrong with GSD files, type files and folders of them");
    const auto options = std::make_shared<Options>();
    command->add_option("PATH", options->paths, "GSD files, type files, folders")->required();
    command->add_flag("-r,--recursive", options->isRecursive, "look into the folders of folders as well");
    command->add_flag("-E,--errors-only", options->areWarningsLeftOut, "neither show nor count warnings");
    command->add_option("--format", options->format, "text, json or sarif (SARIF 2.1.0)")
        ->check(CLI::IsMember({"text", "json", "sarif"}))
        ->capture_default_str();
    command->footer("Exit status: 0 no finding, 1 findings, 2 wrong usage or something cannot be read.\n"
                    "Example: typdesc check -r vendors/ --format=sarif > findings.sarif");
    command->callback([options, &status] { status = check(*options); });
}
