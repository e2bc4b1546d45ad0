// A GSD file has one byte for each character and lines that end in CR LF or LF. Files that were saved otherwise are named as
// what they are, and written back as they should be where no character is lost by it.

#include "lint/tables.h"

#include "gsdfile/document.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>

namespace typdescriptor::lint {

namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

std::uint32_t offset(std::size_t position)
{
    return static_cast<std::uint32_t>(position);
}
std::uint8_t byteAt(std::string_view bytes, std::size_t i)
{
    return static_cast<std::uint8_t>(bytes[i]);
}

std::string counted(std::size_t n, const char* one, const char* many)
{
    return std::to_string(n) + ' ' + (n == 1 ? one : many);
}

// UTF-16

enum class Order { low, high }; // which byte of a character comes first

std::optional<Order> utf16Order(std::string_view bytes)
{
    if (bytes.starts_with("\xFF\xFE"))
        return Order::low;
    if (bytes.starts_with("\xFE\xFF"))
        return Order::high;
    // Without a mark: text of which every second byte is NUL, near enough.
    const std::string_view sample = bytes.substr(0, 512);
    std::size_t nuls[2] = {0, 0};
    for (std::size_t i = 0; i < sample.size(); ++i)
        nuls[i % 2] += sample[i] == '\0' ? 1U : 0U;
    const std::size_t most = sample.size() / 2;
    const std::size_t few = most / 8;
    if (most < 4)
        return std::nullopt;
    if (nuls[1] + few >= most && nuls[0] <= few)
        return Order::low;
    if (nuls[0] + few >= most && nuls[1] <= few)
        return Order::high;
    return std::nullopt;
}

std::optional<std::string> latin1OfUtf16(std::string_view bytes, Order order)
{
    std::string text;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const std::size_t low = order == Order::low ? i : i + 1;
        const std::size_t high = order == Order::low ? i + 1 : i;
        const bool isMark = i == 0 && byteAt(bytes, high) == 0xFE && byteAt(bytes, low) == 0xFF;
        if (isMark)
            continue;
        if (bytes[high] != '\0')
            return std::nullopt;
        text += bytes[low];
    }
    return text;
}

void checkUtf16(const Context& context, Report& report)
{
    const std::string_view bytes = context.document.bytes();
    const std::optional<Order> order = utf16Order(bytes);
    if (!order)
        return;
    Finding& finding = report.add({}, std::string("the file is UTF-16, ") + (*order == Order::low ? "low" : "high") +
                                          " byte first: no GSD reader finds a keyword in it; save it as ISO 8859-1");
    if (const std::optional<std::string> text = latin1OfUtf16(bytes, *order))
        finding.mend.push_back({{0, offset(bytes.size())}, *text});
}

// UTF-8

// The bytes of the character that begins there, 0 when that is none of several bytes.
std::size_t utf8Length(std::string_view bytes, std::size_t i)
{
    const std::uint8_t first = byteAt(bytes, i);
    const std::size_t length = first >= 0xF0 && first < 0xF5 ? 4 : first >= 0xE0 ? 3 : first >= 0xC2 ? 2 : 0;
    if (length == 0 || first >= 0xF5 || i + length > bytes.size())
        return 0;
    for (std::size_t n = 1; n < length; ++n)
        if ((byteAt(bytes, i + n) & 0xC0U) != 0x80U)
            return 0;
    return length;
}

// The places of the characters of several bytes; none when the text is not UTF-8 throughout.
std::vector<Span> utf8Characters(std::string_view bytes)
{
    std::vector<Span> characters;
    for (std::size_t i = bytes.starts_with(kUtf8Mark) ? kUtf8Mark.size() : 0; i < bytes.size(); ++i) {
        if (byteAt(bytes, i) < 0x80)
            continue;
        const std::size_t length = utf8Length(bytes, i);
        if (length == 0)
            return {};
        characters.push_back({offset(i), offset(i + length)});
        i += length - 1;
    }
    return characters;
}

bool isLatin1(std::string_view bytes, Span character)
{
    return character.end - character.begin == 2 && byteAt(bytes, character.begin) <= 0xC3;
}

