// typdesc compile: makes a type file of a GSD file.

#include "tools/commands.h"
#include "tools/compiledFile.h"
#include "tools/exitStatus.h"
#include "tools/finding.h"
#include "tools/findingText.h"
#include "tools/terminal.h"

#include <iostream>
#include <memory>
#include <string>

namespace {

struct Options {
    std::string file;
    std::string output;
    bool isChecked = false;
};

ExitStatus compile(const Options& options)
{
    if (!isGsdFileName(options.file)) {
        reportProblem(options.file, "not the name of a GSD file (.gsd, .gse, .gsf, .gsg, .gsi, .gsp, .gss)");
        return kExitUnusable;
    }
    if (const std::string problem = whyUnreadable(options.file); !problem.empty()) {
        reportProblem(options.file, problem);
        return kExitUnusable;
    }
    CompiledFile file(options.file, options.output);
    FileReport report;
    report.file = options.file;
    report.findings = options.isChecked ? findingsOf(file.descriptor(), options.file)
                                        : compilationFindings(file.descriptor(), options.file);
    const bool inColour = !file.isStandardOutput() && isColourWanted();
    for (const Finding& finding : report.findings) {
        const std::string text = findingText(options.file, finding, inColour);
        if (file.isStandardOutput())
            std::cerr << text;
        else
            print(text);
    }
    if (report.isFailed())
        return kExitFindings;
    if (const std::string problem = file.put(); !problem.empty()) {
        reportProblem(options.output.empty() ? "type file" : options.output, problem);
        return kExitUnusable;
    }
    if (!file.isStandardOutput())
        print("wrote " + file.target().string() + '\n');
    return kExitGood;
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
    command->footer(
        "Exit status: 0 written, 1 the compilation failed, 2 wrong usage or a file cannot be read or written.\n"
        "Example: typdesc compile DRIVE.GSE -o drive.410 --check");
    command->callback([options, &status] { status = compile(*options); });
}
