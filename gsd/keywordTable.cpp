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

} // namespace

// clang-format off
constexpr std::array<GsdKeyword, GsdKeywordTable::kCount> GsdKeywordTable::kRows{{
    {"#Profibus_DP", bare, once, kNotMandatory, kOutside, nullptr}, // a second one is refused before its handler
    {"GSD_Revision", value, once, kNotMandatory, kOutside, store<u8, &GsdModel::gsdRevision>},
    {"Vendor_Name", value, once, kVendorNameFound, kOutside, read<name17, handleVendorName>},
    {"Model_Name", value, once, kModelNameFound, kOutside, storeText<name17, &GsdModel::modelName, kModelName.width>},
    {"Revision_Number", value, once, kNotMandatory, kOutside, drop<u8>},
    {"Revision", value, once, kRevisionFound, kOutside, drop<anyText>},
    {"Ident_Number", value, once, kIdentNumberFound, kOutside, store<u16, &GsdModel::identNumber>},
    {"Protocol_Ident", value, once, kProtocolIdentFound, kOutside, read<u8, handleZero<kErrGsdProtocol>>},
    {"Station_Type", value, once, kStationTypeFound, kOutside, read<u8, handleZero<kErrGsdStationType>>},
    {"FMS_supp", value, once, kNotMandatory, kOutside, drop<flag>},
    {"Hardware_Release", value, once, kHardwareReleaseFound, kOutside, drop<anyText>},
    {"Software_Release", value, once, kSoftwareReleaseFound, kOutside, drop<anyText>},
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
    {"Bitmap_Diag", value, once, kNotMandatory, kOutside, drop<anyText>},
    {"Bitmap_SF", value, once, kNotMandatory, kOutside, drop<anyText>},
    {"Freeze_Mode_supp", value, once, kNotMandatory, kOutside, store<flag, &GsdModel::freezeMode>},
    {"Sync_Mode_supp", value, once, kNotMandatory, kOutside, store<flag, &GsdModel::syncMode>},
    {"Auto_Baud_supp", value, once, kNotMandatory, kOutside, drop<flag>},
    {"Set_Slave_Add_supp", value, once, kNotMandatory, kOutside, store<flag, &GsdModel::setSlaveAddress>},
    {"User_Prm_Data_Len", value, once, kNotMandatory, kOutside, store<u8, &GsdModel::userPrmDataLen, kMaxUserPrmBytes>},
    {"User_Prm_Data", value, once, kNotMandatory, kOutside, read<byteList, handleUserPrmData>},
    {"Min_Slave_Intervall", value, once, kMinSlaveIntervalFound, kOutside, store<u16, &GsdModel::minSlaveInterval>},
    {"Modular_Station", value, once, kNotMandatory, kOutside, store<flag, &GsdModel::modularStation>},
    {"Max_Module", value, once, kMaxModuleFound, kOutside, store<u8, &GsdModel::maxModule, kMaxModules>},
    {"Max_Input_Len", value, once, kMaxInputLenFound, kOutside, store<u16, &GsdModel::maxInputLen, kMaxIoLen>},
    {"Max_Output_Len", value, once, kMaxOutputLenFound, kOutside, store<u16, &GsdModel::maxOutputLen, kMaxIoLen>},
    {"Max_Data_Len", value, once, kMaxDataLenFound, kOutside, store<u16, &GsdModel::maxDataLen, kMaxDataLen>},
    {"Unit_Diag_Bit", argument, repeated, kNotMandatory, kOutside, readBoth<Blamed::argument, u16, text30, handleUnitDiagBit<1>>},
    {"Unit_Diag_Area_End", bare, repeated, kNotMandatory, kInUnitDiagArea, closeBlock<checkUnitDiagArea>},
    {"Unit_Diag_Area", value, repeated, kNotMandatory, kOutside, read<u16Range, handleUnitDiagArea>},
    {"Module_Reference", value, once, kNotMandatory, kInModule, drop<u16>},
    {"Module", value, repeated, kModuleFound, kOutside, read<namedBytes, handleModule>},
    {"Channel_Diag", argument, repeated, kNotMandatory, kOutside | kInModule, readBoth<Blamed::value, u8, text30, handleChannelDiag>},
    {"ChannelDiag", argument, repeated, kNotMandatory, kOutside | kInModule, oldSpelling<kWarnChannelDiag, readBoth<Blamed::value, u8, text30, handleChannelDiag>>},
    {"Fail_Safe", value, once, kNotMandatory, kOutside, store<flag, &GsdModel::failSafe>},
    {"Max_Diag_Data_Len", value, once, kMaxDiagDataLenFound, kOutside, store<u8, &GsdModel::maxDiagDataLen, kMaxDiagBytes, kMinDiagBytes>},
    {"Modul_Offset", value, once, kNotMandatory, kOutside, store<u8, &GsdModel::modulOffset>},
    {"Slave_Family", value, once, kSlaveFamilyFound, kOutside, read<family, handleSlaveFamily>},
    {"Max_User_Prm_Data_Len", value, once, kNotMandatory, kOutside, read<u8, handleMaxUserPrmDataLen>},
    {"Ext_User_Prm_Data_Ref", argument, repeated, kNotMandatory, kOutside | kInModule, readBoth<Blamed::argument, u8, u16, handleExtUserPrmDataRef>},
    {"Ext_User_Prm_Data_Const", argument, repeated, kNotMandatory, kOutside | kInModule, readBoth<Blamed::argument, u8, byteList, handleExtUserPrmDataConst>},
    {"ExtUserPrmData", value, repeated, kNotMandatory, kOutside, read<prmDefHead, handleExtUserPrmData>},
    {"PrmTextRef", value, repeated, kNotMandatory, kInExtPrmDef, oldSpelling<kWarnPrmTextRef, read<u16, handlePrmTextRef>>},
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
    {"IsDPAsiLink", value, once, kNotMandatory, kOutside, read<flag, handleStationFlag<&GsdModel::isDpAsiLink, kStationDpAsi>>},
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
    {"IsKGPDevice", value, once, kNotMandatory, kOutside, read<flag, handleStationFlag<&GsdModel::isKgpDevice, kStationKgp>>},
    {"KGPModule", value, repeated, kNotMandatory, kOutside, read<namedBytes, handleKgpModule>},
    {"KGPGui", value, once, kNotMandatory, kOutside, read<namedBytes, handleKgpGui>},
    {"OffsetFirstMPDBlock", value, once, kNotMandatory, kOutside, store<u16, &GsdModel::offsetFirstMpdBlock, kMaxCommonPrmLen>},
    {"Unit_Diag_!Bit", argument, repeated, kNotMandatory, kOutside, readBoth<Blamed::argument, u16, text30, handleUnitDiagBit<0>>},
}};
// clang-format on
static_assert(GsdKeywordTable::kRows[kUnsigned8].spelling == "Unsigned8");
static_assert(GsdKeywordTable::kRows[kBit].spelling == "Bit"); // the data types between them are in order

