#include "lint/typeFile.h"

#include "lint/tables.h"

#include "descriptor/cTypDescriptor.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace typdescriptor::lint {

namespace {

// Where the check of a type file stops with a code: a record by its number, counted without the head line, or a group by the
// tag of its first record.
struct Stop {
    int code;
    std::size_t record;
    std::string_view tag;
    const char* where;
};

constexpr std::array kStops = {
    Stop{kErrModelName, 2, "", "model name"},
    Stop{kErrIdentNumber, 7, "", "ident number"},
    Stop{kErrSlaveInterval, 22, "", "minimum slave interval"},
    Stop{kErrBaudRates, 23, "", "baud rates"},
    Stop{kErrInputLen, 24, "", "maximum input length"},
    Stop{kErrOutputLen, 25, "", "maximum output length"},
    Stop{kErrNoData, 25, "", "maximum input and output length"},
    Stop{kErrMaxModule, 26, "", "maximum number of modules"},
    Stop{kErrDiagLen, 27, "", "maximum diagnostic length"},
    Stop{kErrDeviceDiag, 0, "DKM", "in the group that begins here"},
    Stop{kErrChannelDiag, 0, "DKK", "in the group that begins here"},
    Stop{kErrOrderList, 0, "MLFB", "in the list that begins here, or in what refers to a block"},
    Stop{kErrModuleList, 0, "LSK", "in the lists that begin here, or in what refers to a block"},
};

constexpr Rule kRules[] = {
    {"type-file-refused", Severity::error, Group::library, "The library accepts a type file.",
     "A type file (.410) is read by the library alone, which stops at the first record that does not have the form it\n"
     "demands. The code is the one that a host of the library gets. Type files are written by typdesc compile; one "
     "that\n"
     "was changed by hand is better compiled anew.",
     "", "", [](const Context&, Report&) {}}, // reports through checkTypeFile: there is no document
};

std::vector<Span> linesOf(std::string_view bytes)
{
    std::vector<Span> lines;
    for (std::size_t begin = 0; begin < bytes.size();) {
        const std::size_t end = std::min(bytes.find('\n', begin), bytes.size());
        const std::size_t last = bytes.substr(begin, end - begin).find_last_not_of('\r');
        lines.push_back({static_cast<std::uint32_t>(begin),
                         static_cast<std::uint32_t>(last == std::string_view::npos ? begin : begin + last + 1)});
        begin = end + 1;
    }
    return lines;
}

// The record at which the check stopped; the file as a whole when the code does not tell.
Span placeOf(std::string_view bytes, const Stop& stop)
{
    constexpr std::size_t kHeaderRecords = 9; // texts of the device stand in them
    const std::vector<Span> lines = linesOf(bytes);
    const auto textOf = [bytes](Span line) { return bytes.substr(line.begin, line.end - line.begin); };
    if (stop.record > 0) {
        const bool hasHeadLine = !lines.empty() && textOf(lines[0]).find(';') == std::string_view::npos;
        const std::size_t index = stop.record - (hasHeadLine ? 0 : 1);
        return index < lines.size() ? lines[index] : Span();
    }
    for (std::size_t i = kHeaderRecords; i < lines.size(); ++i) {
        if (textOf(lines[i]).starts_with(stop.tag))
            return lines[i];
    }
    return {};
}

} // namespace

std::span<const Rule> typeFileRules()
{
    return kRules;
}

std::vector<Finding> checkTypeFile(std::string_view bytes, const std::string& path)
{
    cTypDescriptor descriptor(path.c_str(), 0, nullptr);
    const int code = descriptor.getStatus() != kOk ? descriptor.getStatus() : descriptor.checkTypeFileContents();
    if (code >= 0)
        return {};
    Finding finding{&kRules[0], kRules[0].severity, {}, resultText(code), {}, {}, code};
    const auto stop = std::ranges::find(kStops, code, &Stop::code);
    if (stop != kStops.end()) {
        finding.place = placeOf(bytes, *stop);
        if (finding.place != Span())
            finding.message += std::string(" [") + stop->where + ']';
    } else if (code == kErrFile) {
        finding.message += " [a type file has 1 to 65534 bytes]";
    }
    return {finding};
}

} // namespace typdescriptor::lint
