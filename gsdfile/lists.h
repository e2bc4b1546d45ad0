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
        const std::size_t count = items.size();
        if (count == 0)
            return {};
        if (count >= kBlockItems) {
            _blocks.push_back(std::exchange(items, {}));
            return {_blocks.back()};
        }
        if (_blocks.empty() || _blocks.back().capacity() - _blocks.back().size() < count) {
            _blocks.emplace_back();
            _blocks.back().reserve(kBlockItems);
        }
        std::vector<Item>& block = _blocks.back();
        block.insert(block.end(), items.begin(), items.end());
        items.clear();
        return std::span<const Item>(block).last(count);
    }

private:
    static constexpr std::size_t kBlockItems = 256;

    std::vector<std::vector<Item>> _blocks;
};

} // namespace typdescriptor::gsdfile
