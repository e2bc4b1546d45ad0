// The check of category-I type data: the fixed block, the lengths and the way through the record groups.
//
// In: type-data position 0. Out: the type-data record, the flags of the device and the positions and counts of its
// groups, or the first code met. Every feature that a host cannot edit clears the changeable flag on the way.

#include "descriptor/cTypDescriptor.h"
#include "typefile/format.h"
#include "typefile/scan.h"
#include "typefile/stationTypes.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

using namespace typefile;

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

bool takeIoLength(char*& p, IoLength& length)
{
    char* end = p + kNumberDigits;
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
bool takeFileName(char*& p, char (&name)[Size])
{
    char* end = p + Size - 1;
    if (!takeTerminator(end))
        return false;
    copyField(name, p);
    p = end;
    return true;
}

} // namespace

int cTypDescriptor::checkSlaveTypeDataCatI(char* p)
{
    startTypeData();
    if (const int result = checkFixedBlock(p); result != kOk)
        return result;
    p += kMaxInputLen.position;
    if (const int result = checkLengthFields(p); result != kOk)
        return result;

    if (const int result = checkUserPara(p); result != kOk)
        return result;
    if (userPrmBytes != nullptr)
        std::memcpy(typeData.userPrmData, userPrmBytes,
                    static_cast<std::size_t>(typeData.userPrmDataLen) - kStandardPrmBytes);
    p = prmAreaEnd;
    if (const int result = checkPresetSlots(p); result != kOk)
        return result;
    dkmPos = p;
    if (const int result = checkSlaveTypeDataDKM(p, 0, &p); result != kOk)
        return result;

    typeData.maxDataLen = typeData.maxInputLen + typeData.maxOutputLen;
    if (hasVersion5Groups(header.version)) {
        if (const int result = checkVersion5Groups(p); result != kOk)
            return result;
    }
    typeDataEnd = p;
    return kOk;
}

/// What both categories begin with: a cleared record with the texts of the header.
void cTypDescriptor::startTypeData()
{
    typeData = SLAVE_TYPEDATA_TYPE();
    std::memcpy(typeData.modelName, header.modelName, sizeof typeData.modelName);
    std::memcpy(typeData.stationType, header.stationType, sizeof typeData.stationType);
    typeData.identNumber = header.identNumber;
}

int cTypDescriptor::checkFixedBlock(const char* p)
{
    for (std::size_t i = 0; i < kFixedTerminators; ++i) {
        if (!isTerminator(p + kTypeDataTerminators[i]))
            return kErrTypeData;
    }
    const int isChangeable = checkJNChar(p[kChangeable]);
    if (isChangeable < 0)
        return kErrTypeData;
    changeable = isChangeable;
    if (header.makerDevice == 1)
        typeData.features |= kFeatureMakerDevice;
    if (header.headerCnf == 1)
        typeData.features |= kFeatureHeaderCnf;

    int result = checkTelegramFlags(p);
    if (result == kOk)
        result = checkStationFlags(p);
    if (result == kOk)
        result = checkSpeeds(p);
    return result;
}

/// A J/N flag of a feature that a fixed-profile station does not have.
int cTypDescriptor::checkFeatureFlag(char c, uint32_t features)
{
    const int flag = checkJNChar(c);
    if (flag < 0)
        return kErrTypeData;
    if (flag == 0)
        return kOk;
    if (fixedProfileStation != 0)
        return kErrFixedProfile;
    typeData.features |= features;
    return kOk;
}

/// A letter other than J and N that stands for one feature beyond those.
bool cTypDescriptor::acceptFeatureLetter(char c, char letter, uint32_t feature)
{
    if (toUpper(c) != letter)
        return false;
    typeData.features |= feature;
    changeable = 0;
    return true;
}

int cTypDescriptor::checkTelegramFlags(const char* p)
{
    int result = checkFeatureFlag(p[kSetSlaveAddress], kFeatureSetSlaveAddress);
    if (result == kOk)
        result = checkFeatureFlag(p[kSyncMode], kFeatureSyncMode);
    if (result == kOk)
        result = checkFeatureFlag(p[kFreezeMode], kFeatureFreezeMode);
    const char role = p[kPublisherSubscriber];
    if (result == kOk && !acceptFeatureLetter(role, 'P', kFeaturePublisher) &&
        !acceptFeatureLetter(role, 'S', kFeatureSubscriber))
        result = checkFeatureFlag(role, kFeaturePublisher | kFeatureSubscriber);
    if (result == kOk)
        result = checkFeatureFlag(p[kDiagBufferable], kFeatureDiagBufferable);
    if (result == kOk && !acceptFeatureLetter(p[kActiveMaster], 'M', kFeatureMaster))
        result = checkFeatureFlag(p[kActiveMaster], kFeatureActive);
    return result;
}