namespace {

/// Most files write their keywords in the case of the table. The last character tells most other keywords apart.
bool begins(std::string_view line, std::string_view spelling)
{
    const std::size_t length = spelling.size();
    return line.size() >= length && toUpper(line[length - 1]) == toUpper(spelling.back()) &&
           (line.starts_with(spelling) || compareIgnoringCase(line.substr(0, length), spelling) == 0);
}

/// The rows by the first character of their spelling: chains in the order of the table.
class Chains {
public:
    constexpr explicit Chains(const std::array<GsdKeyword, GsdKeywordTable::kCount>& rows)
    {
        first.fill(GsdKeywordTable::kNone);
        for (std::size_t id = rows.size(); id-- > 0;) {
            std::uint8_t& head = first[indexOf(rows[id].spelling.front())];
            next[id] = head;
            head = static_cast<std::uint8_t>(id);
        }
    }

    std::size_t find(std::string_view line) const
    {
        std::size_t id = line.empty() ? GsdKeywordTable::kNone : first[indexOf(line.front())];
        while (id != GsdKeywordTable::kNone && !begins(line, GsdKeywordTable::kRows[id].spelling))
            id = next[id];
        return id;
    }

private:
    static constexpr std::size_t indexOf(char c) { return static_cast<unsigned char>(toUpper(c)); }

    std::array<std::uint8_t, 256> first{};
    std::array<std::uint8_t, GsdKeywordTable::kCount> next{};
};

} // namespace

std::size_t GsdKeywordTable::find(std::string_view line)
{
    static constexpr Chains kChains(kRows);
    return kChains.find(line);
}

} // namespace typdescriptor::internal
