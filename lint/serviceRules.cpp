// Rules about what a station offers beyond cyclic data: acyclic services, alarms, safety, the extended telegram and others.

#include "lint/deviceIndex.h"
#include "lint/phrases.h"
#include "lint/tables.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace typdescriptor::lint {

namespace {

// What makes a station a DPV1 slave. Services of a class 2 master are not among them: they are offered without it as well.
constexpr std::array<std::string_view, 21> kDpv1Keywords = {
    "C1_Read_Write_supp",
    "C1_Max_Data_Len",
    "C1_Response_Timeout",
    "C1_Read_Write_required",
    "Diagnostic_Alarm_supp",
    "Process_Alarm_supp",
    "Pull_Plug_Alarm_supp",
    "Status_Alarm_supp",
    "Update_Alarm_supp",
    "Diagnostic_Alarm_required",
    "Process_Alarm_required",
    "Pull_Plug_Alarm_required",
    "Status_Alarm_required",
    "Update_Alarm_required",
    "Extra_Alarm_SAP_supp",
    "Alarm_Sequence_Mode_Count",
    "Alarm_Type_Mode_supp",
    "WD_Base_1ms_supp",
    "Check_Cfg_Mode",
    "Manufacturer_Specific_Alarm_supp",
    "Manufacturer_Specific_Alarm_required",
};

constexpr std::array<std::string_view, 6> kAlarms = {
    "Diagnostic_Alarm_supp", "Process_Alarm_supp", "Pull_Plug_Alarm_supp",
    "Status_Alarm_supp",     "Update_Alarm_supp",  "Manufacturer_Specific_Alarm_supp",
};

void checkDpv1(const Context& context, Report& report)
{
    const DeviceIndex& device = context.device();
    if (!device.hasSection || device.isOn("DPV1_Slave"))
        return;
    std::vector<const Entry*> used;
    for (const std::string_view keyword : kDpv1Keywords)
        if (device.isOn(keyword))
            used.push_back(device.entry(keyword));
    if (used.empty())
        return;
    std::ranges::sort(used, {}, [](const Entry* entry) { return entry->place.begin; });
    Finding& finding =
        report.add(used.front()->place,
                   std::string(used.front()->keyword) + " is a keyword of DPV1 slaves, and DPV1_Slave is not 1" +
                       (used.size() > 1 ? "; so are " + std::to_string(used.size() - 1) + " more" : ""));
    finding.note(valuePlaceOf(device.entry("DPV1_Slave")), "the station is no DPV1 slave");
    for (std::size_t i = 1; i < used.size(); ++i)
        finding.note(used[i]->place, "another keyword of DPV1 slaves");
}

void checkDpv1Parameters(const Context& context, Report& report)
{
    constexpr std::int64_t kStatusOctets = 3;
    const DeviceIndex& device = context.device();
    if (!device.isOn("DPV1_Slave"))
        return;
    const Entry* fixed = device.entry("User_Prm_Data_Len");
    const Entry* described = device.entry("Max_User_Prm_Data_Len");
    const std::int64_t length =
        std::max(device.number("User_Prm_Data_Len").value_or(0), device.number("Max_User_Prm_Data_Len").value_or(0));
    if (length >= kStatusOctets)
        return;
    const Entry* stated = described != nullptr ? described : fixed;
    const Entry* dpv1 = device.entry("DPV1_Slave");
    Finding& finding =
        report.add(stated != nullptr ? stated->valuePlace() : dpv1->place,
                   "a DPV1 slave has at least three octets of user parameters, this one has " + std::to_string(length));
    if (stated != nullptr)
        finding.note(dpv1->place, "the station is a DPV1 slave");
}

struct Requirement {
    std::string_view required;
    std::string_view supported;
};

constexpr Requirement kRequirements[] = {
    {"C1_Read_Write_required", "C1_Read_Write_supp"},
    {"C2_Read_Write_required", "C2_Read_Write_supp"},
    {"Diagnostic_Alarm_required", "Diagnostic_Alarm_supp"},
    {"Process_Alarm_required", "Process_Alarm_supp"},
    {"Pull_Plug_Alarm_required", "Pull_Plug_Alarm_supp"},
    {"Status_Alarm_required", "Status_Alarm_supp"},
    {"Update_Alarm_required", "Update_Alarm_supp"},
    {"Manufacturer_Specific_Alarm_required", "Manufacturer_Specific_Alarm_supp"},
    {"Isochron_Mode_required", "Isochron_Mode_supp"},
    {"Prm_Block_Structure_req", "Prm_Block_Structure_supp"},
    {"Fail_Safe_required", "Fail_Safe"},
};

void checkRequirement(const DeviceIndex& device, const Entry& entry, Report& report)
{
    const auto row = std::ranges::find(kRequirements, entry.keyword, &Requirement::required);
    if (row == std::end(kRequirements) || entry.numbers.empty() || entry.number() == 0 || device.isOn(row->supported))
        return;
    const Entry* supported = device.entry(row->supported);
    const std::string why = supported != nullptr ? " is 0" : " is not given";
    report.add(entry.place, std::string(entry.keyword) + " is 1, but " + std::string(row->supported) + why)
        .note(valuePlaceOf(supported), "not supported");
}

void checkRequirements(const Context& context, Report& report)
{
    const DeviceIndex& device = context.device();
    for (const Requirement& row : kRequirements)
        if (const Entry* entry = device.entry(row.required))
            checkRequirement(device, *entry, report);
    for (const Module& module : device.modules)
        for (const Entry* entry : module.entries)
            checkRequirement(device, *entry, report);
}

const Entry* firstAlarm(const DeviceIndex& device)
{
    for (const std::string_view keyword : kAlarms)
        if (device.isOn(keyword))
            return device.entry(keyword);
    return nullptr;
}

void checkAlarmMode(const Context& context, Report& report)
{
    const DeviceIndex& device = context.device();
    const Entry* alarm = firstAlarm(device);
    const Entry* mode = device.entry("Alarm_Type_Mode_supp");
    if (alarm == nullptr || !hasNumber(mode) || mode->number() != 0)
        return;
    report.add(mode->valuePlace(), "Alarm_Type_Mode_supp is 1 for every station that sends alarms")
        .note(alarm->place, "an alarm of the station");
}

void checkAlarmLength(const Context& context, Report& report)
{
    constexpr std::int64_t kShortestAlarm = 10; // the six octets of every diagnosis and the head of an alarm
    const DeviceIndex& device = context.device();
    const Entry* alarm = firstAlarm(device);
    const Entry* length = device.entry("Max_Diag_Data_Len");
    if (alarm == nullptr || !hasNumber(length) || length->number() >= kShortestAlarm)
        return;
    report
        .add(length->valuePlace(), "a diagnosis with an alarm has at least 10 octets, Max_Diag_Data_Len is " +
                                       std::to_string(length->number()))
        .note(alarm->place, "an alarm of the station");
}

struct Service {
    std::string_view supported;
    std::string_view value; // must not be 0
};

constexpr Service kServices[] = {
    {"C1_Read_Write_supp", "C1_Max_Data_Len"},       {"C1_Read_Write_supp", "C1_Response_Timeout"},
    {"C2_Read_Write_supp", "C2_Max_Data_Len"},       {"C2_Read_Write_supp", "C2_Response_Timeout"},
    {"C2_Read_Write_supp", "C2_Max_Count_Channels"}, {"C2_Read_Write_supp", "Max_Initiate_PDU_Length"},
};

void checkServices(const Context& context, Report& report)
{
    const DeviceIndex& device = context.device();
    for (const Service& service : kServices) {
        const Entry* value = device.entry(service.value);
        if (!device.isOn(service.supported) || !hasNumber(value) || value->number() != 0)
            continue;
        report.add(value->valuePlace(), std::string(service.value) + " is 0: the service cannot be used")
            .note(device.entry(service.supported)->place, "the service is supported");
    }
}

// What belongs to the extended parameter telegram, at the station or in a module.
const Entry* extendedUse(const DeviceIndex& device)
{
    for (const std::string_view keyword : {"X_Max_User_Prm_Data_Len", "X_Prm_Block_Structure_supp",
                                           "X_Ext_User_Prm_Data_Ref", "X_Ext_User_Prm_Data_Const"})
        if (const Entry* entry = device.entry(keyword); entry != nullptr && (entry->argument || device.isOn(keyword)))
            return entry;
    for (const Module& module : device.modules)
        for (const Entry* entry : module.entries)
            if (entry->keyword.starts_with("X_Ext_"))
                return entry;
    return nullptr;
}

void checkExtendedTelegram(const Context& context, Report& report)
{
    const DeviceIndex& device = context.device();
    const Entry* used = extendedUse(device);
    if (used == nullptr || device.isOn("X_Prm_SAP_supp"))
        return;
    const Entry* supported = device.entry("X_Prm_SAP_supp");
    report
        .add(used->place, std::string(used->keyword) + " belongs to the extended parameter telegram, and " +
                              (supported != nullptr ? "X_Prm_SAP_supp is 0" : "X_Prm_SAP_supp is not given"))
        .note(valuePlaceOf(supported), "the telegram is not supported");
}

void checkCycle(const Context& context, Report& report)
{
    const DeviceIndex& device = context.device();
    const Entry* shortest = device.entry("TDP_MIN");
    const Entry* longest = device.entry("TDP_MAX");
    if (!hasNumber(shortest) || !hasNumber(longest) || shortest->number() <= longest->number())
        return;
    report
        .add(shortest->valuePlace(), "the shortest cycle, " + std::to_string(shortest->number()) +
                                         ", is longer than the longest, " + std::to_string(longest->number()))
        .note(longest->valuePlace(), "TDP_MAX");
}

void checkRedundancy(const Context& context, Report& report)
{
    constexpr std::int64_t kRedundant = 8;
    constexpr std::int64_t kRedundantOrFlying = 9;
    const DeviceIndex& device = context.device();
    const Entry* entry = device.entry("Slave_Redundancy_supp");
    if (!hasNumber(entry) || (entry->number() != kRedundant && entry->number() != kRedundantOrFlying))
        return;
    if (!device.isOn("PrmCmd_supp"))
        report.add(entry->valuePlace(), "a redundant slave takes its commands with PrmCmd_supp = 1");
}

void checkSafetyOf(const Entry& first, const DeviceIndex& device, Report& report)
{
    std::string missing;
    std::vector<Note> notes;
    for (const std::string_view needed : {"DPV1_Slave", "Prm_Block_Structure_supp"}) {
        if (device.isOn(needed))
            continue;
        missing.append(missing.empty() ? "" : " and ").append(needed);
        if (const Entry* entry = device.entry(needed))
            notes.push_back({entry->valuePlace(), "not supported"});
    }
    if (!missing.empty())
        report.add(first.place, "safety parameters are sent as a block of their own, which needs " + missing).notes =
            std::move(notes);
}

void checkSafety(const Context& context, Report& report)
{
    const DeviceIndex& device = context.device();
    for (const Module& module : device.modules)
        for (const Entry* entry : module.entries)
            if (entry->keyword.starts_with("F_Ext_User_Prm_Data_"))
                return checkSafetyOf(*entry, device, report);
    for (const Entry* entry : device.stationEntries)
        if (entry->keyword.starts_with("F_Ext_User_Prm_Data_"))
            return checkSafetyOf(*entry, device, report);
}

void checkSafetyLength(const Context& context, Report& report)
{
    constexpr std::int64_t kShortest = 14; // the block's head and the ten octets of the shortest set
    for (const Module& module : context.device().modules) {
        const Entry* length = module.prm.of(Telegram::safety).length;
        if (hasNumber(length) && length->number() < kShortest)
            report.add(length->valuePlace(), "a block of safety parameters has at least 14 octets, its head included");
    }
}

constexpr Rule kRules[] = {
    {"keyword-of-dpv1-slave", Severity::warning, Group::consistency, "Keywords of DPV1 stand in files of DPV1 slaves.",
     "Class 1 services, alarms and the fine setting of watchdog and configuration check come with DPV1_Slave = 1. "
     "Without it tools do not look at them.",
     "DPV1_Slave = 0\nC1_Read_Write_supp = 1", "DPV1_Slave = 1\nC1_Read_Write_supp = 1", checkDpv1},
    {"dpv1-parameters", Severity::error, Group::consistency,
     "A DPV1 slave has at least three octets of user parameters.",
     "The first three octets of its user parameters are fixed in meaning: they switch on what DPV1 offers.",
     "DPV1_Slave = 1\nUser_Prm_Data_Len = 1", "DPV1_Slave = 1\nMax_User_Prm_Data_Len = 3", checkDpv1Parameters},
    {"required-not-supported", Severity::error, Group::consistency, "What a device requires it also supports.",
     "A _required keyword says that the device or module cannot work without the function, and the _supp keyword that "
     "it has it.",
     "Process_Alarm_supp = 0\nProcess_Alarm_required = 1", "Process_Alarm_supp = 1\nProcess_Alarm_required = 1",
     checkRequirements},
    {"alarm-type-mode", Severity::warning, Group::consistency, "A station that sends alarms supports the type mode.",
     "One open alarm of each type is what every station with alarms has to allow.",
     "Process_Alarm_supp = 1\nAlarm_Type_Mode_supp = 0", "Process_Alarm_supp = 1\nAlarm_Type_Mode_supp = 1",
     checkAlarmMode},
    {"alarm-length", Severity::warning, Group::consistency,
     "A station that sends alarms sends at least 10 octets of diagnosis.",
     "An alarm takes four octets behind the six that every diagnosis has.",
     "Max_Diag_Data_Len = 8\nProcess_Alarm_supp = 1", "Max_Diag_Data_Len = 16\nProcess_Alarm_supp = 1",
     checkAlarmLength},
    {"service-without-room", Severity::warning, Group::consistency,
     "A supported service has lengths, times and channels above 0.",
     "Read and write services with a length, a timeout, or a number of channels of 0 cannot be used.",
     "C1_Read_Write_supp = 1\nC1_Max_Data_Len = 0", "C1_Read_Write_supp = 1\nC1_Max_Data_Len = 64", checkServices},
    {"extended-telegram", Severity::warning, Group::consistency,
     "The extended parameter telegram is used by stations that take it.",
     "X_Prm_SAP_supp = 1 says that the station takes a second parameter telegram. Without it nothing is ever sent in "
     "it.",
     "X_Max_User_Prm_Data_Len = 64", "X_Prm_SAP_supp = 1\nX_Max_User_Prm_Data_Len = 64", checkExtendedTelegram},
    {"cycle-times", Severity::warning, Group::consistency, "The shortest cycle is not longer than the longest.",
     "TDP_MIN and TDP_MAX count the same base time.", "TDP_MIN = 32\nTDP_MAX = 16", "TDP_MIN = 16\nTDP_MAX = 32",
     checkCycle},
    {"redundancy-commands", Severity::warning, Group::consistency,
     "A redundant slave takes commands for its redundancy.",
     "Slave_Redundancy_supp = 8 or 9 needs PrmCmd_supp = 1: the commands come in a parameter block.",
     "Slave_Redundancy_supp = 8", "Slave_Redundancy_supp = 8\nPrmCmd_supp = 1", checkRedundancy},
    {"safety-parameters", Severity::warning, Group::consistency,
     "Safety parameters are sent to DPV1 slaves in structured blocks.",
     "The F_ parameters form a block with a head of its own. The station has to take structured blocks, which are a "
     "part of DPV1.",
     "F_Ext_User_Prm_Data_Ref(4) = 1",
     "DPV1_Slave = 1\nPrm_Block_Structure_supp = 1\n...\nF_Ext_User_Prm_Data_Ref(4) = 1", checkSafety},
    {"safety-block-length", Severity::warning, Group::consistency,
     "A block of safety parameters has at least 14 octets.",
     "Four octets are its head, ten the shortest set of parameters.", "F_Ext_Module_Prm_Data_Len = 10",
     "F_Ext_Module_Prm_Data_Len = 14", checkSafetyLength},
};

} // namespace

std::span<const Rule> serviceRules()
{
    return kRules;
}

} // namespace typdescriptor::lint