int cTypDescriptor::checkStationFlags(const char* p)
{
    const int isEven = checkJNChar(p[kEvenSlotNumber]);
    if (isEven < 0)
        return kErrTypeData;
    if (isEven == 0 && fixedProfileStation != 0)
        return kErrFixedProfile;
    if (isEven == 1)
        typeData.features |= kFeatureEvenSlotNumber;

    if (!readAsicType(p[kAsicCode], typeData.asicType))
        return kErrTypeData;
    const int isModularStation = checkJNChar(p[kModular]);
    if (isModularStation < 0)
        return kErrTypeData;
    modular = isModularStation;
    if (!acceptFeatureLetter(p[kFailSafe], 'J', kFeatureFailSafe) && checkJNChar(p[kFailSafe]) < 0)
        return kErrTypeData;
    const char kinds = p[kModuleKinds];
    if (!acceptFeatureLetter(kinds, 'E', kFeatureOnlyNormal) && !acceptFeatureLetter(kinds, 'S', kFeatureOnlySpecial) &&
        checkJNChar(kinds) != 0)
        return kErrTypeData;

    if (header.makerDevice == 1 || kStationDpsClass1 != header.stationType)
        changeable = 0;
    if (dpAsiStation != 0)
        typeData.features |= kFeatureDpAsiLink;
    if (kgpStation != 0)
        typeData.features |= kFeatureKgp;
    return kOk;
}

int cTypDescriptor::checkSpeeds(const char* p)
{
    const int interval = numberAt(p + kSlaveInterval.position, kSlaveInterval.width);
    if (!isWithin(interval, 0, kMaxSlaveInterval))
        return kErrSlaveInterval;
    if (fixedProfileStation != 0 && interval != kProfileSlaveInterval)
        return kErrFixedProfile;
    typeData.minSlaveInterval = static_cast<uint16_t>(interval);

    unsigned rates = 0;
    if (!readBaudRates(p + kBaudRates.position, rates))
        return kErrTypeData;
    if (rates == 0)
        return kErrBaudRates;
    if (fixedProfileStation != 0 && rates != kProfileBaudRates)
        return kErrFixedProfile;
    typeData.baudRates = static_cast<uint16_t>(rates);
    return kOk;
}

int cTypDescriptor::checkLengthFields(char*& p)
{
    if (const int result = checkIoLength(p, kErrInputLen, typeData.maxInputLen, typeData.maxInputBits); result != kOk)
        return result;
    if (const int result = checkIoLength(p, kErrOutputLen, typeData.maxOutputLen, typeData.maxOutputBits);
        result != kOk)
        return result;
    if (typeData.maxInputLen == 0 && typeData.maxOutputLen == 0)
        return kErrNoData;

    if (!takeNumberRecord(p, typeData.maxModule))
        return kErrTypeData;
    const bool isEvenRequired = (typeData.features & kFeatureEvenSlotNumber) != 0;
    if (!isWithin(typeData.maxModule, 0, kMaxModules) || (isEvenRequired && typeData.maxModule % 2 != 0))
        return kErrMaxModule;
    if (fixedProfileStation != 0 && typeData.maxModule != kProfileModules)
        return kErrFixedProfile;

    if (!takeNumberRecord(p, typeData.maxDiagDataLen))
        return kErrTypeData;
    if (!isWithin(typeData.maxDiagDataLen, kMinDiagLen, kMaxDiagLenValue))
        return kErrDiagLen;

    slotPrmMode = *p == kSlotPrmMode ? 1 : 0;
    if (slotPrmMode != 0) {
        changeable = 0;
        ++p;
    }
    if (!takeNumberRecord(p, typeData.userPrmDataLen))
        return kErrTypeData;
    if (!isWithin(typeData.userPrmDataLen, kStandardPrmBytes, kMaxPrmTelegram))
        return kErrPrmLen;
    if (fixedProfileStation != 0 && typeData.userPrmDataLen != kProfilePrmLen)
        return kErrFixedProfile;
    typeData.userPrmDataLenRead = typeData.userPrmDataLen;
    return kOk;
}

