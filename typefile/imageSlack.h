// Why the checks never leave an image.
//
// Every image buffer, whatever built it, is followed by kImageSlack NUL characters that belong to the buffer but not to
// its stated size. A check moves its cursor over a record only after it has seen the record's closing character, which
// is not a NUL. The cursor therefore stands on the image or, at most, on the first character behind it, and the
// characters it may look at from there are those of one record. The longest record (a slot entry with a special-format
// identifier of 17 bytes) is far shorter than the slack, so no look ahead leaves the buffer.

#pragma once

#include <cstddef>

namespace typefile {

inline constexpr std::size_t kImageSlack = 256;

} // namespace typefile
