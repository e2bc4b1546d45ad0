// The check of category-I type data: the fixed block, the lengths and the way through the record groups.
//
// In: type-data position 0. Out: the type-data record, the flags of the device and the positions and counts of its
// groups, or the first code met. Every feature that a host cannot edit clears the changeable flag on the way.

#include "typefile/format.h"
#include "typefile/headerFlags.h"
#include "typefile/scan.h"
#include "typefile/stationTypes.h"
#include "typefile/typeFile.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

namespace typdescriptor::internal {

namespace {

// The one hardware profile of a fixed-profile station; it has none of the optional features.
constexpr int kProfileSlaveInterval = 20;
constexpr unsigned kProfileBaudRates = 0x5F; // 9.6 k to 500 k and 1.5 M
constexpr int kProfileIoLen = 32;
constexpr int kProfileModules = 32;
constexpr int kProfilePrmLen = 7;

constexpr unsigned kMaxSlaveInterval = 999;
constexpr int kBitsPerByte = 8;

// What a DP/AS-i gateway must be.
constexpr int kGatewayPresetSlots = 3;
constexpr int kGatewayIoLen = 16;
constexpr int kGatewayModules = 4;
constexpr int kGatewayPrmLen = 140;

constexpr int kMaxResponseDelay = 100;

bool readAsicType(char c, int32_t& asicType)
{
    const char code = toUpper(c);
    if (code == 'N')
        asicType = 'N';
    else if (code >= '0' && code <= '4')
        asicType = code - '0';
    else
        return false;
    return true;
}

bool readBaudRates(const char* p, unsigned& rates)
{
    rates = 0;
    for (std::size_t i = 0; i < kBaudRates.width; ++i) {
        if (p[i] != '0' && p[i] != '1')
            return false;
        rates = rates << 1 | (p[i] == '1' ? 1U : 0U);
    }
    return true;
}

/// A length in one direction, given in bytes or in bits.
struct IoLength {
    int bytes = 0;
    int bits = 0;
    bool isInBits = false;
};

bool takeIoLength(Cursor& p, IoLength& length)
{
    Cursor end = p + kNumberDigits;
    length.isInBits = takeText(end, kBitUnit);
    if (!takeTerminator(end))
        return false;
    const int number = numberAt(p);
    length.bits = length.isInBits ? number : number * kBitsPerByte;
    length.bytes = length.isInBits ? (number + kBitsPerByte - 1) / kBitsPerByte : number;
    p = end;
    return true;
}

/// A file name of fixed width.
template <std::size_t Size>
bool takeFileName(Cursor& p, char (&name)[Size])
{
    Cursor end = p + Size - 1;
    if (!takeTerminator(end))
        return false;
    copyField(name, p);
    p = end;
    return true;
}

bool isFixedProfile(const TypeFile& file)
{
    return file.station == StationKind::kFixedProfile;
}

/// A J/N flag of a feature that a fixed-profile station does not have.
int checkFeatureFlag(char c, uint32_t features, TypeFile& file)
{
    const int flag = checkJNChar(c);
    if (flag < 0)
        return kErrTypeData;
    if (flag == 0)
        return kOk;
    if (isFixedProfile(file))
        return kErrFixedProfile;
    file.typeData.features |= features;
    return kOk;
}

/// A letter other than J and N that stands for one feature beyond those.
bool acceptFeatureLetter(char c, char letter, uint32_t feature, TypeFile& file)
{
    if (toUpper(c) != letter)
        return false;
    file.typeData.features |= feature;
    file.isChangeable = false;
    return true;
}

int checkTelegramFlags(Cursor p, TypeFile& file)
{
    int result = checkFeatureFlag(p[kSetSlaveAddress], kFeatureSetSlaveAddress, file);
    if (result == kOk)
        result = checkFeatureFlag(p[kSyncMode], kFeatureSyncMode, file);
    if (result == kOk)
        result = checkFeatureFlag(p[kFreezeMode], kFeatureFreezeMode, file);
    const char role = p[kPublisherSubscriber];
    if (result == kOk && !acceptFeatureLetter(role, 'P', kFeaturePublisher, file) &&
        !acceptFeatureLetter(role, 'S', kFeatureSubscriber, file))
        result = checkFeatureFlag(role, kFeaturePublisher | kFeatureSubscriber, file);
    if (result == kOk)
        result = checkFeatureFlag(p[kDiagBufferable], kFeatureDiagBufferable, file);
    if (result == kOk && !acceptFeatureLetter(p[kActiveMaster], 'M', kFeatureMaster, file))
        result = checkFeatureFlag(p[kActiveMaster], kFeatureActive, file);
    return result;
}

int checkStationFlags(Cursor p, TypeFile& file)
{
    const int isEven = checkJNChar(p[kEvenSlotNumber]);
    if (isEven < 0)
        return kErrTypeData;
    if (isEven == 0 && isFixedProfile(file))
        return kErrFixedProfile;
    if (isEven == 1)
        file.typeData.features |= kFeatureEvenSlotNumber;

    if (!readAsicType(p[kAsicCode], file.typeData.asicType))
        return kErrTypeData;
    const int isModularStation = checkJNChar(p[kModular]);
    if (isModularStation < 0)
        return kErrTypeData;
    file.isModular = isModularStation != 0;
    if (!acceptFeatureLetter(p[kFailSafe], 'J', kFeatureFailSafe, file) && checkJNChar(p[kFailSafe]) < 0)
        return kErrTypeData;
    const char kinds = p[kModuleKinds];
    if (!acceptFeatureLetter(kinds, 'E', kFeatureOnlyNormal, file) &&
        !acceptFeatureLetter(kinds, 'S', kFeatureOnlySpecial, file) && checkJNChar(kinds) != 0)
        return kErrTypeData;

    if (file.header.makerDevice == 1 || kStationDpsClass1 != file.header.stationType)
        file.isChangeable = false;
    if (file.station == StationKind::kDpAsi)
        file.typeData.features |= kFeatureDpAsiLink;
    if (file.station == StationKind::kKgp)
        file.typeData.features |= kFeatureKgp;
    return kOk;
}

int checkSpeeds(Cursor p, TypeFile& file)
{
    const int interval = numberAt(p + kSlaveInterval.position, kSlaveInterval.width);
    if (!isWithin(interval, 0, kMaxSlaveInterval))
        return kErrSlaveInterval;
    if (isFixedProfile(file) && interval != kProfileSlaveInterval)
        return kErrFixedProfile;
    file.typeData.minSlaveInterval = static_cast<uint16_t>(interval);

    unsigned rates = 0;
    if (!readBaudRates(p + kBaudRates.position, rates))
        return kErrTypeData;
    if (rates == 0)
        return kErrBaudRates;
    if (isFixedProfile(file) && rates != kProfileBaudRates)
        return kErrFixedProfile;
    file.typeData.baudRates = static_cast<uint16_t>(rates);
    return kOk;
}

int checkFixedBlock(Cursor p, TypeFile& file)
{
    for (std::size_t i = 0; i < kFixedTerminators; ++i) {
        if (!isTerminator(p + kTypeDataTerminators[i]))
            return kErrTypeData;
    }
    const int isChangeable = checkJNChar(p[kChangeable]);
    if (isChangeable < 0)
        return kErrTypeData;
    file.isChangeable = isChangeable != 0;
    if (file.header.makerDevice == 1)
        file.typeData.features |= kFeatureMakerDevice;
    if (file.header.headerCnf == 1)
        file.typeData.features |= kFeatureHeaderCnf;

    int result = checkTelegramFlags(p, file);
    if (result == kOk)
        result = checkStationFlags(p, file);
    if (result == kOk)
        result = checkSpeeds(p, file);
    return result;
}

int checkIoLength(Cursor& p, int code, int32_t& bytes, int32_t& bits, TypeFile& file)
{
    IoLength length;
    const bool isTaken = takeIoLength(p, length);
    if (length.isInBits)
        file.isChangeable = false;
    if (!isTaken)
        return kErrTypeData;
    if (length.bits < 0 || !isWithin(length.bytes, 0, kMaxIoLen))
        return code;
    if (isFixedProfile(file) && length.bytes != kProfileIoLen)
        return kErrFixedProfile;
    bytes = length.bytes;
    bits = length.bits;
    return kOk;
}

int checkLengthFields(Cursor& p, TypeFile& file)
{
    if (const int result = checkIoLength(p, kErrInputLen, file.typeData.maxInputLen, file.typeData.maxInputBits, file);
        result != kOk)
        return result;
    if (const int result =
            checkIoLength(p, kErrOutputLen, file.typeData.maxOutputLen, file.typeData.maxOutputBits, file);
        result != kOk)
        return result;
    if (file.typeData.maxInputLen == 0 && file.typeData.maxOutputLen == 0)
        return kErrNoData;

    if (!takeNumberRecord(p, file.typeData.maxModule))
        return kErrTypeData;
    const bool isEvenRequired = (file.typeData.features & kFeatureEvenSlotNumber) != 0;
    if (!isWithin(file.typeData.maxModule, 0, kMaxModules) || (isEvenRequired && file.typeData.maxModule % 2 != 0))
        return kErrMaxModule;
    if (isFixedProfile(file) && file.typeData.maxModule != kProfileModules)
        return kErrFixedProfile;

    if (!takeNumberRecord(p, file.typeData.maxDiagDataLen))
        return kErrTypeData;
    if (!isWithin(file.typeData.maxDiagDataLen, kMinDiagBytes, kMaxDiagBytes))
        return kErrDiagLen;

    file.isSlotPrmMode = *p == kSlotPrmMode;
    if (file.isSlotPrmMode) {
        file.isChangeable = false;
        ++p;
    }
    if (!takeNumberRecord(p, file.typeData.userPrmDataLen))
        return kErrTypeData;
    if (!isWithin(file.typeData.userPrmDataLen, kStandardPrmBytes, kMaxPrmTelegram))
        return kErrPrmLen;
    if (isFixedProfile(file) && file.typeData.userPrmDataLen != kProfilePrmLen)
        return kErrFixedProfile;
    file.typeData.userPrmDataLenRead = file.typeData.userPrmDataLen;
    return kOk;
}

/// Everything about the modules and their parameters.
int checkModuleGroups(Cursor& p, TypeFile& file, const std::vector<int>& presetNumbers)
{
    if (const int result = checkSlaveTypeDataMLFBList(p, file); result != kOk)
        return result;
    if (const int result = checkSlaveTypeDataLSK(p, file); result != kOk)
        return result;
    if (!takeNumberRecord(p, file.typeData.commonPrmDataLen) ||
        !isWithin(file.typeData.commonPrmDataLen, 0, kMaxCommonPrmLen))
        return kErrCommonPrmLen;
    if (file.typeData.commonPrmDataLen != 0)
        file.isChangeable = false;
    if (const int result = checkSlaveTypeDataSPT(p, file); result != kOk)
        return result;
    if (const int result = checkSlaveTypeDataSPTHelp(p, file); result != kOk)
        return result;
    if (const int result = checkSPLinksInMLFBAndLSKList(file, presetNumbers); result < 0)
        return result;
    if (file.isSlotPrmMode)
        file.typeData.userPrmDataLen = file.typeData.commonPrmDataLen + static_cast<int>(kStandardPrmBytes);
    return kOk;
}

int checkStationRules(TypeFile& file)
{
    if (file.station == StationKind::kDpAsi) {
        const bool isGateway =
            !file.isSlotPrmMode && !file.presetCode.fixed &&
            static_cast<int>(file.presetSlots.size()) == kGatewayPresetSlots &&
            file.typeData.maxInputLen == kGatewayIoLen && file.typeData.maxOutputLen == kGatewayIoLen &&
            file.typeData.maxModule == kGatewayModules && file.typeData.userPrmDataLen == kGatewayPrmLen &&
            (file.typeData.features & kFeatureEvenSlotNumber) == 0 && (file.typeData.features & kFeatureHeaderCnf) != 0;
        if (!isGateway)
            return kErrTypeData;
    }
    if (file.station == StationKind::kKgp) {
        if (!file.isSlotPrmMode || file.presetCode.fixed || !file.moduleLists.empty())
            return kErrTypeData;
        if (static_cast<int>(file.presetSlots.size()) != file.typeData.slotCount)
            return kErrSlotNumbering;
        file.typeData.kgpDevice = 1;
    }
    return kOk;
}

/// The two delays, which came with minor version 1.
int checkDelays(Cursor& p, TypeFile& file)
{
    const char minor = file.header.version[kMinorVersion];
    if (!isDigit(minor) || minor == '0')
        return kOk;
    file.isChangeable = false;
    if (!takeRecordHead(p, kTagEterDelay, file.typeData.eterDelay))
        return kErrTypeData;
    if (!takeRecordHead(p, kTagResponseDelay, file.typeData.maxResponseDelay) ||
        file.typeData.maxResponseDelay > kMaxResponseDelay)
        return kErrTypeData;
    return kOk;
}

int checkVersion5Groups(Cursor& p, TypeFile& file, const std::vector<int>& presetNumbers)
{
    if (const int result = checkSlaveTypeDataDKM(p, 1, file); result != kOk)
        return result;
    if (!takeFileName(p, file.bitmapName))
        return kErrBitmapName;
    if (file.bitmapName != kDefaultBitmap)
        file.isChangeable = false;
    if (!takeFileName(p, file.libraryName))
        return kErrLibraryName;
    if (file.libraryName != kDefaultLibrary)
        file.isChangeable = false;
    if (!takeRecordHead(p, kTagSlotOffset, file.slotOffset))
        return kErrSlotNumbering;
    if (file.slotOffset != 0)
        file.isChangeable = false;
    if (const int result = checkSlotNumbering(p, file); result != kOk)
        return result;

    const int ioLen = file.typeData.maxInputLen + file.typeData.maxOutputLen;
    if (!takeNumberRecord(p, file.typeData.maxDataLen) || file.typeData.maxDataLen < 1 ||
        file.typeData.maxDataLen > ioLen)
        return kErrMaxDataLen;
    if (file.typeData.maxDataLen != ioLen)
        file.isChangeable = false;
    if (const int result = checkModuleGroups(p, file, presetNumbers); result != kOk)
        return result;
    if (const int result = checkStationRules(file); result != kOk)
        return result;
    return checkDelays(p, file);
}

} // namespace

/// What both categories begin with: a cleared record with the texts of the file.header.
void startTypeData(TypeFile& file)
{
    file.typeData = SLAVE_TYPEDATA_TYPE();
    std::memcpy(file.typeData.modelName, file.header.modelName, sizeof file.typeData.modelName);
    std::memcpy(file.typeData.stationType, file.header.stationType, sizeof file.typeData.stationType);
    file.typeData.identNumber = file.header.identNumber;
}

int checkSlaveTypeDataCatI(Cursor p, TypeFile& file)
{
    startTypeData(file);
    SLAVE_TYPEDATA_TYPE& data = file.typeData;
    if (const int result = checkFixedBlock(p, file); result != kOk)
        return result;
    p += kMaxInputLen.position;
    if (const int result = checkLengthFields(p, file); result != kOk)
        return result;

    if (const int result = checkUserPara(p, file); result != kOk)
        return result;
    std::copy(file.userPrm.begin(), file.userPrm.end(), data.userPrmData);
    std::vector<int> presetNumbers;
    if (const int result = checkPresetSlots(p, file, presetNumbers); result != kOk)
        return result;
    if (const int result = checkSlaveTypeDataDKM(p, 0, file); result != kOk)
        return result;

    data.maxDataLen = data.maxInputLen + data.maxOutputLen;
    if (hasVersion5Groups(file.header.version)) {
        if (const int result = checkVersion5Groups(p, file, presetNumbers); result != kOk)
            return result;
    }
    file.end = p;
    return kOk;
}

} // namespace typdescriptor::internal
