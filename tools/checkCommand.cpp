// typdesc check: says what is wrong with files and with folders full of them, and mends what is safe.

#include "host/text.h"
#include "tools/baseline.h"
#include "tools/commands.h"
#include "tools/displayText.h"
#include "tools/exitStatus.h"
#include "tools/fileBytes.h"
#include "tools/lineDiff.h"
#include "tools/parallel.h"
#include "tools/progress.h"
#include "tools/reportJson.h"
#include "tools/reportText.h"
#include "tools/ruleText.h"
#include "tools/terminal.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <vector>

using namespace typdescriptor;

namespace fs = std::filesystem;

namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kStandardInput = "-";

struct Options {
    std::vector<std::string> paths;
    std::string format = "text";
    std::string name = "stdin.gsd";
    std::vector<std::string> rules;
    std::string baseline;
    std::string newBaseline;
    std::string explained;
    unsigned jobs = 0;
    bool isRecursive = false;
    bool isErrorsOnly = false;
    bool isWerror = false;
    bool isFixed = false;
    bool isDiff = false;
    bool isListOfRules = false;
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
        if (path == kStandardInput) {
            reports.push_back(pendingReport(options.name));
            reports.back().isStandardInput = true;
            continue;
        }
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

/// What is left of a report once its file is checked: the bytes are not kept.
struct Outcome { // NOLINT(bugprone-exception-escape): moving JSON only asserts
    std::string file;
    std::string problem;
    std::string text;
    Json json;
    std::optional<FileReport> forBaseline; // without its document
    Totals totals;
};

/// Checks files in the way the command line says, in any order and on several threads at once.
class Checker {
public:
    Checker(const Options& wanted, const CheckOptions& howToCheck, const Baseline* baseline)
        : options(wanted), rules(howToCheck), known(baseline), inColour(wanted.format == "text" && isColourWanted()),
          columns(terminalColumns())
    {}

    Outcome check(FileReport& report) const
    {
        if (report.problem.empty())
            checkFile(report, rules);
        if (known != nullptr)
            known->leaveOutKnown(report);
        if (options.isFixed || options.isDiff)
            mendFile(report);
        return outcomeOf(report);
    }

private:
    void mendFile(FileReport& report) const
    {
        mend(report, rules);
        if (report.before.empty())
            return;
        if (options.isFixed && report.problem.empty())
            report.problem = replaceFile(report.file, report.document->bytes());
        if (known != nullptr)
            known->leaveOutKnown(report);
    }

    Outcome outcomeOf(FileReport& report) const
    {
        Outcome outcome;
        outcome.file = report.file;
        outcome.problem = report.problem;
        outcome.totals.add(report);
        if (!options.newBaseline.empty()) {
            report.document.reset();
            outcome.forBaseline = std::move(report);
        } else if (options.isDiff) {
            if (!report.before.empty())
                outcome.text = unifiedDiff(report.file, report.before, report.document->bytes());
        } else if (options.format == "text") {
            outcome.text = reportText(report, inColour, columns);
        } else if (options.format == "github") {
            outcome.text = githubText(report);
        } else {
            outcome.json = options.format == "json" ? fileJson(report) : sarifResults(report);
        }
        report = {};
        return outcome;
    }

    const Options& options;
    const CheckOptions& rules;
    const Baseline* known;
    bool inColour;
    std::size_t columns;
};

ExitStatus describeRules(const Options& options)
{
    if (!options.isListOfRules)
        print(explanationText(options.explained == "all" ? "" : options.explained));
    else
        print(options.format == "json" ? jsonText(rulesJson()) : rulesText(isColourWanted()));
    return kExitGood;
}

/// A diff goes to patch(1) as it is; a terminal gets what it can show.
void printDiff(const std::string& diff)
{
    if (!isTerminal())
        printBytes(diff);
    else
        print(shownDiff(diff, isColourWanted()));
}

/// Puts together what the files gave, in their order.
class Summary {
public:
    Summary(const Options& wanted, std::size_t count)
        : options(wanted), progress(count), newBaseline(wanted.newBaseline)
    {}

    void add(Outcome outcome)
    {
        totals += outcome.totals;
        if (!outcome.problem.empty() || !outcome.text.empty())
            progress.hide();
        if (!outcome.problem.empty()) {
            reportProblem(readable(outcome.file), outcome.problem);
            problems.push_back(readable(outcome.file) + ": " + outcome.problem);
        }
        if (options.isDiff)
            printDiff(outcome.text);
        else
            print(outcome.text);
        if (!outcome.json.is_null())
            parts.push_back(std::move(outcome.json));
        if (outcome.forBaseline)
            newBaseline.add(*outcome.forBaseline);
        progress.show(totals.files);
    }

