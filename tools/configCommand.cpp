// typdesc config: the telegrams that a master needs for a device with chosen modules and parameters, and the way back.

#include "host/configuration.h"
#include "host/hexBytes.h"
#include "host/jsonValues.h"
#include "host/readBack.h"
#include "host/text.h"
#include "tools/commands.h"
#include "tools/configurationText.h"
#include "tools/fileBytes.h"
#include "tools/loadDevice.h"
#include "tools/planFile.h"
#include "tools/reportJson.h"
#include "tools/terminal.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

using namespace typdescriptor;

namespace {

struct Options {
    DeviceChoice device;
    std::vector<std::string> slots;
    std::vector<std::string> values;
    std::optional<unsigned> watchdog;
    std::optional<unsigned> minTsdr;
    std::vector<unsigned> groups;
    bool isSync = false;
    bool isFreeze = false;
    bool isUnlocked = false;
    std::string planToLoad;
    std::string planToSave;
    std::optional<std::string> chkCfg;
    std::optional<std::string> setPrm;
    bool isJson = false;

    bool isExplanation() const { return chkCfg || setPrm; }
    bool hasPlan() const { return !planToLoad.empty() || !slots.empty() || !values.empty() || hasStandard(); }
    bool hasStandard() const { return watchdog || minTsdr || !groups.empty() || isSync || isFreeze || isUnlocked; }
};

void setStandard(const Options& options, StandardParameters& standard)
{
    standard.watchdogMilliseconds = options.watchdog.value_or(standard.watchdogMilliseconds);
    standard.minTsdr = options.minTsdr.value_or(standard.minTsdr);
    if (!options.groups.empty())
        standard.groups = 0;
    for (const unsigned group : options.groups)
        standard.groups |= 1U << (group - 1);
    standard.isSync = standard.isSync || options.isSync;
    standard.isFreeze = standard.isFreeze || options.isFreeze;
    standard.isLocked = standard.isLocked && !options.isUnlocked;
}

Plan planOf(const Options& options, const Device& device)
{
    const auto utf8 = [](std::vector<std::string> arguments) {
        std::transform(arguments.begin(), arguments.end(), arguments.begin(), fromArgument);
        return arguments;
    };
    const Plan loaded = options.planToLoad.empty() ? Plan() : loadPlan(options.planToLoad, device);
    Plan plan = planFromArguments(device, utf8(options.slots), utf8(options.values), loaded);
    setStandard(options, plan.standard);
    return plan;
}

/// @return whether the plan is saved, or was not to be
bool save(const Options& options, const Device& device, const Plan& plan)
{
    if (options.planToSave.empty())
        return true;
    const std::string json = toJson(plan, device);
    if (options.planToSave == "-") {
        print(json);
        return true;
    }
    const std::string problem = saveFile(options.planToSave, json);
    if (!problem.empty())
        reportProblem(options.planToSave, problem);
    else if (!options.isJson)
        print("wrote " + options.planToSave + '\n');
    return problem.empty();
}

/// Standard output is for one thing: the plan when it goes there, else what was worked out.
void printUnlessPlan(const Options& options, const std::string& text)
{
    if (options.planToSave != "-")
        print(text);
}

ExitStatus configureDevice(const Options& options, const Device& device)
{
    const Plan plan = planOf(options, device);
    const Configuration result = configure(device, plan);
    printUnlessPlan(options, options.isJson ? jsonText(configurationJson(result))
                                            : configurationText(device, result, isColourWanted()));
    for (const std::string& problem : result.problems)
        reportProblem(options.device.path, problem);
    if (!save(options, device, options.planToSave.empty() ? plan : withWholeNames(device, plan)))
        return kExitUnusable;
    return result.problems.empty() ? kExitGood : kExitFindings;
}

/// @param name  of the telegram, for messages
std::optional<std::vector<std::uint8_t>> readTelegram(const std::string& name, const std::optional<std::string>& hex)
{
    std::string problem;
    std::string wrong;
    if (!hex)
        return std::vector<std::uint8_t>();
    const std::string text = *hex == "-" ? readStandardInput(problem) : *hex;
    auto bytes = parseHexBytes({text}, wrong);
    if (bytes && !bytes->empty())
        return bytes;
    reportProblem(name, bytes ? "is empty" : '"' + fromArgument(wrong) + "\" is not hexadecimal bytes");
    return std::nullopt;
}

ExitStatus explain(const Options& options, const Device& device)
{
    const auto chkCfg = readTelegram("Chk_Cfg", options.chkCfg);
    const auto setPrm = chkCfg ? readTelegram("Set_Prm", options.setPrm) : std::nullopt;
    if (!chkCfg || !setPrm)
        return kExitUnusable;
    std::optional<Configuration> planned;
    if (options.hasPlan())
        planned = configure(device, planOf(options, device));
    const Configuration* const plan = planned ? &*planned : nullptr;
    const Capture capture = readBack(device, {*chkCfg, *setPrm}, plan);
    const std::vector<Difference> differences =
        planned ? differencesOf(device, *planned, capture) : std::vector<Difference>();
    printUnlessPlan(options, options.isJson ? jsonText(captureJson(device, capture, plan))
                                            : captureText(capture, planned ? &differences : nullptr, isColourWanted()));
    for (const Refusal& problem : capture.problems)
        reportProblem(options.device.path, problem.text);
    if (!save(options, device, capture.plan))
        return kExitUnusable;
    return capture.problems.empty() && differences.empty() ? kExitGood : kExitFindings;
}

ExitStatus config(const Options& options)
{
    Device device;
    if (const ExitStatus status = loadDevice(options.device, device); status != kExitGood)
        return status;
    try {
        return options.isExplanation() ? explain(options, device) : configureDevice(options, device);
    } catch (const ChoiceError& error) {
        reportProblem(options.device.path, error.what());
        return kExitUnusable;
    }
}

void addPlanOptions(CLI::App& command, Options& options)
{
    constexpr unsigned kGroups = 8;
    command.add_option("--slot", options.slots, "N=MODULE: a module by its name, its beginning, or #number")
        ->allow_extra_args(false);
    command.add_option("--set", options.values, "SLOT:PARAM=VALUE: a number or a value text; slot 0 is the station")
        ->allow_extra_args(false);
    command.add_option("--watchdog", options.watchdog, "in milliseconds; 0, as without it, is none");
    command.add_option("--min-tsdr", options.minTsdr, "in bit times, 11 to 255; without it 11");
    command.add_option("--groups", options.groups, "groups that the slave belongs to, 1 to 8, as in 1,3")
        ->delimiter(',')
        ->check(CLI::Range(1U, kGroups))
        ->allow_extra_args(false);
    command.add_flag("--sync", options.isSync, "ask for sync mode");
    command.add_flag("--freeze", options.isFreeze, "ask for freeze mode");
    command.add_flag("--unlocked", options.isUnlocked, "leave the slave free for other masters");
    command.add_option("--load", options.planToLoad, "a plan that --save wrote, to begin with");
    command.add_option("--save", options.planToSave, "write the plan: a file, or - for standard output");
}

} // namespace

void addConfigCommand(CLI::App& app, int& status)
{
    CLI::App* command =
        app.add_subcommand("config", "Work out parameter and configuration data of a device, or read them");
    const auto options = std::make_shared<Options>();
    addDeviceOptions(*command, options->device);
    addPlanOptions(*command, *options);
    command->add_option("--explain", options->chkCfg,
                        "say what a captured Chk_Cfg telegram is, in hexadecimal bytes; - for standard input");
    command->add_option("--explain-prm", options->setPrm, "the same for Set_Prm, from its first byte");
    command->add_flag("--json", options->isJson, "as JSON");
    command->footer(
        "Exit status: 0 within the device's limits and as planned, 1 not, or the file is not valid, 2 wrong\n"
        "usage or a file cannot be read or written.\n"
        "A block that wants its slot number gets the slot's place, counted from 1; Modul_Offset only\n"
        "changes the numbers that are shown.\n"
        "Example: typdesc config RIO.GSE --slot '5=40-4AI Pt100' --set 5:Sensor=1 --save plan.json\n"
        "Example: typdesc config RIO.GSE --load plan.json --explain '00 30 10 00 53'");
    command->callback([options, &status] { status = config(*options); });
}
