// A plan out of the words of a command line.

#include "host/configuration.h"
#include "host/parameterValue.h"

namespace typdescriptor {

namespace {

/// The number ahead of a mark, and what follows the mark.
struct Choice {
    unsigned slot = 0;
    std::string rest;
};

Choice splitChoice(const std::string& text, char mark, const std::string& form)
{
    constexpr std::size_t kMostDigits = 4;
    const std::size_t end = text.find(mark);
    const bool isNumber =
        end != std::string::npos && end > 0 && end <= kMostDigits && text.find_first_not_of("0123456789") == end;
    if (!isNumber)
        throw ChoiceError('"' + text + "\": expected " + form);
    return {static_cast<unsigned>(std::stoul(text.substr(0, end))), text.substr(end + 1)};
}

/// The names of the parameters in a slot of what is planned so far; the station's for slot 0.
std::vector<std::string> parameterNames(const Device& device, const Configuration& planned, unsigned slot)
{
    std::vector<std::string> names;
    const auto add = [&names](const ParameterArea& area) {
        for (const Parameter& parameter : area.parameters)
            names.push_back(parameter.name);
    };
    if (slot == 0)
        add(device.parameters);
    else if (slot <= planned.slots.size()) {
        for (const ParameterArea& block : planned.slots[slot - 1].blocks)
            add(block);
    }
    return names;
}

/// Names may hold "=": the text is split at the first one that gives a name, or else at the first.
ValueChoice splitValue(const std::vector<std::string>& names, const Choice& choice, const std::string& whole)
{
    const std::size_t first = choice.rest.find('=');
    if (first == std::string::npos)
        throw ChoiceError('"' + whole + "\": expected SLOT:PARAM=VALUE");
    std::size_t mark = first;
    for (std::size_t next = first; next != std::string::npos; next = choice.rest.find('=', next + 1)) {
        if (!namesFor(names, choice.rest.substr(0, next)).empty()) {
            mark = next;
            break;
        }
    }
    return {choice.slot, choice.rest.substr(0, mark), choice.rest.substr(mark + 1)};
}

} // namespace

Plan planFromArguments(const Device& device, const std::vector<std::string>& slots,
                       const std::vector<std::string>& values)
{
    Plan plan;
    for (const std::string& text : slots) {
        Choice choice = splitChoice(text, '=', "N=MODULE");
        plan.modules.push_back({choice.slot, std::move(choice.rest)});
    }
    if (values.empty())
        return plan;
    const Configuration planned = configure(device, plan);
    for (const std::string& text : values) {
        const Choice choice = splitChoice(text, ':', "SLOT:PARAM=VALUE");
        plan.values.push_back(splitValue(parameterNames(device, planned, choice.slot), choice, text));
    }
    return plan;
}

} // namespace typdescriptor
