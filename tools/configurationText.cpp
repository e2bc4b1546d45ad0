// A configuration as text, with a table of where each byte comes from, and as JSON.

#include "tools/configuration.h"
#include "tools/latin1.h"
#include "tools/terminal.h"

#include <nlohmann/json.hpp>

#include <array>

using Json = nlohmann::ordered_json;

namespace {

std::vector<std::uint8_t> valuesOf(const std::vector<TelegramByte>& telegram)
{
    std::vector<std::uint8_t> values;
    values.reserve(telegram.size());
    for (const TelegramByte& byte : telegram)
        values.push_back(byte.value);
    return values;
}

std::string telegramText(const std::string& name, const std::vector<TelegramByte>& telegram, bool inColour)
{
    constexpr std::size_t kNumberWidth = 6;
    std::string text = coloured(name, Colour::kBold, inColour) + ", " + std::to_string(telegram.size()) +
                       (telegram.size() == 1 ? " byte\n  " : " bytes\n  ") + asHex(valuesOf(telegram)) + '\n';
    for (std::size_t i = 0; i < telegram.size(); ++i) {
        const TelegramByte& byte = telegram[i];
        const std::string slot = byte.slot == 0 ? "" : "slot " + std::to_string(byte.slot) + ' ';
        text += "  " + padded(std::to_string(i), kNumberWidth) + asHex({byte.value}) + "  " + slot + byte.source + '\n';
    }
    return text;
}

Json telegramJson(const std::vector<TelegramByte>& telegram)
{
    Json bytes = Json::array();
    for (const TelegramByte& byte : telegram)
        bytes.push_back({{"value", byte.value}, {"slot", byte.slot}, {"source", byte.source}});
    return {{"hex", asHex(valuesOf(telegram))}, {"bytes", bytes}};
}

std::string slotsText(const Configuration& configuration)
{
    std::string text;
    for (std::size_t i = 0; i < configuration.slots.size(); ++i) {
        const Slot& slot = configuration.slots[i];
        text += "  " + padded("slot " + std::to_string(i + 1), 9) + slot.name +
                (slot.isFixed                   ? " (fixed)"
                 : slot.origin == Slot::kPreset ? " (not chosen)"
                                                : "") +
                '\n';
    }
    return text;
}

} // namespace

std::string configurationText(const Device& device, const Configuration& configuration, bool inColour)
{
    std::string text = coloured("Slots", Colour::kBold, inColour) + '\n' + slotsText(configuration);
    text += "  " + std::to_string(configuration.inputBytes) + " of " + std::to_string(device.data.maxInputLen) +
            " bytes input, " + std::to_string(configuration.outputBytes) + " of " +
            std::to_string(device.data.maxOutputLen) + " bytes output, " +
            std::to_string(configuration.userParameters.size()) + " of " + std::to_string(device.parameterBudget()) +
            " bytes user parameters\n";
    for (const std::string& note : configuration.notes)
        text += "  note: " + note + '\n';
    return text + telegramText("User parameter data", configuration.userParameters, inColour) +
           telegramText("Configuration data", configuration.configuration, inColour);
}

Json configurationJson(const Configuration& configuration)
{
    constexpr std::array<const char*, 3> kOrigins = {"free", "preset", "chosen"};
    Json slots = Json::array();
    for (const Slot& slot : configuration.slots)
        slots.push_back({{"slot", slots.size() + 1},
                         {"name", slot.name},
                         {"origin", kOrigins[slot.origin]},
                         {"fixed", slot.isFixed}});
    return {{"slots", slots},
            {"inputBytes", configuration.inputBytes},
            {"outputBytes", configuration.outputBytes},
            {"userParameters", telegramJson(configuration.userParameters)},
            {"configuration", telegramJson(configuration.configuration)},
            {"notes", configuration.notes},
            {"problems", configuration.problems}};
}
