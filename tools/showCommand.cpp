// typdesc show: the device as a person wants to read it, or as JSON.

#include "host/jsonValues.h"
#include "tools/commands.h"
#include "tools/deviceText.h"
#include "tools/loadDevice.h"
#include "tools/reportJson.h"
#include "tools/terminal.h"

#include <nlohmann/json.hpp>

#include <memory>
#include <string>
#include <vector>

using namespace typdescriptor;

namespace {

struct Options {
    DeviceChoice device;
    std::vector<std::string> sections;
    bool isJson = false;
};

std::string textOf(const Device& device, const std::vector<std::string>& sections)
{
    const bool inColour = isColourWanted();
    std::string text;
    for (const std::string& section : sections)
        text += (text.empty() ? "" : "\n") + sectionText(device, section, inColour);
    return text;
}

std::string jsonOf(const Device& device, const std::vector<std::string>& sections)
{
    nlohmann::ordered_json json;
    for (const std::string& section : sections)
        json[section] = sectionJson(device, section);
    return jsonText(json);
}

ExitStatus show(const Options& options)
{
    Device device;
    if (const ExitStatus status = loadDevice(options.device, device); status != kExitGood)
        return status;
    const std::vector<std::string>& sections = options.sections.empty() ? sectionNames() : options.sections;
    print(options.isJson ? jsonOf(device, sections) : textOf(device, sections));
    return kExitGood;
}

} // namespace

void addDeviceOptions(CLI::App& command, DeviceChoice& choice)
{
    command.add_option("FILE", choice.path, "GSD file, type file, or a folder of them")->required();
    command.add_option("--ident", choice.ident, "which device of a folder: its ident number, as 0x0C21 or 3105");
    command.add_flag("-r,--recursive", choice.isRecursive, "look into the folders of the folder as well");
}

void addShowCommand(CLI::App& app, int& status)
{
    CLI::App* command = app.add_subcommand("show", "Show the device of a GSD file or type file");
    const auto options = std::make_shared<Options>();
    addDeviceOptions(*command, options->device);
    command->add_flag("--json", options->isJson, "as JSON");
    command->add_option("--section", options->sections, "only this section; may be given several times")
        ->check(CLI::IsMember(sectionNames()))
        ->allow_extra_args(false);
    command->footer("Exit status: 0 shown, 1 the file is not valid, 2 wrong usage or it cannot be read.\n"
                    "Example: typdesc show DRIVE.GSE --section modules\n"
                    "Example: typdesc show gsd/ --ident 0x0C21");
    command->callback([options, &status] { status = show(*options); });
}
