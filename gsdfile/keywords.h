// Everything known about the keywords of GSD files, revisions 1 to 5, and of this library's own dialect: one row each.

#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace typdescriptor::gsdfile {

enum class BlockKind : std::uint8_t {
    none,
    physicalInterface,
    jokerblockType,
    firmwareDownload,
    module,
    kgpModule,
    dataArea,
    slotDefinition,
    extUserPrmData,
    prmText,
    unitDiagArea,
    unitDiagType,
    xUnitDiagArea,
};

/// Places that a keyword may stand in, as bits: slave level is bit 0, the inside of a block the bit of its kind.
using Places = std::uint16_t;
constexpr Places placeOf(BlockKind kind)
{
    return static_cast<Places>(1U << static_cast<unsigned>(kind));
}
inline constexpr Places kSlaveLevel = placeOf(BlockKind::none);

/// What stands behind the keyword.
enum class Form : std::uint8_t {
    bare,     // nothing
    value,    // = value
    argument, // (argument) = value
    type,     // a data type: blank, default, range or list; Bit and BitArea with an argument ahead
};

enum class ValueType : std::uint8_t {
    none,
    boolean,
    number,     // within `values`
    numberSet,  // a number, one of those that allowedValues() names
    range,      // first-last, each within `values`
    string,     // of at most `maxText` characters
    byteList,   // numbers within `values`
    family,     // main family, then @text
    module,     // "name" identifier bytes
    kgpModule,  // "name" five bytes
    kgpGui,     // "text" three bytes
    definition, // reference "name"
    slot,       // "name" default, then a range or a list
    limits,     // default, then a range or a list: each within `values`
};

enum class Repeat : std::uint8_t { once, oncePerBlock, oncePerArgument, repeatable };

/// How sure a row is.
enum class Sureness : std::uint8_t { guess, likely, sure };

enum class Origin : std::uint8_t {
    genuine,
    fieldVariant, // a spelling that stands in files and not in the standard
    extension,    // of this library's own dialect
};

struct Range {
    std::int64_t lowest = 0;
    std::int64_t highest = 0;

    constexpr bool holds(std::int64_t value) const { return value >= lowest && value <= highest; }
};

inline constexpr int kNotRead = -1;

struct Keyword {
    const char* name;
    std::uint8_t revision; // the first that has it; 0 for a keyword of no revision
    Places places;
    Form form;
    ValueType type;
    Range values;          // of its numbers
    std::uint16_t maxText; // of its string
    Range arguments;       // of its argument
    Repeat repeat;
    BlockKind opens;  // the block that it opens, or none
    BlockKind closes; // the block that it closes, or none
    int readerId;     // the library's number of it; kNotRead when the library skips it
    Origin origin;
    Sureness sureness;   // of name and type
    const char* duty;    // whether it must stand, in words
    const char* meaning; // in words
};

/// All rows, ordered by their names in small letters.
std::span<const Keyword> keywords();

/// Whether a number may be a keyword's value (each of its values).
bool allowsValue(const Keyword& keyword, std::int64_t value);
/// For people: "0 to 255", "0 or 48 to 240", "375, 750, 1500, 3000, 6000 or 12000".
std::string allowedValues(const Keyword& keyword);

/// The row of a name in any case; null when there is none.
const Keyword* findKeyword(std::string_view name);

/// The keyword that a misspelt one most likely stands for: the same letters in another case or with other separators, or
/// within a small edit distance. Field variants are not meant by anybody. Deterministic.
struct Nearest {
    const Keyword* keyword = nullptr; // null when none is near
    const Keyword* other = nullptr;   // one that is as near; often null
    std::size_t faults = 0;           // letters that differ
};
Nearest nearestKeyword(std::string_view name);

/// Whether a name is one of the keywords of class 1 masters.
bool isMasterKeyword(std::string_view name);

/// The keyword that opens a block, and the one that closes it: "Module", "EndModule".
const char* openingName(BlockKind kind);
const char* closingName(BlockKind kind);

} // namespace typdescriptor::gsdfile
