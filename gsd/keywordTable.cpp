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

/// The spellings as a tree of upper-cased characters: a line is walked down as far as it goes, and the last keyword met
/// on the way is the longest with which it begins. Where one keyword begins with another, the longer one stands first
/// in the table, so the longest is the first.
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
        addChildren(rows, ids, Branch{0, 0, ids.size(), 0});
        for (std::size_t i = 0; i < nodes[0].childCount; ++i)
            roots[static_cast<unsigned char>(nodes[nodes[0].firstChild + i].character)] =
                static_cast<std::uint16_t>(nodes[0].firstChild + i);
    }

    constexpr std::size_t find(std::string_view line) const
    {
        std::size_t found = GsdKeywordTable::kNone;
        const Node* node = line.empty() ? nullptr : rootChild(typefile::toUpper(line.front()));
        for (std::size_t i = 1; node != nullptr; ++i) {
            if (node->keyword != GsdKeywordTable::kNone)
                found = node->keyword;
            node = i < line.size() ? childOf(*node, typefile::toUpper(line[i])) : nullptr;
        }
        return found;
    }

private:
    using Ids = std::array<std::size_t, GsdKeywordTable::kCount>;
    static constexpr std::size_t kMaxNodes = 1024;

    struct Node {
        char character = '\0';
        std::uint8_t childCount = 0;
        std::uint8_t keyword = GsdKeywordTable::kNone; // that ends here
        std::uint16_t firstChild = 0;                  // the children stand side by side
    };

    /// A node and the sorted keywords that run through it.
    struct Branch {
        std::size_t node;
        std::size_t first;
        std::size_t last; // one behind
        std::size_t depth;
    };

    constexpr const Node* rootChild(char character) const
    {
        const std::size_t child = roots[static_cast<unsigned char>(character)];
        return child == 0 ? nullptr : &nodes[child];
    }

    constexpr const Node* childOf(const Node& parent, char character) const
    {
        for (std::size_t i = 0; i < parent.childCount; ++i) {
            const Node& child = nodes[parent.firstChild + i];
            if (child.character == character)
                return &child;
        }
        return nullptr;
    }

    constexpr void addChildren(const std::array<GsdKeyword, GsdKeywordTable::kCount>& rows, const Ids& ids,
                               Branch branch)
    {
        const auto characterOf = [&](std::size_t i) { return typefile::toUpper(rows[ids[i]].spelling[branch.depth]); };
        std::size_t next = branch.first;
        if (rows[ids[next]].spelling.size() == branch.depth)
            nodes[branch.node].keyword = static_cast<std::uint8_t>(ids[next++]);
        nodes[branch.node].firstChild = static_cast<std::uint16_t>(used);
        for (std::size_t i = next; i < branch.last; ++i) {
            if (i == next || characterOf(i) != characterOf(i - 1))
                nodes[used++].character = characterOf(i);
        }
        nodes[branch.node].childCount = static_cast<std::uint8_t>(used - nodes[branch.node].firstChild);
        const std::size_t firstChild = nodes[branch.node].firstChild;
        for (std::size_t child = firstChild; next < branch.last; ++child) {
            std::size_t last = next;
            while (last < branch.last && characterOf(last) == nodes[child].character)
                ++last;
            addChildren(rows, ids, Branch{child, next, last, branch.depth + 1});
            next = last;
        }
    }

    std::array<Node, kMaxNodes> nodes{}; // the first is the root
    std::size_t used = 1;
    std::array<std::uint16_t, 256> roots{}; // child of the root by first character, 0 for none
};

} // namespace

std::size_t GsdKeywordTable::find(std::string_view line)
{
    static constexpr SpellingTree kTree(kRows);
    return kTree.find(line);
}
