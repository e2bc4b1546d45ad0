// The bytes of Set_Prm and Chk_Cfg, each with what it is.

#include "host/configurationParts.h"
#include "host/standardPart.h"

namespace typdescriptor {

namespace {

bool covers(const Parameter& parameter, std::size_t byte)
{
    return byte >= parameter.byte && byte < parameter.byte + parameter.byteCount();
}

/// What a byte of an area holds, by name.
std::string contentOf(const ParameterArea& area, std::size_t byte)
{
    std::string content;
    for (const Parameter& parameter : area.parameters) {
        if (covers(parameter, byte))
            content += (content.empty() ? "" : "; ") + parameter.name;
    }
    for (const SlotNumberField& field : area.slotNumbers) {
        if (byte >= field.byte && byte < field.byte + field.byteCount)
            content += content.empty() ? "slot number" : "; slot number";
    }
    return content.empty() ? "constant" : content;
}

void appendArea(const ParameterArea& area, unsigned slot, const std::string& owner, std::vector<TelegramByte>& telegram)
{
    for (std::size_t i = 0; i < area.bytes.size(); ++i)
        telegram.push_back({area.bytes[i], slot, owner + ": " + contentOf(area, i)});
}

/// The first user parameters of a DPV1 slave have a meaning of their own.
void nameDpv1Bytes(const Device& device, std::vector<TelegramByte>& userParameters)
{
    for (std::size_t i = 0; device.isDpv1.value_or(false) && i < std::min(kDpv1Bytes, userParameters.size()); ++i)
        userParameters[i].source += ", DPV1 status " + std::to_string(i + 1);
}

/// What a byte of an identifier is on the wire.
std::string roleOf(const Identifier& identifier, std::size_t byte)
{
    if (byte == 0)
        return "identifier, " + inWords(identifier);
    std::size_t position = 1;
    if (identifier.output && byte == position++)
        return "output length";
    if (identifier.input && byte == position++)
        return "input length";
    return "manufacturer's byte " + std::to_string(byte - position + 1);
}

/// Watchdog time as the product of two factors: the smallest that is not below what is wanted.
struct WatchdogFactors {
    unsigned first = 0;
    unsigned second = 0;
};

WatchdogFactors watchdogFactors(unsigned units)
{
    constexpr unsigned kMost = 255;
    WatchdogFactors best{kMost, kMost};
    for (unsigned first = 1; first <= kMost; ++first) {
        const unsigned second = (units + first - 1) / first;
        if (second <= kMost && first * second < best.first * best.second)
            best = {first, second};
    }
    return best;
}

void addWatchdog(const StandardParameters& standard, unsigned base, Configuration& result)
{
    constexpr unsigned kMostUnits = 255 * 255;
    const std::string wanted = std::to_string(standard.watchdogMilliseconds);
    const std::string allowed = "1 to " + std::to_string(kMostUnits * base) + " ms, or 0 for none";
    if (standard.watchdogMilliseconds > kMostUnits * base)
        throw ChoiceError(
            {"outOfRange", "watchdog: " + wanted + " ms, allowed are " + allowed, 0, "watchdog", wanted, allowed});
    WatchdogFactors factors;
    if (standard.watchdogMilliseconds == 0) {
        result.notes.emplace_back("the watchdog is off: outputs keep their values when the master falls silent");
    } else {
        factors = watchdogFactors((standard.watchdogMilliseconds + base - 1) / base);
        const unsigned reached = factors.first * factors.second * base;
        if (reached != standard.watchdogMilliseconds)
            result.notes.push_back("the watchdog takes " + std::to_string(reached) + " ms: " + wanted +
                                   " ms is no product of its factors");
    }
    result.parameters.push_back({static_cast<std::uint8_t>(factors.first), 0, "watchdog factor 1"});
    result.parameters.push_back({static_cast<std::uint8_t>(factors.second), 0, "watchdog factor 2"});
}

/// @throws ChoiceError  for a number that has no place in the standard part
void checkStandard(const Device& device, const StandardParameters& standard, Configuration& result)
{
    constexpr unsigned kMostByte = 255;
    const auto refuse = [](const char* what, unsigned value, const std::string& allowed) {
        const std::string number = std::to_string(value);
        throw ChoiceError(
            {"outOfRange", std::string(what) + ": " + number + ", allowed are " + allowed, 0, what, number, allowed});
    };
    if (standard.minTsdr > kMostByte || (standard.minTsdr != 0 && standard.minTsdr < kLeastMinTsdr))
        refuse("min TSDR", standard.minTsdr, kAllowedMinTsdr);
    if (standard.groups > kMostByte)
        refuse("groups", standard.groups, "0 to 255");
    if (standard.isSync && !device.has(kFeatureSyncMode))
        addProblem(result, {"noSyncMode", "sync mode: the device does not support it", 0, "sync mode", "on", "off"});
    if (standard.isFreeze && !device.has(kFeatureFreezeMode))
        addProblem(result,
                   {"noFreezeMode", "freeze mode: the device does not support it", 0, "freeze mode", "on", "off"});
}

/// The seven bytes ahead of the user parameters.
void addStandardPart(const Device& device, const StandardParameters& standard, unsigned watchdogBase,
                     Configuration& result)
{
    const auto status = static_cast<std::uint8_t>((standard.isLocked ? kLock : kUnlock) |
                                                  (standard.isSync ? kSync : 0) | (standard.isFreeze ? kFreeze : 0) |
                                                  (standard.watchdogMilliseconds != 0 ? kWatchdog : 0));
    const unsigned ident = device.header.identNumber;
    result.parameters.push_back({status, 0, "station status: lock, sync, freeze, watchdog"});
    addWatchdog(standard, watchdogBase, result);
    result.parameters.push_back({static_cast<std::uint8_t>(standard.minTsdr), 0, "min TSDR"});
    result.parameters.push_back({static_cast<std::uint8_t>(ident >> 8U), 0, "ident number, high byte"});
    result.parameters.push_back({static_cast<std::uint8_t>(ident & 0xFFU), 0, "ident number, low byte"});
    result.parameters.push_back({static_cast<std::uint8_t>(standard.groups), 0, "groups"});
}

void addModules(Configuration& result)
{
    for (std::size_t i = 0; i < result.slots.size(); ++i) {
        const Slot& slot = result.slots[i];
        const auto number = static_cast<unsigned>(i + 1);
        for (const ParameterArea& block : slot.blocks)
            appendArea(block, number, slot.name, result.userParameters);
        for (const Identifier& identifier : slot.identifiers) {
            for (std::size_t byte = 0; byte < identifier.wireBytes.size(); ++byte)
                result.configuration.push_back(
                    {identifier.wireBytes[byte], number, slot.name + ": " + roleOf(identifier, byte)});
            result.inputBytes += identifier.inputBytes();
            result.outputBytes += identifier.outputBytes();
        }
    }
}

} // namespace

unsigned watchdogBase(const Device& device, const std::vector<std::uint8_t>& userParameters)
{
    constexpr std::uint8_t kBase1ms = 0x04;
    const bool isFast =
        device.isDpv1.value_or(false) && !userParameters.empty() && (userParameters.front() & kBase1ms) != 0;
    return isFast ? 1 : 10;
}

void buildTelegrams(const Draft& draft, const StandardParameters& standard)
{
    Configuration& result = draft.result;
    checkStandard(draft.device, standard, result);
    addStandardPart(draft.device, standard, watchdogBase(draft.device, draft.station.bytes), result);
    appendArea(draft.station, 0, "station", result.userParameters);
    nameDpv1Bytes(draft.device, result.userParameters);
    addModules(result);
    result.parameters.insert(result.parameters.end(), result.userParameters.begin(), result.userParameters.end());
}

} // namespace typdescriptor
