#include "tools/reportJson.h"

#include "tools/displayText.h"
#include "tools/sourceText.h"

#include <map>
#include <set>
#include <utility>

using Json = nlohmann::ordered_json;

namespace {

constexpr const char* kSchema = "https://json.schemastore.org/sarif-2.1.0.json";
constexpr const char* kManual = "man:typdesc(1)";

/// The members that say where a place is, under the names of either format.
struct PlaceNames {
    const char *line, *column, *endLine, *endColumn;
};
constexpr PlaceNames kOwnNames = {"line", "column", "endLine", "endColumn"};
constexpr PlaceNames kSarifNames = {"startLine", "startColumn", "endLine", "endColumn"};

Json placeJson(const SourceText& source, lint::Span place, const PlaceNames& names)
{
    const Position from = source.positionOf(place.begin);
    const Position to = source.positionOf(place.end);
    return {
        {names.line, from.line}, {names.column, from.column}, {names.endLine, to.line}, {names.endColumn, to.column}};
}

void addPlace(Json& json, const SourceText& source, lint::Span place)
{
    if (isWholeFile(place))
        return;
    json.update(placeJson(source, place, kOwnNames));
    json["source"] = source.line(source.positionOf(place.begin).line);
}

Json findingJson(const SourceText& source, const lint::Finding& finding)
{
    Json json = {{"severity", lint::severityName(finding.severity)},
                 {"rule", finding.rule->name},
                 {"code", finding.code == 0 ? Json() : Json(finding.code)},
                 {"text", readable(finding.message)}};
    addPlace(json, source, finding.place);
    Json notes = Json::array();
    for (const lint::Note& note : finding.notes) {
        Json entry = {{"text", readable(note.text)}};
        addPlace(entry, source, note.place);
        notes.push_back(std::move(entry));
    }
    Json mend = Json::array();
    for (const lint::Edit& edit : finding.mend) {
        Json entry = placeJson(source, edit.place, kOwnNames);
        entry["text"] = source.utf8(edit.text);
        mend.push_back(std::move(entry));
    }
    json["notes"] = std::move(notes);
    json["mend"] = std::move(mend);
    return json;
}

Json locationOf(const FileReport& report, const SourceText& source, lint::Span place)
{
    Json location = {{"artifactLocation", {{"uri", uriOf(report.file)}}}};
    if (isWholeFile(place))
        return {{"physicalLocation", location}};
    location["region"] = placeJson(source, place, kSarifNames);
    const std::size_t line = source.positionOf(place.begin).line;
    if (location["region"]["endLine"] == line)
        location["contextRegion"] = {{"startLine", line}, {"snippet", {{"text", source.line(line)}}}};
    return {{"physicalLocation", location}};
}

Json fixOf(const FileReport& report, const SourceText& source, const lint::Finding& finding)
{
    Json replacements = Json::array();
    for (const lint::Edit& edit : finding.mend)
        replacements.push_back({{"deletedRegion", placeJson(source, edit.place, kSarifNames)},
                                {"insertedContent", {{"text", source.utf8(edit.text)}}}});
    const Json change = {{"artifactLocation", {{"uri", uriOf(report.file)}}}, {"replacements", replacements}};
    return {{"description", {{"text", finding.rule->sentence}}}, {"artifactChanges", Json::array({change})}};
}

const char* levelOf(lint::Severity severity)
{
    return severity == lint::Severity::hint ? "note" : lint::severityName(severity);
}

Json resultOf(const FileReport& report, const SourceText& source, const lint::Finding& finding)
{
    Json result = {{"ruleId", finding.rule->name},
                   {"level", levelOf(finding.severity)},
                   {"message", {{"text", readable(finding.message)}}},
                   {"locations", Json::array({locationOf(report, source, finding.place)})}};
    Json related = Json::array();
    for (const lint::Note& note : finding.notes) {
        Json location = locationOf(report, source, note.place);
        location["id"] = related.size() + 1;
        location["message"] = {{"text", readable(note.text)}};
        related.push_back(std::move(location));
    }
    if (!related.empty())
        result["relatedLocations"] = std::move(related);
    if (!finding.mend.empty())
        result["fixes"] = Json::array({fixOf(report, source, finding)});
    if (finding.code != 0)
        result["properties"] = {{"code", finding.code}};
    return result;
}

std::string helpOf(const lint::Rule& rule)
{
    std::string help = rule.explanation;
    for (const auto& [title, example] : {std::pair("Wrong", rule.wrong), std::pair("Right", rule.right)}) {
        if (example != nullptr && *example != '\0')
            help += std::string("\n\n") + title + ":\n" + example;
    }
    return help;
}

/// The rules that are needed, in the order of all rules.
Json sarifRules(const std::set<std::string>& names)
{
    Json list = Json::array();
    for (const lint::Rule& rule : lint::allRules()) {
        if (names.contains(rule.name))
            list.push_back({{"id", rule.name},
                            {"shortDescription", {{"text", rule.sentence}}},
                            {"fullDescription", {{"text", rule.explanation}}},
                            {"help", {{"text", helpOf(rule)}}},
                            {"defaultConfiguration", {{"level", levelOf(rule.severity)}}},
                            {"properties", {{"tags", Json::array({lint::groupName(rule.group)})}}}});
    }
    return list;
}

Json invocationOf(const std::vector<std::string>& problems)
{
    Json notifications = Json::array();
    for (const std::string& problem : problems)
        notifications.push_back({{"level", "error"}, {"message", {{"text", problem}}}});
    return {{"executionSuccessful", problems.empty()}, {"toolExecutionNotifications", notifications}};
}

/// A list of all findings of a report, each by a function.
template <class Function>
Json eachFinding(const FileReport& report, Function function)
{
    Json list = Json::array();
    if (report.findings.empty())
        return list;
    const SourceText source(*report.document);
    for (const lint::Finding& finding : report.findings)
        list.push_back(function(source, finding));
    return list;
}

} // namespace

