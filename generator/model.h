// The GSD model: what the keyword lines of one GSD file say, and the image that is made of it. The keyword handlers
// fill it, the generator reads it.

#pragma once

#include "generator/arena.h"
#include "generator/elements.h"
#include "generator/list.h"
#include "generator/outputImage.h"
#include "typefile/format.h"

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

/// The KGPGui value.
struct KgpGui {
    std::array<std::uint8_t, 3> bytes{};
    std::string_view text; // at most 2 characters
    bool given = false;
};

struct GsdModel {
    GsdModel(char* buffer, std::uint32_t capacity) : image(buffer, capacity) {}

    Arena arena; // of everything below that is appended or kept
    OutputImage image;
    std::int32_t initError = 0;

    // Identification and general properties.
    std::uint32_t gsdRevision = 0;
    std::uint32_t identNumber = 0;
    std::uint32_t modularStation = 0;
    std::uint16_t maxModule = 0;
    std::uint16_t maxInputLen = typefile::kMaxIoLen;
    std::uint16_t maxOutputLen = typefile::kMaxIoLen;
    std::uint16_t maxDataLen = 0;
    std::uint8_t modulOffset = 0;
    std::uint16_t baudRateMask = 0; // bit 0 = 12 Mbit/s ... bit 9 = 9.6 kbit/s
    std::uint16_t maxTsdrMask = 0;
    std::uint32_t slaveFamily = 0;
    std::array<std::string_view, 3> subFamilies{};
    std::int32_t fixPresetModules = 0;
    std::int32_t isDpAsiLink = 0;
    std::int32_t isKgpDevice = 0;
    std::int32_t isPublisher = 0;
    std::int32_t isSubscriber = 0;
    std::int32_t isActive = 0;
    std::int32_t isMaster = 0;
    std::int32_t onlyNormalModules = 0;
    std::int32_t onlySpecialModules = 0;
    std::uint16_t eterDelay = 0;
    std::uint16_t maxResponseDelay = 0;
    std::int32_t offsetFirstMpdBlock = -1; // -1: not given
    KgpGui kgpGui;
    std::array<char, typefile::kBitmapName.width> bitmapDevice{'D', 'P', '_', 'N', 'O', 'R', 'M'};

    // Parameter data.
    std::uint8_t userPrmDataLen = 0;
    std::uint8_t maxUserPrmDataLen = 0;
    bool extPrmUsed = false;
    std::span<const std::uint8_t> userPrmData; // userPrmDataLen bytes once User_Prm_Data is read
    std::array<std::uint8_t, typefile::kMaxUserPrmBytes> extUserPrmData{};
    GSD_LIST<GSD_PRM_REF_ITEM> extUserPrmRefs;
    std::int32_t constPrmDataEnd = 0; // highest end of a constant of the station
    std::int32_t prmDataEnd = 0;      // highest end of a constant or reference of the station
    GSD_REFERENCE_LIST<GSD_EXT_PRM_DEF> extPrmDefs;
    GSD_REFERENCE_LIST<GSD_PRM_TEXT> prmTexts;

    // Modules and diagnostics.
    GSD_LIST<GSD_MODULE> modules;
    GSD_LIST<GSD_MODULE> kgpModules;
    std::int32_t nextParamModuleNumber = 1;
    std::uint16_t nextHelpTextNumber = 1;
    bool multiIdentifierModuleSeen = false;
    GSD_LIST<GSD_UNIT_DIAG_AREA> unitDiags;
    GSD_LIST<GSD_CHANNEL_DIAG> channelDiags;

    GSD_PRM_TEXT* findPrmText(std::uint32_t reference) const { return prmTexts.find(reference); }
    GSD_EXT_PRM_DEF* findExtPrmDef(std::uint32_t reference) const { return extPrmDefs.find(reference); }
};
