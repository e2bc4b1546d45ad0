// The identifier interpreter and the description of identifier values; the header says who uses them.

#include "typefile/cfgDecoder.h"

#include "descriptor/resultCodes.h"

#include <algorithm>

namespace typdescriptor::internal {

namespace {

constexpr std::uint32_t kLengthBits = 0xC0;
constexpr std::uint32_t kLengthCountBits = 0x3F; // of a length byte

constexpr std::uint32_t formatOf(std::uint32_t identifier)
{
    return identifier >> 16;
}

constexpr std::uint32_t makeIdentifier(CfgFormat format, std::uint32_t bytes)
{
    return static_cast<std::uint32_t>(format) << 16 | bytes;
}

constexpr std::uint8_t wholeConsistency(bool word)
{
    return word ? 3 : 2;
}

constexpr std::uint8_t unitConsistency(bool word)
{
    return word ? 1 : 0;
}

/// One direction in the formats of the standard. Bit 7 asks for consistency over the whole length, which one byte always
/// has.
/// @param countBits  those that count bytes or words, from 1
void decodeSide(std::uint32_t byte, std::uint32_t countBits, std::uint8_t& length, std::uint8_t& wordStructure,
                std::uint8_t& consistency)
{
    const bool word = bitOf(byte, 6) != 0;
    const std::uint32_t count = (byte & countBits) + 1;
    wordStructure = word ? 1 : 0;
    length = static_cast<std::uint8_t>(word ? count * 2 : count);
    if (length != 1)
        consistency = bitOf(byte, 7) != 0 ? wholeConsistency(word) : unitConsistency(word);
}

void decodeCompact(std::uint32_t byte, CFG_IDENT_INFO& info)
{
    const bool word = bitOf(byte, 2) != 0;
    const std::uint32_t code = byte & 0x03;
    info.direction = static_cast<std::uint8_t>((byte & 0x18) >> 3);
    info.wordStructure = word ? 1 : 0;
    info.length = static_cast<std::uint8_t>(word ? code * 2 + 2 : (code + 1) / 2);
    if (info.length == 0) {
        info.length = 1;
        info.shortItem = 1;
    }
    info.compactFlag = bitOf(byte, 5);
    if (bitOf(byte, 6) != 0)
        info.consistency = wholeConsistency(word);
    else
        info.consistency = info.direction == 2 ? std::uint8_t{0} : unitConsistency(word);
    if (bitOf(byte, 7) != 0)
        info.consistency2 = wholeConsistency(word);
    else
        info.consistency2 = info.direction == 1 ? std::uint8_t{0} : unitConsistency(word);
}

template <std::size_t Size>
void copyText(std::array<char, Size>& target, std::string_view text)
{
    target.fill('\0');
    std::copy_n(text.data(), std::min(text.size(), Size - 1), target.data());
}

} // namespace

int decodeIdentifier(std::uint32_t identifier, CFG_IDENT_INFO& info)
{
    info = CFG_IDENT_INFO{};
    const std::uint32_t low = identifier & 0xFF;
    const std::uint32_t high = identifier >> 8 & 0xFF;
    switch (formatOf(identifier)) {
    case kFormatNone:
    case kFormatSpecialNoLength:
        return -1;
    case kFormatEmpty:
        return 1;
    case kFormatGeneral:
        info.direction = static_cast<std::uint8_t>((low & kIoBits) >> 4);
        decodeSide(low, 0x0F, info.length, info.wordStructure, info.consistency);
        break;
    case kFormatCompact:
        decodeCompact(low, info);
        break;
    case kFormatSpecialInput:
    case kFormatSpecialOutput:
    case kFormatSpecialBoth:
        info.direction = static_cast<std::uint8_t>(formatOf(identifier) - kFormatSpecialInput + 1);
        if (formatOf(identifier) != kFormatSpecialOutput)
            decodeSide(low, kLengthCountBits, info.length, info.wordStructure, info.consistency);
        if (formatOf(identifier) != kFormatSpecialInput)
            decodeSide(high, kLengthCountBits, info.length2, info.wordStructure2, info.consistency2);
        break;
    default:
        return kErrIdentFormat;
    }
    info.value = identifier;
    return 0;
}

int isValidIdentifier(std::uint32_t identifier)
{
    CFG_IDENT_INFO info;
    const int result = decodeIdentifier(identifier, info);
    if (result != 0)
        return result == 1 ? 1 : 0;
    // One byte is never consistent over its whole length in the standard formats, which is the only thing that could
    // make one of them invalid.
    return formatOf(identifier) != kFormatCompact || isValidCompactByte(identifier) ? 1 : 0;
}

CFG_DECODER::CFG_DECODER(std::int32_t tagValue)
{
    const auto bits = static_cast<std::uint32_t>(tagValue);
    tag = bits;
    tagWord = static_cast<std::uint16_t>((bits & 0xFF) | ((bits >> 8 | 0xC0) & 0xFF) << 8);
}

void CFG_DECODER::initialise()
{
    *this = CFG_DECODER{};
}

int CFG_DECODER::interpretCfgByte(std::uint32_t value, std::int32_t normFormat, std::int32_t lengthRole)
{
    const std::uint32_t byte = value & 0xFFFF;
    if (state == kSimple)
        return continueSimple(byte, normFormat);
    if (state != kSpecial)
        return beginIdentifier(byte, normFormat, lengthRole);
    if (lengthRole == kRoleIdentifier)
        return continueSpecial(byte);

    CFG_SPECIAL_INFO special;
    decodeSpecialByte(specialByte, special);
    const bool announced = (lengthRole == kRoleInputLength && special.hasInput != 0) ||
                           (lengthRole == kRoleOutputLength && special.hasOutput != 0);
    return announced ? takeLengthByte(byte, lengthRole == kRoleInputLength) : static_cast<int>(kCfgUnannouncedLength);
}

int CFG_DECODER::beginIdentifier(std::uint32_t byte, std::int32_t normFormat, std::int32_t lengthRole)
{
    if (byte == 0) {
        hold(makeIdentifier(kFormatEmpty, 0));
        label.fill('\0');
        return kCfgEmpty;
    }
    if (allowRestart == 0)
        return kCfgRefused;
    if (normFormat != 0 && lengthRole != kRoleIdentifier)
        return kCfgInvalid;
    const IdentifierKind kind = identifierKind(byte, normFormat);
    if (kind == kCfgSpecial)
        holdSpecial(byte);
    else if (kind != kCfgInvalid)
        hold(makeIdentifier(kind == kCfgCompact ? kFormatCompact : kFormatGeneral, byte));
    return kind;
}

int CFG_DECODER::continueSimple(std::uint32_t byte, std::int32_t normFormat)
{
    if (byte == 0)
        return current != 0 && allowRestart == 0 ? static_cast<int>(kCfgRefused) : restart(byte, normFormat);
    if (normFormat != 0 && isSpecialByte(byte)) {
        if (current != 0)
            return kCfgSpecialAfterSimple;
        if (allowRestart == 0)
            return kCfgRefused;
        const std::array<std::int32_t, 3> keptWords = preserved;
        const std::uint32_t keptTag = tag;
        initialise();
        tagWord = static_cast<std::uint16_t>(keptTag | 0xC000);
        tag = keptTag;
        preserved = keptWords;
        holdSpecial(byte);
        return kCfgSpecial;
    }
    if (byte == (current & 0xFFFF))
        return normFormat != 0 ? kCfgGeneralAgain : kCfgCompactAgain;
    return restart(byte, normFormat);
}

int CFG_DECODER::continueSpecial(std::uint32_t byte)
{
    if ((byte & kIoBits) != 0 || (byte & kLengthBits) != (specialByte & kLengthBits))
        return kCfgOtherSpecial;
    if ((byte & kMfrBits) != (specialByte & kMfrBits) && allowRestart == 0)
        return kCfgRefused;
    specialByte = static_cast<std::uint8_t>(byte);
    return kCfgSpecialAgain;
}

int CFG_DECODER::takeLengthByte(std::uint32_t byte, bool isInput)
{
    const CfgFormat side = isInput ? kFormatSpecialInput : kFormatSpecialOutput;
    const std::uint32_t candidate = makeIdentifier(side, isInput ? byte : byte << 8);
    const std::uint32_t held = formatOf(current);
    if (held == kFormatNone) {
        current = candidate;
        counters.fill(0);
        return isInput ? kCfgInputLength : kCfgOutputLength;
    }
    if (held != kFormatSpecialInput && held != kFormatSpecialOutput && held != kFormatSpecialBoth)
        return kCfgInvalid;
    if (held != kFormatSpecialBoth && held != side) {
        const std::uint32_t input = isInput ? byte : current & 0xFF;
        const std::uint32_t output = isInput ? current & 0xFF00 : byte << 8;
        current = makeIdentifier(kFormatSpecialBoth, output | input);
        return kCfgBothLengths;
    }

    const std::uint32_t heldByte = isInput ? current & 0xFF : current >> 8 & 0xFF;
    if (byte == heldByte)
        return kCfgLengthAgain;
    if (allowRestart == 0)
        return kCfgRefused;
    if (held == side)
        current = kNothing;
    else
        current = isInput ? makeIdentifier(kFormatSpecialOutput, current & 0xFF00)
                          : makeIdentifier(kFormatSpecialInput, current & 0xFF);
    counters[isInput ? 0 : 1] = 0;
    counters[isInput ? 3 : 2] = 0;
    return takeLengthByte(byte, isInput);
}

int CFG_DECODER::restart(std::uint32_t byte, std::int32_t normFormat)
{
    state = kIdle;
    return beginIdentifier(byte, normFormat, kRoleIdentifier);
}

void CFG_DECODER::hold(std::uint32_t identifier)
{
    state = kSimple;
    current = identifier;
    counters.fill(0);
}

void CFG_DECODER::holdSpecial(std::uint32_t byte)
{
    state = kSpecial;
    specialByte = static_cast<std::uint8_t>(byte);
    if ((byte & kLengthBits) == 0)
        current = makeIdentifier(kFormatSpecialNoLength, 0);
}

std::uint32_t CFG_DECODER::getCurrent(std::uint32_t& identifier) const
{
    identifier = current;
    return formatOf(current);
}

int CFG_DECODER::getSpecialByte(std::uint8_t& byte) const
{
    if (state != kSpecial)
        return kErrIdentFormat;
    byte = specialByte;
    return kCfgSpecial;
}

int CFG_DECODER::getCounter(unsigned number, std::uint32_t& value) const
{
    value = number >= 1 && number <= counters.size() ? counters[number - 1] : 0;
    return value > 0 ? 0 : static_cast<int>(kCfgNoCounter);
}

int CFG_DECODER::mfrByteCount(unsigned& count) const
{
    if (state != kSpecial)
        return kCfgNotSpecial;
    count = specialByte & kMfrBits;
    return count == 0 || count == 15 ? static_cast<int>(kCfgNoMfrData) : 0;
}

int CFG_DECODER::getMfrData(std::uint8_t* bytes, unsigned& count) const
{
    const int result = mfrByteCount(count);
    if (result == 0)
        std::copy_n(mfrData.begin(), count, bytes);
    return result;
}

int CFG_DECODER::setMfrData(const std::uint8_t* bytes)
{
    unsigned count = 0;
    const int result = mfrByteCount(count);
    if (result == 0)
        std::copy_n(bytes, count, mfrData.begin());
    return result;
}

int CFG_DECODER::getPreserved(std::array<std::int32_t, 3>& words) const
{
    words = preserved;
    return words[0] == -1 ? static_cast<int>(kCfgNothingPreserved) : 0;
}

void CFG_DECODER::setPreserved(const std::array<std::int32_t, 3>& words)
{
    preserved = words;
}

unsigned CFG_DECODER::byteLength() const
{
    if (state == kSimple)
        return 1;
    if (state != kSpecial)
        return 0;
    CFG_SPECIAL_INFO special;
    decodeSpecialByte(specialByte, special);
    unsigned mfrBytes = 0;
    if (mfrByteCount(mfrBytes) != 0)
        mfrBytes = 0;
    // The identifier byte of a special identifier counts twice: that is the measure in use.
    return 1 + (1 + special.lengthBytes()) + mfrBytes;
}

CFG_DECODER CFG_DECODER::copyWithoutCounters() const
{
    CFG_DECODER copy = *this;
    copy.counters.fill(0);
    return copy;
}

int CFG_DECODER::setLabel(std::string_view text)
{
    copyText(label, text);
    return 0;
}

int CFG_DECODER::setNote(std::string_view text)
{
    if (allowRestart != 0)
        copyText(note, text);
    return 0;
}

} // namespace typdescriptor::internal
