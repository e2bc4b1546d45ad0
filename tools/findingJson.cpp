#include "tools/findingJson.h"

#include "tools/findingText.h"

#include <nlohmann/json.hpp>

#include <map>

using Json = nlohmann::ordered_json;

namespace {

constexpr const char* kSchema = "https://json.schemastore.org/sarif-2.1.0.json";

const char* severityOf(const Finding& finding)
{
    return finding.isError ? "error" : "warning";
}

/// "TD209" for -209.
std::string ruleIdOf(int code)
{
    return "TD" + std::to_string(-code);
}

/// Name and sentence of each code, from the one table of them.
Json rules(const std::map<int, std::size_t>& ruleIndexes)
{
    Json list = Json::array();
    const auto add = [&](const char* name, int code, const char* sentence) {
        if (ruleIndexes.contains(code))
            list.push_back({{"id", ruleIdOf(code)},
                            {"name", name},
                            {"shortDescription", {{"text", sentence}}},
                            {"properties", {{"code", code}}}});
    };
#define TYPDESC_ADD_RULE(name, value, sentence) add(#name, value, sentence);
    TYPDESCRIPTOR_RESULT_CODES(TYPDESC_ADD_RULE)
#undef TYPDESC_ADD_RULE
    return list;
}

Json regionOf(const Finding& finding)
{
    Json region = {{"startLine", finding.line}};
    const bool isSameLine = finding.excerpt && finding.excerpt->line == finding.line;
    if (finding.excerpt && finding.excerpt->line < finding.line) {
        region["startLine"] = finding.excerpt->line; // of a line that goes on
        region["endLine"] = finding.line;
    } else if (isSameLine && finding.excerpt->length > 0) {
        region["startColumn"] = finding.excerpt->column + 1;
        region["endColumn"] = finding.excerpt->column + finding.excerpt->length + 1;
    }
    return region;
}

Json resultOf(const FileReport& report, const Finding& finding, std::size_t ruleIndex)
{
    Json location = {{"artifactLocation", {{"uri", uriOf(report.file)}}}};
    if (finding.line > 0)
        location["region"] = regionOf(finding);
    if (location.contains("region") && location["region"].contains("startColumn"))
        location["contextRegion"] = {{"startLine", finding.line}, {"snippet", {{"text", finding.excerpt->text}}}};
    return {{"ruleId", ruleIdOf(finding.code)},
            {"ruleIndex", ruleIndex},
            {"level", severityOf(finding)},
            {"message", {{"text", sentenceOf(finding)}}},
            {"locations", Json::array({{{"physicalLocation", location}}})}};
}

Json invocationOf(const std::vector<FileReport>& reports)
{
    Json problems = Json::array();
    for (const FileReport& report : reports) {
        if (!report.problem.empty())
            problems.push_back({{"level", "error"}, {"message", {{"text", report.file + ": " + report.problem}}}});
    }
    return {{"executionSuccessful", problems.empty()}, {"toolExecutionNotifications", problems}};
}

} // namespace

Json findingsJson(const std::vector<FileReport>& reports, const Totals& totals)
{
    Json files = Json::array();
    for (const FileReport& report : reports) {
        Json findings = Json::array();
        for (const Finding& finding : report.findings) {
            Json entry = {
                {"severity", severityOf(finding)}, {"code", finding.code}, {"text", resultText(finding.code)}};
            if (finding.line > 0)
                entry["line"] = finding.line;
            if (!finding.detail.empty())
                entry["detail"] = finding.detail;
            if (finding.excerpt)
                entry["source"] = finding.excerpt->text;
            findings.push_back(std::move(entry));
        }
        Json file = {{"file", report.file}, {"findings", findings}};
        if (!report.problem.empty())
            file["problem"] = report.problem;
        files.push_back(std::move(file));
    }
    return {{"files", files},
            {"summary",
             {{"files", totals.files},
              {"ok", totals.ok},
              {"withWarnings", totals.withWarnings},
              {"failed", totals.failed},
              {"unreadable", totals.unreadable}}}};
}

Json sarif(const std::vector<FileReport>& reports)
{
    std::map<int, std::size_t> ruleIndexes;
    for (const FileReport& report : reports) {
        for (const Finding& finding : report.findings)
            ruleIndexes[finding.code] = 0;
    }
    const Json ruleList = rules(ruleIndexes);
    for (std::size_t i = 0; i < ruleList.size(); ++i)
        ruleIndexes[ruleList[i]["properties"]["code"].get<int>()] = i;

    Json results = Json::array();
    for (const FileReport& report : reports) {
        for (const Finding& finding : report.findings)
            results.push_back(resultOf(report, finding, ruleIndexes[finding.code]));
    }
    const Json driver = {{"name", "typdesc"}, {"version", TYPDESC_VERSION}, {"rules", ruleList}};
    const Json run = {{"tool", {{"driver", driver}}},
                      {"columnKind", "utf16CodeUnits"},
                      {"defaultEncoding", "ISO-8859-1"},
                      {"invocations", Json::array({invocationOf(reports)})},
                      {"results", results}};
    return {{"$schema", kSchema}, {"version", "2.1.0"}, {"runs", Json::array({run})}};
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
