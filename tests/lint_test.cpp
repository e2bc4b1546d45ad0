// The rules of the checker, each by a GSD file of its own: NAME.gsd and beside it NAME.expected, the findings as a person
// sees them. TYPDESCRIPTOR_REWRITE=1 in the environment writes them anew; read what it wrote.

#include "tests/testFiles.h"

#include "gsdfile/document.h"
#include "gsdfile/keywords.h"
#include "lint/rule.h"
#include "lint/typeFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>

using namespace typdescriptor;

namespace {

const std::filesystem::path kFolder = TYPDESCRIPTOR_SOURCE_DIR "/tests/lint";

std::vector<std::filesystem::path> cases()
{
    std::vector<std::filesystem::path> paths;
    for (const auto& entry : std::filesystem::directory_iterator(kFolder))
        if (entry.path().extension() != ".expected")
            paths.push_back(entry.path());
    std::ranges::sort(paths);
    return paths;
}

std::vector<lint::Finding> findingsIn(const std::string& bytes, const std::filesystem::path& path)
{
    const std::string name = path.filename().string();
    const std::string place = path.string();
    if (path.extension() == ".410")
        return lint::checkTypeFile(bytes, place);
    return lint::check(gsdfile::Document(bytes), {.fileName = name, .path = place});
}

std::string lineOf(const gsdfile::Document& document, lint::Span place, const std::string& text)
{
    if (place == lint::Span{})
        return "file: " + text + '\n';
    const gsdfile::Place begin = document.place(place.begin);
    const gsdfile::Place end = document.place(place.end);
    const std::string to = begin.line == end.line ? "" : std::to_string(end.line) + ':';
    return std::to_string(begin.line) + ':' + std::to_string(begin.character) + '-' + to +
           std::to_string(end.character) + ": " + text + '\n';
}

std::string inOneLine(std::string text)
{
    std::ranges::replace(text, '\r', '|');
    std::ranges::replace(text, '\n', '|');
    return text.size() < 60 ? text : text.substr(0, 60) + "...";
}

std::string shown(const std::string& bytes, const std::vector<lint::Finding>& findings)
{
    const gsdfile::Document document(bytes);
    std::string text;
    for (const lint::Finding& finding : findings) {
        const std::string code = finding.code == 0 ? "" : " (" + std::to_string(finding.code) + ")";
        text += lineOf(document, finding.place,
                       std::string(lint::severityName(finding.severity)) + ": " + finding.message + code + " [" +
                           finding.rule->name + ']');
        for (const lint::Note& note : finding.notes)
            text += "  " + lineOf(document, note.place, "note: " + note.text);
        if (finding.mend.size() == 1)
            text +=
                "  " + lineOf(document, finding.mend.front().place, "mend: " + inOneLine(finding.mend.front().text));
        else if (!finding.mend.empty())
            text += "  mend: " + std::to_string(finding.mend.size()) + " changes\n";
    }
    return text;
}

std::map<std::string, int> countByRule(const std::vector<lint::Finding>& findings)
{
    std::map<std::string, int> counts;
    for (const lint::Finding& finding : findings)
        ++counts[finding.rule->name];
    return counts;
}

TEST(Lint, CasesShowWhatIsExpected)
{
    for (const auto& path : cases()) {
        const std::string bytes = fileContents(path.string());
        const std::string text = shown(bytes, findingsIn(bytes, path));
        const std::filesystem::path expected = std::filesystem::path(path).replace_extension(".expected");
        if (std::getenv("TYPDESCRIPTOR_REWRITE"))
            std::ofstream(expected, std::ios::binary) << text;
        EXPECT_EQ(text, fileContents(expected.string())) << path;
    }
}

TEST(Lint, EveryRuleHasACase)
{
    std::set<std::string> seen;
    for (const auto& path : cases())
        for (const lint::Finding& finding : findingsIn(fileContents(path.string()), path))
            seen.insert(finding.rule->name);
    for (const lint::Rule& rule : lint::allRules())
        EXPECT_TRUE(seen.contains(rule.name)) << rule.name;
}

TEST(Lint, MendsMend)
{
    int mends = 0;
    for (const auto& path : cases()) {
        const std::string bytes = fileContents(path.string());
        const std::vector<lint::Finding> findings = findingsIn(bytes, path);
        for (const lint::Finding& finding : findings) {
            if (finding.mend.empty())
                continue;
            ++mends;
            const auto left = findingsIn(lint::mended(bytes, {&finding, 1}), path);
            EXPECT_EQ(countByRule(left)[finding.rule->name], countByRule(findings)[finding.rule->name] - 1)
                << path << ": " << finding.message;
        }
    }
    EXPECT_GT(mends, 0);
}

std::size_t countErrors(const std::vector<lint::Finding>& findings)
{
    return static_cast<std::size_t>(
        std::ranges::count(findings, lint::Severity::error, [](const auto& finding) { return finding.severity; }));
}

TEST(Lint, AllMendsTogetherMakeNoErrors)
{
    for (const auto& path : cases()) {
        const std::string bytes = fileContents(path.string());
        const std::vector<lint::Finding> findings = findingsIn(bytes, path);
        EXPECT_LE(countErrors(findingsIn(lint::mended(bytes, findings), path)), countErrors(findings)) << path;
    }
}

// A keyword of an example with a letter left out, or two of them swapped, becomes that keyword again or stays as it is.
TEST(Lint, MendsMisspeltKeywordsToWhatTheyWere)
{
    std::vector<const lint::Rule*> others;
    for (const lint::Rule& rule : lint::allRules())
        if (rule.name != std::string_view("unknown-keyword"))
            others.push_back(&rule);
    std::set<std::string_view> tried;
    std::size_t mended = 0;
    const auto tryMisspelt = [&](const std::string& bytes, std::uint32_t begin, std::string_view name) {
        const lint::Edit* mend = nullptr;
        const auto findings = lint::check(gsdfile::Document(bytes), {.fileName = "", .path = "", .leftOut = others});
        for (const lint::Finding& finding : findings)
            if (finding.place.begin == begin && !finding.mend.empty())
                mend = &finding.mend.front();
        mended += mend != nullptr ? 1U : 0U;
        const std::string_view now = mend == nullptr ? name : std::string_view(mend->text);
        EXPECT_TRUE(now == name || (now == "Channel_Diag" && name == "ChannelDiag") ||
                    (now == "Prm_Text_Ref" && name == "PrmTextRef"))
            << name << " became " << now;
    };
    for (const auto& entry : std::filesystem::directory_iterator(TYPDESCRIPTOR_SOURCE_DIR "/examples/gsd")) {
        const std::string whole = fileContents(entry.path().string());
        const gsdfile::Document document(whole);
        for (const gsdfile::Statement& statement : document.statements()) {
            if (!statement.keyword || statement.name != statement.keyword->name ||
                !tried.insert(statement.keyword->name).second)
                continue;
            const std::uint32_t begin = document.tokens()[statement.keywordToken].begin;
            for (std::size_t i = 0; i < statement.name.size(); ++i) {
                tryMisspelt(std::string(whole).erase(begin + i, 1), begin, statement.keyword->name);
                std::string swapped = whole;
                if (i > 0)
                    std::swap(swapped[begin + i - 1], swapped[begin + i]);
                tryMisspelt(swapped, begin, statement.keyword->name);
            }
        }
    }
    EXPECT_GT(mended, 1000U);
}

TEST(Lint, TenFaultsAreTenFindings)
{
    const std::filesystem::path path = kFolder / "ten-faults.gsd";
    auto findings = findingsIn(fileContents(path.string()), path);
    std::erase_if(findings, [](const auto& finding) { return finding.rule->group == lint::Group::library; });
    EXPECT_EQ(findings.size(), 10U);
    EXPECT_EQ(countByRule(findings).size(), 10U);
}

// A file that is full of one fault does not fill the report, and every fault is counted.
TEST(Lint, FindingsOfOneRuleAreLimited)
{
    std::string bytes = "#Profibus_DP\n";
    for (std::size_t i = 0; i < lint::Report::kMostOfRule + 7; ++i)
        bytes += "Unit_Diag_Bit(1) = 0\n";
    const auto findings = findingsIn(bytes, "many.gsd");
    EXPECT_EQ(countByRule(findings)["malformed-text"], static_cast<int>(lint::Report::kMostOfRule));
    const auto isLast = [](const lint::Finding& finding) {
        return finding.message.ends_with("; 7 more findings of this rule follow");
    };
    EXPECT_TRUE(std::ranges::any_of(findings, isLast));
}

// What stands in the file stays where it stood: a rule sees tokens, not bytes that it makes up.
TEST(Lint, PlacesLieInTheFile)
{
    for (const auto& path : cases()) {
        const std::string whole = fileContents(path.string());
        for (std::size_t size = 0; size <= whole.size();
             size += 7) // and of every beginning of a file, as far as it goes
            for (const lint::Finding& finding : findingsIn(whole.substr(0, size), path)) {
                EXPECT_LE(finding.place.begin, finding.place.end);
                EXPECT_LE(finding.place.end, size);
            }
    }
}

} // namespace
