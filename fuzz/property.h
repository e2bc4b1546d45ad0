// What fuzzers and tests hold the library to beyond what the sanitizers see: a broken property is an exception, which
// ends a fuzzer like a crash and fails a test.

#pragma once

#include <algorithm>
#include <initializer_list>
#include <stdexcept>
#include <string>

inline void require(bool holds, const char* property)
{
    if (!holds)
        throw std::logic_error(std::string("broken property: ") + property);
}

inline void requireResult(int result, std::initializer_list<int> allowed, const char* operation)
{
    if (std::find(allowed.begin(), allowed.end(), result) == allowed.end())
        throw std::logic_error(std::string("broken property: ") + operation + " gave " + std::to_string(result));
}
