// The memory of one GSD model: handed out piece by piece, freed as a whole.

#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <span>
#include <string_view>
#include <type_traits>
#include <utility>

namespace typdescriptor::internal {

class Arena {
public:
    Arena() = default;
    Arena(const Arena&) = delete;
    Arena& operator=(const Arena&) = delete;
    ~Arena()
    {
        while (newest != nullptr)
            ::operator delete(std::exchange(newest, newest->older));
    }

    /// A value made from the arguments; throws std::bad_alloc when memory is exhausted, as all that follows.
    template <class T, class... Arguments>
    T* make(Arguments&&... arguments)
    {
        static_assert(std::is_trivially_destructible_v<T>, "nothing in an arena is destroyed");
        static_assert(alignof(T) <= alignof(Block));
        return new (allocate(sizeof(T), alignof(T))) T{std::forward<Arguments>(arguments)...};
    }

    /// Bytes that are all zero.
    std::span<std::uint8_t> bytes(std::size_t count)
    {
        if (count == 0)
            return {};
        auto* const bytes = static_cast<std::uint8_t*>(allocate(count, 1));
        std::memset(bytes, 0, count);
        return {bytes, count};
    }

    /// A copy of a text.
    std::string_view text(std::string_view characters)
    {
        auto* const copy = static_cast<char*>(allocate(characters.size(), 1));
        std::memcpy(copy, characters.data(), characters.size());
        return {copy, characters.size()};
    }

private:
    struct alignas(std::max_align_t) Block {
        Block* older;
        std::size_t size; // of this block and all older ones
    };

    static constexpr std::size_t kFirstBlock = 8192; // most devices need no second one

    void* allocate(std::size_t size, std::size_t alignment)
    {
        if (size > left)
            addBlock(size);
        // Pieces are cut from the end of the room, where aligning is one masking.
        left = (left - size) & ~(alignment - 1);
        return &room[left];
    }

    /// Blocks grow with what there is already: their number stays small, and so does what is left of the last one.
    void addBlock(std::size_t size)
    {
        const std::size_t used = newest == nullptr ? 0 : newest->size;
        const std::size_t added = std::max({size + sizeof(Block), kFirstBlock, used / 8}) & ~(alignof(Block) - 1);
        auto* const block = static_cast<Block*>(::operator new(sizeof(Block) + added));
        newest = new (block) Block{newest, used + added};
        room = reinterpret_cast<char*>(block + 1);
        left = added;
    }

    Block* newest = nullptr;
    char* room = nullptr; // what can be handed out of the newest block
    std::size_t left = 0;
};

} // namespace typdescriptor::internal
