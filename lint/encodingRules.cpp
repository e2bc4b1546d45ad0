// A GSD file has one byte for each character and lines that end in CR LF or LF. Files that were saved otherwise are named as
// what they are, and written back as they should be where no character is lost by it.

#include "lint/phrases.h"
#include "lint/places.h"
#include "lint/tables.h"

#include "gsdfile/textForm.h"

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

// UTF-16

bool isUtf16(const gsdfile::Document& document)
{
    return document.unit() == 2;
}

// The text of a file in UTF-16; nothing where ISO 8859-1 does not have all of it.
std::optional<std::string> latin1OfUtf16(const gsdfile::Document& document)
{
    const std::string_view bytes = document.bytes();
    if (bytes.size() % 2 != 0)
        return std::nullopt;
    const std::size_t low = document.encoding() == gsdfile::Encoding::utf16Little ? 0 : 1;
    std::string text;
    for (std::size_t i = document.hasMark() ? 2 : 0; i + 1 < bytes.size(); i += 2) {
        if (bytes[i + 1 - low] != '\0')
            return std::nullopt;
        text += bytes[i + low];
    }
    return text;
}

void checkUtf16(const Context& context, Report& report)
{
    if (!isUtf16(context.document))
        return;
    const bool isLittle = context.document.encoding() == gsdfile::Encoding::utf16Little;
    Finding& finding = report.add({}, std::string("the file is UTF-16, ") + (isLittle ? "low" : "high") +
                                          " byte first: no GSD reader finds a keyword in it; save it as ISO 8859-1");
    if (const std::optional<std::string> text = latin1OfUtf16(context.document))
        finding.mend.push_back({{0, offset(context.document.bytes().size())}, *text});
}

// UTF-8

