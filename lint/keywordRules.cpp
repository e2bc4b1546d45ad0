// Rules about keywords: which one it is, how it is spelled, where it may stand and how often.

#include "lint/firstPlaces.h"
#include "lint/phrases.h"
#include "lint/places.h"
#include "lint/statementIndex.h"
#include "lint/tables.h"
#include "lint/valueGrammar.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <set>
#include <utility>

namespace typdescriptor::lint {

using gsdfile::Block;
using gsdfile::BlockKind;
using gsdfile::Document;
using gsdfile::Keyword;
using gsdfile::Repeat;
using gsdfile::Statement;

namespace {

bool mayStand(const Keyword& keyword, BlockKind kind)
{
    return (keyword.places & gsdfile::placeOf(kind)) != 0;
}

std::string levelName(BlockKind kind)
{
    return kind == BlockKind::none ? "outside of all blocks" : std::string("in ") + gsdfile::openingName(kind);
}

bool mayStandOnce(const Keyword& keyword)
{
    return keyword.repeat == Repeat::once || keyword.repeat == Repeat::oncePerBlock;
}

// Whether a keyword is wanted where a statement stands: it may stand there, and not twice.
bool isWanted(const Keyword& keyword, const Context& context, const Statement& statement)
{
    if (!mayStand(keyword, blockKindOf(context.document, statement)))
        return false;
    if (!mayStandOnce(keyword))
        return true;
    const StatementIndex& index = context.statements();
    return !(statement.block == gsdfile::kNone ? index.outside(keyword) : index.inside(statement.block, keyword));
}

// The characters of a name without which it means something else, whatever the distance: "19.2_supp", "Unit_Diag_!Bit".
std::string fixedCharacters(std::string_view name)
{
    std::string fixed;
    std::ranges::copy_if(name, std::back_inserter(fixed),
                         [](char c) { return (c >= '0' && c <= '9') || c == '.' || c == '!'; });
    return fixed;
}

// Whether what stands behind an unknown keyword is what the one that is meant takes.
bool hasFormOf(const Keyword& keyword, const Statement& statement)
{
    const bool takesEquals = keyword.form == gsdfile::Form::value || keyword.form == gsdfile::Form::argument;
    const bool isRightForm = (keyword.form == gsdfile::Form::argument) == (statement.argument != nullptr) &&
                             takesEquals == (statement.equalsToken != gsdfile::kNone) && statement.faults.empty();
    if (!isRightForm || (statement.argument && !keyword.arguments.holds(statement.argument->first.value)))
        return false;
    bool isRight = true;
    forEachItem(
        statement.values, keyword.type,
        [&](const Item& item, std::span<const gsdfile::Value> values) {
            isRight =
                isRight && values.size() >= item.least && std::ranges::all_of(values, [&](const gsdfile::Value& value) {
                    return isOfKind(value, item.want) &&
                           (value.kind != gsdfile::Value::number || gsdfile::allowsValue(keyword, value.first.value));
                });
        },
        [&](std::span<const gsdfile::Value>) { isRight = false; });
    return isRight;
}

// Whether nothing speaks against writing the near keyword: no other one is as near, one letter is wrong (Min for Max is
// two), it is one of the format and of the file's revision, opens no block, and the statement has its form.
bool isSurelyMeant(const gsdfile::Nearest& nearest, const Context& context, const Statement& statement)
{
    static const Keyword& kRevision = *gsdfile::findKeyword("GSD_Revision");
    const Keyword& keyword = *nearest.keyword;
    return nearest.other == nullptr && nearest.faults <= 1 && keyword.opens == gsdfile::BlockKind::none &&
           keyword.origin == gsdfile::Origin::genuine &&
           keyword.revision <= context.statements().number(kRevision).value_or(keyword.revision) &&
           fixedCharacters(keyword.name) == fixedCharacters(statement.name) && hasFormOf(keyword, statement);
}

void checkUnknown(const Context& context, Report& report)
{
    std::set<std::pair<const Keyword*, std::uint32_t>> taken; // meant before, in a block
    for (const Statement* unknown : context.statements().unknown()) {
        const Statement& statement = *unknown;
        if (gsdfile::isMasterKeyword(statement.name))
            continue;
        const Span place = keywordPlace(context.document, statement);
        const std::string message = "unknown keyword " + std::string(statement.name);
        const gsdfile::Nearest nearest = context.statements().nearest(statement);
        if (!nearest.keyword) {
            const bool isAssignment = statement.equalsToken != gsdfile::kNone || statement.argument;
            if (isAssignment || statement.values.empty())
                report.add(Severity::hint, place, message + "; readers skip it");
            continue;
        }
        const Keyword& near = *nearest.keyword;
        const bool isSecond = mayStandOnce(near) && !taken.emplace(&near, statement.block).second;
        if (isSecond || !isWanted(near, context, statement)) {
            report.add(Severity::hint, place,
                       message + "; it is like " + near.name + ", which has no place here or stands there already");
            continue;
        }
        const bool isMissing = std::string_view(near.duty) == "mandatory";
        const std::string other = nearest.other ? std::string(" or ") + nearest.other->name : "";
        Finding& finding = report.add(place, message + "; did you mean " + near.name + other +
                                                 (isMissing ? ", which is missing?" : "?"));
        if (isSurelyMeant(nearest, context, statement))
            finding.mend.push_back({place, near.name});
    }
}

struct Variant {
    std::string_view name;
    const char* official;
    const char* remark;
    bool isSafe; // the library and other readers take the official spelling as well
};

constexpr Variant kVariants[] = {
    {"PrmTextRef", "Prm_Text_Ref", "", true},
    {"ChannelDiag", "Channel_Diag", "", true},
    {"Unit_Diag_!Bit", "Unit_Diag_Not_Bit", "; the library shows the text only when it is spelled so", false},
    {"Module_Reference", "",
     "is not known to all readers: the reference of a module is a number alone on the line behind Module", false},
};

void checkVariant(const Context& context, Report& report)
{
    const std::vector<Statement>& statements = context.document.statements();
    for (std::size_t i = 0; i < statements.size(); ++i) {
        const Statement& statement = statements[i];
        if (!statement.keyword || statement.keyword->origin != gsdfile::Origin::fieldVariant)
            continue;
        const auto variant = std::ranges::find(kVariants, std::string_view(statement.keyword->name), &Variant::name);
        if (variant == std::end(kVariants) || (!variant->isSafe && !context.statements().isFirst(i)))
            continue; // what cannot be mended is said once
        const Span place = keywordPlace(context.document, statement);
        const std::string name(statement.name);
        if (*variant->official == '\0') {
            report.add(Severity::hint, place, name + ' ' + variant->remark);
            continue;
        }
        Finding& finding = report.add(variant->isSafe ? Severity::warning : Severity::hint, place,
                                      name + " is spelled " + variant->official + " in the format" + variant->remark);
        if (variant->isSafe)
            finding.mend.push_back({place, variant->official});
    }
}

void checkLetterCase(const Context& context, Report& report)
{
    std::vector<Edit> edits;
    for (const Statement& statement : context.document.statements())
        if (statement.keyword && statement.name != statement.keyword->name)
            edits.push_back({keywordPlace(context.document, statement), statement.keyword->name});
    if (edits.empty() || context.document.unit() != 1)
        return;
    const std::string others =
        edits.size() == 1 ? "" : ", as in " + counted(edits.size() - 1, "more place", "more places");
    Finding& finding = report.add(edits.front().place, textAt(context.document, edits.front().place) + " is " +
                                                           edits.front().text + " in other letters" + others);
    finding.mend = std::move(edits);
}

void checkExtension(const Context& context, Report& report)
{
    const std::vector<Statement>& statements = context.document.statements();
    for (std::size_t i = 0; i < statements.size(); ++i) {
        const Keyword* keyword = statements[i].keyword;
        if (keyword && keyword->origin == gsdfile::Origin::extension && context.statements().isFirst(i))
            report.add(keywordPlace(context.document, statements[i]),
                       std::string(keyword->name) +
                           " is no keyword of the format; the library reads it, other readers may skip it");
    }
}

// Keywords whose first revision is beyond doubt.
constexpr std::string_view kSureRevisions[] = {
    "3M_supp",
    "6M_supp",
    "12M_supp",
    "31.25_supp",
    "45.45_supp",
    "DPV1_Data_Types",
    "WD_Base_1ms_supp",
    "Check_Cfg_Mode",
    "Pull_Plug_Alarm_required",
    "Status_Alarm_required",
    "Update_Alarm_required",
    "Manufacturer_Specific_Alarm_required",
};

void checkRevision(const Context& context, Report& report)
{
    static const Keyword& kRevision = *gsdfile::findKeyword("GSD_Revision");
    const std::optional<std::int64_t> stated = context.statements().number(kRevision);
    if (!stated)
        return;
    const Span place = valuePlace(context.document, context.statements().outside(kRevision)->values.front());
    bool isNoted = false; // the same place once
    const std::vector<Statement>& statements = context.document.statements();
    for (std::size_t i = 0; i < statements.size(); ++i) {
        const Keyword* keyword = statements[i].keyword;
        if (!keyword || keyword->revision <= *stated || keyword->closes != BlockKind::none ||
            !context.statements().isFirst(i))
            continue;
        const bool isSure = std::ranges::find(kSureRevisions, keyword->name) != std::end(kSureRevisions);
        Finding& finding =
            report.add(isSure ? Severity::warning : Severity::hint, keywordPlace(context.document, statements[i]),
                       std::string(keyword->name) + " came with revision " + std::to_string(keyword->revision) +
                           "; the file states " + std::to_string(*stated));
        if (!isNoted)
            finding.note(place, "the revision of the file");
        isNoted = true;
    }
}

void checkMaster(const Context& context, Report& report)
{
    static const Keyword& kStationType = *gsdfile::findKeyword("Station_Type");
    if (context.statements().number(kStationType).value_or(0) != 0)
        return;
    for (const Statement* statement : context.statements().unknown())
        if (gsdfile::isMasterKeyword(statement->name))
            report.add(keywordPlace(context.document, *statement),
                       std::string(statement->name) + " is a keyword of masters, and the file describes a slave");
}

constexpr std::string_view kSection = "#Profibus_DP"; // has rules of its own

void checkDuplicate(const Context& context, Report& report)
{
    const std::vector<Statement>& statements = context.document.statements();
    for (std::size_t i = 0; i < statements.size(); ++i) {
        const Keyword* keyword = statements[i].keyword;
        if (!keyword || keyword->closes != BlockKind::none || keyword->name == kSection || !mayStandOnce(*keyword))
            continue;
        const Statement* first = context.statements().earlier(i);
        if (!first)
            continue;
        report
            .add(keywordPlace(context.document, statements[i]),
                 std::string(keyword->name) + " may stand once " +
                     levelName(blockKindOf(context.document, statements[i])))
            .note(keywordPlace(context.document, *first), "it stands here first");
    }
}

// Blocks that may stand once for each number.
void checkBlockNumbers(const Context& context, Report& report)
{
    const Document& document = context.document;
    std::map<BlockKind, FirstPlaces<std::int64_t>> numbers;
    for (const Block& block : document.blocks()) {
        const Statement& opening = document.statements()[block.opening];
        const bool isNumbered = block.kind == BlockKind::physicalInterface || block.kind == BlockKind::unitDiagType;
        if (!isNumbered || block.parent != gsdfile::kNone || opening.values.empty() ||
            opening.values.front().kind != gsdfile::Value::number)
            continue;
        const std::int64_t number = opening.values.front().first.value;
        const Span place = valuePlace(document, opening.values.front());
        if (const Span* first = numbers[block.kind].before(number, place))
            report
                .add(place, std::string(opening.keyword->name) + ' ' + std::to_string(number) + " has a block already")
                .note(*first, "the first one");
    }
}

// Places

std::string wherePossible(const Keyword& keyword)
{
    std::string names;
    for (unsigned kind = 0; kind <= static_cast<unsigned>(BlockKind::xUnitDiagArea); ++kind)
        if (mayStand(keyword, static_cast<BlockKind>(kind)))
            names += (names.empty() ? "" : " or ") + levelName(static_cast<BlockKind>(kind));
    return names;
}

void checkPlace(const Context& context, Report& report)
{
    const Document& document = context.document;
    for (const Statement& statement : document.statements()) {
        const Keyword* keyword = statement.keyword;
        const BlockKind kind = blockKindOf(document, statement);
        if (!keyword || keyword->closes != BlockKind::none || mayStand(*keyword, kind))
            continue;
        const Block* block = statement.block == gsdfile::kNone ? nullptr : &document.blocks()[statement.block];
        if (block && block->closing == gsdfile::kNone && mayStand(*keyword, BlockKind::none))
            continue; // the block that is not closed is the fault
        Finding& finding = report.add(
            keyword->sureness == gsdfile::Sureness::sure ? Severity::error : Severity::warning,
            keywordPlace(document, statement),
            std::string(keyword->name) + " stands " + levelName(kind) + "; it belongs " + wherePossible(*keyword));
        if (block)
            finding.notes.push_back(
                {keywordPlace(document, document.statements()[block->opening]), "the block begins here"});
    }
}

void checkClosed(const Context& context, Report& report)
{
    const Document& document = context.document;
    const std::vector<Statement>& statements = document.statements();
    for (const Block& block : document.blocks()) {
        if (block.closing != gsdfile::kNone)
            continue;
        const bool isAtEnd = block.end >= statements.size();
        const Statement& behind = isAtEnd ? statements.back() : statements[block.end];
        const std::string missing = gsdfile::closingName(block.kind);
        report
            .add(behind.keywordToken == gsdfile::kNone ? spanOf(document.tokens()[behind.firstToken])
                                                       : keywordPlace(document, behind),
                 missing + (isAtEnd ? " is missing at the end of the file" : " is missing before this line"))
            .note(keywordPlace(document, statements[block.opening]),
                  std::string(gsdfile::openingName(block.kind)) + " begins here");
    }
}

void checkEnd(const Context& context, Report& report)
{
    const std::vector<Statement>& statements = context.document.statements();
    std::vector<bool> closes(statements.size(), false);
    for (const Block& block : context.document.blocks())
        if (block.closing != gsdfile::kNone)
            closes[block.closing] = true;
    for (std::size_t i = 0; i < statements.size(); ++i) {
        const Keyword* keyword = statements[i].keyword;
        if (keyword && keyword->closes != BlockKind::none && !closes[i])
            report.add(keywordPlace(context.document, statements[i]),
                       std::string(keyword->name) + " closes nothing: no " + gsdfile::openingName(keyword->closes) +
                           " is open here");
    }
}

constexpr Rule kRules[] = {
    {"unknown-keyword", Severity::warning, Group::form, "A keyword is one of the format's.",
     "Readers skip a keyword that they do not know, so a misspelt one is silently without effect, and a mandatory one "
     "is missing. When a keyword of the format is near and would be right in that place, it is named. Without one this "
     "is a hint: makers add keywords of their own, which does no harm.",
     "Max_Diag_Data_Length = 16", "Max_Diag_Data_Len = 16", checkUnknown},
    {"field-spelling", Severity::warning, Group::form, "A keyword is spelled as the format spells it.",
     "Some misspellings are so common that a number of readers take them: PrmTextRef for Prm_Text_Ref, ChannelDiag for "
     "Channel_Diag. The spelling of the format is understood by all. Module_Reference is no keyword of the format: the "
     "reference of a module stands alone on the line behind Module.",
     "ChannelDiag(16) = \"No supply\"", "Channel_Diag(16) = \"No supply\"", checkVariant},
    {"letter-case", Severity::hint, Group::form, "Keywords are written with the format's capital and small letters.",
     "Readers compare keywords without regard to case, so this harms nobody; files are easier to search and to compare "
     "when all are written alike. One finding stands for the whole file.",
     "gsd_revision = 3", "GSD_Revision = 3", checkLetterCase},
    {"extension-keyword", Severity::hint, Group::form, "A keyword is one that all readers know.",
     "The library reads some keywords that are not part of the format. Other readers skip them, so the device must be "
     "complete without them. One finding stands for all statements of a keyword.",
     "Preset = 1", "; the module is plugged from the start", checkExtension},
    {"newer-than-revision", Severity::hint, Group::form, "A keyword is not newer than the file's GSD_Revision.",
     "A reader may know no more than what the stated revision has. Raise GSD_Revision, or leave the keyword out. Where "
     "the revision that brought the keyword is certain, this is a warning. One finding stands for all statements of a "
     "keyword.",
     "GSD_Revision = 1\nDPV1_Slave = 1", "GSD_Revision = 3\nDPV1_Slave = 1", checkRevision},
    {"master-keyword", Severity::warning, Group::form, "The file of a slave has no keywords of masters.",
     "Keywords such as Download_supp or Max_MPS_Length describe a master of class 1. In the file of a slave they have "
     "no effect; they are left over from a template, as a rule.",
     "Station_Type = 0\nMax_MPS_Length = 0", "Station_Type = 0", checkMaster},
    {"duplicate-keyword", Severity::error, Group::form, "A keyword that may stand once stands once.",
     "Some readers take the first statement, some the last, and some refuse the file.",
     "Max_Module = 4\nMax_Module = 8", "Max_Module = 8", checkDuplicate},
    {"duplicate-block", Severity::warning, Group::form, "An interface and a type of diagnosis have one block each.",
     "Physical_Interface stands once for each kind of interface, UnitDiagType once for each type. Of two with one "
     "number readers take the first, the last or both.",
     "UnitDiagType = 129\nEndUnitDiagType\nUnitDiagType = 129\nEndUnitDiagType",
     "UnitDiagType = 129\nEndUnitDiagType\nUnitDiagType = 130\nEndUnitDiagType", checkBlockNumbers},
    {"wrong-place", Severity::error, Group::form, "A keyword stands on the level or in the block where it belongs.",
     "In another place readers refuse it, skip it or take it for something else.",
     "Module = \"DI 8\" 0x10\nVendor_Name = \"Halden\"\nEndModule",
     "Vendor_Name = \"Halden\"\nModule = \"DI 8\" 0x10\nEndModule", checkPlace},
    {"block-not-closed", Severity::error, Group::form, "A block ends with its end keyword.",
     "Without it everything that follows belongs to the block, and readers refuse the file or lose the rest.",
     "PrmText = 1\nText(0) = \"off\"\nModule = \"DI 8\" 0x10",
     "PrmText = 1\nText(0) = \"off\"\nEndPrmText\nModule = \"DI 8\" 0x10", checkClosed},
    {"end-without-block", Severity::error, Group::form, "An end keyword closes a block.",
     "Either the line that opens the block is missing or misspelt, or the end stands twice.", "EndModule\nEndModule",
     "EndModule", checkEnd},
};

} // namespace

std::span<const Rule> keywordRules()
{
    return kRules;
}

} // namespace typdescriptor::lint
