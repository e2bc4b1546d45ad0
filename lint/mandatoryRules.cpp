// What must stand in a file, or in a block of it, and what makes it so.

#include "lint/places.h"
#include "lint/statementIndex.h"
#include "lint/tables.h"

#include <algorithm>
#include <array>
#include <span>

namespace typdescriptor::lint {

using gsdfile::BlockKind;
using gsdfile::Document;
using gsdfile::findKeyword;
using gsdfile::Keyword;
using gsdfile::Statement;

namespace {

enum class When { always, stands, notZero, redundant };

// One keyword that must stand on a level. Sure conditions are errors; those that are only likely are warnings.
struct Duty {
    Severity severity;
    const char* missing;
    const char* cause = nullptr; // keyword on the same level that makes it so
    When when = When::always;
};

constexpr Duty kStationDuties[] = {
    {Severity::warning, "GSD_Revision"},
    {Severity::error, "Vendor_Name"},
    {Severity::error, "Model_Name"},
    {Severity::error, "Revision"},
    {Severity::error, "Ident_Number"},
    {Severity::error, "Protocol_Ident"},
    {Severity::error, "Station_Type"},
    {Severity::error, "Hardware_Release"},
    {Severity::error, "Software_Release"},
    {Severity::error, "Min_Slave_Intervall"},
    {Severity::error, "Module"},
    {Severity::error, "Slave_Family", "GSD_Revision", When::notZero},
    {Severity::error, "Max_Diag_Data_Len", "GSD_Revision", When::notZero},
    {Severity::error, "MaxTsdr_9.6", "9.6_supp", When::notZero},
    {Severity::error, "MaxTsdr_19.2", "19.2_supp", When::notZero},
    {Severity::error, "MaxTsdr_31.25", "31.25_supp", When::notZero},
    {Severity::error, "MaxTsdr_45.45", "45.45_supp", When::notZero},
    {Severity::error, "MaxTsdr_93.75", "93.75_supp", When::notZero},
    {Severity::error, "MaxTsdr_187.5", "187.5_supp", When::notZero},
    {Severity::error, "MaxTsdr_500", "500_supp", When::notZero},
    {Severity::error, "MaxTsdr_1.5M", "1.5M_supp", When::notZero},
    {Severity::error, "MaxTsdr_3M", "3M_supp", When::notZero},
    {Severity::error, "MaxTsdr_6M", "6M_supp", When::notZero},
    {Severity::error, "MaxTsdr_12M", "12M_supp", When::notZero},
    {Severity::error, "Max_Module", "Modular_Station", When::notZero},
    {Severity::error, "Max_Input_Len", "Modular_Station", When::notZero},
    {Severity::error, "Max_Output_Len", "Modular_Station", When::notZero},
    {Severity::error, "User_Prm_Data", "User_Prm_Data_Len", When::notZero},
    {Severity::error, "User_Prm_Data_Len", "User_Prm_Data", When::stands},
    {Severity::warning, "C1_Max_Data_Len", "C1_Read_Write_supp", When::notZero},
    {Severity::warning, "C1_Response_Timeout", "C1_Read_Write_supp", When::notZero},
    {Severity::warning, "C2_Max_Data_Len", "C2_Read_Write_supp", When::notZero},
    {Severity::warning, "C2_Response_Timeout", "C2_Read_Write_supp", When::notZero},
    {Severity::warning, "C2_Max_Count_Channels", "C2_Read_Write_supp", When::notZero},
    {Severity::warning, "Max_Initiate_PDU_Length", "C2_Read_Write_supp", When::notZero},
    {Severity::warning, "Alarm_Type_Mode_supp", "Diagnostic_Alarm_supp", When::notZero},
    {Severity::warning, "Alarm_Type_Mode_supp", "Process_Alarm_supp", When::notZero},
    {Severity::warning, "Alarm_Type_Mode_supp", "Pull_Plug_Alarm_supp", When::notZero},
    {Severity::warning, "Alarm_Type_Mode_supp", "Status_Alarm_supp", When::notZero},
    {Severity::warning, "Alarm_Type_Mode_supp", "Update_Alarm_supp", When::notZero},
    {Severity::warning, "Alarm_Type_Mode_supp", "Manufacturer_Specific_Alarm_supp", When::notZero},
    {Severity::warning, "DXB_Max_Link_Count", "Subscriber_supp", When::notZero},
    {Severity::warning, "DXB_Max_Data_Length", "Subscriber_supp", When::notZero},
    {Severity::warning, "TBASE_DP", "Isochron_Mode_supp", When::notZero},
    {Severity::warning, "TDP_MIN", "Isochron_Mode_supp", When::notZero},
    {Severity::warning, "TDP_MAX", "Isochron_Mode_supp", When::notZero},
    {Severity::warning, "T_PLL_W_MAX", "Isochron_Mode_supp", When::notZero},
    {Severity::warning, "TBASE_IO", "Isochron_Mode_supp", When::notZero},
    {Severity::warning, "TI_MIN", "Isochron_Mode_supp", When::notZero},
    {Severity::warning, "TO_MIN", "Isochron_Mode_supp", When::notZero},
    {Severity::warning, "X_Max_User_Prm_Data_Len", "X_Prm_SAP_supp", When::notZero},
    {Severity::warning, "F_ParamDescCRC", "F_Ext_User_Prm_Data_Ref", When::stands},
    {Severity::warning, "F_ParamDescCRC", "F_Ext_User_Prm_Data_Const", When::stands},
    {Severity::warning, "Slave_Max_Switch_Over_Time", "Slave_Redundancy_supp", When::redundant},
};

// What every block of a kind must have. What parameters, texts and areas of diagnosis must have, their own rules say.
struct BlockDuty {
    Severity severity;
    BlockKind block;
    const char* missing;
};

constexpr BlockDuty kBlockDuties[] = {
    {Severity::error, BlockKind::slotDefinition, "Slot"},
    {Severity::warning, BlockKind::jokerblockType, "Jokerblock_Slot"},
    {Severity::warning, BlockKind::dataArea, "Area_Name"},
    {Severity::warning, BlockKind::dataArea, "Related_CFG_Identifier"},
    {Severity::warning, BlockKind::dataArea, "IO_Direction"},
    {Severity::warning, BlockKind::dataArea, "Length"},
    {Severity::warning, BlockKind::dataArea, "Consistency"},
    {Severity::warning, BlockKind::dataArea, "Publisher_allowed"},
    {Severity::warning, BlockKind::dataArea, "DP_Master_allowed"},
    {Severity::warning, BlockKind::dataArea, "Data_Type"},
};

// A table with the rows of its keywords, looked up once.
template <typename Table, typename Name>
std::vector<const Keyword*> rowsOf(const Table& table, Name name)
{
    std::vector<const Keyword*> rows;
    for (const auto& duty : table)
        rows.push_back(name(duty) ? findKeyword(name(duty)) : nullptr);
    return rows;
}

bool isCause(When when, const Statement& statement)
{
    if (when == When::stands)
        return true;
    if (statement.values.empty() || statement.values.front().kind != gsdfile::Value::number)
        return false;
    const std::int64_t value = statement.values.front().first.value;
    return when == When::redundant ? value == 8 || value == 9 : value != 0;
}

// Whoever misspelt the keyword is told so where it stands.
void noteMisspelt(const Context& context, const Keyword& missing, Finding& finding)
{
    for (const Statement* statement : context.statements().unknown())
        if (context.statements().nearest(*statement).keyword == &missing)
            finding.note(keywordPlace(context.document, *statement), "perhaps meant here");
}

// The cause with its value.
Span causePlace(const Document& document, const Statement& cause)
{
    Span place = keywordPlace(document, cause);
    if (cause.values.size() == 1 && cause.firstLine == cause.lastLine)
        place.end = valuePlace(document, cause.values.front()).end;
    return place;
}

std::string inOneLine(const Document& document, const Statement& cause)
{
    std::string name = cause.keyword->name;
    if (cause.values.size() != 1 || cause.values.front().kind != gsdfile::Value::number)
        return name;
    return name + " = " + textAt(document, valuePlace(document, cause.values.front()));
}

void checkStation(const Context& context, Report& report)
{
    static const std::vector<const Keyword*> missing =
        rowsOf(kStationDuties, [](const Duty& duty) { return duty.missing; });
    static const std::vector<const Keyword*> causes =
        rowsOf(kStationDuties, [](const Duty& duty) { return duty.cause; });
    const Document& document = context.document;
    const Span start = keywordPlace(document, document.statements()[document.section()]);
    const Keyword* reported = nullptr; // of several causes the first is enough
    for (std::size_t i = 0; i < std::size(kStationDuties); ++i) {
        if (context.statements().outside(*missing[i]) || missing[i] == reported)
            continue;
        const Statement* cause = causes[i] ? context.statements().outside(*causes[i]) : nullptr;
        if (causes[i] && (!cause || !isCause(kStationDuties[i].when, *cause)))
            continue;
        reported = missing[i];
        std::string message = std::string(missing[i]->name) + " is missing";
        if (cause)
            message += "; " + inOneLine(document, *cause) + " makes it mandatory";
        const Span place = cause ? causePlace(document, *cause) : start;
        noteMisspelt(context, *missing[i], report.add(kStationDuties[i].severity, place, message));
    }
}

void checkBlocks(const Context& context, Report& report)
{
    static const std::vector<const Keyword*> missing =
        rowsOf(kBlockDuties, [](const BlockDuty& duty) { return duty.missing; });
    const Document& document = context.document;
    for (std::uint32_t block = 0; block < document.blocks().size(); ++block) {
        const gsdfile::Block& within = document.blocks()[block];
        for (std::size_t i = 0; i < std::size(kBlockDuties); ++i)
            if (kBlockDuties[i].block == within.kind && !context.statements().inside(block, *missing[i]))
                report.add(kBlockDuties[i].severity, keywordPlace(document, document.statements()[within.opening]),
                           std::string(missing[i]->name) + " is missing in this block");
    }
}

// A file that describes a master only has other duties.
bool isMaster(const Context& context)
{
    static const Keyword& kStationType = *findKeyword("Station_Type");
    return context.statements().number(kStationType).value_or(0) == 1;
}

void checkMandatory(const Context& context, Report& report)
{
    if (context.document.section() == gsdfile::kNone)
        return;
    if (!isMaster(context))
        checkStation(context, report);
    checkBlocks(context, report);
}

constexpr Rule kRules[] = {
    {"missing-mandatory-keyword", Severity::error, Group::form, "A file has all keywords that are mandatory.",
     "Some keywords always stand in the file of a slave; others are made mandatory by a statement, such as MaxTsdr_9.6 "
     "by 9.6_supp = 1. Where the condition is not certain, or readers take the keyword's absence, this is a warning.",
     "9.6_supp = 1", "9.6_supp = 1\nMaxTsdr_9.6 = 60", checkMandatory},
};

} // namespace

std::span<const Rule> mandatoryRules()
{
    return kRules;
}

} // namespace typdescriptor::lint
