// Configurations and captured telegrams as text, with a table of where each byte comes from.

#include "tools/configurationText.h"

#include "host/hexBytes.h"
#include "host/text.h"
#include "tools/terminal.h"

using namespace typdescriptor;

namespace {

std::string number(std::size_t value)
{
    return std::to_string(value);
}

std::string heading(const std::string& name, bool inColour)
{
    return coloured(name, Colour::kBold, inColour) + '\n';
}

std::string counted(std::size_t count)
{
    return number(count) + (count == 1 ? " byte" : " bytes");
}

std::string hexLine(const std::vector<TelegramByte>& telegram)
{
    std::string line = "  ";
    line += telegram.empty() ? "none" : asHex(valuesOf(telegram));
    return line + '\n';
}

std::string telegramText(const std::string& name, const std::vector<TelegramByte>& telegram, bool inColour)
{
    constexpr std::size_t kNumberWidth = 6;
    std::string text = heading(name + ", " + counted(telegram.size()), inColour) + hexLine(telegram);
    for (std::size_t i = 0; i < telegram.size(); ++i) {
        const TelegramByte& byte = telegram[i];
        const std::string slot = byte.slot == 0 ? "" : "slot " + number(byte.slot) + ' ';
        text += "  " + padded(number(i), kNumberWidth) + asHex({byte.value}) + "  " + slot + byte.source + '\n';
    }
    return text;
}

std::string notesText(const std::vector<std::string>& notes)
{
    std::string text;
    for (const std::string& note : notes)
        text += "  note: " + note + '\n';
    return text;
}

std::string slotLabel(std::size_t index)
{
    constexpr std::size_t kSlotWidth = 11;
    return padded("  slot " + number(index + 1), kSlotWidth);
}

std::string slotsText(const Configuration& configuration)
{
    std::string text;
    for (std::size_t i = 0; i < configuration.slots.size(); ++i) {
        const Slot& slot = configuration.slots[i];
        text += slotLabel(i) + slot.name + (slot.slotName.empty() ? "" : ", in \"" + slot.slotName + '"') +
                (slot.isFixed                   ? " (fixed)"
                 : slot.origin == Slot::kPreset ? " (not chosen)"
                                                : "") +
                '\n';
    }
    return text;
}

std::string groupsText(unsigned groups)
{
    std::string text;
    for (unsigned group = 0; group < 8; ++group) {
        if ((groups >> group & 1U) != 0)
            text += (text.empty() ? "" : ", ") + number(group + 1);
    }
    return text.empty() ? "none" : text;
}

std::string standardText(const StandardParameters& standard)
{
    const std::string watchdog =
        standard.watchdogMilliseconds == 0 ? "off" : number(standard.watchdogMilliseconds) + " ms";
    return "  watchdog " + watchdog + ", min TSDR " + number(standard.minTsdr) + " bit times, groups " +
           groupsText(standard.groups) + (standard.isSync ? ", sync mode" : "") +
           (standard.isFreeze ? ", freeze mode" : "") +
           (standard.isLocked ? ", locked for other masters\n" : ", not locked for other masters\n");
}

std::string valuesText(const std::vector<CapturedValue>& values, const std::string& indent)
{
    constexpr std::size_t kNameWidth = 32;
    std::string text;
    for (const CapturedValue& value : values)
        text += indent + padded(value.parameter, kNameWidth) + ' ' + std::to_string(value.value) +
                (value.text.empty() ? "" : " (" + value.text + ')') + (value.isDefault ? "" : ", not the default") +
                (value.isAllowed ? "\n" : ", out of its range\n");
    return text;
}

std::string capturedSlotText(const CapturedSlot& slot, std::size_t index)
{
    std::vector<std::uint8_t> bytes;
    for (const Identifier& identifier : slot.identifiers)
        bytes.insert(bytes.end(), identifier.wireBytes.begin(), identifier.wireBytes.end());
    std::string text =
        slotLabel(index) + (slot.name.empty() ? "(no module of the device)" : slot.name) + " [" + asHex(bytes) + "]\n";
    for (const std::string& other : slot.alternatives)
        text += "           or " + other + '\n';
    return text + valuesText(slot.values, "      ");
}

} // namespace

std::string configurationText(const Device& device, const Configuration& configuration, bool inColour)
{
    std::string text = heading("Slots", inColour) + slotsText(configuration);
    text += "  " + number(configuration.inputBytes) + " of " + std::to_string(device.data.maxInputLen) +
            " bytes input, " + number(configuration.outputBytes) + " of " + std::to_string(device.data.maxOutputLen) +
            " bytes output, " + number(configuration.userParameters.size()) + " of " +
            number(device.parameterBudget()) + " bytes user parameters\n" + notesText(configuration.notes);
    text += telegramText("Parameter telegram (Set_Prm)", configuration.parameters, inColour);
    text += heading("User parameter data in it, " + counted(configuration.userParameters.size()), inColour) +
            hexLine(configuration.userParameters);
    return text + telegramText("Configuration telegram (Chk_Cfg)", configuration.configuration, inColour);
}

std::string captureText(const Capture& capture, const std::vector<Difference>* differences, bool inColour)
{
    std::string text;
    if (capture.standard)
        text +=
            heading("Station", inColour) + standardText(*capture.standard) + valuesText(capture.stationValues, "  ");
    if (!capture.slots.empty())
        text += heading("Slots", inColour);
    for (std::size_t i = 0; i < capture.slots.size(); ++i)
        text += capturedSlotText(capture.slots[i], i);
    if (differences != nullptr)
        text += heading("Differences from the plan", inColour) + (differences->empty() ? "  none\n" : "");
    for (std::size_t i = 0; differences != nullptr && i < differences->size(); ++i)
        text += "  " + (*differences)[i].text + '\n';
    return text + notesText(capture.notes);
}
