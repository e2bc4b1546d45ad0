// Diagnostic texts of device and channels, and the texts of parameter values.

#include "descriptor/resultCodes.h"
#include "gsd/cGsdCompiler.h"

namespace {

constexpr unsigned kBitsPerByte = 8;
constexpr std::uint32_t kMaxAreaBit = 511;
constexpr std::uint32_t kMaxAreaBits = 16; // counted from the byte boundary below the area
constexpr std::uint32_t kFirstErrorType = 16;
constexpr std::uint32_t kLastErrorType = 31;

void setAreaMask(GSD_UNIT_DIAG_AREA& area)
{
    area.mask = static_cast<std::uint16_t>((1U << (area.lastBit - area.firstBit + 1U)) - 1);
}

/// Whether the area does not fit into one byte of the diagnosis, which is all that the type file can say.
bool exceedsByte(const GSD_UNIT_DIAG_AREA& area)
{
    return area.mask > 0xFF || area.firstBit / kBitsPerByte != area.lastBit / kBitsPerByte;
}

/// Cuts the area back to the end of the byte before its last bit.
void trimArea(GSD_UNIT_DIAG_AREA& area)
{
    area.lastBit = static_cast<std::uint16_t>(area.lastBit - (area.lastBit % kBitsPerByte + 1));
    setAreaMask(area);
}

} // namespace

int cGsdCompiler::addUnitDiagBit(const GsdLine& line, std::uint16_t shownValue)
{
    ValueReader argument(line.argument);
    const auto bit = static_cast<std::uint16_t>(argument.unsigned16());
    if (argument.failed())
        return argument.finish();
    ValueReader value(line.value);
    const std::string_view text = value.string(kTextSqueeze);
    if (const int result = value.finish(); result < 0)
        return result;

    currentUnitDiag = &model.unitDiags.append(model.arena, {bit, bit, 1, {}});
    currentUnitDiag->values.append(model.arena, {shownValue, model.arena.text(text)});
    warnOfLongText(text);
    return kOk;
}

int cGsdCompiler::handleUnitDiagBit(const GsdLine& line)
{
    return addUnitDiagBit(line, 1);
}

int cGsdCompiler::handleUnitDiagNotBit(const GsdLine& line)
{
    return addUnitDiagBit(line, 0);
}

int cGsdCompiler::handleUnitDiagArea(const GsdLine& line)
{
    ValueReader value(line.value);
    const NumberList bits = value.range(IntegerKind::unsigned16);
    if (const int result = value.finish(); result < 0)
        return result;
    const std::uint32_t first = bits.first();
    const std::uint32_t last = bits.last();
    if (first > last || last > kMaxAreaBit || last - first + first % kBitsPerByte + 1 > kMaxAreaBits)
        return kErrGsdNumber;

    GSD_UNIT_DIAG_AREA area;
    area.firstBit = static_cast<std::uint16_t>(first);
    area.lastBit = static_cast<std::uint16_t>(last);
    setAreaMask(area);
    if (exceedsByte(area))
        addWarning(kWarnDiagArea);
    currentUnitDiag = &model.unitDiags.append(model.arena, area);
    openBlock = kInUnitDiagArea;
    return kOk;
}

int cGsdCompiler::handleValue(const GsdLine& line)
{
    ValueReader value(line.value);
    const std::string_view text = value.string(kTextSqueeze);
    if (const int result = value.finish(); result < 0)
        return result;
    ValueReader argument(line.argument);
    std::uint32_t number = argument.unsigned16();
    if (argument.failed())
        return argument.finish();
    GSD_UNIT_DIAG_AREA& area = *currentUnitDiag;
    if (number > area.mask)
        return kErrGsdNumber;

    if (exceedsByte(area)) {
        trimArea(area);
        number &= area.mask;
    }
    area.values.append(model.arena, {static_cast<std::uint16_t>(number), model.arena.text(text)});
    warnOfLongText(text);
    return kOk;
}

int cGsdCompiler::handleUnitDiagAreaEnd(const GsdLine& line)
{
    if (!line.value.empty())
        return kErrGsdSyntax;
    if (currentUnitDiag->values.empty())
        return kErrGsdEmptyBlock;
    openBlock = kOutside;
    return kOk;
}

int cGsdCompiler::addChannelDiag(const GsdLine& line, bool oldSpelling)
{
    ValueReader value(line.value);
    const std::string_view text = value.string(kTextSqueeze);
    if (const int result = value.finish(); result < 0)
        return result;
    ValueReader argument(line.argument);
    const std::uint32_t errorType = argument.unsigned8();
    if (argument.failed())
        return argument.finish();
    if (errorType < kFirstErrorType || errorType > kLastErrorType)
        return kErrGsdNumber;

    // The type file knows no channel texts of single modules.
    if (openBlock != kInModule) {
        model.channelDiags.append(model.arena, {static_cast<std::uint8_t>(errorType), model.arena.text(text)});
        warnOfLongText(text);
    }
    if (oldSpelling)
        addWarning(kWarnChannelDiag);
    return kOk;
}

int cGsdCompiler::handleChannelDiag(const GsdLine& line)
{
    return addChannelDiag(line, false);
}

int cGsdCompiler::handleChannelDiagOldSpelling(const GsdLine& line)
{
    return addChannelDiag(line, true);
}

int cGsdCompiler::handlePrmText(const GsdLine& line)
{
    ValueReader value(line.value);
    const std::uint32_t reference = value.unsigned16();
    if (const int result = value.finish(); result < 0)
        return result;
    GSD_PRM_TEXT block;
    block.reference = static_cast<std::uint16_t>(reference);
    currentPrmText = &model.prmTexts.append(model.arena, block);
    openBlock = kInPrmText;
    return kOk;
}

int cGsdCompiler::handleText(const GsdLine& line)
{
    ValueReader value(line.value);
    const std::string_view text = value.string(kTextSqueeze);
    if (const int result = value.finish(); result < 0)
        return result;
    ValueReader argument(line.argument);
    const auto number = static_cast<std::int32_t>(argument.number(IntegerKind::signed32));
    if (argument.failed())
        return argument.finish();
    currentPrmText->texts.append(model.arena, {number, model.arena.text(text)});
    warnOfLongText(text);
    return kOk;
}

int cGsdCompiler::handleEndPrmText(const GsdLine& line)
{
    if (!line.value.empty())
        return kErrGsdSyntax;
    if (currentPrmText->texts.empty())
        return kErrGsdEmptyBlock;
    openBlock = kOutside;
    return kOk;
}
