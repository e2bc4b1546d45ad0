// What the fuzzers hold the library to beyond what the sanitizers see: a broken property is a finding like a crash.

#pragma once

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <initializer_list>

inline void require(bool holds, const char* property)
{
    if (holds)
        return;
    std::fprintf(stderr, "broken property: %s\n", property);
    std::abort();
}

inline void requireResult(int result, std::initializer_list<int> allowed, const char* operation)
{
    if (std::find(allowed.begin(), allowed.end(), result) != allowed.end())
        return;
    std::fprintf(stderr, "broken property: %s gave %d\n", operation, result);
    std::abort();
}
