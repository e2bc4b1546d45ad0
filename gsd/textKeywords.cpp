// Diagnostic texts of device and channels, and the texts of parameter values.

#include "gsd/handlers.h"

namespace typdescriptor::internal {

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

int handleUnitDiagArea(GsdReading& reading, const NumberRange& bits)
{
    const auto [first, last] = bits;
    if (first > last || last > kMaxAreaBit || last - first + first % kBitsPerByte + 1 > kMaxAreaBits)
        return kErrGsdNumber;

    GSD_UNIT_DIAG_AREA area;
    area.firstBit = static_cast<std::uint16_t>(first);
    area.lastBit = static_cast<std::uint16_t>(last);
    setAreaMask(area);
    if (exceedsByte(area))
        reading.addWarning(kWarnDiagArea);
    reading.currentUnitDiag = &reading.model.unitDiags.append(reading.model.arena, area);
    reading.openBlock = kInUnitDiagArea;
    return kOk;
}

int handleValue(GsdReading& reading, std::uint32_t number, std::string_view text)
{
    GSD_UNIT_DIAG_AREA& area = *reading.currentUnitDiag;
    if (number > area.mask)
        return kErrGsdNumber;
    if (exceedsByte(area)) {
        trimArea(area);
        number &= area.mask;
    }
    area.values.append(reading.model.arena, {static_cast<std::uint16_t>(number), reading.keepText(text, kNameWidth)});
    return kOk;
}

int checkUnitDiagArea(GsdReading& reading)
{
    return reading.currentUnitDiag->values.empty() ? kErrGsdEmptyBlock : kOk;
}

int handleChannelDiag(GsdReading& reading, std::uint32_t errorType, std::string_view text)
{
    if (errorType < kFirstErrorType || errorType > kLastErrorType)
        return kErrGsdNumber;
    // The type file knows no channel texts of single modules.
    if (reading.openBlock != kInModule)
        reading.model.channelDiags.append(reading.model.arena,
                                          {static_cast<std::uint8_t>(errorType), reading.keepText(text, kNameWidth)});
    return kOk;
}

int handlePrmText(GsdReading& reading, std::uint32_t reference)
{
    GSD_PRM_TEXT block;
    block.reference = static_cast<std::uint16_t>(reference);
    reading.currentPrmText = &reading.model.prmTexts.append(reading.model.arena, block);
    reading.openBlock = kInPrmText;
    return kOk;
}

int handleText(GsdReading& reading, std::uint32_t number, std::string_view text)
{
    reading.currentPrmText->texts.append(reading.model.arena,
                                         {static_cast<std::int32_t>(number), reading.keepText(text, kNameWidth)});
    return kOk;
}

int checkPrmText(GsdReading& reading)
{
    return reading.currentPrmText->texts.empty() ? kErrGsdEmptyBlock : kOk;
}

} // namespace typdescriptor::internal
