// typdesc config: the telegrams that a master needs for a device with chosen modules and parameters.

#include "host/configuration.h"
#include "host/jsonValues.h"
#include "host/text.h"
#include "tools/commands.h"
#include "tools/configurationText.h"
#include "tools/loadDevice.h"
#include "tools/reportJson.h"
#include "tools/terminal.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

using namespace typdescriptor;

namespace {

struct Options {
    std::string file;
    std::vector<std::string> slots;
    std::vector<std::string> values;
    bool isJson = false;
};

ExitStatus config(Options options)
{
    std::transform(options.slots.begin(), options.slots.end(), options.slots.begin(), fromArgument);
    std::transform(options.values.begin(), options.values.end(), options.values.begin(), fromArgument);
    Device device;
    if (const ExitStatus status = loadDevice(options.file, device); status != kExitGood)
        return status;
    try {
        const Configuration result = configure(device, planFromArguments(device, options.slots, options.values));
        print(options.isJson ? jsonText(configurationJson(result))
                             : configurationText(device, result, isColourWanted()));
        for (const std::string& problem : result.problems)
            reportProblem(options.file, problem);
        return result.problems.empty() ? kExitGood : kExitFindings;
    } catch (const ChoiceError& error) {
        reportProblem(options.file, error.what());
        return kExitUnusable;
    }
}

} // namespace

void addConfigCommand(CLI::App& app, int& status)
{
    CLI::App* command = app.add_subcommand("config", "Work out parameter and configuration data of a device");
    const auto options = std::make_shared<Options>();
    command->add_option("FILE", options->file, "GSD file or type file")->required();
    command->add_option("--slot", options->slots, "N=MODULE: a module by its name, its beginning, or #number")
        ->allow_extra_args(false);
    command->add_option("--set", options->values, "SLOT:PARAM=VALUE: a number or a value text; slot 0 is the station")
        ->allow_extra_args(false);
    command->add_flag("--json", options->isJson, "as JSON");
    command->footer("Exit status: 0 within the device's limits, 1 not, or the file is not valid, 2 wrong usage or the\n"
                    "file cannot be read.\n"
                    "A block that wants its slot number gets the slot's place, counted from 1; Modul_Offset only\n"
                    "changes the numbers that are shown.\n"
                    "Example: typdesc config RIO.GSE --slot '5=40-4AI Pt100' --set 5:Sensor=1");
    command->callback([options, &status] { status = config(*options); });
}
