// The GSD model: what the keyword lines of one GSD file say. The keyword handlers fill it, the generator reads it.

#pragma once

#include "generator/arena.h"
#include "generator/elements.h"
#include "generator/families.h"
#include "generator/list.h"
#include "typefile/format.h"
#include "typefile/stationTypes.h"

#include <array>
#include <cstdint>
#include <ctime>
#include <span>
#include <string_view>

namespace typdescriptor::internal {

/// The KGPGui value.
struct KgpGui {
    std::array<std::uint8_t, 3> bytes{};
    std::string_view text; // at most 2 characters
    bool given = false;
};

struct GsdModel {
    Arena arena;       // of everything below that is appended or kept
    std::tm started{}; // when the compilation began, local time
    std::uint32_t gsdRevision = 0;

    // Head line and header; no text is longer than its field.
    std::string_view orderNumber;
    std::string_view modelName;
    std::string_view vendorName;
    std::string_view family = kFamilyNames[0][0]; // of a file without Slave_Family, whatever its language
    std::string_view periphery;
    std::string_view stationType = kStationDpsClass1;
    std::uint16_t identNumber = 0;
    bool isMakersDevice = false;
    char headerCnf = 'J';

    // General properties.
    bool setSlaveAddress = false;
    bool syncMode = false;
    bool freezeMode = false;
    bool isPublisher = false;
    bool isSubscriber = false;
    bool diagBufferable = false;
    bool isActive = false;
    bool isMaster = false;
    bool evenSlotNumber = false;
    bool modularStation = false;
    bool failSafe = false;
    bool onlyNormalModules = false;
    bool onlySpecialModules = false;
    bool fixPresetModules = false;
    bool isDpAsiLink = false;
    bool isKgpDevice = false;
    char asicCode = 'N';
    std::uint16_t baudRates = 0; // bit 0 = 12 Mbit/s ... bit 9 = 9.6 kbit/s
    std::uint16_t minSlaveInterval = 0;
    std::uint16_t maxModule = 0;
    std::uint16_t maxInputLen = kMaxIoLen;
    std::uint16_t maxOutputLen = kMaxIoLen;
    std::uint16_t maxDataLen = 0;
    std::uint8_t maxDiagDataLen = kMaxDiagBytes;
    std::uint8_t modulOffset = 0;
    std::uint16_t eterDelay = 0;
    std::uint16_t maxResponseDelay = 0;
    std::int32_t offsetFirstMpdBlock = -1; // -1: not given
    KgpGui kgpGui;
    std::string_view bitmapDevice = kDefaultBitmap;

    // Parameter data.
    std::uint8_t userPrmDataLen = 0;
    std::uint8_t maxUserPrmDataLen = 0;
    bool extPrmUsed = false;
    std::span<std::uint8_t> userPrmData; // userPrmDataLen bytes once User_Prm_Data is read
    std::array<std::uint8_t, kMaxUserPrmBytes> extUserPrmData{};
    GSD_LIST<GSD_PRM_REF_ITEM> extUserPrmRefs;
    std::int32_t constPrmDataEnd = 0; // highest end of a constant of the station
    std::int32_t prmDataEnd = 0;      // highest end of a constant or reference of the station
    GSD_REFERENCE_LIST<GSD_EXT_PRM_DEF> extPrmDefs;
    GSD_REFERENCE_LIST<GSD_PRM_TEXT> prmTexts;

    // Modules and diagnostics.
    GSD_LIST<GSD_MODULE> modules;
    GSD_LIST<GSD_MODULE> kgpModules;
    GSD_LIST<GSD_MODULE_PRM> modulePrms; // in the order of their modules
    GSD_LIST<GSD_MODULE_PRM> kgpModulePrms;
    std::int32_t nextParamModuleNumber = 1;
    std::uint16_t nextHelpTextNumber = 1;
    bool multiIdentifierModuleSeen = false;
    GSD_LIST<GSD_UNIT_DIAG_AREA> unitDiags;
    GSD_LIST<GSD_CHANNEL_DIAG> channelDiags;

    GSD_PRM_TEXT* findPrmText(std::uint32_t reference) const { return prmTexts.find(reference); }
    GSD_EXT_PRM_DEF* findExtPrmDef(std::uint32_t reference) const { return extPrmDefs.find(reference); }
};

} // namespace typdescriptor::internal
