// The keyword table, and the search for the keyword with which a line begins.

#include "gsd/keywordTable.h"

#include "gsd/sharedHandlers.h"
#include "typefile/format.h"
#include "typefile/scan.h"

#include <algorithm>
#include <cstdint>

using Compiler = cGsdCompiler;
using enum GsdForm;
using enum GsdOccurrence;

namespace {

constexpr IntegerKind kU8 = IntegerKind::unsigned8;
constexpr IntegerKind kU16 = IntegerKind::unsigned16;
constexpr std::uint32_t kAnyU16 = 0xFFFF;
constexpr std::uint32_t kMaxDataLen = 488;

} // namespace

// clang-format off
constexpr std::array<GsdKeyword, GsdKeywordTable::kCount> GsdKeywordTable::kRows{{
    {"#Profibus_DP", bare, once, kNotMandatory, kOutside, nullptr}, // a second one is refused before its handler
    {"GSD_Revision", value, once, kNotMandatory, kOutside, &Compiler::handleGsdRevision},
    {"Vendor_Name", value, once, kVendorNameFound, kOutside, &Compiler::handleVendorName},
    {"Model_Name", value, once, kModelNameFound, kOutside, &Compiler::handleModelName},
    {"Revision_Number", value, once, kNotMandatory, kOutside, &Compiler::dropByte},
    {"Revision", value, once, kRevisionFound, kOutside, &Compiler::dropString},
    {"Ident_Number", value, once, kIdentNumberFound, kOutside, &Compiler::handleIdentNumber},
    {"Protocol_Ident", value, once, kProtocolIdentFound, kOutside, &Compiler::requireZero<kErrGsdProtocol>},
    {"Station_Type", value, once, kStationTypeFound, kOutside, &Compiler::requireZero<kErrGsdStationType>},
    {"FMS_supp", value, once, kNotMandatory, kOutside, &Compiler::dropFlag},
    {"Hardware_Release", value, once, kHardwareReleaseFound, kOutside, &Compiler::dropString},
    {"Software_Release", value, once, kSoftwareReleaseFound, kOutside, &Compiler::dropString},
    {"9.6_supp", value, once, kNotMandatory, kOutside, &Compiler::handleBaudRate<9>},
    {"19.2_supp", value, once, kNotMandatory, kOutside, &Compiler::handleBaudRate<8>},
    {"31.25_supp", value, once, kNotMandatory, kOutside, &Compiler::handleBaudRate<4>},
    {"45.45_supp", value, once, kNotMandatory, kOutside, &Compiler::handleBaudRate<4>},
    {"93.75_supp", value, once, kNotMandatory, kOutside, &Compiler::handleBaudRate<7>},
    {"187.5_supp", value, once, kNotMandatory, kOutside, &Compiler::handleBaudRate<6>},
    {"500_supp", value, once, kNotMandatory, kOutside, &Compiler::handleBaudRate<5>},
    {"1.5M_supp", value, once, kNotMandatory, kOutside, &Compiler::handleBaudRate<3>},
    {"3M_supp", value, once, kNotMandatory, kOutside, &Compiler::handleBaudRate<2>},
    {"6M_supp", value, once, kNotMandatory, kOutside, &Compiler::handleBaudRate<1>},
    {"12M_supp", value, once, kNotMandatory, kOutside, &Compiler::handleBaudRate<0>},
    {"MaxTsdr_9.6", value, once, kNotMandatory, kOutside, &Compiler::handleMaxTsdr<9>},
    {"MaxTsdr_19.2", value, once, kNotMandatory, kOutside, &Compiler::handleMaxTsdr<8>},
    {"MaxTsdr_31.25", value, once, kNotMandatory, kOutside, &Compiler::handleMaxTsdr<4>},
    {"MaxTsdr_45.45", value, once, kNotMandatory, kOutside, &Compiler::handleMaxTsdr<4>},
    {"MaxTsdr_93.75", value, once, kNotMandatory, kOutside, &Compiler::handleMaxTsdr<7>},
    {"MaxTsdr_187.5", value, once, kNotMandatory, kOutside, &Compiler::handleMaxTsdr<6>},
    {"MaxTsdr_500", value, once, kNotMandatory, kOutside, &Compiler::handleMaxTsdr<5>},
    {"MaxTsdr_1.5M", value, once, kNotMandatory, kOutside, &Compiler::handleMaxTsdr<3>},
    {"MaxTsdr_3M", value, once, kNotMandatory, kOutside, &Compiler::handleMaxTsdr<2>},
    {"MaxTsdr_6M", value, once, kNotMandatory, kOutside, &Compiler::handleMaxTsdr<1>},
    {"MaxTsdr_12M", value, once, kNotMandatory, kOutside, &Compiler::handleMaxTsdr<0>},
    {"Redundancy", value, once, kNotMandatory, kOutside, &Compiler::dropFlag},
    {"Repeater_Ctrl_Sig", value, once, kNotMandatory, kOutside, &Compiler::dropByte},
    {"24V_Pins", value, once, kNotMandatory, kOutside, &Compiler::dropByte},
    {"Implementation_Type", value, once, kNotMandatory, kOutside, &Compiler::handleImplementationType},
    {"Bitmap_Device", value, once, kNotMandatory, kOutside, &Compiler::handleBitmapDevice},
    {"Bitmap_Diag", value, once, kNotMandatory, kOutside, &Compiler::dropString},
    {"Bitmap_SF", value, once, kNotMandatory, kOutside, &Compiler::dropString},
    {"Freeze_Mode_supp", value, once, kNotMandatory, kOutside, &Compiler::storeFlagCharacter<typefile::kFreezeMode>},
    {"Sync_Mode_supp", value, once, kNotMandatory, kOutside, &Compiler::storeFlagCharacter<typefile::kSyncMode>},
    {"Auto_Baud_supp", value, once, kNotMandatory, kOutside, &Compiler::dropFlag},
    {"Set_Slave_Add_supp", value, once, kNotMandatory, kOutside, &Compiler::storeFlagCharacter<typefile::kSetSlaveAddress>},
    {"User_Prm_Data_Len", value, once, kNotMandatory, kOutside, &Compiler::handleUserPrmDataLen},
    {"User_Prm_Data", value, once, kNotMandatory, kOutside, &Compiler::handleUserPrmData},
    {"Min_Slave_Intervall", value, once, kMinSlaveIntervalFound, kOutside, &Compiler::handleMinSlaveInterval},
    {"Modular_Station", value, once, kNotMandatory, kOutside, &Compiler::handleModularStation},
    {"Max_Module", value, once, kMaxModuleFound, kOutside, &Compiler::storeNumber<&GsdModel::maxModule, kU8, typefile::kMaxModules>},
    {"Max_Input_Len", value, once, kMaxInputLenFound, kOutside, &Compiler::storeNumber<&GsdModel::maxInputLen, kU16, typefile::kMaxIoLen>},
    {"Max_Output_Len", value, once, kMaxOutputLenFound, kOutside, &Compiler::storeNumber<&GsdModel::maxOutputLen, kU16, typefile::kMaxIoLen>},
    {"Max_Data_Len", value, once, kMaxDataLenFound, kOutside, &Compiler::storeNumber<&GsdModel::maxDataLen, kU16, kMaxDataLen>},
    {"Unit_Diag_Bit", argument, repeated, kNotMandatory, kOutside, &Compiler::handleUnitDiagBit},
    {"Unit_Diag_Area_End", bare, repeated, kNotMandatory, kInUnitDiagArea, &Compiler::handleUnitDiagAreaEnd},
    {"Unit_Diag_Area", value, repeated, kNotMandatory, kOutside, &Compiler::handleUnitDiagArea},
    {"Module_Reference", value, once, kNotMandatory, kInModule, &Compiler::handleModuleReference},
    {"Module", value, repeated, kModuleFound, kOutside, &Compiler::handleModule},
    {"Channel_Diag", argument, repeated, kNotMandatory, kOutside | kInModule, &Compiler::handleChannelDiag},
    {"ChannelDiag", argument, repeated, kNotMandatory, kOutside | kInModule, &Compiler::handleChannelDiagOldSpelling},
    {"Fail_Safe", value, once, kNotMandatory, kOutside, &Compiler::storeFlagCharacter<typefile::kFailSafe>},
    {"Max_Diag_Data_Len", value, once, kMaxDiagDataLenFound, kOutside, &Compiler::handleMaxDiagDataLen},
    {"Modul_Offset", value, once, kNotMandatory, kOutside, &Compiler::handleModulOffset},
    {"Slave_Family", value, once, kSlaveFamilyFound, kOutside, &Compiler::handleSlaveFamily},
    {"Max_User_Prm_Data_Len", value, once, kNotMandatory, kOutside, &Compiler::handleMaxUserPrmDataLen},
    {"Ext_User_Prm_Data_Ref", argument, repeated, kNotMandatory, kOutside | kInModule, &Compiler::handleExtUserPrmDataRef},
    {"Ext_User_Prm_Data_Const", argument, repeated, kNotMandatory, kOutside | kInModule, &Compiler::handleExtUserPrmDataConst},
    {"ExtUserPrmData", value, repeated, kNotMandatory, kOutside, &Compiler::handleExtUserPrmData},
    {"PrmTextRef", value, repeated, kNotMandatory, kInExtPrmDef, &Compiler::handlePrmTextRefOldSpelling},
    {"PrmText", value, repeated, kNotMandatory, kOutside, &Compiler::handlePrmText},
    {"EndPrmText", bare, repeated, kNotMandatory, kInPrmText, &Compiler::handleEndPrmText},
    {"EndModule", bare, repeated, kNotMandatory, kInModule, &Compiler::handleEndModule},
    {"EndExtUserPrmData", bare, repeated, kNotMandatory, kInExtPrmDef, &Compiler::handleEndExtUserPrmData},
    {"Unsigned8", bare, repeated, kNotMandatory, kInExtPrmDef, &Compiler::handleDataType},
    {"Unsigned16", bare, repeated, kNotMandatory, kInExtPrmDef, &Compiler::handleDataType},
    {"Unsigned32", bare, repeated, kNotMandatory, kInExtPrmDef, &Compiler::handleDataType},
    {"Signed8", bare, repeated, kNotMandatory, kInExtPrmDef, &Compiler::handleDataType},
    {"Signed16", bare, repeated, kNotMandatory, kInExtPrmDef, &Compiler::handleDataType},
    {"Signed32", bare, repeated, kNotMandatory, kInExtPrmDef, &Compiler::handleDataType},
    {"BitArea", bareArgument, repeated, kNotMandatory, kInExtPrmDef, &Compiler::handleDataType},
    {"Bit", bareArgument, repeated, kNotMandatory, kInExtPrmDef, &Compiler::handleDataType},
    {"Prm_Text_Ref", value, repeated, kNotMandatory, kInExtPrmDef, &Compiler::handlePrmTextRef},
    {"Ext_Module_Prm_Data_Len", value, repeated, kNotMandatory, kInModule, &Compiler::handleExtModulePrmDataLen},
    {"Text", argument, repeated, kNotMandatory, kInPrmText, &Compiler::handleText},
    {"Value", argument, repeated, kNotMandatory, kInUnitDiagArea, &Compiler::handleValue},
    {"Preset", value, repeated, kNotMandatory, kInModule, &Compiler::handlePreset},
    {"FixPresetModules", value, once, kNotMandatory, kOutside, &Compiler::storeFlag<&GsdModel::fixPresetModules>},
    {"IsDPAsiLink", value, once, kNotMandatory, kOutside, &Compiler::handleIsDpAsiLink},
    {"OrderNumber", value, once, kNotMandatory, kOutside, &Compiler::handleOrderNumber},
    {"Periphery", value, once, kNotMandatory, kOutside, &Compiler::handlePeriphery},
    {"Q5HeaderCnf", value, once, kNotMandatory, kOutside, &Compiler::handleQ5HeaderCnf},
    {"IsPublisher", value, once, kNotMandatory, kOutside, &Compiler::storeFlag<&GsdModel::isPublisher>},
    {"IsSubscriber", value, once, kNotMandatory, kOutside, &Compiler::storeFlag<&GsdModel::isSubscriber>},
    {"IsActive", value, once, kNotMandatory, kOutside, &Compiler::storeFlag<&GsdModel::isActive>},
    {"IsMaster", value, once, kNotMandatory, kOutside, &Compiler::storeFlag<&GsdModel::isMaster>},
    {"DiagBufferable", value, once, kNotMandatory, kOutside, &Compiler::storeFlagCharacter<typefile::kDiagBufferable>},
    {"EvenSlotNumberRequired", value, once, kNotMandatory, kOutside, &Compiler::storeFlagCharacter<typefile::kEvenSlotNumber>},
    {"OnlyNormalModules", value, once, kNotMandatory, kOutside, &Compiler::storeFlag<&GsdModel::onlyNormalModules>},
    {"OnlySpecialModules", value, once, kNotMandatory, kOutside, &Compiler::storeFlag<&GsdModel::onlySpecialModules>},
    {"ETERDelay", value, once, kNotMandatory, kOutside, &Compiler::storeNumber<&GsdModel::eterDelay, kU16, kAnyU16>},
    {"MaxResponseDelay", value, once, kNotMandatory, kOutside, &Compiler::storeNumber<&GsdModel::maxResponseDelay, kU16, kAnyU16>},
    {"IsKGPDevice", value, once, kNotMandatory, kOutside, &Compiler::handleIsKgpDevice},
    {"KGPModule", value, repeated, kNotMandatory, kOutside, &Compiler::handleKgpModule},
    {"KGPGui", value, once, kNotMandatory, kOutside, &Compiler::handleKgpGui},
    {"OffsetFirstMPDBlock", value, once, kNotMandatory, kOutside, &Compiler::handleOffsetFirstMpdBlock},
    {"Unit_Diag_!Bit", argument, repeated, kNotMandatory, kOutside, &Compiler::handleUnitDiagNotBit},
}};
// clang-format on

