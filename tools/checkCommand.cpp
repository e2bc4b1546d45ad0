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
        using namespace std::chrono_literals;
        const Clock::time_point now = Clock::now();
        if (!isWanted || now - start < 500ms || now - last < 100ms)
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

    std::size_t total;
    bool isWanted;
    bool isShown = false;
    Clock::time_point start;
    Clock::time_point last;
};

template <class Iterator>
void addFilesOf(const fs::path& folder, std::vector<std::string>& files, std::error_code& error)
{
    constexpr auto kOptions = fs::directory_options::skip_permission_denied;
    for (Iterator entry(folder, kOptions, error); !error && entry != Iterator(); entry.increment(error)) {
        std::error_code ignored;
        if (isDeviceFileName(entry->path().filename().string()) && entry->is_regular_file(ignored))
            files.push_back(entry->path().string());
    }
}

/// The files to look at, those of a folder in the order of their names.
/// @return false when a path gives none
bool collectFiles(const Options& options, std::vector<std::string>& files)
{
    bool isComplete = true;
    for (const std::string& path : options.paths) {
        std::error_code error;
        if (!fs::is_directory(path, error)) {
            files.push_back(path);
            continue;
        }
        const auto first = static_cast<std::ptrdiff_t>(files.size());
        error.clear();
        if (options.isRecursive)
            addFilesOf<fs::recursive_directory_iterator>(path, files, error);
        else
            addFilesOf<fs::directory_iterator>(path, files, error);
        std::sort(files.begin() + first, files.end());
        if (!error && static_cast<std::ptrdiff_t>(files.size()) > first)
            continue;
        isComplete = false;
        reportProblem(path, error ? error.message() : "the folder has no GSD file and no type file (.410)");
    }
    return isComplete;
}

void leaveOutWarnings(FileReport& report)
{
    std::erase_if(report.findings, [](const Finding& finding) { return !finding.isError; });
}

ExitStatus check(const Options& options)
{
    std::vector<std::string> files;
    const bool isComplete = collectFiles(options, files);
    const bool isText = options.format == "text";
    const bool inColour = isText && isColourWanted();
    std::vector<FileReport> reports;
    Totals totals;
    Progress progress(files.size());
    for (const std::string& file : files) {
        FileReport report = checkFile(file);
        if (options.areWarningsLeftOut)
            leaveOutWarnings(report);
        totals.add(report);
        if (!report.problem.empty() || (isText && !report.findings.empty()))
            progress.hide();
        if (!report.problem.empty())
            reportProblem(file, report.problem);
        if (isText)
            print(findingsText(report, inColour));
        else
            reports.push_back(std::move(report));
        progress.show(totals.files);
    }
    progress.hide();
    if (isText && !files.empty())
        print(totalsText(totals));
    else if (options.format == "json")
        print(jsonText(findingsJson(reports, totals)));
    else if (options.format == "sarif")
        print(jsonText(sarif(reports)));
    return isComplete ? totals.exitStatus() : kExitUnusable;
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
