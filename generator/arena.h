// The memory of one GSD model: handed out piece by piece, freed as a whole.

#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <span>
#include <string_view>
#include <type_traits>
#include <utility>

namespace typdescriptor::internal {

/// A text of up to 255 characters in an arena, behind a byte that is its length.
class KeptText {
public:
    KeptText() = default;
    explicit KeptText(const std::uint8_t* place) : length(place) {}
    operator std::string_view() const { return {reinterpret_cast<const char*>(length + 1), *length}; }

private:
    static constexpr std::uint8_t kNone = 0;
    const std::uint8_t* length = &kNone;
};

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
        static_assert(alignof(T) == alignof(void*), "values lie side by side");
        needRoom(sizeof(T));
        return new (std::exchange(room, room + sizeof(T))) T{std::forward<Arguments>(arguments)...};
    }

    /// Bytes that have no value yet.
    std::uint8_t* rawBytes(std::size_t count)
    {
        needRoom(count);
        return reinterpret_cast<std::uint8_t*>(roomEnd -= count);
    }

    /// Bytes that are all zero.
    std::span<std::uint8_t> bytes(std::size_t count) { return {std::fill_n(rawBytes(count), count, 0) - count, count}; }

    /// A copy of a text.
    KeptText text(std::string_view characters)
    {
        std::uint8_t* const copy = rawBytes(1 + characters.size());
        *copy = static_cast<std::uint8_t>(characters.size());
        std::memcpy(copy + 1, characters.data(), characters.size());
        return KeptText(copy);
    }

private:
    struct alignas(std::max_align_t) Block {
        Block* older;
    };

    // Most devices need no more than what is in the arena itself. Others need so little besides that the heap can keep it
    // until the next device comes: glibc gives back what is free at its end from 128 KB on, and the image takes half.
    static constexpr std::size_t kFirstRoom = 49152;
    static constexpr std::size_t kSmallestBlock = 8192;
    static constexpr std::size_t kLargestBlock = 65536; // a much larger one would come and go as pages of its own

    void needRoom(std::size_t size)
    {
        if (size > static_cast<std::size_t>(roomEnd - room))
            addBlock(size);
    }

    /// Blocks grow with what there is already: their number stays small, and so does what is left of the last one.
    void addBlock(std::size_t size)
    {
        const std::size_t added = std::max(size + sizeof(Block), std::clamp(total / 8, kSmallestBlock, kLargestBlock)) &
                                  ~(alignof(Block) - 1);
        newest = new (::operator new(sizeof(Block) + added)) Block{newest};
        room = reinterpret_cast<char*>(newest + 1);
        roomEnd = room + added;
        total += added;
    }

    alignas(std::max_align_t) std::array<char, kFirstRoom> first;
    Block* newest = nullptr;
    char* room = first.data(); // what can be handed out: values from its start, bytes from its end
    char* roomEnd = room + kFirstRoom;
    std::size_t total = kFirstRoom; // of all rooms
};

} // namespace typdescriptor::internal