// The places of the characters of several bytes, in a file that is UTF-8.
std::vector<Span> utf8Characters(std::string_view bytes)
{
    std::vector<Span> characters;
    std::size_t length = 1;
    for (std::size_t i = bytes.starts_with(kUtf8Mark) ? kUtf8Mark.size() : 0; i < bytes.size(); i += length) {
        length = gsdfile::utf8Length(bytes, i);
        if (length > 1)
            characters.push_back({offset(i), offset(i + length)});
        length = std::max<std::size_t>(length, 1);
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
    if (first == std::string_view::npos || isUtf16(context.document))
        return;
    report.add({offset(first), offset(first + 1)},
               "the file holds " +
                   counted(static_cast<std::size_t>(std::ranges::count(bytes, '\0')), "NUL byte", "NUL bytes") +
                   "; a reader ends the line there");
}

enum LineEndKind : std::size_t { kCrLf, kLf, kCr };
constexpr std::array<std::string_view, 3> kLineEndBytes = {"\r\n", "\n", "\r"};

// The line ends of a file, and the CRs that end no line.
struct LineEnds {
    std::array<std::vector<Span>, 3> places;

    explicit LineEnds(const gsdfile::Document& document)
    {
        const std::string_view bytes = document.bytes();
        for (const gsdfile::Line& line : document.lines()) {
            const std::string_view upToEnd = bytes.substr(0, line.end);
            for (std::size_t i = upToEnd.find('\r', line.begin); i < line.end; i = upToEnd.find('\r', i + 1))
                add(kCr, i);
            if (line.lineEnd == gsdfile::LineEnd::none)
                continue;
            add(line.lineEnd == gsdfile::LineEnd::carriageReturnLineFeed ? kCrLf
                : line.lineEnd == gsdfile::LineEnd::lineFeed             ? kLf
                                                                         : kCr,
                line.end);
        }
    }

private:
    void add(LineEndKind kind, std::size_t begin)
    {
        places[kind].push_back({offset(begin), offset(begin + kLineEndBytes[kind].size())});
    }
};

void checkCrOnly(const Context& context, Report& report)
{
    const std::string_view bytes = context.document.bytes();
    if (bytes.find('\n') != std::string_view::npos || bytes.find('\r') == std::string_view::npos ||
        isUtf16(context.document))
        return;
    const std::vector<Span> ends = LineEnds(context.document).places[kCr];
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
    const gsdfile::Document& document = context.document;
    if (document.unit() != 1 || document.bytes().find('\n') == std::string_view::npos || isUniform(document))
        return;
    const LineEnds ends(document);
    const std::size_t usual = ends.places[kLf].size() > ends.places[kCrLf].size() ? kLf : kCrLf;
    constexpr const char* kNames[] = {"CR LF", "LF", "CR alone"};
    for (std::size_t kind = 0; kind < ends.places.size(); ++kind) {
        const std::vector<Span>& places = ends.places[kind];
        if (kind == usual || places.empty())
            continue;
        Finding& finding = report.add(places.front(), counted(places.size(), "line ends", "lines end") + " in " +
                                                          kNames[kind] + ", the others in " + kNames[usual]);
        // Where the lines are lines without it, a CR alone stands inside of one: what follows may be a comment's text.
        if (kind == kCr && document.section() != gsdfile::kNone)
            continue;
        for (const Span place : places)
            finding.mend.push_back({place, std::string(kLineEndBytes[usual])});
    }
}

constexpr Rule kRules[] = {
    {"utf-16", Severity::error, Group::encoding, "A GSD file is not UTF-16.",
     "A GSD file has one byte for each character. Saved as UTF-16 (\"Unicode\" in some editors) every second byte is "
     "NUL, and no reader finds a keyword. Save it as ISO 8859-1 (\"ANSI\", \"Western\").",
     "FF FE 23 00 50 00 72 00", "23 50 72 6F (#Pro)", checkUtf16},
    {"utf-8", Severity::warning, Group::encoding, "A GSD file is not UTF-8.",
     "A GSD file has one byte for each character. In UTF-8 a letter such as u with two dots has two: device texts show "
     "two wrong characters in its place, and a text may grow beyond its longest length. Save the file as ISO 8859-1. A "
     "file that has such letters only in comments is read as it is meant.",
     "Model_Name = \"Ger<C3><A4>t\"", "Model_Name = \"Ger<E4>t\"", checkUtf8},
    {"utf-8-mark", Severity::warning, Group::encoding, "A GSD file does not begin with a byte order mark.",
     "Three bytes (EF BB BF) that some editors put in front of UTF-8. When #Profibus_DP is the first line, they hide "
     "it and the whole file is empty to a reader. Save the file without the mark.",
     "EF BB BF #Profibus_DP", "#Profibus_DP", checkUtf8Mark},
    {"nul-byte", Severity::error, Group::encoding, "A GSD file holds no NUL byte.",
     "Readers take NUL for the end of the line; what follows is lost. It comes from a damaged copy or from a program "
     "that wrote more than its text.",
     "Max_Module = 4<NUL>", "Max_Module = 4", checkNul},
    {"cr-only-line-ends", Severity::error, Group::encoding, "Lines end in CR LF or LF.",
     "A file whose lines end in CR alone, as old Macintosh programs wrote them, is one single line to a reader.",
     "#Profibus_DP<CR>GSD_Revision = 1<CR>", "#Profibus_DP<CR><LF>GSD_Revision = 1<CR><LF>", checkCrOnly},
    {"mixed-line-ends", Severity::hint, Group::encoding, "All lines end in the same way.",
     "CR LF and LF are both right, and readers take a file that has both. Editors and version control may change the "
     "whole file without being asked, though. A CR that is followed by no LF ends no line.",
     "FMS_supp = 0<CR><LF>\nRedundancy = 0<LF>", "FMS_supp = 0<LF>\nRedundancy = 0<LF>", checkMixedLineEnds},
};

} // namespace

std::span<const Rule> encodingRules()
{
    return kRules;
}

} // namespace typdescriptor::lint
