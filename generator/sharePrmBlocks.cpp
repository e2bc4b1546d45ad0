// The rule is stated pair by pair: a module takes the number of the first Module with the same block, provided that
// this number is below its own, and every greater number of the Module list then drops by one. Done that way it costs
// the square of the number of modules. Here it costs one walk over each list, because along the Module list the numbers
// of distinct blocks never decrease, and so a gap always closes behind one point of it:
// - in the Module list itself, every number behind a merged module drops;
// - in the KGP list, whose numbers ascend, the point from which numbers drop only moves forward.

#include "generator/sharePrmBlocks.h"

#include <algorithm>
#include <functional>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace typdescriptor::internal {

namespace {

struct PrmBlockHash {
    std::size_t operator()(const GSD_MODULE* module) const
    {
        const std::span<const std::uint8_t> data = module->extModulePrmData();
        std::size_t hash = std::hash<std::string_view>()({reinterpret_cast<const char*>(data.data()), data.size()});
        for (const GSD_PRM_REF_ITEM& item : module->refs)
            hash = hash * 31 + std::size_t{item.reference} * 257 + item.byteOffset;
        return hash * 31 + static_cast<std::size_t>(module->prmDataEnd);
    }
};

struct PrmBlockEqual {
    bool operator()(const GSD_MODULE* a, const GSD_MODULE* b) const { return samePrmBlock(*a, *b); }
};

/// The distinct parameter blocks of the Module list, in list order.
class DistinctBlocks {
public:
    /// The index of the block that equals the module's, or the number of blocks.
    std::size_t find(const GSD_MODULE& module) const
    {
        const auto found = indexes.find(&module);
        return found == indexes.end() ? numbers.size() : found->second;
    }

    void add(const GSD_MODULE& module, std::int32_t number)
    {
        indexes.emplace(&module, numbers.size());
        numbers.push_back(number);
    }

    std::size_t count() const { return numbers.size(); }

    // Numbers of the blocks; those from `settled` on are still to drop by `dropped`.
    std::int32_t number(std::size_t index) const { return numbers[index] - (index < settled ? 0 : dropped); }

    /// Closes the gap that a merged number leaves. Gaps are closed in ascending order.
    void closeGap(std::int32_t merged)
    {
        while (settled < numbers.size() && number(settled) <= merged) {
            numbers[settled] -= dropped;
            ++settled;
        }
        ++dropped;
    }

private:
    std::unordered_map<const GSD_MODULE*, std::size_t, PrmBlockHash, PrmBlockEqual> indexes;
    std::vector<std::int32_t> numbers;
    std::size_t settled = 0;
    std::int32_t dropped = 0;
};

} // namespace

bool samePrmBlock(const GSD_MODULE& a, const GSD_MODULE& b)
{
    const std::span<const std::uint8_t> dataOfA = a.extModulePrmData();
    const std::span<const std::uint8_t> dataOfB = b.extModulePrmData();
    if (!std::equal(dataOfA.begin(), dataOfA.end(), dataOfB.begin(), dataOfB.end()) || a.prmDataEnd != b.prmDataEnd ||
        a.refs.count() != b.refs.count())
        return false;
    auto itemOfB = b.refs.begin();
    for (const GSD_PRM_REF_ITEM& itemOfA : a.refs) {
        if (itemOfA.reference != (*itemOfB).reference || itemOfA.byteOffset != (*itemOfB).byteOffset)
            return false;
        ++itemOfB;
    }
    return true;
}

void sharePrmBlocks(GsdModel& model)
{
    DistinctBlocks blocks;
    std::vector<std::size_t> blockOfModule; // of every module with parameter data, in list order
    std::int32_t merged = 0;
    for (GSD_MODULE& module : model.modules) {
        if (module.paramModuleNumber < 1)
            continue;
        const std::size_t block = blocks.find(module);
        blockOfModule.push_back(block);
        if (block == blocks.count()) {
            blocks.add(module, module.paramModuleNumber - merged);
        } else {
            module.ownsPrmBlock = false;
            ++merged;
        }
    }

    for (GSD_MODULE& module : model.kgpModules) {
        if (module.paramModuleNumber < 1)
            continue;
        const std::size_t block = blocks.find(module);
        if (block == blocks.count() || blocks.number(block) >= module.paramModuleNumber)
            continue;
        const std::int32_t own = module.paramModuleNumber;
        module.paramModuleNumber = blocks.number(block);
        module.ownsPrmBlock = false;
        blocks.closeGap(own);
    }

    std::size_t next = 0;
    for (GSD_MODULE& module : model.modules) {
        if (module.paramModuleNumber >= 1)
            module.paramModuleNumber = blocks.number(blockOfModule[next++]);
    }
}

} // namespace typdescriptor::internal
