// Runs every rule over a document and puts what they found in the order of the file.

#include "lint/allowed.h"
#include "lint/rule.h"
#include "lint/tables.h"

#include "gsdfile/document.h"

#include <algorithm>
#include <tuple>

namespace typdescriptor::lint {

namespace {

std::vector<Rule> joinedTables()
{
    std::vector<Rule> rules;
    for (const auto table : kRuleTables)
        rules.insert(rules.end(), table().begin(), table().end());
    return rules;
}

bool standsBefore(const Finding& one, const Finding& other)
{
    return std::tie(one.place.begin, one.place.end) < std::tie(other.place.begin, other.place.end);
}

} // namespace

const char* severityName(Severity severity)
{
    constexpr const char* kNames[] = {"error", "warning", "hint"};
    return kNames[static_cast<unsigned>(severity)];
}

const char* groupName(Group group)
{
    constexpr const char* kNames[] = {"form", "encoding", "consistency", "library"};
    return kNames[static_cast<unsigned>(group)];
}

void Report::begin(const Rule& rule)
{
    endRule();
    _rule = &rule;
}

void Report::endRule()
{
    if (_count > kMostOfRule)
        _findings.back().message += "; " + std::to_string(_count - kMostOfRule) + " more findings of this rule follow";
    _count = 0;
}

std::vector<Finding> Report::take()
{
    endRule();
    return std::move(_findings);
}

Finding& Report::add(Severity severity, Span place, std::string message)
{
    Finding& finding = ++_count > kMostOfRule ? _leftOut : _findings.emplace_back();
    finding = Finding{_rule, severity, place, std::move(message), {}, {}, 0};
    return finding;
}

std::span<const Rule> allRules()
{
    static const std::vector<Rule> rules = joinedTables();
    return rules;
}

const Rule* findRule(std::string_view name)
{
    const std::span<const Rule> rules = allRules();
    const auto found = std::ranges::find(rules, name, &Rule::name);
    return found == rules.end() ? nullptr : &*found;
}

std::vector<Finding> check(const gsdfile::Document& document, const Options& options)
{
    const Context context{document, options.fileName, options.path};
    Report report;
    for (const Rule& rule : allRules()) {
        if (std::ranges::find(options.leftOut, &rule) != options.leftOut.end())
            continue;
        report.begin(rule);
        rule.run(context, report);
    }
    std::vector<Finding> findings = report.take();
    dropAllowed(document, findings);
    std::ranges::stable_sort(findings, standsBefore); // within a place in the order of the rules
    return findings;
}

std::string mended(std::string_view bytes, std::span<const Finding> findings)
{
    std::vector<const Edit*> edits;
    for (const Finding& finding : findings)
        for (const Edit& edit : finding.mend)
            edits.push_back(&edit);
    std::ranges::stable_sort(edits, {}, [](const Edit* edit) { return edit->place.begin; });

    std::string text;
    std::size_t done = 0; // bytes of the file that are copied or replaced
    for (const Edit* edit : edits) {
        if (edit->place.begin < done)
            continue;
        text.append(bytes, done, edit->place.begin - done);
        text += edit->text;
        done = edit->place.end;
    }
    return text.append(bytes.substr(std::min(done, bytes.size())));
}

} // namespace typdescriptor::lint
