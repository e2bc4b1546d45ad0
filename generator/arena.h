// The memory of one GSD model: handed out piece by piece, freed as a whole.

#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory_resource>
#include <new>
#include <span>
#include <string_view>
#include <type_traits>

class Arena {
public:
    /// A copy of a value; throws std::bad_alloc when memory is exhausted.
    template <class T>
    T* make(const T& value)
    {
        static_assert(std::is_trivially_destructible_v<T>, "nothing in an arena is destroyed");
        return new (memory.allocate(sizeof(T), alignof(T))) T(value);
    }

    /// Bytes that are all zero.
    std::span<std::uint8_t> bytes(std::size_t count)
    {
        if (count == 0)
            return {};
        auto* bytes = static_cast<std::uint8_t*>(memory.allocate(count, 1));
        std::memset(bytes, 0, count);
        return {bytes, count};
    }

    /// A copy of a text.
    std::string_view text(std::string_view characters)
    {
        if (characters.empty())
            return {};
        auto* copy = static_cast<char*>(memory.allocate(characters.size(), 1));
        std::memcpy(copy, characters.data(), characters.size());
        return {copy, characters.size()};
    }

private:
    static constexpr std::size_t kFirstBlock = 16384; // most devices need no second one

    std::pmr::monotonic_buffer_resource memory{kFirstBlock};
};
