// What the reader knows about every keyword, in one row each: tokenizer, once-only rule, mandatory record, block rule
// and dispatcher read these rows and have no keyword lists of their own.

#pragma once

#include "typefile/scan.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace typdescriptor::internal {

struct GsdReading;

inline constexpr std::size_t kMaxStringLength = 32;

/// One logical line, taken apart.
struct GsdLine {
    std::size_t keyword = 0;        // index of its row
    const char* value = nullptr;    // the rest of the line; once a handler has read it, where it ends
    const char* argument = nullptr; // what stood in parentheses, without white space; ends in a NUL
    const char* limit = nullptr; // of a line in its file: before this place it has to end. Null: the text is the line

    std::array<char, kMaxStringLength> squeezed; // a string of its value from which blanks were removed

    bool isWhole() const { return limit == nullptr; }
};

/// Where a keyword may stand: outside of every block, or in which.
enum GsdBlock : unsigned {
    kOutside = 1,
    kInModule = 2,
    kInExtPrmDef = 4,
    kInPrmText = 8,
    kInUnitDiagArea = 16,
};

/// How a keyword's line goes on.
enum class GsdForm {
    value,        // "= value"
    argument,     // "(argument) = value", the argument may be left out
    bare,         // the rest of the line
    bareArgument, // "(argument)" and the rest of the line
};

enum class GsdOccurrence { once, repeated };

/// Entries of the record of mandatory keywords.
enum GsdMandatory : unsigned {
    kVendorNameFound,
    kModelNameFound,
    kRevisionFound,
    kIdentNumberFound,
    kProtocolIdentFound,
    kStationTypeFound,
    kHardwareReleaseFound,
    kSoftwareReleaseFound,
    kModuleFound,
    kMinSlaveIntervalFound,
    kBaudRateFound, // any of eleven; set by their handler once the value is read
    kMaxTsdrFound,  // likewise
    kMaxModuleFound,
    kMaxInputLenFound,
    kMaxOutputLenFound,
    kMaxDataLenFound,
    kSlaveFamilyFound,
    kMaxDiagDataLenFound,
    kMandatoryKeywords,
    kNotMandatory = kMandatoryKeywords, // an entry that nobody asks for
};

/// A keyword as it is written, and as words of characters that are compared at once.
class GsdSpelling : public std::string_view {
public:
    constexpr GsdSpelling(const char* text) : std::string_view(text)
    {
        std::array<char, kWidth> padded{};
        std::array<char, kWidth> mask{};
        for (std::size_t i = 0; i < size(); ++i) {
            padded[i] = text[i];
            mask[i] = '\xFF';
        }
        words = std::bit_cast<Words>(padded);
        masks = std::bit_cast<Words>(mask);
    }

    /// Whether a text begins like this, case and all. kWidth characters of it are read.
    bool begins(const char* line) const
    {
        Words read;
        for (std::size_t i = 0; i < read.size(); ++i)
            std::memcpy(&read[i], line + i * sizeof read[i], sizeof read[i]);
        return (((read[0] ^ words[0]) & masks[0]) | ((read[1] ^ words[1]) & masks[1]) |
                ((read[2] ^ words[2]) & masks[2])) == 0;
    }

    static constexpr std::size_t kWidth = 24; // none is longer

private:
    using Words = std::array<std::uint64_t, 3>;
    Words words{};
    Words masks{};
};

struct GsdKeyword {
    GsdSpelling spelling;
    GsdForm form;
    GsdOccurrence occurrence;
    GsdMandatory mandatory;
    unsigned blocks; // of GsdBlock
    int (*handler)(GsdReading& reading, GsdLine& line);

    constexpr bool takesEquals() const { return form == GsdForm::value || form == GsdForm::argument; }
    constexpr bool takesArgument() const { return form == GsdForm::argument || form == GsdForm::bareArgument; }
};

struct GsdKeywordTable {
    static constexpr std::size_t kCount = 106;
    static constexpr std::size_t kSectionStart = 0; // "#Profibus_DP"
    static constexpr std::size_t kNone = kCount;

    static const std::array<GsdKeyword, kCount> kRows; // by keyword id

    /// The first row with whose spelling the line begins, in any case; kNone when there is none.
    static std::size_t find(std::string_view line);
};

/// Compares without regard to the case of ASCII letters: below 0, 0 or above 0.
constexpr int compareIgnoringCase(std::string_view a, std::string_view b)
{
    for (std::size_t i = 0; i < a.size() && i < b.size(); ++i) {
        const auto x = static_cast<unsigned char>(toUpper(a[i]));
        const auto y = static_cast<unsigned char>(toUpper(b[i]));
        if (x != y)
            return x < y ? -1 : 1;
    }
    if (a.size() == b.size())
        return 0;
    return a.size() < b.size() ? -1 : 1;
}

} // namespace typdescriptor::internal
