// Splits a logical line into keyword, argument and value.

#pragma once

#include "gsd/keywordTable.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace typdescriptor::internal {

class GsdTokenizer {
public:
    /// Takes a line apart. What `line` refers to stays valid until the next call, as long as `text` does.
    /// @param text  without leading blanks; kReadableBehindText applies
    /// @param line  its limit tells what the text is
    /// @return 0, kErrGsdKeyword for an unknown keyword, kErrGsdSyntax
    int tokenize(const char* text, GsdLine& line);

private:
    std::size_t findKeyword(const char* text);
    int takeArgument(const char* rest, GsdLine& line);

    static constexpr std::size_t kMaxArgument = 18;
    std::array<char, kMaxArgument + 1> argument{};
    std::size_t lastKeyword = 0;
    std::size_t keywordBefore = 0;
    std::array<std::uint8_t, 256> followers{}; // what last came after two keywords, or after others with their place
};

} // namespace typdescriptor::internal
