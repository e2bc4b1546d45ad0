#include "lint/allowed.h"

#include "lint/places.h"
#include "lint/rule.h"

#include <algorithm>

namespace typdescriptor::lint {

namespace {

constexpr std::string_view kMark = "typdesc:";
constexpr std::string_view kAllow = "allow";

bool isBlank(char c)
{
    return c == ' ' || c == '\t';
}
bool isOfName(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-';
}

std::size_t behindBlanks(std::string_view text, std::size_t at)
{
    while (at < text.size() && isBlank(text[at]))
        ++at;
    return at;
}

// The names in one comment.
void collect(std::string_view comment, Span place, Span statement, std::vector<Allowance>& found)
{
    std::size_t at = behindBlanks(comment, 1); // the semicolon
    if (!comment.substr(at).starts_with(kMark))
        return;
    at = behindBlanks(comment, at + kMark.size());
    if (!comment.substr(at).starts_with(kAllow))
        return;
    at += kAllow.size();
    while (at < comment.size() && (isBlank(comment[at]) || comment[at] == ',')) {
        while (at < comment.size() && (isBlank(comment[at]) || comment[at] == ','))
            ++at;
        const std::size_t begin = at;
        while (at < comment.size() && isOfName(comment[at]))
            ++at;
        if (at > begin)
            found.push_back(
                {comment.substr(begin, at - begin),
                 {static_cast<std::uint32_t>(place.begin + begin), static_cast<std::uint32_t>(place.begin + at)},
                 statement});
    }
}

bool isAllowed(const Finding& finding, const std::vector<Allowance>& allowed)
{
    const auto concerns = [&](const Allowance& allowance) {
        return finding.place.begin >= allowance.statement.begin && finding.place.begin < allowance.statement.end &&
               allowance.ruleName == finding.rule->name;
    };
    // Statements do not overlap: the last one that begins at the finding or before is the only one that can hold it.
    auto behind = std::ranges::upper_bound(allowed, finding.place.begin, {},
                                           [](const Allowance& a) { return a.statement.begin; });
    for (; behind != allowed.begin() && std::prev(behind)->statement.end > finding.place.begin; --behind)
        if (concerns(*std::prev(behind)))
            return true;
    return false;
}

} // namespace

std::vector<Allowance> allowances(const gsdfile::Document& document)
{
    std::vector<Allowance> found;
    if (document.unit() != 1)
        return found;
    std::uint32_t next = 0; // token
    for (const gsdfile::Statement& statement : document.statements()) {
        const Span whole{document.lines()[statement.firstLine - 1].begin, document.lines()[statement.lastLine - 1].end};
        for (; next < statement.endToken; ++next) {
            const gsdfile::Token& token = document.tokens()[next];
            if (token.kind == gsdfile::TokenKind::comment)
                collect(document.text(token), spanOf(token), whole, found);
        }
    }
    return found;
}

void dropAllowed(const gsdfile::Document& document, std::vector<Finding>& findings)
{
    const std::vector<Allowance> allowed = allowances(document);
    if (!allowed.empty())
        std::erase_if(findings, [&](const Finding& finding) { return isAllowed(finding, allowed); });
}

} // namespace typdescriptor::lint