namespace {

constexpr char kAbsent = '\0'; // what stands behind the end of a text

constexpr char upperAt(std::string_view text, std::size_t position)
{
    return position < text.size() ? typefile::toUpper(text[position]) : kAbsent;
}

constexpr bool beginsIgnoringCase(std::string_view line, std::string_view start)
{
    return line.size() >= start.size() && compareIgnoringCase(line.substr(0, start.size()), start) == 0;
}

/// A decision tree over the spellings. A node looks at one character, the first that its keywords do not share, so a
/// walk over a few characters leaves one keyword with which the line can begin; only then is it compared as a whole.
/// Where one keyword begins with another, the longer one stands first in the table: it is compared first.
class SpellingTree {
public:
    constexpr explicit SpellingTree(const std::array<GsdKeyword, GsdKeywordTable::kCount>& rows)
    {
        Ids ids{};
        for (std::size_t i = 0; i < ids.size(); ++i)
            ids[i] = i;
        std::sort(ids.begin(), ids.end(), [&](std::size_t a, std::size_t b) {
            return compareIgnoringCase(rows[a].spelling, rows[b].spelling) < 0;
        });
        // Of the keywords with which another begins, the sorted order puts the longest last.
        for (std::size_t i = 0; i < ids.size(); ++i) {
            shorter[ids[i]] = kNone;
            for (std::size_t j = 0; j < i; ++j) {
                if (beginsIgnoringCase(rows[ids[i]].spelling, rows[ids[j]].spelling))
                    shorter[ids[i]] = static_cast<std::uint8_t>(ids[j]);
            }
        }
        addNode(rows, ids, {0, ids.size(), 0}, kNone);
    }

