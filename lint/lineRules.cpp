// Rules about lines: the start of the section, lines that are no statement, long ones, and what a comment allows.

#include "lint/allowed.h"
#include "lint/phrases.h"
#include "lint/places.h"
#include "lint/statementIndex.h"
#include "lint/tables.h"

#include "gsdfile/textForm.h"

#include <algorithm>
#include <iterator>

namespace typdescriptor::lint {

using gsdfile::Document;
using gsdfile::FaultKind;
using gsdfile::Statement;
using gsdfile::Token;
using gsdfile::TokenKind;

namespace {

constexpr std::string_view kStart = "#Profibus_DP";
constexpr std::size_t kLongestLine = 80;

bool isStart(std::string_view line)
{
    const gsdfile::Keyword* row = gsdfile::findKeyword(line.substr(0, line.find_first_of(" \t;")));
    return row && row->name == kStart;
}

// A line outside of the section without the blanks ahead.
Span trimmed(const Document& document, const Token& token)
{
    const std::string_view text = document.text(token);
    const std::size_t ahead = std::min(text.find_first_not_of(" \t"), text.size());
    return {static_cast<std::uint32_t>(token.begin + ahead * document.unit()), token.end};
}

void checkStart(const Context& context, Report& report)
{
    const Document& document = context.document;
    if (document.section() != gsdfile::kNone)
        return;
    for (const Token& token : document.tokens()) {
        if (token.kind != TokenKind::freeText)
            continue;
        const Span place = trimmed(document, token);
        const std::string line = textAt(document, place);
        if (line.starts_with('#')) {
            report.add(place, "the section does not begin here: its first line is #Profibus_DP and nothing else");
            return;
        }
    }
    report.add({}, "no line #Profibus_DP begins the section; the whole file is free text to a reader");
}

void checkSecondStart(const Context& context, Report& report)
{
    const Document& document = context.document;
    if (document.section() == gsdfile::kNone)
        return;
    const Statement& section = document.statements()[document.section()];
    const Span first = keywordPlace(document, section);
    const auto tell = [&](Span place) {
        report.add(place, "the section is opened a second time").note(first, "it begins here");
    };
    for (const Statement& statement : document.statements())
        if (statement.keyword == section.keyword && &statement != &section)
            tell(keywordPlace(document, statement));
    for (const Token& token : document.tokens()) {
        if (token.kind != TokenKind::freeText || token.begin < first.end)
            continue;
        const Span place = trimmed(document, token);
        if (isStart(document.text(place.begin, place.end)))
            tell(place);
    }
}

// How many characters a line has. Bytes are counted first: it has no more of the one than of the other.
std::size_t lengthOf(const Document& document, const gsdfile::Line& line)
{
    const std::size_t units = (line.end - line.begin) / document.unit();
    return units <= kLongestLine ? units : document.place(line.end).character - 1;
}

// What stands beyond the longest length of a line.
Span surplusOf(const Document& document, const gsdfile::Line& line)
{
    std::size_t begin = line.begin;
    for (std::size_t i = 0; i < kLongestLine; ++i)
        begin += document.encoding() == gsdfile::Encoding::utf8
                     ? std::max<std::size_t>(gsdfile::utf8Length(document.bytes(), begin), 1)
                     : document.unit();
    return {static_cast<std::uint32_t>(begin), line.end};
}

void checkLength(const Context& context, Report& report)
{
    const Document& document = context.document;
    const auto isLong = [&](const gsdfile::Line& line) { return lengthOf(document, line) > kLongestLine; };
    const auto first = std::ranges::find_if(document.lines(), isLong);
    if (first == document.lines().end())
        return;
    const auto count = static_cast<std::size_t>(std::count_if(std::next(first), document.lines().end(), isLong));
    const std::string others =
        count == 0 ? "" : "; the file has " + counted(count, "more line", "more lines") + " above 80";
    report.add(surplusOf(document, *first), "the line has " + std::to_string(lengthOf(document, *first)) +
                                                " characters; the format allows 80" + others);
}

// The first token of a statement that is no blank.
const Token& firstWord(const Document& document, const Statement& statement)
{
    std::size_t i = statement.firstToken;
    while (i + 1 < statement.endToken && document.tokens()[i].kind == TokenKind::blank)
        ++i;
    return document.tokens()[i];
}

bool looksLikeProse(const Context& context, const Statement& statement)
{
    return !statement.keyword && statement.equalsToken == gsdfile::kNone && !statement.argument &&
           !context.statements().nearest(statement).keyword && (!statement.values.empty() || !statement.faults.empty());
}

void checkStatement(const Context& context, Report& report)
{
    for (const Statement& statement : context.document.statements()) {
        if (statement.isReference)
            continue;
        if (!statement.name.empty() && !looksLikeProse(context, statement))
            continue;
        const Span place = spanOf(firstWord(context.document, statement));
        if (statement.values.size() == 1 && statement.equalsToken == gsdfile::kNone &&
            statement.values.front().kind == gsdfile::Value::number)
            report.add(place, "a number alone on its line is the reference of a module, and this one stands in none");
        else
            report.add(place, "the line is no statement; a comment begins with a semicolon");
    }
}

const std::string kNul(1, '\0'); // has a rule of its own

struct Stray {
    FaultKind kind;
    const char* message;
};

constexpr Stray kStrays[] = {
    {FaultKind::strayCharacter, "this character has no place in a statement; a comment begins with a semicolon"},
    {FaultKind::strayBackslash, "a backslash stands at the end of a line only, where it joins the next line to it"},
    {FaultKind::continuedAtEnd, "the backslash joins a line to this one, and there is none"},
};

void checkStrays(const Context& context, Report& report)
{
    for (const Statement& statement : context.document.statements()) {
        if (!statement.keyword)
            continue;
        for (const gsdfile::Fault& fault : statement.faults) {
            const auto stray = std::ranges::find(kStrays, fault.kind, &Stray::kind);
            const Span place = spanOf(context.document.tokens()[fault.token]);
            if (stray != std::end(kStrays) && textAt(context.document, place) != kNul)
                report.add(place, stray->message);
        }
    }
}

void checkAllowances(const Context& context, Report& report)
{
    for (const Allowance& allowance : allowances(context.document))
        if (!findRule(allowance.ruleName))
            report.add(allowance.place, "no rule has the name " + std::string(allowance.ruleName));
}

constexpr Rule kRules[] = {
    {"section-start-missing", Severity::error, Group::form,
     "A line with nothing but #Profibus_DP begins the description.",
     "What stands before #Profibus_DP is free text to every reader. A file without that line describes nothing.",
     "GSD_Revision = 1", "#Profibus_DP\nGSD_Revision = 1", checkStart},
    {"section-start-twice", Severity::error, Group::form, "#Profibus_DP stands once.",
     "The next line that begins with # ends the section, so what follows a second #Profibus_DP is read by some and "
     "skipped by others. It is left over, as a rule, when files were put together.",
     "#Profibus_DP\nGSD_Revision = 1\n#Profibus_DP", "#Profibus_DP\nGSD_Revision = 1", checkSecondStart},
    {"line-too-long", Severity::hint, Group::form, "A line has 80 characters at most.",
     "The format allows 80 characters in a line, each line of a continued statement counted by itself. Nearly all "
     "readers take longer ones. End the line with a backslash and go on in the next. One finding stands for the whole "
     "file.",
     "User_Prm_Data = 0x00, 0x00, and so on for more than 80 characters",
     "User_Prm_Data = 0x00, 0x00, \\\n    0x00, 0x00", checkLength},
    {"no-statement", Severity::warning, Group::form, "A line is a statement, a comment or empty.",
     "A comment begins with a semicolon. A line that begins with something else than a keyword is often a comment "
     "without it, or the second half of a statement whose first line lacks its backslash. Readers skip it or refuse "
     "the file.",
     "Rates:\n9.6_supp = 1", "; Rates:\n9.6_supp = 1", checkStatement},
    {"stray-character", Severity::error, Group::form, "A statement has no characters without a meaning.",
     "Behind a value only a comma, a comment or a backslash at the line's end can follow. Readers refuse the rest, or "
     "lose what stands behind it.",
     "Max_Module = 4 !", "Max_Module = 4 ; !", checkStrays},
    {"unknown-rule-allowed", Severity::warning, Group::form, "A comment \"typdesc: allow\" names rules that exist.",
     "The comment keeps quiet what the rules it names find in the statement of its line, or in the next statement when "
     "it stands alone on its line. A name that no rule has keeps nothing quiet.",
     "Max_Module = 250 ; typdesc: allow value-out-of-rage", "Max_Module = 250 ; typdesc: allow value-out-of-range",
     checkAllowances},
};

} // namespace

std::span<const Rule> lineRules()
{
    return kRules;
}

} // namespace typdescriptor::lint
