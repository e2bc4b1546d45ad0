// The handlers of the keywords: what each row of the keyword table names.
//
// A row says what the value (and the argument) of its line holds and where that goes: read<u16, handleX> reads an
// unsigned 16-bit number and nothing else, and only then calls handleX; store<u16, &GsdModel::x> only keeps it. So a
// handler never sees a line that does not read as it should. All return 0 or a negative ResultCode. One that fails may be
// called again for the same line: it has neither warned of anything nor opened or closed a block.

#pragma once

#include "descriptor/resultCodes.h"
#include "gsd/gsdReading.h"
#include "gsd/valueReader.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>

namespace typdescriptor::internal {

// --- What a value holds ----------------------------------------------------------------------------------------------

template <auto Reader, auto... Arguments>
auto taken(ValueReader& value)
{
    return (value.*Reader)(Arguments...);
}
inline constexpr auto flag = taken<&ValueReader::flag>;
inline constexpr auto u8 = taken<&ValueReader::number, IntegerKind::unsigned8>;
inline constexpr auto u16 = taken<&ValueReader::number, IntegerKind::unsigned16>;
inline constexpr auto s32 = taken<&ValueReader::number, IntegerKind::signed32>;
inline constexpr auto u16Range = taken<&ValueReader::range, IntegerKind::unsigned16>;
inline constexpr auto byteList = taken<&ValueReader::bytes>;
inline constexpr auto family = taken<&ValueReader::family>;
inline constexpr auto anyText = taken<&ValueReader::string, 0>;
// Texts, by the length to which they are squeezed.
inline constexpr auto name17 = taken<&ValueReader::string, 17>;
inline constexpr auto name10 = taken<&ValueReader::string, 10>;
inline constexpr auto text30 = taken<&ValueReader::string, kNameWidth>;

inline int nothing(ValueReader&)
{
    return 0;
}

struct NamedBytes {
    std::string_view name;
    NumberList bytes;
};

inline NamedBytes namedBytes(ValueReader& value)
{
    return {value.string(), value.bytes()};
}

/// The head of an ExtUserPrmData block.
struct PrmDefHead {
    std::uint32_t reference;
    std::string_view name;
};
PrmDefHead prmDefHead(ValueReader& value);

// --- Reading, and what becomes of it ---------------------------------------------------------------------------------

template <auto Read>
int drop(GsdReading&, GsdLine& line)
{
    ValueReader value(line.value, line);
    static_cast<void>(Read(value));
    const int result = value.finish();
    line.value = value.rest();
    return result;
}

template <auto Read, auto Handle>
int read(GsdReading& reading, GsdLine& line)
{
    ValueReader value(line.value, line);
    const auto item = Read(value);
    const int result = value.finish();
    line.value = value.rest();
    return result < 0 ? result : Handle(reading, item);
}

enum class Blamed { argument, value };

/// Of a line with an argument. Where both are wrong, the one to blame gives the code.
template <Blamed First, auto ReadArgument, auto ReadValue, auto Handle>
int readBoth(GsdReading& reading, GsdLine& line)
{
    ValueReader argument(line.argument);
    ValueReader value(line.value, line);
    const auto index = ReadArgument(argument);
    const auto item = ReadValue(value);
    ValueReader& first = First == Blamed::argument ? argument : value;
    ValueReader& second = First == Blamed::argument ? value : argument;
    if (const int result = first.finish(); result < 0)
        return result;
    const int result = second.finish();
    line.value = value.rest();
    return result < 0 ? result : Handle(reading, index, item);
}

template <class Value>
Value& placeOf(GsdReading& reading, Value GsdModel::*field)
{
    return reading.model.*field;
}
template <class Value>
Value& placeOf(GsdReading& reading, Value GSD_MODULE::*field)
{
    return reading.currentModule->*field;
}

template <auto Field, std::uint32_t Maximum, std::uint32_t Minimum = 0>
int keepNumber(GsdReading& reading, std::uint32_t number)
{
    if (number < Minimum || number > Maximum)
        return kErrGsdNumber;
    auto& place = placeOf(reading, Field);
    place = static_cast<std::remove_reference_t<decltype(place)>>(number);
    return kOk;
}

template <auto Field, std::size_t Width>
int keepHeaderText(GsdReading& reading, std::string_view text)
{
    reading.model.*Field = reading.keepText(text, Width);
    return kOk;
}

/// Keeps a number or a flag in a field of the model or of the current module.
template <auto Read, auto Field, std::uint32_t Maximum = 0xFFFFFFFF, std::uint32_t Minimum = 0>
inline constexpr auto store = &read<Read, keepNumber<Field, Maximum, Minimum>>;

/// Keeps a text for a header field, as much of it as that has room for.
template <auto Read, auto Field, std::size_t Width>
inline constexpr auto storeText = &read<Read, keepHeaderText<Field, Width>>;

/// Of an old spelling, which is read like the new one.
template <int Warning, auto HandleLine>
int oldSpelling(GsdReading& reading, GsdLine& line)
{
    const int result = HandleLine(reading, line);
    if (result == kOk)
        reading.addWarning(Warning);
    return result;
}

/// Of a number that has to be 0.
template <int Code>
int handleZero(GsdReading&, std::uint32_t number)
{
    return number == 0 ? static_cast<int>(kOk) : Code;
}

/// The end of a block, which checks it as a whole.
template <auto Check>
int closeBlock(GsdReading& reading, GsdLine& line)
{
    int result = drop<nothing>(reading, line);
    if (result == kOk)
        result = Check(reading);
    if (result == kOk)
        reading.openBlock = kOutside;
    return result;
}

// --- General keywords ------------------------------------------------------------------------------------------------

template <unsigned Bit>
int handleBaudRate(GsdReading& reading, std::uint32_t supported)
{
    // Two rates share a bit: neither takes back what the other has set.
    std::uint16_t& rates = reading.model.baudRates;
    rates = static_cast<std::uint16_t>(rates | supported << Bit);
    reading.foundMandatories[kBaudRateFound] = 1;
    return kOk;
}
/// Of a flag whose keyword makes the station type, also when it is 0.
template <auto Field, const std::string_view& StationType>
int handleStationFlag(GsdReading& reading, std::uint32_t set)
{
    reading.model.stationType = StationType;
    return keepNumber<Field, 1>(reading, set);
}
int handleMaxTsdr(GsdReading& reading, std::uint32_t time);
int handleVendorName(GsdReading& reading, std::string_view name);
int handleImplementationType(GsdReading& reading, std::string_view type);
int handleBitmapDevice(GsdReading& reading, std::string_view name);
int handleSlaveFamily(GsdReading& reading, const FamilyValue& value);
int handleOrderNumber(GsdReading& reading, std::string_view number);
int handleQ5HeaderCnf(GsdReading& reading, std::uint32_t number);
int handleKgpGui(GsdReading& reading, const NamedBytes& value);

// --- Modules and parameter data --------------------------------------------------------------------------------------

int handleModule(GsdReading& reading, const NamedBytes& value);
int handleKgpModule(GsdReading& reading, const NamedBytes& value);
int checkModule(GsdReading& reading);
int handleExtModulePrmDataLen(GsdReading& reading, std::uint32_t length);
int handleMaxUserPrmDataLen(GsdReading& reading, std::uint32_t length);
int handleUserPrmData(GsdReading& reading, const NumberList& bytes);
int handleExtUserPrmData(GsdReading& reading, const PrmDefHead& head);
int handleDataType(GsdReading& reading, GsdLine& line);
int handlePrmTextRef(GsdReading& reading, std::uint32_t reference);
int checkExtUserPrmData(GsdReading& reading);
int handleExtUserPrmDataConst(GsdReading& reading, std::uint32_t offset, const NumberList& bytes);
int handleExtUserPrmDataRef(GsdReading& reading, std::uint32_t offset, std::uint32_t reference);

// --- Diagnostic and parameter texts ----------------------------------------------------------------------------------

template <std::uint16_t ShownValue>
int handleUnitDiagBit(GsdReading& reading, std::uint32_t number, std::string_view text)
{
    Arena& arena = reading.model.arena;
    const auto bit = static_cast<std::uint16_t>(number);
    GSD_UNIT_DIAG_AREA& area = reading.model.unitDiags.append(arena, {bit, bit, 1, {}});
    area.values.append(arena, {ShownValue, reading.keepText(text, kNameWidth)});
    return kOk;
}
int handleUnitDiagArea(GsdReading& reading, const NumberRange& bits);
int handleValue(GsdReading& reading, std::uint32_t number, std::string_view text);
int checkUnitDiagArea(GsdReading& reading);
int handleChannelDiag(GsdReading& reading, std::uint32_t errorType, std::string_view text);
int handlePrmText(GsdReading& reading, std::uint32_t reference);
int handleText(GsdReading& reading, std::uint32_t number, std::string_view text);
int checkPrmText(GsdReading& reading);

} // namespace typdescriptor::internal