std::string latin1Of(std::string_view bytes, Span character)
{
    const unsigned code = (byteAt(bytes, character.begin) & 0x1FU) << 6U | (byteAt(bytes, character.begin + 1) & 0x3FU);
    return {static_cast<char>(code)};
}

void checkUtf8(const Context& context, Report& report)
{
    const std::string_view bytes = context.document.bytes();
    if (context.document.encoding() != gsdfile::Encoding::utf8)
        return;
    const std::vector<Span> characters = utf8Characters(bytes);
    if (characters.empty())
        return;
    const auto isInText = [&](Span character) { return context.document.isInString(character.begin); };
    const auto inText = std::ranges::find_if(characters, isInText);
    const Span first = inText == characters.end() ? characters.front() : *inText;
    const std::string shown(bytes.substr(first.begin, first.end - first.begin));
    Finding& finding = report.add(inText == characters.end() ? Severity::hint : Severity::warning, first,
                                  "the file is UTF-8: \"" + shown + "\" stands in " + std::to_string(shown.size()) +
                                      " bytes, and each is read as a character; the file has " +
                                      counted(characters.size(), "such character", "such characters"));
    if (!std::ranges::all_of(characters, [&](Span character) { return isLatin1(bytes, character); }))
        return; // ISO 8859-1 does not have them all
    for (const Span character : characters)
        finding.mend.push_back({character, latin1Of(bytes, character)});
}

void checkUtf8Mark(const Context& context, Report& report)
{
    const std::string_view bytes = context.document.bytes();
    if (!bytes.starts_with(kUtf8Mark))
        return;
    const Span mark{0, offset(kUtf8Mark.size())};
    const std::string_view line = bytes.substr(kUtf8Mark.size(), bytes.find_first_of("\r\n"));
    const bool hidesStart = line.substr(std::min(line.find_first_not_of(" \t"), line.size())).starts_with('#');
    Finding& finding = hidesStart
                           ? report.add(Severity::error, mark,
                                        "the byte order mark of UTF-8 stands before #Profibus_DP: that line is not "
                                        "recognised as the start of the section")
                           : report.add(mark, "the file begins with the byte order mark of UTF-8");
    finding.mend.push_back({mark, ""});
}

// NUL and line ends

void checkNul(const Context& context, Report& report)
{
    const std::string_view bytes = context.document.bytes();
    const std::size_t first = bytes.find('\0');
    if (first == std::string_view::npos || utf16Order(bytes))
        return;
    report.add({offset(first), offset(first + 1)},
               "the file holds " +
                   counted(static_cast<std::size_t>(std::ranges::count(bytes, '\0')), "NUL byte", "NUL bytes") +
                   "; a reader ends the line there");
}

enum LineEnd : std::size_t { kCrLf, kLf, kCr };
constexpr std::array<std::string_view, 3> kLineEndBytes = {"\r\n", "\n", "\r"};

struct LineEnds {
    std::array<std::vector<Span>, 3> places;

    explicit LineEnds(std::string_view bytes)
    {
        for (std::size_t i = bytes.find_first_of("\r\n"); i < bytes.size(); i = bytes.find_first_of("\r\n", i)) {
            const LineEnd kind = bytes[i] == '\n' ? kLf : bytes.substr(i).starts_with("\r\n") ? kCrLf : kCr;
            const std::size_t end = i + kLineEndBytes[kind].size();
            places[kind].push_back({offset(i), offset(end)});
            i = end;
        }
    }
};

void checkCrOnly(const Context& context, Report& report)
{
    const std::string_view bytes = context.document.bytes();
    if (bytes.find('\n') != std::string_view::npos || bytes.find('\r') == std::string_view::npos || utf16Order(bytes))
        return;
    const std::vector<Span> ends = LineEnds(bytes).places[kCr];
    Finding& finding = report.add(ends.front(), "the " + counted(ends.size(), "line ends", "lines end") +
                                                    " in CR alone: the whole file is read as one line");
    for (const Span end : ends)
        finding.mend.push_back({end, "\r\n"});
}

