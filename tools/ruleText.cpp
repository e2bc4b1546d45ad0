#include "tools/ruleText.h"

#include "host/text.h"
#include "tools/terminal.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <set>
#include <sstream>
#include <string_view>
#include <utility>

using namespace typdescriptor;

namespace lint = typdescriptor::lint;

namespace {

constexpr std::array kGroups = {lint::Group::form, lint::Group::encoding, lint::Group::consistency,
                                lint::Group::library};

/// How many letters must be changed, left out or put in to make one word of the other.
std::size_t distance(std::string_view one, std::string_view other)
{
    std::vector<std::size_t> steps(other.size() + 1);
    std::iota(steps.begin(), steps.end(), std::size_t{0});
    for (std::size_t i = 0; i < one.size(); ++i) {
        std::size_t diagonal = std::exchange(steps[0], i + 1);
        for (std::size_t k = 0; k < other.size(); ++k) {
            const std::size_t changed = diagonal + (one[i] == other[k] ? 0 : 1);
            diagonal = steps[k + 1];
            steps[k + 1] = std::min({changed, diagonal + 1, steps[k] + 1});
        }
    }
    return steps.back();
}

/// The name nearest to one that does not exist; empty when none is near.
std::string nearestName(const std::string& wrong)
{
    std::size_t least = wrong.size() / 3 + 1;
    std::string nearest;
    const auto look = [&](const char* name) {
        if (const std::size_t steps = distance(wrong, name); steps < least) {
            least = steps;
            nearest = name;
        }
    };
    for (const lint::Rule& rule : lint::allRules())
        look(rule.name);
    for (const lint::Group group : kGroups)
        look(lint::groupName(group));
    return nearest;
}

[[noreturn]] void refuse(const std::string& name)
{
    const std::string nearest = nearestName(name);
    std::string message = "no rule has the name " + fromArgument(name);
    if (nearest.empty())
        message += "; --rules lists them";
    else
        message.append("; did you mean ").append(nearest) += '?';
    throw UnknownRule(message);
}

std::string indented(std::string_view lines)
{
    std::string text;
    while (!lines.empty()) {
        const std::size_t length = std::min(lines.find('\n'), lines.size() - 1) + 1;
        text += "    ";
        text += lines.substr(0, length);
        lines.remove_prefix(length);
    }
    return text.ends_with('\n') ? text : text + '\n';
}

/// Words in lines of a width that reads well; an empty line stays.
std::string wrapped(const std::string& words)
{
    constexpr std::size_t kWidth = 90;
    std::string text;
    std::size_t column = 0;
    std::istringstream lines(words);
    for (std::string line; std::getline(lines, line);) {
        if (line.empty())
            text += column > 0 ? "\n\n" : "\n";
        if (line.empty())
            column = 0;
        std::istringstream stream(line);
        for (std::string word; stream >> word;) {
            const bool isFull = column > 0 && column + 1 + word.size() > kWidth;
            if (isFull || column > 0)
                text += isFull ? '\n' : ' ';
            column = (isFull || column == 0 ? 0 : column + 1) + word.size();
            text += word;
        }
    }
    return text + '\n';
}

std::string pageOf(const lint::Rule& rule)
{
    std::string page = std::string("## ") + rule.name + "\n\n" + rule.sentence + " (" +
                       lint::severityName(rule.severity) + ", " + lint::groupName(rule.group) + ")\n\n" +
                       wrapped(rule.explanation);
    if (*rule.wrong != '\0')
        page += "\nWrong:\n\n" + indented(rule.wrong);
    if (*rule.right != '\0')
        page += "\nRight:\n\n" + indented(rule.right);
    return page;
}

} // namespace

std::string rulesText(bool inColour)
{
    constexpr std::array kColours = {Colour::kRed, Colour::kYellow, Colour::kCyan};
    constexpr std::size_t kSeverityWidth = 9;
    std::size_t width = 0;
    for (const lint::Rule& rule : lint::allRules())
        width = std::max(width, std::string_view(rule.name).size());
    std::string text;
    for (const lint::Group group : kGroups) {
        if (!text.empty())
            text += '\n';
        text += coloured(lint::groupName(group), Colour::kBold, inColour) + '\n';
        for (const lint::Rule& rule : lint::allRules()) {
            if (rule.group != group)
                continue;
            text.append("  ").append(padded(rule.name, width + 2));
            text += coloured(padded(lint::severityName(rule.severity), kSeverityWidth),
                             kColours[static_cast<std::size_t>(rule.severity)], inColour);
            text.append(rule.sentence) += '\n';
        }
    }
    return text;
}

std::string explanationText(const std::string& name)
{
    if (!name.empty()) {
        const lint::Rule* const rule = lint::findRule(name);
        if (rule == nullptr)
            refuse(name);
        return pageOf(*rule);
    }
    std::string text = "# The rules of typdesc check\n";
    for (const lint::Rule& rule : lint::allRules())
        text += '\n' + pageOf(rule);
    return text;
}

std::vector<const lint::Rule*> leftOutRules(const std::vector<std::string>& choices)
{
    constexpr std::string_view kNo = "no-";
    std::set<const lint::Rule*> leftOut;
    for (const std::string& choice : choices) {
        const auto isMeantBy = [](const lint::Rule& rule, std::string_view name) {
            return name == rule.name || name == lint::groupName(rule.group);
        };
        const auto isKnown = [&](std::string_view name) {
            return std::ranges::any_of(lint::allRules(), [&](const lint::Rule& rule) { return isMeantBy(rule, name); });
        };
        const bool isLeftOut = choice.starts_with(kNo) && !isKnown(choice); // a rule's own name may begin so
        const std::string name = isLeftOut ? choice.substr(kNo.size()) : choice;
        if (!isKnown(name))
            refuse(name);
        for (const lint::Rule& rule : lint::allRules()) {
            if (isMeantBy(rule, name) && isLeftOut)
                leftOut.insert(&rule);
            else if (isMeantBy(rule, name))
                leftOut.erase(&rule);
        }
    }
    return {leftOut.begin(), leftOut.end()};
}
