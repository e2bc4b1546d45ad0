// A configuration as text, with a table of where each byte comes from.

#include "tools/configurationText.h"

#include "host/hexBytes.h"
#include "host/text.h"
#include "tools/terminal.h"

using namespace typdescriptor;

namespace {

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
