// What the library does with the file: what it refuses, cuts, keeps in fewer bits and leaves out.
//
// A fault that another rule has found already is told once: the finding gets the library's code, and what the library says
// about it as a note.

#include "lint/allowed.h"
#include "lint/deviceIndex.h"
#include "lint/imageCulprit.h"
#include "lint/libraryLosses.h"
#include "lint/libraryVerdict.h"
#include "lint/phrases.h"
#include "lint/refusalReason.h"
#include "lint/tables.h"

#include "gsdfile/document.h"
#include "gsdfile/keywords.h"

#include <algorithm>
#include <array>
#include <string>
#include <unordered_map>
#include <vector>

namespace typdescriptor::lint {

namespace {

bool overlap(Span one, Span other)
{
    return one.begin < other.end && other.begin < one.end;
}

// The finding of another rule about the same fault: an error in the same statement, or a warning at the same token.
Finding* sameFault(Report& report, Span statement, Span token)
{
    for (Finding& finding : report.findings())
        if (finding.code == 0 && finding.severity == Severity::error && statement.end > 0 &&
            overlap(finding.place, statement))
            return &finding;
    for (Finding& finding : report.findings())
        if (finding.code == 0 && finding.severity == Severity::warning && token.end > 0 && finding.place == token)
            return &finding;
    return nullptr;
}

// Tells why the library refuses the file, at the finding of another rule where there is one.
void tellRefusal(int code, const Reason& reason, const char* what, Finding* known, Report& report)
{
    if (known == nullptr) {
        Finding& finding = report.add(reason.place, reason.why);
        finding.code = code;
        finding.notes = reason.notes;
        return;
    }
    known->code = code;
    known->severity = Severity::error;
    const bool isSame = known->message.find(reason.why) != std::string::npos;
    known->notes.push_back({reason.place, isSame ? what : what + (": " + reason.why)});
}

// What the library needs, in the order of the marks that it leaves, and the rule that misses the same.
struct Needed {
    const char* what;
    const char* rule;
};

constexpr const char* kMissing = "missing-mandatory-keyword";

constexpr std::array<Needed, LibraryVerdict::kMandatory> kNeeded = {{
    {"Vendor_Name", kMissing},
    {"Model_Name", kMissing},
    {"Revision", kMissing},
    {"Ident_Number", kMissing},
    {"Protocol_Ident", kMissing},
    {"Station_Type", kMissing},
    {"Hardware_Release", kMissing},
    {"Software_Release", kMissing},
    {"Module", kMissing},
    {"Min_Slave_Intervall", kMissing},
    {"a rate (9.6_supp to 12M_supp)", "no-rate-supported"},
    {"a MaxTsdr", ""},
    {"Max_Module", kMissing},
    {"Max_Input_Len", kMissing},
    {"Max_Output_Len", kMissing},
    {"Max_Data_Len", kMissing},
    {"Slave_Family", kMissing},
    {"Max_Diag_Data_Len", kMissing},
}};

// Whether another rule misses the same; its finding then has the library's code.
bool isMissedByRule(const Needed& needed, Report& report)
{
    const std::string_view rule = needed.rule;
    const std::string message = std::string(needed.what) + " is missing";
    for (Finding& finding : report.findings()) {
        if (finding.rule->name != rule || (rule == kMissing && !finding.message.starts_with(message)))
            continue;
        finding.code = kErrGsdMandatory;
        finding.severity = Severity::error;
        return true;
    }
    return false;
}

void tellMissing(const LibraryVerdict& verdict, Report& report)
{
    std::string names;
    for (std::size_t i = 0; i < kNeeded.size(); ++i)
        if (verdict.mandatory[i] == 0 && !isMissedByRule(kNeeded[i], report))
            names.append(names.empty() ? "" : ", ").append(kNeeded[i].what);
    if (!names.empty())
        report.add({}, "the library needs what the file does not have: " + names).code = kErrGsdMandatory;
}

// The spellings that the library takes with a warning: the rule about them gets the code.
void addSpellingCodes(const Context& context, const LibraryVerdict& verdict, Report& report)
{
    std::unordered_map<std::uint32_t, int> codes; // of the keywords, by their places
    for (const GSD_WARNING_ITEM& warning : verdict.warnings) {
        const bool isSpelling = warning.code == kWarnPrmTextRef || warning.code == kWarnChannelDiag;
        const Entry* entry = isSpelling ? entryAt(context, static_cast<long>(warning.lineNumber)) : nullptr;
        if (entry != nullptr)
            codes.emplace(entry->place.begin, warning.code);
    }
    if (codes.empty())
        return;
    for (Finding& finding : report.findings()) {
        const auto code = codes.find(finding.place.begin);
        if (code != codes.end() && finding.rule->name == std::string_view("field-spelling"))
            finding.code = code->second;
    }
}

// The finding of the rule that tells the same about the file or a block as a whole.
Finding* wholeFault(int code, Span block, Report& report)
{
    for (Finding& finding : report.findings()) {
        const std::string_view rule = finding.rule->name;
        const bool isUnreadable = finding.rule->group == Group::encoding && finding.severity == Severity::error;
        if (code == kErrGsdNoSection && (isUnreadable || rule == "section-start-missing"))
            return &finding;
        const bool isOpenBlock = code == kErrGsdSyntax && block.end > 0 && rule == "block-not-closed";
        if (isOpenBlock && std::ranges::find(finding.notes, block, &Note::place) != finding.notes.end())
            return &finding;
    }
    return nullptr;
}

void checkCompilation(const Context& context, Report& report)
{
    const LibraryVerdict* verdict = context.verdict();
    if (verdict == nullptr) {
        report.add(Severity::warning, {},
                   "the library cannot be asked about the file: no temporary file can be written for it");
        return;
    }
    dropAllowed(context.document, report.findings()); // what a file allows itself does not hide what the library says
    addSpellingCodes(context, *verdict, report);
    if (verdict->isCompiled)
        return;
    if (verdict->code == kErrGsdMandatory) {
        tellMissing(*verdict, report);
        return;
    }
    const DeviceIndex& device = context.device();
    const RefusedLine line = refusedLine(context, verdict->line);
    const Reason reason = reasonOf(*verdict, line, device);
    // A block without content is told where it begins.
    const Span statement = verdict->code == kErrGsdEmptyBlock ? line.blockPlace
                           : reason.place.end == 0            ? Span{}
                                                              : line.whole;
    Finding* known = wholeFault(verdict->code, line.blockPlace, report);
    if (known == nullptr)
        known = sameFault(report, statement, reason.place);
    tellRefusal(verdict->code, reason, "the compilation ends here", known, report);
}

void checkImage(const Context& context, Report& report)
{
    const LibraryVerdict* verdict = context.verdict();
    if (verdict == nullptr || !verdict->isCompiled || verdict->code >= 0)
        return;
    const std::optional<Culprit> culprit = culpritOf(verdict->code, context.device());
    if (!culprit) {
        Finding& finding =
            report.add({}, std::string("the library compiles the file and then refuses the type file: ") +
                               resultText(verdict->code) + " Which statement leads to it could not be found");
        finding.code = verdict->code;
        return;
    }
    Finding* known = sameFault(report, culprit->place, culprit->place);
    tellRefusal(verdict->code, {culprit->place, culprit->why, culprit->notes}, "the compiled type file is refused",
                known, report);
}

// Adds a finding for each warning of the library with that code.
template <typename Describe>
void tellWarnings(const Context& context, int code, Describe describe, Report& report)
{
    const LibraryVerdict* verdict = context.verdict();
    if (verdict == nullptr)
        return;
    for (const GSD_WARNING_ITEM& warning : verdict->warnings) {
        if (warning.code != code)
            continue;
        const Entry* entry = entryAt(context, static_cast<long>(warning.lineNumber));
        std::optional<Reason> reason = entry != nullptr ? describe(*entry) : std::nullopt;
        if (!reason) // the statement cannot be read as the library does
            reason = Reason{entry != nullptr ? entry->place : Span{}, resultText(code)};
        report.add(reason->place, reason->why).code = code;
    }
}

void checkTexts(const Context& context, Report& report)
{
    tellWarnings(context, kWarnTextCut, cutText, report);
}

void checkTypes(const Context& context, Report& report)
{
    tellWarnings(context, kWarnDataType, narrowedNumbers, report);
}

void checkAreas(const Context& context, Report& report)
{
    tellWarnings(context, kWarnDiagArea, cutArea, report);
}

// Rows of keywords that the library skips; those that begin with one of its own it refuses.
std::vector<bool> skippedRows()
{
    std::vector<bool> rows;
    for (const gsdfile::Keyword& row : gsdfile::keywords())
        rows.push_back(row.readerId == gsdfile::kNotRead && libraryKeywordAtStart(row.name).empty());
    return rows;
}

// The keywords that the library skips, in one finding: each by itself is as it should be.
void checkSkipped(const Context& context, Report& report)
{
    constexpr std::size_t kShown = 8;
    static const std::vector<bool> kSkipped = skippedRows();
    const gsdfile::Keyword* const rows = gsdfile::keywords().data();
    std::vector<bool> isNamed(kSkipped.size());
    std::vector<const char*> names;
    Span first;
    std::size_t statements = 0;
    for (const gsdfile::Statement& statement : context.document.statements()) {
        const std::size_t row =
            statement.keyword != nullptr ? static_cast<std::size_t>(statement.keyword - rows) : kSkipped.size();
        if (row >= kSkipped.size() || !kSkipped[row])
            continue;
        if (++statements == 1) {
            const gsdfile::Token& token = context.document.tokens()[statement.keywordToken];
            first = {token.begin, token.end};
        }
        if (!isNamed[row])
            names.push_back(statement.keyword->name);
        isNamed[row] = true;
    }
    if (statements == 0)
        return;
    std::string list;
    for (std::size_t i = 0; i < std::min(kShown, names.size()); ++i)
        list.append(i == 0 ? "" : ", ").append(names[i]);
    if (names.size() > kShown)
        list += " and " + std::to_string(names.size() - kShown) + " more";
    report.add(first,
               "the library does not read " + counted(statements, "statement", "statements") + " of the file: " + list);
}

} // namespace

std::span<const Rule> libraryRules()
{
    static constexpr Rule kRules[] = {
        {"library-refuses", Severity::error, Group::library, "The library compiles the file.",
         "The library ends a compilation at the first thing that it does not take, with a code. It is stricter than "
         "the format in places: it knows 106 keywords, skips every other one, but takes a keyword that begins with one "
         "of its own for that one; it takes texts of 32 characters at most; and it knows DP slaves only.",
         "Unit_Diag_Bit_Help(0) = \"check the fan\"", "; Unit_Diag_Bit_Help(0) = \"check the fan\"", checkCompilation},
        {"library-refuses-type-file", Severity::error, Group::library,
         "The library's check takes what was compiled from the file.",
         "A file may compile and still describe a device that no type file can: the check of the compiled type file "
         "then gives a code. The statement that leads to it is looked for by the limits of the type file.",
         "Max_Input_Len = 0\nMax_Output_Len = 0", "Max_Input_Len = 8\nMax_Output_Len = 0", checkImage},
        {"library-cuts-text", Severity::hint, Group::library, "A text fits into its field of the type file.",
         "GSD allows texts of 32 characters; a type file has room for 10 of Vendor_Name, 17 of Model_Name, 7 of "
         "Bitmap_Device, 10 of Periphery and 30 of most others. Blanks are taken out first, the last one first; then "
         "the text is cut.",
         "Vendor_Name = \"Example Devices Ltd.\"", "Vendor_Name = \"Example\"", checkTexts},
        {"library-narrows-parameter", Severity::hint, Group::library,
         "A parameter has a data type that the type file has.",
         "A type file has parameters of one byte without and two bytes with or without a sign. Of Unsigned32 and "
         "Signed32 the lower 16 bits are kept, Signed8 loses its sign.",
         "Unsigned32 100000 0-200000", "Unsigned16 10000 0-20000", checkTypes},
        {"library-cuts-area", Severity::hint, Group::library, "A diagnostic area lies within one octet.",
         "A type file has areas of at most eight bits in one octet. Of others the bits in the octet of the last one "
         "are dropped, and of the values what does not fit.",
         "Unit_Diag_Area = 6-9", "Unit_Diag_Area = 8-11", checkAreas},
        {"library-skips-keyword", Severity::hint, Group::library, "The library reads every keyword of the file.",
         "The library reads the keywords that its type file has room for and skips every other one. Such a line is "
         "right; a host of the library just does not learn what it says. The finding stands once in a file, at the "
         "first of them.",
         "C1_Max_Data_Len = 64", "C1_Max_Data_Len = 64 ; right as it is", checkSkipped},
    };
    return kRules;
}

} // namespace typdescriptor::lint