// Whether every line ends as the first one does, and no CR stands elsewhere.
bool isUniform(const gsdfile::Document& document)
{
    const std::vector<gsdfile::Line>& lines = document.lines();
    std::size_t withCr = 0;
    for (const gsdfile::Line& line : lines) {
        if (line.lineEnd != lines.front().lineEnd && line.lineEnd != gsdfile::LineEnd::none)
            return false;
        withCr += line.lineEnd == gsdfile::LineEnd::carriageReturnLineFeed ? 1U : 0U;
    }
    return static_cast<std::size_t>(std::ranges::count(document.bytes(), '\r')) == withCr;
}

void checkMixedLineEnds(const Context& context, Report& report)
{
    const std::string_view bytes = context.document.bytes();
    if (isUniform(context.document) || bytes.find('\n') == std::string_view::npos || context.document.unit() != 1)
        return;
    const LineEnds ends(bytes);
    const std::size_t usual = ends.places[kLf].size() > ends.places[kCrLf].size() ? kLf : kCrLf;
    constexpr const char* kNames[] = {"CR LF", "LF", "CR alone"};
    for (std::size_t kind = 0; kind < ends.places.size(); ++kind) {
        const std::vector<Span>& places = ends.places[kind];
        if (kind == usual || places.empty())
            continue;
        Finding& finding = report.add(places.front(), counted(places.size(), "line ends", "lines end") + " in " +
                                                          kNames[kind] + ", the others in " + kNames[usual]);
        for (const Span place : places)
            finding.mend.push_back({place, std::string(kLineEndBytes[usual])});
    }
}

constexpr Rule kRules[] = {
    {"utf-16", Severity::error, Group::encoding, "A GSD file is not UTF-16.",
     "A GSD file has one byte for each character. Saved as UTF-16 (\"Unicode\" in some editors) every second byte is "
     "NUL, and no "
     "reader finds a keyword. Save it as ISO 8859-1 (\"ANSI\", \"Western\").",
     "FF FE 23 00 50 00 72 00", "23 50 72 6F (#Pro)", checkUtf16},
    {"utf-8", Severity::warning, Group::encoding, "A GSD file is not UTF-8.",
     "A GSD file has one byte for each character. In UTF-8 a letter such as u with two dots has two: device texts show "
     "two wrong "
     "characters in its place, and a text may grow beyond its longest length. Save the file as ISO 8859-1. A file that "
     "has "
     "such letters only in comments is read as it is meant.",
     "Model_Name = \"Ger<C3><A4>t\"", "Model_Name = \"Ger<E4>t\"", checkUtf8},
    {"utf-8-mark", Severity::warning, Group::encoding, "A GSD file does not begin with a byte order mark.",
     "Three bytes (EF BB BF) that some editors put in front of UTF-8. When #Profibus_DP is the first line, they hide "
     "it and the "
     "whole file is empty to a reader. Save the file without the mark.",
     "EF BB BF #Profibus_DP", "#Profibus_DP", checkUtf8Mark},
    {"nul-byte", Severity::error, Group::encoding, "A GSD file holds no NUL byte.",
     "Readers take NUL for the end of the line; what follows is lost. It comes from a damaged copy or from a program "
     "that "
     "wrote more than its text.",
     "Max_Module = 4<NUL>", "Max_Module = 4", checkNul},
    {"cr-only-line-ends", Severity::error, Group::encoding, "Lines end in CR LF or LF.",
     "A file whose lines end in CR alone, as old Macintosh programs wrote them, is one single line to a reader.",
     "#Profibus_DP<CR>GSD_Revision = 1<CR>", "#Profibus_DP<CR><LF>GSD_Revision = 1<CR><LF>", checkCrOnly},
    {"mixed-line-ends", Severity::hint, Group::encoding, "All lines end in the same way.",
     "CR LF and LF are both right, and readers take a file that has both. Editors and version control may change the "
     "whole file "
     "without being asked, though. A CR that is followed by no LF ends no line.",
     "FMS_supp = 0<CR><LF>\nRedundancy = 0<LF>", "FMS_supp = 0<LF>\nRedundancy = 0<LF>", checkMixedLineEnds},
};

} // namespace

std::span<const Rule> encodingRules()
{
    return kRules;
}

} // namespace typdescriptor::lint