    std::size_t find(std::string_view line) const
    {
        std::size_t keyword = kNone;
        for (std::size_t node = 0; node < kLeaves;) {
            keyword = nodes[node].keyword;
            const std::size_t child = nodes[node].children[indexOf(upperAt(line, nodes[node].position))];
            if (child == kNoChild)
                break;
            if (child >= kLeaves)
                keyword = child - kLeaves;
            node = child;
        }
        while (keyword != kNone && !begins(line, GsdKeywordTable::kRows[keyword].spelling))
            keyword = shorter[keyword];
        return keyword;
    }

private:
    /// Most files write their keywords in the case of the table.
    static bool begins(std::string_view line, std::string_view spelling)
    {
        return line.starts_with(spelling) || beginsIgnoringCase(line, spelling);
    }

    using Ids = std::array<std::size_t, GsdKeywordTable::kCount>;
    static constexpr std::uint8_t kNone = GsdKeywordTable::kNone;
    static constexpr std::uint8_t kNoChild = 0;  // the root is no child
    static constexpr std::uint8_t kLeaves = 128; // children from here on are keywords
    static constexpr std::size_t kCharacters = 64;

    /// Upper-cased spellings lie between the blank and the underscore; a strange character of a line may take the place
    /// of one of theirs, which the comparison then finds out.
    static constexpr std::size_t indexOf(char upper)
    {
        return (static_cast<unsigned char>(upper) - static_cast<unsigned char>(' ')) % kCharacters;
    }

