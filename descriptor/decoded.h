// What a descriptor answers from.
//
// Descriptors that were assigned share what a check of either finds, but each answers from it only after a check of its
// own: `category`, which every descriptor keeps for itself, is unknown until then.

#pragma once

#include "typefile/typeFile.h"

namespace typdescriptor::internal {

/// A type file in which nothing was found.
inline const TypeFile& nothing()
{
    static const TypeFile kNothing;
    return kNothing;
}

/// What the check has found, up to the first thing that was wrong.
inline const TypeFile& decoded(const TypeFile* found, std::int32_t category)
{
    return category != kCategoryUnknown ? *found : nothing();
}

inline bool isLoaded(const TypeFile* found, std::int32_t category)
{
    return category != kCategoryUnknown && found->isLoaded;
}

/// What the check has found in an image that has passed.
inline const TypeFile& loaded(const TypeFile* found, std::int32_t category)
{
    return isLoaded(found, category) ? *found : nothing();
}

} // namespace typdescriptor::internal
