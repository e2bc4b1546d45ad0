// Rules about the station as a whole: its number, its rates, its lengths.

#include "lint/deviceIndex.h"
#include "lint/phrases.h"
#include "lint/tables.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdlib>

namespace typdescriptor::lint {

namespace {

struct Rate {
    std::string_view supported;
    std::string_view responseTime;
};

constexpr std::array<Rate, 11> kRates = {{
    {"9.6_supp", "MaxTsdr_9.6"},
    {"19.2_supp", "MaxTsdr_19.2"},
    {"31.25_supp", "MaxTsdr_31.25"},
    {"45.45_supp", "MaxTsdr_45.45"},
    {"93.75_supp", "MaxTsdr_93.75"},
    {"187.5_supp", "MaxTsdr_187.5"},
    {"500_supp", "MaxTsdr_500"},
    {"1.5M_supp", "MaxTsdr_1.5M"},
    {"3M_supp", "MaxTsdr_3M"},
    {"6M_supp", "MaxTsdr_6M"},
    {"12M_supp", "MaxTsdr_12M"},
}};

bool isCompact(const DeviceIndex& device)
{
    return device.hasSection && !device.isOn("Modular_Station");
}

void checkRates(const Context& context, Report& report)
{
    const DeviceIndex& device = context.device();
    const Entry* first = nullptr;
    for (const Rate& rate : kRates) {
        const Entry* entry = device.entry(rate.supported);
        if (device.isOn(rate.supported))
            return;
        if (entry != nullptr && (first == nullptr || entry->place.begin < first->place.begin))
            first = entry;
    }
    const Entry* start = device.entry("#Profibus_DP");
    if (first != nullptr || start != nullptr)
        report.add(first != nullptr ? first->valuePlace() : start->place,
                   "none of the keywords from 9.6_supp to 12M_supp is 1: the station supports no rate");
}

void checkUnusedTimes(const Context& context, Report& report)
{
    const DeviceIndex& device = context.device();
    for (const Rate& rate : kRates) {
        const Entry* time = device.entry(rate.responseTime);
        if (time == nullptr || device.isOn(rate.supported))
            continue;
        const Entry* supported = device.entry(rate.supported);
        if (supported != nullptr && supported->numbers.empty())
            continue;
        const std::string why = supported == nullptr ? " is not given" : " is 0";
        report.add(time->place, std::string(rate.responseTime) + " has no use: " + std::string(rate.supported) + why)
            .note(valuePlaceOf(supported), "the rate is not supported");
    }
}

void checkReservedNumber(const Context& context, Report& report)
{
    constexpr std::int64_t kHighest = 0xFFFF;
    const Entry* entry = context.device().entry("Ident_Number");
    if (!hasNumber(entry))
        return;
    if (entry->number() == 0 || entry->number() == kHighest)
        report.add(entry->valuePlace(),
                   inHex(entry->number(), 4) + " is reserved: no device has it as its Ident_Number");
}

// The number that the last four of a name's eight characters give, -1 when they give none.
long numberOfName(std::string_view fileName)
{
    constexpr std::size_t kName = 8;
    constexpr std::size_t kNumber = 4;
    constexpr std::size_t kExtension = 4;
    if (fileName.size() != kName + kExtension || fileName[kName] != '.')
        return -1;
    const std::string digits(fileName.substr(kName - kNumber, kNumber));
    const auto isHex = [](unsigned char c) { return std::isxdigit(c) != 0; };
    return std::all_of(digits.begin(), digits.end(), isHex) ? std::strtol(digits.c_str(), nullptr, 16) : -1;
}

void checkFileName(const Context& context, Report& report)
{
    const Entry* entry = context.device().entry("Ident_Number");
    const long number = numberOfName(context.fileName);
    if (number >= 0 && hasNumber(entry) && entry->number() != number)
        report.add(entry->valuePlace(), "the Ident_Number is " + inHex(entry->number(), 4) +
                                            ", but the name of the file ends in " + inHex(number, 4).substr(2));
}

void checkCompactModules(const Context& context, Report& report)
{
    const DeviceIndex& device = context.device();
    const Entry* most = device.entry("Max_Module");
    if (!isCompact(device) || !hasNumber(most) || most->number() == 1)
        return;
    report
        .add(most->valuePlace(), "a compact station has one module, Max_Module says " + std::to_string(most->number()))
        .note(valuePlaceOf(device.entry("Modular_Station")), "Modular_Station is 0");
}

struct DataLengths {
    const Entry* input;
    const Entry* output;
    const Entry* both;

    explicit DataLengths(const DeviceIndex& device)
        : input(device.entry("Max_Input_Len")), output(device.entry("Max_Output_Len")),
          both(device.entry("Max_Data_Len"))
    {}

