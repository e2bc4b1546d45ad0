#include "host/telegramSplit.h"

#include "host/parameterValue.h"

#include <algorithm>
#include <map>
#include <utility>

namespace typdescriptor {

namespace {

using Bytes = std::vector<std::uint8_t>;

// What a way through the telegrams costs for what it breaks: one of a higher kind outweighs all of the lower ones.
constexpr std::uint64_t kUnknownIdentifier = 1'000'000'000'000;
constexpr std::uint64_t kBrokenRule = 1'000'000'000;
constexpr std::uint64_t kWrongLength = 1'000'000;
constexpr std::uint64_t kOtherConstant = 1'000;
constexpr std::uint64_t kForbiddenValue = 1;

constexpr std::size_t kMostTransitions = 100'000; // with parameters; without them there are far fewer

/// What may be in a slot: its preset, nothing, what no module has, or one of the groups.
using Choice = std::size_t;
constexpr Choice kPresetChoice = 0;
constexpr Choice kFreeChoice = 1;
constexpr Choice kUnknownChoice = 2;
constexpr Choice kFirstGroup = 3;

/// Modules with the same identifiers and blocks.
struct Group {
    Bytes wire;
    SlotContent content;
};

/// A place in both telegrams.
using Position = std::pair<std::size_t, std::size_t>;

struct Transition {
    Choice choice = kUnknownChoice;
    std::size_t next = 0; // state of the next slot
    std::uint64_t cost = 0;
};

struct State {
    Position position;
    std::vector<Transition> transitions;
    std::uint64_t cost = 0; // of the best way on from here
};

bool standsAt(const Bytes& part, const Bytes& whole, std::size_t offset)
{
    return part.size() <= whole.size() - offset &&
           std::equal(part.begin(), part.end(), whole.begin() + static_cast<std::ptrdiff_t>(offset));
}

class Splitter {
public:
    Splitter(const Device& source, const Bytes& chkCfg, const Bytes* userParameters, const Configuration* plan);

    /// @return false when there are too many ways
    bool build();
    TelegramSplit best();

private:
    void addPart(const Identifier& identifier, int block, Group& group);
    bool isForbidden(std::size_t slot, std::size_t module) const;
    bool areAllForbidden(std::size_t slot, const Group& group) const;
    std::vector<Choice> choicesAt(std::size_t slot, std::size_t offset) const;
    const Group* groupOf(std::size_t slot, Choice choice) const;
    Transition transitionOf(std::size_t slot, Choice choice, Position& position) const;
    SlotContent contentOf(std::size_t slot, Choice choice, std::size_t offset) const;
    bool isPlanned(std::size_t slot, SlotContent& content) const;
    std::uint64_t endCost(const Position& position) const;

