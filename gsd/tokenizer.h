// Splits a logical line into keyword, argument and value.

#pragma once

#include "gsd/keywordTable.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace typdescriptor::internal {

class GsdTokenizer {
public:
    /// Takes a line apart. What `line` refers to stays valid until the next call, as long as `text` does.
    /// @return 0, kErrGsdKeyword for an unknown keyword, kErrGsdSyntax
    int tokenize(std::string_view text, GsdLine& line);

private:
    std::size_t findKeyword(std::string_view text);
    int takeArgument(std::string_view rest, GsdLine& line);

    static constexpr std::size_t kMaxArgument = 18;
    std::array<char, kMaxArgument> argument{};
    std::size_t lastKeyword = 0;
    std::array<std::uint8_t, GsdKeywordTable::kCount> followers{}; // the keyword that last came after each
};

} // namespace typdescriptor::internal
