// The keyword table, and the search for the keyword with which a line begins.

#include "gsd/keywordTable.h"

#include "gsd/handlers.h"
#include "typefile/format.h"
#include "typefile/scan.h"

#include <algorithm>
#include <cstdint>

namespace typdescriptor::internal {

using enum GsdForm;
using enum GsdOccurrence;

namespace {

constexpr std::uint32_t kMaxDataLen = 488;
// Lengths to which strings are squeezed.
constexpr auto name17 = string<17>;
constexpr auto name10 = string<10>;
constexpr auto text30 = string<kTextSqueeze>;

} // namespace

// clang-format off
constexpr std::array<GsdKeyword, GsdKeywordTable::kCount> GsdKeywordTable::kRows{{
    {"#Profibus_DP", bare, once, kNotMandatory, kOutside, nullptr}, // a second one is refused before its handler
    {"GSD_Revision", value, once, kNotMandatory, kOutside, store<u8, &GsdModel::gsdRevision>},
    {"Vendor_Name", value, once, kVendorNameFound, kOutside, read<name17, handleVendorName>},
    {"Model_Name", value, once, kModelNameFound, kOutside, storeText<name17, &GsdModel::modelName, kModelName.width>},
    {"Revision_Number", value, once, kNotMandatory, kOutside, drop<u8>},
    {"Revision", value, once, kRevisionFound, kOutside, drop<anyString>},
    {"Ident_Number", value, once, kIdentNumberFound, kOutside, store<u16, &GsdModel::identNumber>},
    {"Protocol_Ident", value, once, kProtocolIdentFound, kOutside, read<u8, handleZero<kErrGsdProtocol>>},
    {"Station_Type", value, once, kStationTypeFound, kOutside, read<u8, handleZero<kErrGsdStationType>>},
    {"FMS_supp", value, once, kNotMandatory, kOutside, drop<flag>},
    {"Hardware_Release", value, once, kHardwareReleaseFound, kOutside, drop<anyString>},
    {"Software_Release", value, once, kSoftwareReleaseFound, kOutside, drop<anyString>},
    {"9.6_supp", value, once, kNotMandatory, kOutside, read<flag, handleBaudRate<9>>},
    {"19.2_supp", value, once, kNotMandatory, kOutside, read<flag, handleBaudRate<8>>},
    {"31.25_supp", value, once, kNotMandatory, kOutside, read<flag, handleBaudRate<4>>},
    {"45.45_supp", value, once, kNotMandatory, kOutside, read<flag, handleBaudRate<4>>},
    {"93.75_supp", value, once, kNotMandatory, kOutside, read<flag, handleBaudRate<7>>},
    {"187.5_supp", value, once, kNotMandatory, kOutside, read<flag, handleBaudRate<6>>},
    {"500_supp", value, once, kNotMandatory, kOutside, read<flag, handleBaudRate<5>>},
    {"1.5M_supp", value, once, kNotMandatory, kOutside, read<flag, handleBaudRate<3>>},
    {"3M_supp", value, once, kNotMandatory, kOutside, read<flag, handleBaudRate<2>>},
    {"6M_supp", value, once, kNotMandatory, kOutside, read<flag, handleBaudRate<1>>},
    {"12M_supp", value, once, kNotMandatory, kOutside, read<flag, handleBaudRate<0>>},
    {"MaxTsdr_9.6", value, once, kNotMandatory, kOutside, read<u16, handleMaxTsdr>},
    {"MaxTsdr_19.2", value, once, kNotMandatory, kOutside, read<u16, handleMaxTsdr>},
    {"MaxTsdr_31.25", value, once, kNotMandatory, kOutside, read<u16, handleMaxTsdr>},
    {"MaxTsdr_45.45", value, once, kNotMandatory, kOutside, read<u16, handleMaxTsdr>},
    {"MaxTsdr_93.75", value, once, kNotMandatory, kOutside, read<u16, handleMaxTsdr>},
    {"MaxTsdr_187.5", value, once, kNotMandatory, kOutside, read<u16, handleMaxTsdr>},
    {"MaxTsdr_500", value, once, kNotMandatory, kOutside, read<u16, handleMaxTsdr>},
    {"MaxTsdr_1.5M", value, once, kNotMandatory, kOutside, read<u16, handleMaxTsdr>},
    {"MaxTsdr_3M", value, once, kNotMandatory, kOutside, read<u16, handleMaxTsdr>},
    {"MaxTsdr_6M", value, once, kNotMandatory, kOutside, read<u16, handleMaxTsdr>},
    {"MaxTsdr_12M", value, once, kNotMandatory, kOutside, read<u16, handleMaxTsdr>},
    {"Redundancy", value, once, kNotMandatory, kOutside, drop<flag>},
    {"Repeater_Ctrl_Sig", value, once, kNotMandatory, kOutside, drop<u8>},
    {"24V_Pins", value, once, kNotMandatory, kOutside, drop<u8>},
    {"Implementation_Type", value, once, kNotMandatory, kOutside, read<name17, handleImplementationType>},
    {"Bitmap_Device", value, once, kNotMandatory, kOutside, read<name17, handleBitmapDevice>},
    {"Bitmap_Diag", value, once, kNotMandatory, kOutside, drop<anyString>},
    {"Bitmap_SF", value, once, kNotMandatory, kOutside, drop<anyString>},
    {"Freeze_Mode_supp", value, once, kNotMandatory, kOutside, store<flag, &GsdModel::freezeMode>},
    {"Sync_Mode_supp", value, once, kNotMandatory, kOutside, store<flag, &GsdModel::syncMode>},
    {"Auto_Baud_supp", value, once, kNotMandatory, kOutside, drop<flag>},
    {"Set_Slave_Add_supp", value, once, kNotMandatory, kOutside, store<flag, &GsdModel::setSlaveAddress>},
    {"User_Prm_Data_Len", value, once, kNotMandatory, kOutside, store<u8, &GsdModel::userPrmDataLen, kMaxUserPrmBytes>},
    {"User_Prm_Data", value, once, kNotMandatory, kOutside, read<bytes, handleUserPrmData>},
    {"Min_Slave_Intervall", value, once, kMinSlaveIntervalFound, kOutside, store<u16, &GsdModel::minSlaveInterval>},
    {"Modular_Station", value, once, kNotMandatory, kOutside, store<flag, &GsdModel::modularStation>},
    {"Max_Module", value, once, kMaxModuleFound, kOutside, store<u8, &GsdModel::maxModule, kMaxModules>},
    {"Max_Input_Len", value, once, kMaxInputLenFound, kOutside, store<u16, &GsdModel::maxInputLen, kMaxIoLen>},
    {"Max_Output_Len", value, once, kMaxOutputLenFound, kOutside, store<u16, &GsdModel::maxOutputLen, kMaxIoLen>},
    {"Max_Data_Len", value, once, kMaxDataLenFound, kOutside, store<u16, &GsdModel::maxDataLen, kMaxDataLen>},
    {"Unit_Diag_Bit", argument, repeated, kNotMandatory, kOutside, readBoth<Blamed::argument, u16, text30, handleUnitDiagBit>},
    {"Unit_Diag_Area_End", bare, repeated, kNotMandatory, kInUnitDiagArea, closeBlock<checkUnitDiagArea>},
    {"Unit_Diag_Area", value, repeated, kNotMandatory, kOutside, read<u16Range, handleUnitDiagArea>},
    {"Module_Reference", value, once, kNotMandatory, kInModule, store<u16, &GSD_MODULE::moduleReference>},
    {"Module", value, repeated, kModuleFound, kOutside, read<namedBytes, handleModule>},
    {"Channel_Diag", argument, repeated, kNotMandatory, kOutside | kInModule, readBoth<Blamed::value, u8, text30, handleChannelDiag>},
    {"ChannelDiag", argument, repeated, kNotMandatory, kOutside | kInModule, readBoth<Blamed::value, u8, text30, handleChannelDiagOldSpelling>},
    {"Fail_Safe", value, once, kNotMandatory, kOutside, store<flag, &GsdModel::failSafe>},
    {"Max_Diag_Data_Len", value, once, kMaxDiagDataLenFound, kOutside, store<u8, &GsdModel::maxDiagDataLen, kMaxDiagLenValue, kMinDiagLen>},
    {"Modul_Offset", value, once, kNotMandatory, kOutside, store<u8, &GsdModel::modulOffset>},
    {"Slave_Family", value, once, kSlaveFamilyFound, kOutside, read<family, handleSlaveFamily>},
    {"Max_User_Prm_Data_Len", value, once, kNotMandatory, kOutside, read<u8, handleMaxUserPrmDataLen>},
    {"Ext_User_Prm_Data_Ref", argument, repeated, kNotMandatory, kOutside | kInModule, readBoth<Blamed::argument, u8, u16, handleExtUserPrmDataRef>},
    {"Ext_User_Prm_Data_Const", argument, repeated, kNotMandatory, kOutside | kInModule, readBoth<Blamed::argument, u8, bytes, handleExtUserPrmDataConst>},
    {"ExtUserPrmData", value, repeated, kNotMandatory, kOutside, read<prmDefHead, handleExtUserPrmData>},
    {"PrmTextRef", value, repeated, kNotMandatory, kInExtPrmDef, read<u16, handlePrmTextRefOldSpelling>},
    {"PrmText", value, repeated, kNotMandatory, kOutside, read<u16, handlePrmText>},
    {"EndPrmText", bare, repeated, kNotMandatory, kInPrmText, closeBlock<checkPrmText>},
    {"EndModule", bare, repeated, kNotMandatory, kInModule, closeBlock<checkModule>},
    {"EndExtUserPrmData", bare, repeated, kNotMandatory, kInExtPrmDef, closeBlock<checkExtUserPrmData>},
    {"Unsigned8", bare, repeated, kNotMandatory, kInExtPrmDef, handleDataType},
    {"Unsigned16", bare, repeated, kNotMandatory, kInExtPrmDef, handleDataType},
    {"Unsigned32", bare, repeated, kNotMandatory, kInExtPrmDef, handleDataType},
    {"Signed8", bare, repeated, kNotMandatory, kInExtPrmDef, handleDataType},
    {"Signed16", bare, repeated, kNotMandatory, kInExtPrmDef, handleDataType},
    {"Signed32", bare, repeated, kNotMandatory, kInExtPrmDef, handleDataType},
    {"BitArea", bareArgument, repeated, kNotMandatory, kInExtPrmDef, handleDataType},
    {"Bit", bareArgument, repeated, kNotMandatory, kInExtPrmDef, handleDataType},
    {"Prm_Text_Ref", value, repeated, kNotMandatory, kInExtPrmDef, read<u16, handlePrmTextRef>},
    {"Ext_Module_Prm_Data_Len", value, repeated, kNotMandatory, kInModule, read<u8, handleExtModulePrmDataLen>},
    {"Text", argument, repeated, kNotMandatory, kInPrmText, readBoth<Blamed::value, s32, text30, handleText>},
    {"Value", argument, repeated, kNotMandatory, kInUnitDiagArea, readBoth<Blamed::value, u16, text30, handleValue>},
    {"Preset", value, repeated, kNotMandatory, kInModule, store<flag, &GSD_MODULE::preset>},
    {"FixPresetModules", value, once, kNotMandatory, kOutside, store<flag, &GsdModel::fixPresetModules>},
    {"IsDPAsiLink", value, once, kNotMandatory, kOutside, read<flag, handleIsDpAsiLink>},
    {"OrderNumber", value, once, kNotMandatory, kOutside, read<name10, handleOrderNumber>},
    {"Periphery", value, once, kNotMandatory, kOutside, storeText<name10, &GsdModel::periphery, kPeriphery.width>},
    {"Q5HeaderCnf", value, once, kNotMandatory, kOutside, read<u16, handleQ5HeaderCnf>},
    {"IsPublisher", value, once, kNotMandatory, kOutside, store<flag, &GsdModel::isPublisher>},
    {"IsSubscriber", value, once, kNotMandatory, kOutside, store<flag, &GsdModel::isSubscriber>},
    {"IsActive", value, once, kNotMandatory, kOutside, store<flag, &GsdModel::isActive>},
    {"IsMaster", value, once, kNotMandatory, kOutside, store<flag, &GsdModel::isMaster>},
    {"DiagBufferable", value, once, kNotMandatory, kOutside, store<flag, &GsdModel::diagBufferable>},
    {"EvenSlotNumberRequired", value, once, kNotMandatory, kOutside, store<flag, &GsdModel::evenSlotNumber>},
    {"OnlyNormalModules", value, once, kNotMandatory, kOutside, store<flag, &GsdModel::onlyNormalModules>},
    {"OnlySpecialModules", value, once, kNotMandatory, kOutside, store<flag, &GsdModel::onlySpecialModules>},
    {"ETERDelay", value, once, kNotMandatory, kOutside, store<u16, &GsdModel::eterDelay>},
    {"MaxResponseDelay", value, once, kNotMandatory, kOutside, store<u16, &GsdModel::maxResponseDelay>},
    {"IsKGPDevice", value, once, kNotMandatory, kOutside, read<flag, handleIsKgpDevice>},
    {"KGPModule", value, repeated, kNotMandatory, kOutside, read<namedBytes, handleKgpModule>},
    {"KGPGui", value, once, kNotMandatory, kOutside, read<namedBytes, handleKgpGui>},
    {"OffsetFirstMPDBlock", value, once, kNotMandatory, kOutside, store<u16, &GsdModel::offsetFirstMpdBlock, kMaxCommonPrmLen>},
    {"Unit_Diag_!Bit", argument, repeated, kNotMandatory, kOutside, readBoth<Blamed::argument, u16, text30, handleUnitDiagNotBit>},
}};
// clang-format on

namespace {

constexpr char kAbsent = '\0'; // what stands behind the end of a text

constexpr char upperAt(std::string_view text, std::size_t position)
{
    return position < text.size() ? toUpper(text[position]) : kAbsent;
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

} // namespace typdescriptor::internal
