// typdesc diag: explains a slave's diagnostic answer with the texts of its device.

#include "tools/commands.h"
#include "tools/diagnosis.h"
#include "tools/loadDevice.h"
#include "tools/reportJson.h"
#include "tools/terminal.h"

#include <nlohmann/json.hpp>

#include <memory>
#include <string>
#include <vector>

namespace {

struct Options {
    std::string file;
    std::vector<std::string> hex;
    bool isJson = false;
};

ExitStatus diag(const Options& options)
{
    std::string wrong;
    const auto telegram = parseHexBytes(options.hex, wrong);
    if (!telegram) {
        const bool isOdd =
            wrong.size() % 2 != 0 && wrong.find_first_not_of("0123456789abcdefABCDEFxX") == std::string::npos;
        reportProblem(wrong, isOdd ? "has an odd number of hexadecimal digits" : "is not hexadecimal bytes");
        return kExitUnusable;
    }
    Device device;
    if (const ExitStatus status = loadDevice(options.file, device); status != kExitGood)
        return status;
    const Diagnosis diagnosis = explainDiagnosis(device, *telegram);
    print(options.isJson ? jsonText(diagnosisJson(diagnosis)) : diagnosisText(diagnosis, isColourWanted()));
    for (const std::string& problem : diagnosis.problems)
        reportProblem("diagnostic answer", problem);
    return diagnosis.problems.empty() ? kExitGood : kExitFindings;
}

} // namespace

void addDiagCommand(CLI::App& app, int& status)
{
    CLI::App* command = app.add_subcommand("diag", "Explain a slave's diagnostic answer");
    const auto options = std::make_shared<Options>();
    command->add_option("FILE", options->file, "GSD file or type file")->required();
    command->add_option("HEX", options->hex, "the answer in hexadecimal bytes, together or apart")->required();
    command->add_flag("--json", options->isJson, "as JSON");
    command->footer("Exit status: 0 explained, 1 something is wrong with the answer or the file, 2 wrong usage or the\n"
                    "file cannot be read.\n"
                    "Example: typdesc diag DRIVE.GSE 080C00020C21 0201 8141A6");
    command->callback([options, &status] { status = diag(*options); });
}