    struct Node {
        std::size_t position = 0;     // of the character that tells the keywords apart
        std::uint8_t keyword = kNone; // the longest that ends before it
        std::array<std::uint8_t, kCharacters> children{};
    };

    /// Sorted keywords, `last` one behind, that share their first `depth` characters.
    struct Branch {
        std::size_t first;
        std::size_t last;
        std::size_t depth;
    };

    /// Adds the node of a branch of two keywords or more; `keyword` is the longest that ends within the shared characters.
    constexpr std::uint8_t addNode(const std::array<GsdKeyword, GsdKeywordTable::kCount>& rows, const Ids& ids,
                                   Branch branch, std::uint8_t keyword)
    {
        const auto characterOf = [&](std::size_t i) { return upperAt(rows[ids[i]].spelling, branch.depth); };
        while (characterOf(branch.first) == characterOf(branch.last - 1))
            ++branch.depth;
        if (characterOf(branch.first) == kAbsent)
            keyword = static_cast<std::uint8_t>(ids[branch.first++]);
        const std::uint8_t added = used++;
        nodes[added].position = branch.depth;
        nodes[added].keyword = keyword;
        for (std::size_t first = branch.first; first < branch.last;) {
            std::size_t last = first;
            while (last < branch.last && characterOf(last) == characterOf(first))
                ++last;
            nodes[added].children[indexOf(characterOf(first))] =
                last - first == 1 ? static_cast<std::uint8_t>(kLeaves + ids[first])
                                  : addNode(rows, ids, {first, last, branch.depth}, keyword);
            first = last;
        }
        return added;
    }

    std::array<Node, 64> nodes{}; // the first is the root
    std::uint8_t used = 0;
    std::array<std::uint8_t, GsdKeywordTable::kCount> shorter{}; // the longest keyword with which a keyword begins
};

} // namespace

std::size_t GsdKeywordTable::find(std::string_view line)
{
    static constexpr SpellingTree kTree(kRows);
    return kTree.find(line);
}
