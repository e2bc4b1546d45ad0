// typdesc compile: makes a type file of a GSD file.

#include "tools/commands.h"
#include "tools/compiledFile.h"
#include "tools/exitStatus.h"
#include "tools/fileBytes.h"
#include "tools/loadDevice.h"
#include "tools/reportJson.h"
#include "tools/reportText.h"
#include "tools/terminal.h"

#include <iostream>
#include <memory>
#include <string>

using namespace typdescriptor;

namespace {

struct Options {
    std::string file;
    std::string output;
    bool isChecked = false;
    bool isJson = false;
};

/// What the library says about a file that it compiles.
FileReport lossReport(const std::string& file)
{
    CheckOptions rules;
    for (const lint::Rule& rule : lint::allRules()) {
        if (rule.group != lint::Group::library)
            rules.leftOut.push_back(&rule);
    }
    FileReport report;
    report.file = file;
    checkFile(report, rules);
    std::erase_if(report.findings,
                  [](const lint::Finding& finding) { return finding.severity == lint::Severity::error; });
    return report;
}

/// What became of a compilation.
struct Outcome {
    FileReport report;
    std::string written;           // the name of the type file; empty when there is none
    std::string problem;           // why it cannot be written
    bool isStandardOutput = false; // what was written went there
    ExitStatus status = kExitGood;
};

Outcome compile(const Options& options)
{
    Outcome outcome;
    CompiledFile file(options.file, options.output);
    outcome.isStandardOutput = file.isStandardOutput();
    cTypDescriptor& compiled = file.descriptor();
    int code = compiled.getStatus();
    if (code == kOk && options.isChecked)
        code = compiled.checkTypeFileContents();
    if (code < 0) {
        outcome.report = refusalReport(options.file, code);
        outcome.status = kExitFindings;
        return outcome;
    }
    outcome.report = lossReport(options.file);
    outcome.problem = file.put();
    if (outcome.problem.empty())
        outcome.written = outcome.isStandardOutput ? "-" : file.target().string();
    else
        outcome.status = kExitUnusable;
    return outcome;
}

std::string jsonOf(const Outcome& outcome)
{
    nlohmann::ordered_json json = fileJson(outcome.report);
    json["written"] = nullptr;
    if (!outcome.written.empty())
        json["written"] = outcome.written;
    if (!outcome.problem.empty())
        json["problem"] = outcome.problem;
    return jsonText(json);
}

ExitStatus compileAndReport(const Options& options)
{
    if (!isGsdFileName(options.file)) {
        reportProblem(options.file, "not the name of a GSD file (.gsd, .gse, .gsf, .gsg, .gsi, .gsp, .gss)");
        return kExitUnusable;
    }
    if (const std::string problem = whyUnreadable(options.file); !problem.empty()) {
        reportProblem(options.file, problem);
        return kExitUnusable;
    }
    const Outcome outcome = compile(options);
    const bool inColour = !outcome.isStandardOutput && isColourWanted();
    const std::string report = options.isJson ? jsonOf(outcome) : reportText(outcome.report, inColour);
    if (outcome.isStandardOutput)
        std::cerr << report;
    else
        print(report);
    if (!outcome.report.problem.empty())
        reportProblem(options.file, outcome.report.problem);
    if (!outcome.problem.empty())
        reportProblem(options.output.empty() ? "type file" : options.output, outcome.problem);
    else if (!outcome.written.empty() && !options.isJson && !outcome.isStandardOutput)
        print("wrote " + outcome.written + '\n');
    return outcome.status;
}

} // namespace

void addCompileCommand(CLI::App& app, int& status)
{
    CLI::App* command = app.add_subcommand("compile", "Make a type file of a GSD file");
    const auto options = std::make_shared<Options>();
    command->add_option("FILE", options->file, "GSD file; its last letter chooses the language")->required();
    command->add_option("-o,--output", options->output,
                        "type file to write, - for standard output; without it __iiii_s.410 in the current directory");
    command->add_flag("--check", options->isChecked, "check the result as well, and write only a good one");
    command->add_flag("--json", options->isJson, "as JSON");
    command->footer(
        "Exit status: 0 written, 1 the compilation failed, 2 wrong usage or a file cannot be read or written.\n"
        "Example: typdesc compile DRIVE.GSE -o drive.410 --check");
    command->callback([options, &status] { status = compileAndReport(*options); });
}
