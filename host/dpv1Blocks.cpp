// Alarms and status messages of DPV1 slaves: what stands in their device-related blocks.

#include "host/diagnosisBlocks.h"
#include "host/hexBytes.h"

#include <algorithm>
#include <array>

namespace typdescriptor {

namespace {

constexpr std::size_t kHeadBytes = 4; // header, type, slot, specifier
constexpr unsigned kStatusFlag = 0x80;
constexpr unsigned kModuleStatusType = 2;
constexpr unsigned kLinkStatusType = 3;
constexpr unsigned kLastSlot = 254;
constexpr unsigned kFirstMakerType = 32;
constexpr unsigned kLastMakerType = 126;

struct Named {
    const char* name;
    const char* text;
};

struct TypeRow {
    unsigned type;
    Named named;
};

constexpr std::array kAlarmTypes = {
    TypeRow{1, {"diagnosisAlarm", "diagnosis alarm"}},
    TypeRow{2, {"processAlarm", "process alarm"}},
    TypeRow{3, {"pullAlarm", "pull alarm: a module was taken out"}},
    TypeRow{4, {"plugAlarm", "plug alarm: a module was put in"}},
    TypeRow{5, {"statusAlarm", "status alarm"}},
    TypeRow{6, {"updateAlarm", "update alarm"}},
};

constexpr std::array kStatusTypes = {
    TypeRow{1, {"statusMessage", "status message"}},
    TypeRow{kModuleStatusType, {"moduleStatus", "module status"}},
    TypeRow{kLinkStatusType, {"linkStatus", "link status of slave-to-slave traffic"}},
    TypeRow{30, {"redundancyCommandAnswer", "answer to a redundancy command"}},
    TypeRow{31, {"redundancyState", "redundancy state"}},
};

constexpr std::array<Named, 4> kAlarmSpecifiers = {
    Named{"none", "no further distinction"},
    Named{"appears", "an error appears, the slot is disturbed"},
    Named{"goneAndGood", "an error is gone, the slot is good"},
    Named{"goneAndDisturbed", "an error is gone, the slot is still disturbed"},
};

constexpr std::array<Named, 4> kStatusSpecifiers = {
    Named{"none", "no further distinction"},
    Named{"appears", "the status appears"},
    Named{"disappears", "the status disappears"},
    Named{"reserved", "reserved specifier"},
};

constexpr std::array<Named, 4> kModuleStates = {
    Named{"valid", "data valid"},
    Named{"faulty", "data invalid: the module is faulty"},
    Named{"wrongModule", "data invalid: another module than configured"},
    Named{"noModule", "data invalid: no module"},
};

template <std::size_t size>
Named typeOf(const std::array<TypeRow, size>& rows, unsigned type)
{
    const auto row =
        std::find_if(rows.begin(), rows.end(), [type](const TypeRow& known) { return known.type == type; });
    if (row != rows.end())
        return row->named;
    if (type >= kFirstMakerType && type <= kLastMakerType)
        return {"makerSpecific", "maker-specific"};
    return {"reserved", "reserved"};
}

/// Two bits for each slot, four slots a byte.
void explainModules(const DiagnosisContext& context, DiagnosisBlock& block)
{
    constexpr unsigned kSlotsInByte = 4;
    unsigned slot = 0;
    for (const std::uint8_t byte : block.dpv1->userData) {
        for (unsigned pair = 0; pair < kSlotsInByte; ++pair) {
            const Named& state = kModuleStates[byte >> 2 * pair & 3U];
            ++slot;
            const Slot* const known = slotOf(context, slot);
            block.modules.push_back({slot, known == nullptr ? "" : known->name, known == nullptr ? "" : known->slotName,
                                     state.name, state.text});
        }
    }
    // The last byte is filled up with slots that are not there: where the configuration is known they are left out.
    const std::size_t there =
        context.configuration == nullptr ? block.modules.size() : context.configuration->slots.size();
    const auto isSilent = [](const ModuleState& state) {
        return state.module.empty() && state.name == kModuleStates[0].name;
    };
    while (block.modules.size() > there && isSilent(block.modules.back()))
        block.modules.pop_back();
}

/// An address, then what is known of the link to it.
void explainLinks(DiagnosisBlock& block)
{
    const std::vector<std::uint8_t>& data = block.dpv1->userData;
    for (std::size_t i = 0; i + 1 < data.size(); i += 2)
        block.links.push_back({data[i], (data[i + 1] & 0x80U) != 0, (data[i + 1] & 0x40U) != 0});
}

/// The texts of the device for what follows the head. Bits are numbered from the byte behind the header, so those texts
/// begin at the fourth. What no text is for is shown as data: which of its bits are set says nothing.
void explainUserData(const DiagnosisContext& context, DiagnosisBlock& block)
{
    const auto& types = context.device.diagnosisTypes;
    const auto ownTexts = std::find_if(types.begin(), types.end(),
                                       [&block](const DiagnosisType& type) { return type.number == block.bytes[1]; });
    block.device = entriesOf(ownTexts == types.end() ? context.device.diagnosisTexts : ownTexts->texts, block,
                             static_cast<unsigned>(kHeadBytes));
    std::erase_if(block.device, [](const DeviceEntry& entry) { return entry.text.empty(); });
}

void checkHead(const DiagnosisBlock& block, Diagnosis& diagnosis)
{
    const Dpv1Entry& entry = *block.dpv1;
    if (entry.name == "reserved")
        diagnosis.problems.push_back({"reservedType",
                                      std::string(block.kind == DiagnosisBlock::kAlarm ? "alarm" : "status") +
                                          " type " + std::to_string(entry.type) + " is reserved",
                                      block.offset + 1, 1});
    if (entry.slot > kLastSlot)
        diagnosis.problems.push_back(
            {"slotOutOfRange", "slot " + std::to_string(entry.slot) + ": slots are 0 to " + std::to_string(kLastSlot),
             block.offset + 2, 1});
    if (entry.specifier == "reserved")
        diagnosis.problems.push_back(
            {"reservedSpecifier", "the specifier of a status is 0, 1 or 2", block.offset + 3, 1});
    const bool isOfStation = block.kind == DiagnosisBlock::kModuleStatus || block.kind == DiagnosisBlock::kLinkStatus;
    if (isOfStation && (entry.slot != 0 || entry.specifier != "none"))
        diagnosis.problems.push_back(
            {"notOfStation", entry.text + " is given for slot 0 and without a specifier", block.offset + 2, 2});
    if (block.kind == DiagnosisBlock::kLinkStatus && entry.userData.size() % 2 != 0)
        diagnosis.problems.push_back({"oddLinkStatus", "a link status has two bytes for each publisher",
                                      block.offset + block.bytes.size() - 1, 1});
}

} // namespace

void explainDpv1(const DiagnosisContext& context, DiagnosisBlock& block, Diagnosis& diagnosis)
{
    const std::vector<std::uint8_t>& bytes = block.bytes;
    block.kind = bytes.size() > 1 && (bytes[1] & kStatusFlag) != 0 ? DiagnosisBlock::kStatus : DiagnosisBlock::kAlarm;
    if (bytes.size() < kHeadBytes)
        return;
    const bool isAlarm = block.kind == DiagnosisBlock::kAlarm;
    Dpv1Entry entry;
    entry.type = bytes[1] & ~kStatusFlag;
    const Named named = isAlarm ? typeOf(kAlarmTypes, entry.type) : typeOf(kStatusTypes, entry.type);
    const Named& specifier = (isAlarm ? kAlarmSpecifiers : kStatusSpecifiers)[bytes[3] & 3U];
    entry.name = named.name;
    entry.text = named.text;
    if (entry.type >= kFirstMakerType || entry.name == "reserved")
        entry.text += isAlarm ? " alarm" : " status";
    entry.slot = bytes[2];
    if (const Slot* const known = slotOf(context, entry.slot); known != nullptr) {
        entry.module = known->name;
        entry.slotName = known->slotName;
    }
    entry.specifier = specifier.name;
    entry.specifierText = specifier.text;
    if (isAlarm) {
        entry.sequence = bytes[3] >> 3U;
        entry.wantsAcknowledgement = (bytes[3] & 4U) != 0;
    }
    entry.userData.assign(bytes.begin() + kHeadBytes, bytes.end());
    if (!isAlarm && entry.type == kModuleStatusType)
        block.kind = DiagnosisBlock::kModuleStatus;
    else if (!isAlarm && entry.type == kLinkStatusType)
        block.kind = DiagnosisBlock::kLinkStatus;
    block.dpv1 = std::move(entry);

    if (block.kind == DiagnosisBlock::kModuleStatus) {
        explainModules(context, block);
    } else if (block.kind == DiagnosisBlock::kLinkStatus) {
        explainLinks(block);
    } else {
        explainUserData(context, block);
    }
    checkHead(block, diagnosis);
    checkSlot(context, block.dpv1->slot, block.offset + 2, diagnosis);
}

} // namespace typdescriptor