    bool isWhole() const { return hasNumber(input) && hasNumber(output) && hasNumber(both); }
    void addNotes(Finding& finding) const
    {
        finding.note(input->valuePlace(), "Max_Input_Len is " + std::to_string(input->number()));
        finding.note(output->valuePlace(), "Max_Output_Len is " + std::to_string(output->number()));
    }
};

void checkDataAboveSum(const Context& context, Report& report)
{
    const DataLengths lengths(context.device());
    if (!lengths.isWhole())
        return;
    const std::int64_t sum = lengths.input->number() + lengths.output->number();
    if (lengths.both->number() <= sum)
        return;
    Finding& finding =
        report.add(lengths.both->valuePlace(), "Max_Data_Len is " + std::to_string(lengths.both->number()) +
                                                   ", inputs and outputs together have at most " + std::to_string(sum));
    lengths.addNotes(finding);
}

void checkDataBelowLarger(const Context& context, Report& report)
{
    const DataLengths lengths(context.device());
    if (!lengths.isWhole())
        return;
    const std::int64_t larger = std::max(lengths.input->number(), lengths.output->number());
    if (lengths.both->number() >= larger)
        return;
    Finding& finding = report.add(lengths.both->valuePlace(),
                                  "Max_Data_Len is " + std::to_string(lengths.both->number()) + ": the " +
                                      std::to_string(larger) + " bytes of one direction can never be used");
    lengths.addNotes(finding);
}

void checkBitmapNames(const Context& context, Report& report)
{
    for (const std::string_view keyword : {"Bitmap_Device", "Bitmap_Diag", "Bitmap_SF"}) {
        const Entry* entry = context.device().entry(keyword);
        if (entry != nullptr && entry->text && entry->text->text.find('.') != std::string_view::npos)
            report.add(entry->text->place, std::string(keyword) + " is the name of a picture without its extension");
    }
}

constexpr Rule kRules[] = {
    {"no-rate-supported", Severity::error, Group::consistency, "A station supports at least one transmission rate.",
     "Of the keywords from 9.6_supp to 12M_supp at least one has to be 1. With none a bus cannot be set up for the "
     "device.",
     "9.6_supp = 0\n19.2_supp = 0", "9.6_supp = 1\n19.2_supp = 0", checkRates},
    {"unused-response-time", Severity::hint, Group::consistency, "A MaxTsdr belongs to a supported rate.",
     "The response time of a rate that the station does not support has no use. Either the rate is missing, or the "
     "line is left over.",
     "3M_supp = 0\nMaxTsdr_3M = 250", "3M_supp = 1\nMaxTsdr_3M = 250", checkUnusedTimes},
    {"reserved-ident-number", Severity::warning, Group::consistency,
     "0x0000 and 0xFFFF are no Ident_Number of a device.",
     "Every device type has a number of its own from the user organisation. The two ends of the range are given to "
     "nobody.",
     "Ident_Number = 0xFFFF", "Ident_Number = 0x0C21", checkReservedNumber},
    {"ident-number-in-name", Severity::hint, Group::consistency,
     "A file name of eight characters ends in the Ident_Number.",
     "The usual name of a GSD file has four characters of the maker's choice, then the Ident_Number in hexadecimal. "
     "Tools that look for a device by its number go by the name. A name whose last four characters are no hexadecimal "
     "number is not looked at.",
     "DRIV0C22.GSD with Ident_Number = 0x0C21", "DRIV0C21.GSD with Ident_Number = 0x0C21", checkFileName},
    {"compact-max-module", Severity::warning, Group::consistency, "A compact station has one module.",
     "Without Modular_Station = 1 the station has one fixed configuration, and Max_Module can only be 1.",
     "Modular_Station = 0\nMax_Module = 4", "Modular_Station = 1\nMax_Module = 4", checkCompactModules},
    {"data-length-above-sum", Severity::error, Group::consistency,
     "Max_Data_Len is at most Max_Input_Len plus Max_Output_Len.",
     "Max_Data_Len limits inputs and outputs together. More than both have at most is a limit that is none, and as a "
     "rule a slip in one of the three.",
     "Max_Input_Len = 16\nMax_Output_Len = 16\nMax_Data_Len = 64",
     "Max_Input_Len = 16\nMax_Output_Len = 16\nMax_Data_Len = 32", checkDataAboveSum},
    {"data-length-below-direction", Severity::warning, Group::consistency,
     "Max_Data_Len is at least the larger of Max_Input_Len and Max_Output_Len.",
     "With less the larger of the two can never be used, as both together are limited to less than it alone.",
     "Max_Input_Len = 32\nMax_Output_Len = 8\nMax_Data_Len = 24",
     "Max_Input_Len = 32\nMax_Output_Len = 8\nMax_Data_Len = 40", checkDataBelowLarger},
    {"bitmap-extension", Severity::warning, Group::consistency, "The name of a bitmap has no extension.",
     "Bitmap_Device, Bitmap_Diag and Bitmap_SF have the name of the picture's file, at most eight characters; tools "
     "add the extension.",
     "Bitmap_Device = \"DRV.BMP\"", "Bitmap_Device = \"DRV\"", checkBitmapNames},
};

} // namespace

std::span<const Rule> stationRules()
{
    return kRules;
}

} // namespace typdescriptor::lint
