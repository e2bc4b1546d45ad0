#pragma once

// The device that a file describes, every fact with the place where it stands. Rules about more than one statement look here
// and not at the lines. A statement that cannot be read leaves no fact: other rules tell what is wrong with it, and rules
// about the device do not speak about what nobody can know.

#include "lint/finding.h"
#include "lint/moduleConfig.h"

#include "gsdfile/lists.h"

#include <cstdint>
#include <deque>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace typdescriptor::gsdfile {
class Document;
}

namespace typdescriptor::lint {

struct Number {
    std::int64_t value = 0;
    Span place;
};

// A text without its quotes; the place has them.
struct Text {
    std::string_view text;
    Span place;
};

// One statement that could be read.
struct Entry {
    std::string_view keyword; // as the keyword's table spells it
    Span place;               // of the keyword
    std::optional<Number> argument;
    std::optional<Text> text;
    std::span<const Number> numbers; // the values behind the text

    std::int64_t number() const { return numbers.front().value; }
    Span valuePlace() const { return numbers.empty() ? place : numbers.front().place; }
};

// Whether a statement is there and has a number.
inline bool hasNumber(const Entry* entry)
{
    return entry != nullptr && !entry->numbers.empty();
}

// Where its value stands; nothing when there is no statement.
inline std::optional<Span> valuePlaceOf(const Entry* entry)
{
    return entry != nullptr ? std::optional(entry->valuePlace()) : std::nullopt;
}

struct TextItem {
    Number value;
    Text text;
    Span place; // of the keyword
};

// A PrmText block.
struct TextBlock {
    Number reference;
    Span place; // of the keyword
    std::vector<TextItem> items;
    bool isUsed = false;
};

// A line such as "BitArea(2-4) 1 0-5".
struct TypeLine {
    std::string_view keyword;
    Span place;              // of the keyword
    Span argument;           // of what stands in the parentheses
    std::int64_t lowest = 0; // what the type can hold
    std::int64_t highest = 0;
    unsigned bytes = 1;
    unsigned firstBit = 0; // the bits it takes, from bit 0 of its first byte
    unsigned bitCount = 8;
    bool isBits = false; // Bit and BitArea: the byte may be shared
    bool isKnown = true; // false: the argument is not one to go by
    bool hasReversedBits = false;
    std::optional<Number> preset;
    std::span<const Number> limits; // the two of a range, or the values of a list
    bool isRange = false;
    bool isList() const { return !limits.empty() && !isRange; }
};

// An ExtUserPrmData block.
struct Definition {
    Number reference;
    Text name;
    Span place; // of the keyword
    std::vector<TypeLine> types;
    std::optional<Number> textReference;
    const TextBlock* text = nullptr;      // the block of that number that stands before
    const TextBlock* laterText = nullptr; // the one that stands behind, when none stands before
    bool isUsed = false;

    const TypeLine* type() const { return types.size() == 1 && types.front().isKnown ? &types.front() : nullptr; }
};

// Ext_User_Prm_Data_Ref and its kin.
struct Placement {
    std::string_view keyword;
    Span place; // of the keyword
    Number offset;
    Number reference;
    const Definition* definition = nullptr;
    const Definition* laterDefinition = nullptr;
};

// Ext_User_Prm_Data_Const and its kin.
struct Constants {
    std::string_view keyword;
    Span place; // of the keyword
    Number offset;
    std::span<const Number> bytes;
};

// The parameter block of the station or of a module in one of the three telegrams that may carry it.
struct PrmBlock {
    const Entry* length = nullptr;
    std::vector<Placement> placements;
    std::vector<Constants> constants;

    bool isEmpty() const { return placements.empty() && constants.empty(); }
};

enum class Telegram { plain, extended, safety };
inline constexpr std::size_t kTelegrams = 3;

struct PrmBlocks {
    PrmBlock blocks[kTelegrams];

    PrmBlock& of(Telegram telegram) { return blocks[static_cast<std::size_t>(telegram)]; }
    const PrmBlock& of(Telegram telegram) const { return blocks[static_cast<std::size_t>(telegram)]; }
};

// A Data_Area_Beg block of a module.
struct DataArea {
    Span place;
    std::vector<const Entry*> entries;
};

struct Module {
    Span place; // of the keyword
    Text name;
    std::span<const Number> bytes;
    ModuleConfig config;
    std::optional<Number> reference;
    PrmBlocks prm;
    std::vector<const Entry*> entries; // what stands in the block, data areas apart
    std::vector<DataArea> areas;
    bool isKgp = false; // no identifier bytes
};

struct Slot {
    Span place;
    Number number;
    Text name;
    Number preset;
    std::span<const Number> allowed; // the two of a range, or references
    bool isRange = false;
};

// Texts of single bits, of one kind of diagnosis.
struct DiagBit {
    const Entry* entry = nullptr;
    bool isSet = true;   // else the text for the clear bit
    bool isHelp = false; // help for the text, not the text
};

struct DiagValue {
    const Entry* entry = nullptr;
    bool isHelp = false;
};

struct DiagArea {
    Span place; // of the keyword
    std::optional<Number> first;
    std::optional<Number> last;
    std::vector<DiagValue> values;
};

// The texts of the device-related diagnosis as a whole, or of one of its types (UnitDiagType).
struct DiagTexts {
    const Entry* type = nullptr;
    std::vector<DiagBit> bits;
    std::vector<DiagArea> areas;
};

class DeviceIndex {
public:
    explicit DeviceIndex(const gsdfile::Document& document);
    DeviceIndex(const DeviceIndex&) = delete;
    DeviceIndex& operator=(const DeviceIndex&) = delete;

    // The first statement of a keyword outside of modules and other blocks; null when there is none.
    const Entry* entry(std::string_view keyword) const;
    // Its number; nothing when it is not there or no number.
    std::optional<std::int64_t> number(std::string_view keyword) const;
    // Whether it is there with a value other than 0.
    bool isOn(std::string_view keyword) const;

    bool hasSection = false;
    std::deque<Entry> entries; // all, in the order of the file
    std::vector<const Entry*> stationEntries;
    std::deque<TextBlock> textBlocks;
    std::deque<Definition> definitions;
    std::deque<Module> modules;
    PrmBlocks stationPrm;
    const Entry* slotDefinition = nullptr;
    std::vector<Slot> slots;
    std::deque<DiagTexts> diagTexts; // the first one is that of the station

private:
    friend class DeviceReader;
    gsdfile::Lists<Number> _numbers;    // of all entries
    std::vector<const Entry*> _station; // the first of each row of the keywords' table
};

} // namespace typdescriptor::lint
