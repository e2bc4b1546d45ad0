// The whole interpreter of DP configuration identifiers and the description of their values.
//
// In: identifier bytes, one at a time. Out: what each byte is (empty, general, compact or special identifier, length
// byte, repetition) or why it does not fit. The interpreter is a small state machine held in a CFG_DECODER; a fresh one
// is made for every identifier. The library itself only ever asks about first bytes, which identifiers.h answers; nothing
// in it reaches the states behind them, the counters and the texts. They are complete and held by the tests.

#pragma once

#include "typefile/identifiers.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace typdescriptor::internal {

/// What decodeIdentifier() says about an identifier. Lengths are in bytes; consistency is 0 per byte, 1 per word,
/// 2 whole length in bytes, 3 whole length in words.
struct CFG_IDENT_INFO {
    std::uint8_t direction = 0; // 1 input, 2 output, 3 both
    std::uint8_t length = 0;    // the input length where there are two
    std::uint8_t wordStructure = 0;
    std::uint8_t consistency = 0;
    std::uint8_t length2 = 0; // output length of the special formats
    std::uint8_t wordStructure2 = 0;
    std::uint8_t consistency2 = 0;
    std::uint32_t compactFlag = 0; // 0 or 1: bit 5 of a compact identifier
    std::uint32_t shortItem = 0;   // 1: a compact identifier's length of 0 bytes was raised to 1
    std::uint32_t value = 0;       // the identifier value decoded
};

/// Role of a byte given to the interpreter.
enum CfgLengthRole : std::int32_t {
    kRoleIdentifier = 0,
    kRoleInputLength = 1,
    kRoleOutputLength = 2,
};

/// Results of the interpreter besides those of a first byte, IdentifierKind. The negative ones are its own, not those of
/// the library.
enum CfgResult : int {
    kCfgGeneralAgain = 2,
    kCfgCompactAgain = 4,
    kCfgInputLength = 6,
    kCfgOutputLength = 7,
    kCfgBothLengths = 8,
    kCfgLengthAgain = 9,
    kCfgSpecialAgain = 10,
    kCfgRefused = -4, // differs from what is held, and restarts are not allowed
    kCfgNoMfrData = -15,
    kCfgNotSpecial = -16,
    kCfgSpecialAfterSimple = -17,
    kCfgOtherSpecial = -18,
    kCfgUnannouncedLength = -27,
    kCfgNoCounter = -33,
    kCfgNothingPreserved = -46,
};

/// Decodes an identifier value. `info` is cleared first.
/// @return 0; 1 for the empty identifier; -1 when nothing is there to decode; kErrIdentFormat for an unknown format
int decodeIdentifier(std::uint32_t identifier, CFG_IDENT_INFO& info);

/// @return 1 when an identifier value is valid, else 0
int isValidIdentifier(std::uint32_t identifier);

/// The interpreter: what it holds of one identifier.
class CFG_DECODER {
public:
    CFG_DECODER() = default;
    explicit CFG_DECODER(std::int32_t tagValue);

    /// Puts every field to its default.
    void initialise();

    /// Takes the next byte of an identifier.
    /// @param value       the byte; the low 16 bits count
    /// @param normFormat  0: the library's compact format; else the formats of the standard
    /// @param lengthRole  a CfgLengthRole
    /// @return an IdentifierKind or a CfgResult
    int interpretCfgByte(std::uint32_t value, std::int32_t normFormat, std::int32_t lengthRole);

    static constexpr std::size_t kLabelSize = 24; // with its NUL
    static constexpr std::size_t kNoteSize = 32;

    /// The held identifier value; @return its format
    std::uint32_t getCurrent(std::uint32_t& identifier) const;
    /// The held special-format byte; @return kCfgSpecial, or kErrIdentFormat when none is held
    int getSpecialByte(std::uint8_t& byte) const;
    /// Counter 1 to 4; @return 0 when it is above 0, else kCfgNoCounter
    int getCounter(unsigned number, std::uint32_t& value) const;
    /// The manufacturer bytes of a special identifier and their number; @return 0, kCfgNotSpecial or kCfgNoMfrData
    int getMfrData(std::uint8_t* bytes, unsigned& count) const;
    /// Stores as many manufacturer bytes as the held identifier has; @return as getMfrData()
    int setMfrData(const std::uint8_t* bytes);
    /// @return 0, or kCfgNothingPreserved while the first word is -1; the words are copied in either case
    int getPreserved(std::array<std::int32_t, 3>& words) const;
    void setPreserved(const std::array<std::int32_t, 3>& words);
    /// Length of the held identifier: 1 for a simple one; the bytes of a special one and 1; 0 when none is held.
    unsigned byteLength() const;
    /// A copy whose counters are cleared.
    CFG_DECODER copyWithoutCounters() const;
    std::uint16_t getState() const { return state; }
    int setLabel(std::string_view text);
    std::string_view getLabel() const { return label.data(); }
    /// Does nothing while restarts are not allowed.
    int setNote(std::string_view text);
    std::string_view getNote() const { return note.data(); }
    void setAllowRestart(bool allowed) { allowRestart = allowed ? 1 : 0; }

    bool operator==(const CFG_DECODER& other) const { return tagWord == other.tagWord; }
    bool operator<(const CFG_DECODER& other) const { return tagWord < other.tagWord; }

private:
    static constexpr std::uint16_t kIdle = 0xFFFF;
    static constexpr std::uint16_t kSimple = 1;
    static constexpr std::uint16_t kSpecial = 2;
    static constexpr std::uint32_t kNothing = static_cast<std::uint32_t>(kFormatNone) << 16;

    int beginIdentifier(std::uint32_t byte, std::int32_t normFormat, std::int32_t lengthRole);
    int continueSimple(std::uint32_t byte, std::int32_t normFormat);
    int continueSpecial(std::uint32_t byte);
    int takeLengthByte(std::uint32_t byte, bool isInput);
    int restart(std::uint32_t byte, std::int32_t normFormat);
    void hold(std::uint32_t identifier);
    void holdSpecial(std::uint32_t byte);
    int mfrByteCount(unsigned& count) const;

    // The record's layout is fixed: the interpreter neither reads nor writes the fields marked unused.
    [[maybe_unused]] std::uint32_t headerWord = 520;
    std::uint16_t tagWord = 0xFFFF;
    std::uint16_t state = kIdle;
    [[maybe_unused]] std::uint32_t spare = 0;
    std::uint32_t allowRestart = 1;
    std::uint32_t tag = 0xFFFF;
    std::uint32_t current = kNothing;
    std::array<char, kLabelSize> label{};
    std::array<std::uint32_t, 4> counters{}; // 1st and 4th of the input side, 2nd and 3rd of the output side
    [[maybe_unused]] std::uint32_t spare2 = 0;
    std::uint8_t specialByte = 0;
    std::array<std::uint8_t, 15> mfrData{};
    [[maybe_unused]] std::uint8_t markByte = 0xFF;
    [[maybe_unused]] std::uint8_t flagA = 0;
    [[maybe_unused]] std::uint8_t flagB = 0;
    std::array<std::int32_t, 3> preserved{-1, -1, 0};
    std::array<char, kNoteSize> note{};
};

} // namespace typdescriptor::internal
