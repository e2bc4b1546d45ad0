// The check of category-I type data: the fixed block, the lengths and the way through the record groups.
//
// In: type-data position 0. Out: the type-data record, the flags of the device and the positions and counts of its
// groups, or the first code met. Every feature that a host cannot edit clears the changeable flag on the way.

#include "typefile/typeFile.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <initializer_list>
#include <span>
#include <string_view>

namespace typdescriptor::internal {

namespace {

// The one hardware profile of a fixed-profile station; it has none of the optional features.
constexpr int kProfileSlaveInterval = 20;
constexpr unsigned kProfileBaudRates = 0x5F; // 9.6 k to 500 k and 1.5 M
constexpr int kProfileIoLen = 32;
constexpr int kProfileModules = 32;
constexpr int kProfilePrmLen = 7;

constexpr unsigned kMaxSlaveInterval = 999;

// What a DP/AS-i gateway must be.
constexpr int kGatewayPresetSlots = 3;
constexpr int kGatewayIoLen = 16;
constexpr int kGatewayModules = 4;
constexpr int kGatewayPrmLen = 140;

constexpr int kMaxResponseDelay = 100;
constexpr int kBitsPerByte = 8;

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

bool isFixedProfile(const TypeFile& file)
{
    return file.station == StationKind::kFixedProfile;
}

/// What a letter at a place of the fixed block stands for; "N" stands for nothing anywhere.
struct FeatureLetter {
    std::size_t position;
    char letter;
    uint32_t features;
    bool isPlain; // hosts can edit it, and a fixed-profile station does not have it
};

constexpr std::array<FeatureLetter, 12> kFeatureLetters{{
    {kSetSlaveAddress, 'J', kFeatureSetSlaveAddress, true},
    {kSyncMode, 'J', kFeatureSyncMode, true},
    {kFreezeMode, 'J', kFeatureFreezeMode, true},
    {kPublisherSubscriber, 'J', kFeaturePublisher | kFeatureSubscriber, true},
    {kPublisherSubscriber, 'P', kFeaturePublisher, false},
    {kPublisherSubscriber, 'S', kFeatureSubscriber, false},
    {kDiagBufferable, 'J', kFeatureDiagBufferable, true},
    {kActiveMaster, 'J', kFeatureActive, true},
    {kActiveMaster, 'M', kFeatureMaster, false},
    {kFailSafe, 'J', kFeatureFailSafe, false},
    {kModuleKinds, 'E', kFeatureOnlyNormal, false},
    {kModuleKinds, 'S', kFeatureOnlySpecial, false},
}};

int checkFeatures(Cursor p, std::initializer_list<std::size_t> positions, TypeFile& file)
{
    for (const std::size_t position : positions) {
        const char letter = toUpper(p[position]);
        const auto* const known =
            std::find_if(kFeatureLetters.begin(), kFeatureLetters.end(),
                         [=](const FeatureLetter& one) { return one.position == position && one.letter == letter; });
        if (known == kFeatureLetters.end()) {
            if (letter != 'N')
                return kErrTypeData;
            continue;
        }
        if (known->isPlain && isFixedProfile(file))
            return kErrFixedProfile;
        file.changeableOnlyIf(known->isPlain);
        file.typeData.features |= known->features;
    }
    return kOk;
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
    if (checkFeatures(p, {kFailSafe, kModuleKinds}, file) != kOk)
        return kErrTypeData;

    file.changeableOnlyIf(file.header.makerDevice != 1 && kStationDpsClass1 == file.header.stationType);
    if (file.station == StationKind::kDpAsi)
        file.typeData.features |= kFeatureDpAsiLink;
    if (file.station == StationKind::kKgp)
        file.typeData.features |= kFeatureKgp;
    return kOk;
}

int checkSpeeds(Cursor p, TypeFile& file)
{
    const int interval = numberAt(p, kSlaveInterval);
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

int checkFixedBlock(Cursor& p, TypeFile& file)
{
    for (std::size_t i = 0; i < kFixedTerminators; ++i) {
        if (!isTerminator(p + kTypeDataTerminators[i]))
            return kErrTypeData;
    }
    const int isChangeable = checkJNChar(p[kChangeable]);
    if (isChangeable < 0)
        return kErrTypeData;
    file.isChangeable = isChangeable != 0;
    if (file.header.headerCnf == 1)
        file.typeData.features |= kFeatureHeaderCnf;

    int result = checkFeatures(
        p, {kSetSlaveAddress, kSyncMode, kFreezeMode, kPublisherSubscriber, kDiagBufferable, kActiveMaster}, file);
    if (result == kOk)
        result = checkStationFlags(p, file);
    if (result == kOk)
        result = checkSpeeds(p, file);
    p += kMaxInputLen.position;
    return result;
}

/// A length in one direction, given in bytes or in bits.
int checkIoLength(Cursor& p, int code, int32_t& bytes, int32_t& bits, TypeFile& file)
{
    const int number = numberAt(p);
    p += kNumberDigits;
    const bool isInBits = takeText(p, kBitUnit);
    file.changeableOnlyIf(!isInBits);
    if (!takeTerminator(p))
        return kErrTypeData;
    bits = isInBits ? number : number * kBitsPerByte;
    bytes = isInBits ? (number + kBitsPerByte - 1) / kBitsPerByte : number;
    if (bits < 0 || !isWithin(bytes, 0, kMaxIoLen))
        return code;
    return isFixedProfile(file) && bytes != kProfileIoLen ? kErrFixedProfile : kOk;
}

int checkIoLengths(Cursor& p, TypeFile& file)
{
    SLAVE_TYPEDATA_TYPE& data = file.typeData;
    int result = checkIoLength(p, kErrInputLen, data.maxInputLen, data.maxInputBits, file);
    if (result == kOk)
        result = checkIoLength(p, kErrOutputLen, data.maxOutputLen, data.maxOutputBits, file);
    data.maxDataLen = data.maxInputLen + data.maxOutputLen;
    return result == kOk && data.maxDataLen == 0 ? kErrNoData : result;
}

int checkMaxModule(Cursor& p, TypeFile& file)
{
    int32_t& count = file.typeData.maxModule;
    if (!takeNumberRecord(p, count))
        return kErrTypeData;
    if (!isWithin(count, 0, kMaxModules) || (file.has(kFeatureEvenSlotNumber) && count % 2 != 0))
        return kErrMaxModule;
    return isFixedProfile(file) && count != kProfileModules ? kErrFixedProfile : kOk;
}

int checkMaxDiagLen(Cursor& p, TypeFile& file)
{
    if (!takeNumberRecord(p, file.typeData.maxDiagDataLen))
        return kErrTypeData;
    return isWithin(file.typeData.maxDiagDataLen, kMinDiagBytes, kMaxDiagBytes) ? kOk : kErrDiagLen;
}

int checkUserPrmLen(Cursor& p, TypeFile& file)
{
    file.isSlotPrmMode = *p == kSlotPrmMode;
    file.changeableOnlyIf(!file.isSlotPrmMode);
    p += file.isSlotPrmMode ? 1 : 0;
    int32_t& length = file.typeData.userPrmDataLen;
    if (!takeNumberRecord(p, length))
        return kErrTypeData;
    if (!isWithin(length, kStandardPrmBytes, kMaxPrmTelegram))
        return kErrPrmLen;
    file.typeData.userPrmDataLenRead = length;
    return isFixedProfile(file) && length != kProfilePrmLen ? kErrFixedProfile : kOk;
}

/// A file name of fixed width.
template <std::size_t Size>
int checkFileName(Cursor& p, TypeFile& file, char (&name)[Size], std::string_view usual, int code)
{
    copyField(name, p);
    if (!takeRecord(p, Size - 1))
        return code;
    file.changeableOnlyIf(name == usual);
    return kOk;
}

int checkFileNames(Cursor& p, TypeFile& file)
{
    const int result = checkFileName(p, file, file.bitmapName, kDefaultBitmap, kErrBitmapName);
    return result == kOk ? checkFileName(p, file, file.libraryName, kDefaultLibrary, kErrLibraryName) : result;
}

int checkSlotOffset(Cursor& p, TypeFile& file)
{
    if (!takeRecordHead(p, kTagSlotOffset, file.slotOffset))
        return kErrSlotNumbering;
    file.changeableOnlyIf(file.slotOffset == 0);
    return kOk;
}

int checkMaxDataLen(Cursor& p, TypeFile& file)
{
    const int ioLen = file.typeData.maxInputLen + file.typeData.maxOutputLen;
    int32_t& length = file.typeData.maxDataLen;
    if (!takeNumberRecord(p, length) || length < 1 || length > ioLen)
        return kErrMaxDataLen;
    file.changeableOnlyIf(length == ioLen);
    return kOk;
}

int checkCommonPrmLen(Cursor& p, TypeFile& file)
{
    int32_t& length = file.typeData.commonPrmDataLen;
    if (!takeNumberRecord(p, length) || !isWithin(length, 0, kMaxCommonPrmLen))
        return kErrCommonPrmLen;
    file.changeableOnlyIf(length == 0);
    if (file.isSlotPrmMode)
        file.typeData.userPrmDataLen = length + static_cast<int>(kStandardPrmBytes);
    return kOk;
}

int checkStationRules(TypeFile& file)
{
    const SLAVE_TYPEDATA_TYPE& data = file.typeData;
    const auto presetSlots = static_cast<int>(file.presetSlots.size());
    if (file.station == StationKind::kDpAsi) {
        const bool isGateway = !file.isSlotPrmMode && !file.presetCode.fixed && presetSlots == kGatewayPresetSlots &&
                               data.maxInputLen == kGatewayIoLen && data.maxOutputLen == kGatewayIoLen &&
                               data.maxModule == kGatewayModules && data.userPrmDataLen == kGatewayPrmLen &&
                               !file.has(kFeatureEvenSlotNumber) && file.has(kFeatureHeaderCnf);
        return isGateway ? kOk : kErrTypeData;
    }
    if (file.station == StationKind::kKgp) {
        if (!file.isSlotPrmMode || file.presetCode.fixed || !file.moduleLists.empty())
            return kErrTypeData;
        file.typeData.kgpDevice = 1;
        return presetSlots == data.slotCount ? kOk : kErrSlotNumbering;
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
    const bool areTaken = takeRecordHead(p, kTagEterDelay, file.typeData.eterDelay) &&
                          takeRecordHead(p, kTagResponseDelay, file.typeData.maxResponseDelay);
    return areTaken && file.typeData.maxResponseDelay <= kMaxResponseDelay ? kOk : kErrTypeData;
}

using CheckStep = int (*)(Cursor& p, TypeFile& file);

constexpr std::array<CheckStep, 8> kSteps{
    checkFixedBlock,  checkIoLengths,
    checkMaxModule,   checkMaxDiagLen,
    checkUserPrmLen,  checkUserPara,
    checkPresetSlots, [](Cursor& p, TypeFile& file) { return checkSlaveTypeDataDKM(p, 0, file); },
};
constexpr std::array<CheckStep, 13> kVersion5Steps{
    [](Cursor& p, TypeFile& file) { return checkSlaveTypeDataDKM(p, 1, file); },
    checkFileNames,
    checkSlotOffset,
    checkSlotNumbering,
    checkMaxDataLen,
    checkSlaveTypeDataMLFBList,
    checkSlaveTypeDataLSK,
    checkCommonPrmLen,
    checkSlaveTypeDataSPT,
    checkSlaveTypeDataSPTHelp,
    [](Cursor&, TypeFile& file) { return checkSPLinksInMLFBAndLSKList(file); },
    [](Cursor&, TypeFile& file) { return checkStationRules(file); },
    checkDelays,
};

int takeSteps(Cursor& p, TypeFile& file, std::span<const CheckStep> steps)
{
    int result = kOk;
    for (std::size_t i = 0; i < steps.size() && result == kOk; ++i)
        result = steps[i](p, file);
    return result;
}

} // namespace

void startTypeData(TypeFile& file)
{
    file.typeData = SLAVE_TYPEDATA_TYPE();
    std::memcpy(file.typeData.modelName, file.header.modelName, sizeof file.typeData.modelName);
    std::memcpy(file.typeData.stationType, file.header.stationType, sizeof file.typeData.stationType);
    file.typeData.identNumber = file.header.identNumber;
    if (file.header.makerDevice == 1)
        file.typeData.features = kFeatureMakerDevice;
}

int checkSlaveTypeDataCatI(Cursor p, TypeFile& file)
{
    startTypeData(file);
    int result = takeSteps(p, file, kSteps);
    if (result == kOk && hasVersion5Groups(file.header.version))
        result = takeSteps(p, file, kVersion5Steps);
    file.end = p;
    return result;
}

} // namespace typdescriptor::internal