int cTypDescriptor::checkIoLength(char*& p, int code, int32_t& bytes, int32_t& bits)
{
    IoLength length;
    const bool isTaken = takeIoLength(p, length);
    if (length.isInBits)
        changeable = 0;
    if (!isTaken)
        return kErrTypeData;
    if (length.bits < 0 || !isWithin(length.bytes, 0, kMaxIoLen))
        return code;
    if (fixedProfileStation != 0 && length.bytes != kProfileIoLen)
        return kErrFixedProfile;
    bytes = length.bytes;
    bits = length.bits;
    return kOk;
}

int cTypDescriptor::checkVersion5Groups(char*& p)
{
    dkkPos = p;
    if (const int result = checkSlaveTypeDataDKM(p, 1, &p); result != kOk)
        return result;
    if (!takeFileName(p, bitmapName))
        return kErrBitmapName;
    if (bitmapName != kDefaultBitmap)
        changeable = 0;
    if (!takeFileName(p, libraryName))
        return kErrLibraryName;
    if (libraryName != kDefaultLibrary)
        changeable = 0;
    if (!takeRecordHead(p, kTagSlotOffset, slotOffset))
        return kErrSlotNumbering;
    if (slotOffset != 0)
        changeable = 0;
    if (const int result = checkSlotNumbering(p, &p); result != kOk)
        return result;

    const int ioLen = typeData.maxInputLen + typeData.maxOutputLen;
    if (!takeNumberRecord(p, typeData.maxDataLen) || typeData.maxDataLen < 1 || typeData.maxDataLen > ioLen)
        return kErrMaxDataLen;
    if (typeData.maxDataLen != ioLen)
        changeable = 0;
    if (const int result = checkModuleGroups(p); result != kOk)
        return result;
    if (const int result = checkStationRules(); result != kOk)
        return result;
    return checkDelays(p);
}

/// Everything about the modules and their parameters.
int cTypDescriptor::checkModuleGroups(char*& p)
{
    if (const int result = checkSlaveTypeDataMLFBList(p, &p); result != kOk)
        return result;
    if (const int result = checkSlaveTypeDataLSK(p, &p); result != kOk)
        return result;
    if (!takeNumberRecord(p, typeData.commonPrmDataLen) || !isWithin(typeData.commonPrmDataLen, 0, kMaxCommonPrmLen))
        return kErrCommonPrmLen;
    if (typeData.commonPrmDataLen != 0)
        changeable = 0;
    if (const int result = checkSlaveTypeDataSPT(p, &p); result != kOk)
        return result;
    if (const int result = checkSlaveTypeDataSPTHelp(p, &p); result != kOk)
        return result;
    if (const int result = checkSPLinksInMLFBAndLSKList(); result < 0)
        return result;
    if (slotPrmMode != 0)
        typeData.userPrmDataLen = typeData.commonPrmDataLen + static_cast<int>(kStandardPrmBytes);
    return kOk;
}

int cTypDescriptor::checkStationRules()
{
    if (dpAsiStation != 0) {
        const bool isGateway = slotPrmMode == 0 && vFlag == 0 && presetCount == kGatewayPresetSlots &&
                               typeData.maxInputLen == kGatewayIoLen && typeData.maxOutputLen == kGatewayIoLen &&
                               typeData.maxModule == kGatewayModules && typeData.userPrmDataLen == kGatewayPrmLen &&
                               (typeData.features & kFeatureEvenSlotNumber) == 0 &&
                               (typeData.features & kFeatureHeaderCnf) != 0;
        if (!isGateway)
            return kErrTypeData;
    }
    if (kgpStation != 0) {
        if (slotPrmMode == 0 || vFlag != 0 || moduleListCount != 0)
            return kErrTypeData;
        if (presetCount != typeData.slotCount)
            return kErrSlotNumbering;
        typeData.kgpDevice = kgpDeviceValue;
    }
    return kOk;
}

/// The two delays, which came with minor version 1.
int cTypDescriptor::checkDelays(char*& p)
{
    const char minor = header.version[kMinorVersion];
    if (!isDigit(minor) || minor == '0')
        return kOk;
    changeable = 0;
    if (!takeRecordHead(p, kTagEterDelay, typeData.eterDelay))
        return kErrTypeData;
    if (!takeRecordHead(p, kTagResponseDelay, typeData.maxResponseDelay) ||
        typeData.maxResponseDelay > kMaxResponseDelay)
        return kErrTypeData;
    return kOk;
}