Json fileJson(const FileReport& report)
{
    Json file = {{"file", report.file}, {"findings", eachFinding(report, findingJson)}};
    if (!report.problem.empty())
        file["problem"] = report.problem;
    return file;
}

Json reportJson(std::vector<Json> files, const Totals& totals)
{
    return {{"files", std::move(files)},
            {"summary",
             {{"files", totals.files},
              {"ok", totals.ok},
              {"withWarnings", totals.withWarnings},
              {"failed", totals.failed},
              {"unreadable", totals.unreadable},
              {"mended", totals.mended},
              {"errors", totals.findings[0]},
              {"warnings", totals.findings[1]},
              {"hints", totals.findings[2]}}}};
}

Json sarifResults(const FileReport& report)
{
    return eachFinding(report, [&report](const SourceText& source, const lint::Finding& finding) {
        return resultOf(report, source, finding);
    });
}

Json sarifLog(std::vector<Json> files, const std::vector<std::string>& problems)
{
    Json results = Json::array();
    std::set<std::string> names;
    for (Json& file : files) {
        for (Json& result : file) {
            names.insert(result["ruleId"].get<std::string>());
            results.push_back(std::move(result));
        }
    }
    Json rules = sarifRules(names);
    std::map<std::string, std::size_t> indexes;
    for (const Json& rule : rules)
        indexes.emplace(rule["id"].get<std::string>(), indexes.size());
    for (Json& result : results)
        result["ruleIndex"] = indexes.at(result["ruleId"].get<std::string>());
    const Json driver = {
        {"name", "typdesc"}, {"version", TYPDESC_VERSION}, {"informationUri", kManual}, {"rules", std::move(rules)}};
    const Json run = {{"tool", {{"driver", driver}}},
                      {"columnKind", "unicodeCodePoints"},
                      {"invocations", Json::array({invocationOf(problems)})},
                      {"results", std::move(results)}};
    return {{"$schema", kSchema}, {"version", "2.1.0"}, {"runs", Json::array({run})}};
}

Json rulesJson()
{
    Json rules = Json::array();
    for (const lint::Rule& rule : lint::allRules())
        rules.push_back({{"rule", rule.name},
                         {"severity", lint::severityName(rule.severity)},
                         {"group", lint::groupName(rule.group)},
                         {"sentence", rule.sentence},
                         {"explanation", rule.explanation},
                         {"wrong", rule.wrong},
                         {"right", rule.right}});
    return {{"rules", rules}};
}

std::string jsonText(const Json& json)
{
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

std::string uriOf(const std::string& path)
{
    constexpr std::string_view kHex = "0123456789ABCDEF";
    constexpr std::string_view kPlain = "-._~/";
    std::string uri = path.starts_with('/') ? "file://" : "";
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        const bool isLetterOrDigit = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
        if (isLetterOrDigit || kPlain.find(c) != std::string_view::npos)
            uri += c;
        else
            (uri += '%') += {kHex[byte >> 4U], kHex[byte & 0x0FU]};
    }
    return uri;
}
