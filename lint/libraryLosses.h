#pragma once

// What the library leaves of texts, numbers and areas that its type file has no room for, in words.

#include "lint/refusalReason.h"

#include <optional>

namespace typdescriptor::lint {

// Each for the statement at which the library warned; nothing when the statement loses nothing.
std::optional<Reason> cutText(const Entry& entry);
std::optional<Reason> cutArea(const Entry& entry);
std::optional<Reason> narrowedNumbers(const Entry& entry);

} // namespace typdescriptor::lint
