// The rule is stated pair by pair: a module takes the number of the first Module with the same block, provided that
// this number is below its own, and every greater number of the Module list then drops by one. Done that way it costs
// the square of the number of modules. Here it costs one walk over each list, because along the Module list the numbers
// of distinct blocks never decrease, and so a gap always closes behind one point of it:
// - in the Module list itself, every number behind a merged module drops;
// - in the KGP list, whose numbers ascend, the point from which numbers drop only moves forward.

#include "generator/sharePrmBlocks.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <string_view>
#include <vector>

namespace typdescriptor::internal {

namespace {

std::size_t hashOfPrmBlock(const GSD_MODULE_PRM& prm)
{
    const std::span<const std::uint8_t> data = prm.data;
    std::size_t hash = std::hash<std::string_view>()({reinterpret_cast<const char*>(data.data()), data.size()});
    for (const GSD_PRM_REF_ITEM& item : prm.refs)
        hash = hash * 31 + std::size_t{item.reference} * 257 + item.byteOffset;
    return hash * 31 + static_cast<std::size_t>(prm.dataEnd);
}

/// The distinct parameter blocks of the Module list, in list order.
class DistinctBlocks {
public:
    explicit DistinctBlocks(std::size_t most) : slots(std::bit_ceil(2 * most + 1), kFree) {}

    /// The index of the block that equals this one, or the number of blocks.
    std::size_t find(const GSD_MODULE_PRM& prm) { return std::min<std::size_t>(slotOf(prm), blocks.size()); }

    void add(const GSD_MODULE_PRM& prm, std::int32_t number)
    {
        slotOf(prm) = static_cast<std::uint32_t>(numbers.size());
        blocks.push_back(&prm);
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
    /// Where the index of a block stands in the hash table, or is to be put.
    std::uint32_t& slotOf(const GSD_MODULE_PRM& prm)
    {
        for (std::size_t slot = hashOfPrmBlock(prm);; ++slot) {
            std::uint32_t& block = slots[slot & (slots.size() - 1)];
            if (block == kFree || samePrmBlock(*blocks[block], prm))
                return block;
        }
    }

    static constexpr std::uint32_t kFree = 0xFFFFFFFF;
    std::vector<std::uint32_t> slots;
    std::vector<const GSD_MODULE_PRM*> blocks;
    std::vector<std::int32_t> numbers;
    std::size_t settled = 0;
    std::int32_t dropped = 0;
};

} // namespace

bool samePrmBlock(const GSD_MODULE_PRM& a, const GSD_MODULE_PRM& b)
{
    if (!std::equal(a.data.begin(), a.data.end(), b.data.begin(), b.data.end()) || a.dataEnd != b.dataEnd ||
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
    const auto numbered = static_cast<std::size_t>(model.nextParamModuleNumber - 1);
    if (numbered == 0)
        return;
    DistinctBlocks blocks(numbered);
    std::vector<std::size_t> blockOfModule; // of every module with a block, in list order
    blockOfModule.reserve(numbered);
    std::int32_t merged = 0;
    for (GSD_MODULE_PRM& prm : model.modulePrms) {
        if (prm.blockNumber < 1)
            continue;
        const std::size_t block = blocks.find(prm);
        blockOfModule.push_back(block);
        if (block == blocks.count()) {
            blocks.add(prm, prm.blockNumber - merged);
        } else {
            prm.ownsBlock = false;
            ++merged;
        }
    }

    for (GSD_MODULE_PRM& prm : model.kgpModulePrms) {
        if (prm.blockNumber < 1)
            continue;
        const std::size_t block = blocks.find(prm);
        if (block == blocks.count() || blocks.number(block) >= prm.blockNumber)
            continue;
        const std::int32_t own = prm.blockNumber;
        prm.blockNumber = blocks.number(block);
        prm.ownsBlock = false;
        blocks.closeGap(own);
    }

    std::size_t next = 0;
    for (GSD_MODULE_PRM& prm : model.modulePrms) {
        if (prm.blockNumber >= 1)
            prm.blockNumber = blocks.number(blockOfModule[next++]);
    }
}

} // namespace typdescriptor::internal
