// Why the checks never leave an image.
//
// Every image buffer has room for at least kMinImageSize characters (a head line and a converted version-3 header), and
// is followed by kImageSlack NUL characters that belong to the buffer but not to its stated size. A check goes on to the
// next record only after it has seen the closing character of the last one, which is not a NUL. So it never gets beyond
// the record that begins, at the latest, on the first character of the slack; and the longest record (an order-number
// entry with a special-format identifier of 17 bytes, 109 characters) is far shorter than the slack.

#pragma once

#include <cstddef>

namespace typdescriptor::internal {

inline constexpr std::size_t kImageSlack = 256;

} // namespace typdescriptor::internal