    ExitStatus finish()
    {
        progress.hide();
        if (!options.newBaseline.empty())
            return writeBaseline();
        if (options.isDiff)
            return totals.exitStatus();
        if (options.format == "text")
            print(totalsText(totals));
        else if (options.format == "json")
            print(jsonText(reportJson(std::move(parts), totals)));
        else if (options.format == "sarif")
            print(jsonText(sarifLog(std::move(parts), problems)));
        return totals.exitStatus();
    }

private:
    ExitStatus writeBaseline()
    {
        if (const std::string problem = newBaseline.save(); !problem.empty()) {
            reportProblem(options.newBaseline, problem);
            return kExitUnusable;
        }
        print(totalsText(totals) + "wrote " + options.newBaseline + '\n');
        return totals.unreadable > 0 ? kExitUnusable : kExitGood;
    }

    const Options& options;
    Progress progress;
    Baseline newBaseline;
    Totals totals;
    std::vector<Json> parts;
    std::vector<std::string> problems;
};

/// What the command line asks for and cannot have; empty when all is well.
std::string whyUnusable(const Options& options)
{
    const bool isInputRead = std::ranges::find(options.paths, kStandardInput) != options.paths.end();
    if (options.paths.empty())
        return "PATH is required";
    if (isInputRead && options.isFixed)
        return "--fix cannot mend standard input; --diff shows the change";
    if (std::ranges::count(options.paths, kStandardInput) > 1)
        return "standard input can be read once";
    return {};
}

ExitStatus check(const Options& options)
{
    if (options.isListOfRules || !options.explained.empty())
        return describeRules(options);
    if (const std::string problem = whyUnusable(options); !problem.empty()) {
        reportProblem("check", problem);
        return kExitUnusable;
    }
    std::optional<Baseline> known;
    if (!options.baseline.empty()) {
        known.emplace(options.baseline);
        if (const std::string problem = known->load(); !problem.empty()) {
            reportProblem(options.baseline, problem);
            return kExitUnusable;
        }
    }
    const CheckOptions rules{leftOutRules(options.rules), options.isErrorsOnly, options.isWerror};
    const Checker checker(options, rules, known ? &*known : nullptr);
    std::vector<FileReport> reports = collectFiles(options);
    Summary summary(options, reports.size());
    inOrder(
        reports.size(), options.jobs, [&](std::size_t i) { return checker.check(reports[i]); },
        [&](Outcome outcome) { summary.add(std::move(outcome)); });
    return summary.finish();
}

ExitStatus checkOrExplain(const Options& options)
{
    try {
        return check(options);
    } catch (const UnknownRule& wrong) {
        reportProblem("check", wrong.what());
        return kExitUnusable;
    }
}

} // namespace

void addCheckCommand(CLI::App& app, int& status)
{
    CLI::App* command = app.add_subcommand("check", "Say what is wrong with GSD files, type files and folders of them");
    const auto options = std::make_shared<Options>();
    command->add_option("PATH", options->paths, "GSD files, type files, folders; - is standard input");
    command->add_flag("-r,--recursive", options->isRecursive, "look into the folders of folders as well");
    command->add_flag("-E,--errors-only", options->isErrorsOnly, "neither show nor count warnings and hints");
    command->add_flag("--werror", options->isWerror, "take warnings for errors");
    command->add_option("-W", options->rules, "NAME or no-NAME: switch a rule, or a group of rules, on or off")
        ->allow_extra_args(false);
    command->add_option("--baseline", options->baseline, "leave out the findings in this file")
        ->allow_extra_args(false);
    command->add_option("--write-baseline", options->newBaseline, "write all findings into a file for --baseline");
    CLI::Option* const fix = command->add_flag("--fix", options->isFixed, "mend the files where that is safe");
    command->add_flag("--diff", options->isDiff, "show what --fix would change")->excludes(fix);
    command->add_option("--format", options->format, "text, json, sarif (SARIF 2.1.0) or github")
        ->check(CLI::IsMember({"text", "json", "sarif", "github"}))
        ->capture_default_str();
    command->add_option("--name", options->name, "the file name that standard input stands for")->capture_default_str();
    command->add_option("-j,--jobs", options->jobs, "files at once; without it as many as there are processors");
    command->add_flag("--rules", options->isListOfRules, "list all rules");
    command->add_option("--explain", options->explained, "explain a rule, or all");
    command->footer("Exit status: 0 no errors, 1 errors, 2 wrong usage or something cannot be read.\n"
                    "Example: typdesc check -r vendors/ --format=sarif > findings.sarif");
    command->callback([options, &status] { status = checkOrExplain(*options); });
}
