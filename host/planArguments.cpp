// Plans out of the words of a command line, and with the names that devices have.

#include "host/configurationParts.h"
#include "host/parameterValue.h"

#include <algorithm>

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
        throw ChoiceError({"wrongForm", '"' + text + "\": expected " + form});
    return {static_cast<unsigned>(std::stoul(text.substr(0, end))), text.substr(end + 1)};
}

/// The names of the parameters in a slot; the station's for slot 0.
std::vector<std::string> parameterNames(const Device& device, const Configuration& planned, unsigned slot)
{
    std::vector<std::string> names;
    const auto add = [&names](const ParameterArea& area) {
        for (const Parameter& parameter : area.parameters)
            names.push_back(parameter.name);
    };
    refuseEmptySlot(planned, slot);
    if (slot == 0) {
        add(device.parameters);
    } else {
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
        throw ChoiceError({"wrongForm", '"' + whole + "\": expected SLOT:PARAM=VALUE"});
    std::size_t mark = first;
    for (std::size_t next = first; next != std::string::npos; next = choice.rest.find('=', next + 1)) {
        if (!namesFor(names, choice.rest.substr(0, next)).empty()) {
            mark = next;
            break;
        }
    }
    return {choice.slot, choice.rest.substr(0, mark), choice.rest.substr(mark + 1)};
}

Configuration plannedModules(const Device& device, const Plan& plan)
{
    return configure(device, {plan.modules, {}, {}});
}

/// Puts modules over those of a plan with whole names.
void changeModules(const Device& device, const std::vector<ModuleChoice>& changes, Plan& plan)
{
    const Plan whole = withWholeNames(device, {changes, {}, {}});
    for (const ModuleChoice& change : whole.modules) {
        const auto isSame = [&change](const ModuleChoice& known) {
            return known.slot == change.slot && known.module == change.module;
        };
        if (std::any_of(plan.modules.begin(), plan.modules.end(), isSame))
            continue;
        std::erase_if(plan.modules, [&change](const ModuleChoice& known) { return known.slot == change.slot; });
        std::erase_if(plan.values, [&change](const ValueChoice& known) { return known.slot == change.slot; });
        plan.modules.push_back(change);
    }
}

} // namespace

Plan withWholeNames(const Device& device, const Plan& plan)
{
    Plan whole = plan;
    const std::vector<std::string> modules = moduleNames(device);
    const Configuration planned = plannedModules(device, plan);
    for (ModuleChoice& choice : whole.modules)
        choice.module = unmistakable(modules, chooseName(modules, choice.module, "module", choice.slot));
    for (ValueChoice& choice : whole.values) {
        const std::vector<std::string> names = parameterNames(device, planned, choice.slot);
        choice.parameter = unmistakable(names, chooseName(names, choice.parameter, "parameter", choice.slot));
    }
    return whole;
}

Plan planFromArguments(const Device& device, const std::vector<std::string>& slots,
                       const std::vector<std::string>& values, const Plan& base)
{
    Plan plan = base.modules.empty() && base.values.empty() ? base : withWholeNames(device, base);
    std::vector<ModuleChoice> modules;
    for (const std::string& text : slots) {
        Choice choice = splitChoice(text, '=', "N=MODULE");
        modules.push_back({choice.slot, std::move(choice.rest)});
    }
    changeModules(device, modules, plan);
    if (values.empty())
        return plan;
    const Configuration planned = plannedModules(device, plan);
    Plan changes{plan.modules, {}, {}};
    for (const std::string& text : values) {
        const Choice choice = splitChoice(text, ':', "SLOT:PARAM=VALUE");
        changes.values.push_back(splitValue(parameterNames(device, planned, choice.slot), choice, text));
    }
    changes = withWholeNames(device, changes);
    std::erase_if(plan.values, [&changes](const ValueChoice& known) {
        return std::any_of(changes.values.begin(), changes.values.end(), [&known](const ValueChoice& change) {
            return change.slot == known.slot && change.parameter == known.parameter;
        });
    });
    plan.values.insert(plan.values.end(), changes.values.begin(), changes.values.end());
    return plan;
}

} // namespace typdescriptor