    const Device& device;
    const Bytes& configuration;
    const Bytes* parameters;
    const Configuration* planned;
    std::map<const ParameterArea*, Bytes> constants;
    std::vector<Group> groups;
    std::vector<Group> presets;
    std::vector<std::vector<State>> layers; // one for each slot, and one behind the last
};

void Splitter::addPart(const Identifier& identifier, int block, Group& group)
{
    group.wire.insert(group.wire.end(), identifier.wireBytes.begin(), identifier.wireBytes.end());
    group.content.identifiers.push_back(identifier);
    if (block < 0 || static_cast<std::size_t>(block) >= device.blocks.size())
        return;
    const ParameterArea& area = device.blocks[static_cast<std::size_t>(block)];
    group.content.blocks.push_back(&area);
    if (parameters != nullptr && constants.find(&area) == constants.end())
        constants.emplace(&area, constantBits(area));
}

Splitter::Splitter(const Device& source, const Bytes& chkCfg, const Bytes* userParameters, const Configuration* plan)
    : device(source), configuration(chkCfg), parameters(userParameters), planned(plan)
{
    std::map<std::pair<Bytes, std::vector<const ParameterArea*>>, std::size_t> known;
    for (const PresetSlot& preset : device.presetSlots) {
        Group group;
        group.content.kind = SlotContent::kPreset;
        addPart(preset.identifier, preset.block, group);
        presets.push_back(std::move(group));
    }
    for (std::size_t i = 0; i < device.modules.size(); ++i) {
        Group group;
        group.content.kind = SlotContent::kModules;
        for (const ModulePart& part : device.modules[i].parts)
            addPart(part.identifier, part.block, group);
        if (group.wire.empty())
            continue;
        // Blocks tell modules apart only where their bytes are known.
        const auto blocks = parameters == nullptr ? std::vector<const ParameterArea*>() : group.content.blocks;
        const auto [place, isNew] = known.try_emplace({group.wire, blocks}, groups.size());
        if (isNew)
            groups.push_back(std::move(group));
        groups[place->second].content.modules.push_back(i);
    }
}

/// Whether the file's SlotDefinition keeps a module out of a slot. What was planned is there all the same.
bool Splitter::isForbidden(std::size_t slot, std::size_t module) const
{
    const bool isWanted = planned != nullptr && slot < planned->slots.size() && planned->slots[slot].module == module;
    if (!device.gsd || isWanted)
        return false;
    const auto& reference = device.modules[module].reference;
    const auto& rules = device.gsd->slots;
    return std::any_of(rules.begin(), rules.end(), [&](const SlotRule& rule) {
        return rule.slot == slot + 1 && !(reference && rule.allows(*reference));
    });
}

bool Splitter::areAllForbidden(std::size_t slot, const Group& group) const
{
    return std::all_of(group.content.modules.begin(), group.content.modules.end(),
                       [&](std::size_t module) { return isForbidden(slot, module); });
}

/// Everything that may be in a slot whose identifiers begin at an offset.
std::vector<Choice> Splitter::choicesAt(std::size_t slot, std::size_t offset) const
{
    std::vector<Choice> choices;
    if (slot < presets.size() && standsAt(presets[slot].wire, configuration, offset))
        choices.push_back(kPresetChoice);
    for (std::size_t i = 0; i < groups.size(); ++i) {
        if (standsAt(groups[i].wire, configuration, offset))
            choices.push_back(kFirstGroup + i);
    }
    if (configuration[offset] == 0)
        choices.push_back(kFreeChoice);
    if (choices.empty())
        choices.push_back(kUnknownChoice);
    return choices;
}

/// Null where a single identifier without a block is chosen.
const Group* Splitter::groupOf(std::size_t slot, Choice choice) const
{
    if (choice == kPresetChoice)
        return &presets[slot];
    return choice >= kFirstGroup ? &groups[choice - kFirstGroup] : nullptr;
}

/// @param position  where the slot begins; receives where the next one does
Transition Splitter::transitionOf(std::size_t slot, Choice choice, Position& position) const
{
    Transition transition{choice, 0, choice == kUnknownChoice ? kUnknownIdentifier : 0};
    const Group* const group = groupOf(slot, choice);
    const bool isFixed = slot < presets.size() && device.presetSlots[slot].isFixed && choice != kPresetChoice;
    const bool isRefused = choice >= kFirstGroup && areAllForbidden(slot, *group);
    if (slot >= device.slotCount() || isFixed || isRefused)
        transition.cost += kBrokenRule;
    if (group == nullptr) {
        const std::size_t end = position.first + identifierLength(configuration, position.first);
        position.first = std::min(end, configuration.size());
        return transition;
    }
    position.first += group->wire.size();
    for (const ParameterArea* block : group->content.blocks) {
        if (parameters == nullptr)
            break;
        const BlockFit fit =
            fitOf(*block, constants.at(block), *parameters, position.second, static_cast<unsigned>(slot + 1));
        position.second += fit.there;
        transition.cost += (fit.isWhole ? 0 : kWrongLength) + (fit.isConstant ? 0 : kOtherConstant) +
                           (fit.isAllowed ? 0 : kForbiddenValue);
    }
    return transition;
}

/// What a choice stands for: of a group's modules those that may be in the slot, or all when none may.
SlotContent Splitter::contentOf(std::size_t slot, Choice choice, std::size_t offset) const
{
    const Group* const group = groupOf(slot, choice);
    if (group == nullptr)
        return {choice == kFreeChoice ? SlotContent::kFree : SlotContent::kUnknown,
                {},
                {identifierAt(configuration, offset)},
                {}};
    SlotContent content = group->content;
    if (choice != kPresetChoice && !areAllForbidden(slot, *group))
        std::erase_if(content.modules, [&](std::size_t module) { return isForbidden(slot, module); });
    return content;
}

/// Whether the planned configuration has this in the slot; of a group, its module is then put ahead of the others.
bool Splitter::isPlanned(std::size_t slot, SlotContent& content) const
{
    if (planned == nullptr || slot >= planned->slots.size())
        return false;
    const Slot& wanted = planned->slots[slot];
    if (content.kind == SlotContent::kFree)
        return wanted.origin == Slot::kFree;
    if (content.kind == SlotContent::kPreset)
        return wanted.origin == Slot::kPreset && !wanted.module;
    const auto module = std::find(content.modules.begin(), content.modules.end(), wanted.module);
    if (module == content.modules.end())
        return false;
    std::rotate(content.modules.begin(), module, module + 1);
    return true;
}

std::uint64_t Splitter::endCost(const Position& position) const
{
    return parameters != nullptr && position.second < parameters->size() ? kWrongLength : 0;
}

bool Splitter::build()
{
    std::size_t count = 0;
    const std::size_t stationBytes = parameters == nullptr ? 0 : device.parameters.bytes.size();
    layers.push_back({State{{0, stationBytes}, {}, 0}});
    for (std::size_t slot = 0; slot < layers.size(); ++slot) {
        std::map<Position, std::size_t> places; // of the next layer
        std::vector<State> next;
        for (State& state : layers[slot]) {
            if (state.position.first >= configuration.size())
                continue;
            for (const Choice choice : choicesAt(slot, state.position.first)) {
                Position position = state.position;
                Transition transition = transitionOf(slot, choice, position);
                const auto [place, isNew] = places.try_emplace(position, next.size());
                if (isNew)
                    next.push_back({position, {}, 0});
                transition.next = place->second;
                state.transitions.push_back(transition);
                if (parameters != nullptr && ++count > kMostTransitions)
                    return false;
            }
        }
        if (!next.empty())
            layers.push_back(std::move(next));
    }
    return true;
}

TelegramSplit Splitter::best()
{
    for (std::size_t slot = layers.size(); slot-- > 0;) {
        for (State& state : layers[slot]) {
            state.cost = state.transitions.empty() ? endCost(state.position) : UINT64_MAX;
            for (Transition& transition : state.transitions) {
                transition.cost += layers[slot + 1][transition.next].cost;
                state.cost = std::min(state.cost, transition.cost);
            }
        }
    }
    TelegramSplit split;
    split.areParametersUsed = parameters != nullptr;
    const State* state = &layers.front().front();
    while (!state->transitions.empty()) {
        const std::size_t slot = split.slots.size();
        std::vector<SlotContent>& contents = split.slots.emplace_back();
        std::size_t next = 0;
        for (const Transition& transition : state->transitions) {
            if (transition.cost != state->cost)
                continue;
            SlotContent content = contentOf(slot, transition.choice, state->position.first);
            const bool isWanted = isPlanned(slot, content);
            const bool isBest = contents.empty() || (isWanted && !isPlanned(slot, contents.front()));
            if (isBest)
                next = transition.next;
            contents.insert(isBest ? contents.begin() : contents.end(), std::move(content));
        }
        state = &layers[slot + 1][next];
    }
    return split;
}

/// Whether a slot number stands where the block wants it.
bool hasSlotNumber(const SlotNumberField& field, const Bytes& bytes, unsigned slot)
{
    Bytes wanted = bytes;
    return !putNumber(slot, field.byte, field.byteCount, wanted) || wanted == bytes;
}

} // namespace

std::size_t identifierLength(const Bytes& configuration, std::size_t offset)
{
    constexpr unsigned kNoManufacturerBytes = 15;
    const unsigned first = configuration[offset];
    if ((first & 0x30U) != 0)
        return 1;
    const unsigned direction = first >> 6U;
    const std::size_t lengths = direction == 0 ? 0 : direction == 3 ? 2 : 1;
    const unsigned count = first & 0x0FU;
    return 1 + lengths + (count == kNoManufacturerBytes ? 0 : count);
}

Identifier identifierAt(const Bytes& configuration, std::size_t offset)
{
    constexpr std::int8_t kNoLength = -1;
    CSLAVE_SLOT_PRESET_TYPE preset = {};
    const std::uint8_t first = configuration[offset];
    const std::size_t length = identifierLength(configuration, offset);
    if (offset + length > configuration.size()) {
        Identifier cut;
        cut.wireBytes.assign(configuration.begin() + static_cast<std::ptrdiff_t>(offset), configuration.end());
        cut.fileBytes = cut.wireBytes;
        return cut;
    }
    preset.identifier = first;
    preset.kind = first == 0 ? 0 : (first & 0x30U) != 0 ? 1 : 5;
    if (preset.kind == 5) {
        const unsigned direction = first >> 6U;
        std::size_t next = offset + 1;
        // The wire has the output length first, the record that of the inputs.
        preset.lengthByte1 = preset.lengthByte2 = kNoLength;
        if (direction == 3) {
            preset.lengthByte2 = static_cast<std::int8_t>(configuration[next++]);
            preset.lengthByte1 = static_cast<std::int8_t>(configuration[next++]);
        } else if (direction != 0) {
            preset.lengthByte1 = static_cast<std::int8_t>(configuration[next++]);
        }
        std::copy(configuration.begin() + static_cast<std::ptrdiff_t>(next),
                  configuration.begin() + static_cast<std::ptrdiff_t>(offset + length), preset.mfrData);
    }
    return decodeIdentifier(preset);
}

Bytes constantBits(const ParameterArea& area)
{
    Bytes bits(area.bytes.size(), 0xFF);
    for (const Parameter& parameter : area.parameters) {
        Bytes own(bits.size(), 0);
        putValue(parameter, -1, own);
        for (std::size_t i = 0; i < bits.size(); ++i)
            bits[i] = static_cast<std::uint8_t>(bits[i] & ~own[i]);
    }
    for (const SlotNumberField& field : area.slotNumbers)
        putNumber(0, field.byte, field.byteCount, bits);
    return bits;
}

BlockFit fitOf(const ParameterArea& block, const Bytes& constant, const Bytes& bytes, std::size_t offset, unsigned slot)
{
    BlockFit fit;
    fit.there = std::min(block.bytes.size(), bytes.size() - offset);
    fit.isWhole = fit.there == block.bytes.size();
    if (!fit.isWhole)
        return fit;
    const auto first = bytes.begin() + static_cast<std::ptrdiff_t>(offset);
    const Bytes own(first, first + static_cast<std::ptrdiff_t>(fit.there));
    for (std::size_t i = 0; i < own.size(); ++i)
        fit.isConstant = fit.isConstant && ((own[i] ^ block.bytes[i]) & constant[i]) == 0;
    for (const SlotNumberField& field : block.slotNumbers)
        fit.isConstant = fit.isConstant && hasSlotNumber(field, own, slot);
    for (const Parameter& parameter : block.parameters) {
        const auto value = valueIn(parameter, own);
        fit.isAllowed = fit.isAllowed && (!value || parameter.allows(*value));
    }
    return fit;
}

TelegramSplit splitTelegram(const Device& device, const Bytes& configuration, const Bytes* userParameters,
                            const Configuration* planned)
{
    const bool isEnough = userParameters != nullptr && userParameters->size() >= device.parameters.bytes.size();
    Splitter splitter(device, configuration, isEnough ? userParameters : nullptr, planned);
    if (splitter.build())
        return splitter.best();
    Splitter withoutParameters(device, configuration, nullptr, planned);
    withoutParameters.build();
    return withoutParameters.best();
}

} // namespace typdescriptor
