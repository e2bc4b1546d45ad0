// Many short lists that stay where they are, held in a few blocks of memory.

#pragma once

#include <algorithm>
#include <cstddef>
#include <span>
#include <utility>
#include <vector>

namespace typdescriptor::gsdfile {

template <class Item>
class Lists {
public:
    /// Keeps the items and leaves the list that held them empty.
    std::span<const Item> keep(std::vector<Item>& items)
    {
        if (items.size() < kBlockItems) {
            const std::span<const Item> kept = copy(items);
            items.clear();
            return kept;
        }
        _blocks.push_back(std::exchange(items, {}));
        return {_blocks.back()};
    }

    std::span<const Item> copy(std::span<const Item> items)
    {
        if (items.empty())
            return {};
        if (_blocks.empty() || _blocks.back().capacity() - _blocks.back().size() < items.size()) {
            _blocks.emplace_back();
            _blocks.back().reserve(std::max(kBlockItems, items.size()));
        }
        std::vector<Item>& block = _blocks.back();
        block.insert(block.end(), items.begin(), items.end());
        return std::span<const Item>(block).last(items.size());
    }

private:
    static constexpr std::size_t kBlockItems = 256;

    std::vector<std::vector<Item>> _blocks;
};

} // namespace typdescriptor::gsdfile
