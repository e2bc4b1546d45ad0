// Compiled alone as C++11: what a host sees.

#include "descriptor/cTypDescriptor.h"

#include <type_traits>

static_assert(!std::is_copy_constructible<cTypDescriptor>::value, "a copy would be freed twice");
static_assert(std::is_copy_assignable<cTypDescriptor>::value, "fields are copied as they stand");
static_assert(!std::is_polymorphic<cTypDescriptor>::value, "no virtual operations");
