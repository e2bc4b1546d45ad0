// Handlers that serve several keywords and differ only in where the value goes; the keyword table names the place.

#pragma once

#include "descriptor/resultCodes.h"
#include "gsd/cGsdCompiler.h"

template <std::int32_t GsdModel::*Field>
int cGsdCompiler::storeFlag(const GsdLine& line)
{
    ValueReader value(line.value);
    const std::uint32_t flag = value.flag();
    if (const int result = value.finish(); result < 0)
        return result;
    model.*Field = static_cast<std::int32_t>(flag);
    return kOk;
}

template <std::uint16_t GsdModel::*Field, IntegerKind Kind, std::uint32_t Maximum>
int cGsdCompiler::storeNumber(const GsdLine& line)
{
    ValueReader value(line.value);
    const std::uint32_t number = value.number(Kind);
    if (const int result = value.finish(); result < 0)
        return result;
    if (number > Maximum)
        return kErrGsdNumber;
    model.*Field = static_cast<std::uint16_t>(number);
    return kOk;
}

template <std::size_t Position>
int cGsdCompiler::storeFlagCharacter(const GsdLine& line)
{
    ValueReader value(line.value);
    const std::uint32_t flag = value.flag();
    if (const int result = value.finish(); result < 0)
        return result;
    setTypeData(Position, flag != 0 ? 'J' : 'N');
    return kOk;
}

template <int Code>
int cGsdCompiler::requireZero(const GsdLine& line)
{
    ValueReader value(line.value);
    const std::uint32_t number = value.unsigned8();
    if (const int result = value.finish(); result < 0)
        return result;
    return number == 0 ? static_cast<int>(kOk) : Code;
}

template <unsigned Bit>
int cGsdCompiler::handleBaudRate(const GsdLine& line)
{
    ValueReader value(line.value);
    const std::uint32_t flag = value.flag();
    if (const int result = value.finish(); result < 0)
        return result;
    if (flag != 0) {
        // Two rates share a digit: neither takes back what the other has set.
        setTypeData(typefile::kBaudRates.position + Bit, '1');
        model.baudRateMask = static_cast<std::uint16_t>(model.baudRateMask | 1U << Bit);
    }
    foundMandatories[kBaudRateFound] = 1;
    return kOk;
}

template <unsigned Bit>
int cGsdCompiler::handleMaxTsdr(const GsdLine& line)
{
    ValueReader value(line.value);
    value.unsigned16();
    if (const int result = value.finish(); result < 0)
        return result;
    model.maxTsdrMask = static_cast<std::uint16_t>(model.maxTsdrMask | 1U << Bit);
    foundMandatories[kMaxTsdrFound] = 1;
    return kOk;
}
