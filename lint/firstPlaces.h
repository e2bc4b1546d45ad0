#pragma once

// Where things stood first that may stand once: names, numbers, bits.

#include "lint/finding.h"

#include <unordered_map>

namespace typdescriptor::lint {

template <typename Key>
class FirstPlaces {
public:
    /// The place of the one before with this key; null for the first, which is kept.
    const Span* before(const Key& key, Span place)
    {
        const auto [first, isNew] = _places.emplace(key, place);
        return isNew ? nullptr : &first->second;
    }

private:
    std::unordered_map<Key, Span> _places;
};

} // namespace typdescriptor::lint
