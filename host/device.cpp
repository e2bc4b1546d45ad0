#include "host/device.h"

#include "host/standardPart.h"
#include "host/text.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace typdescriptor {

namespace {

constexpr unsigned kTextWidth = 30;
constexpr unsigned kReferenceWidth = 5;
constexpr unsigned kReferenceTag = 2;
constexpr unsigned kTypeWidth = 5;

/// The number that the library reads from a decimal text.
long decimal(const char* text)
{
    return std::strtol(text, nullptr, 10);
}

long binary(const char* text)
{
    return std::strtol(text, nullptr, 2);
}

unsigned digitAt(const std::string& text, std::size_t position)
{
    const bool isDigit = position < text.size() && text[position] >= '0' && text[position] <= '9';
    return isDigit ? static_cast<unsigned>(text[position] - '0') : 0;
}

/// The data type of a structured parameter, by its first letters; BIT and BGR carry their place in the byte.
void readType(Parameter& parameter, const std::string& type)
{
    struct Row {
        const char* name;
        Parameter::Type type;
        unsigned bits;
    };
    constexpr std::array<Row, 6> kRows = {Row{"BIT", Parameter::kBit, 1},    Row{"BIN", Parameter::kBinary, 8},
                                          Row{"BYTE", Parameter::kByte, 8},  Row{"INT", Parameter::kInt, 16},
                                          Row{"UINT", Parameter::kUint, 16}, Row{"BGR", Parameter::kBitGroup, 0}};
    constexpr std::size_t kPlace = 3; // of the first bit, then the number of bits
    const auto row = std::find_if(kRows.begin(), kRows.end(),
                                  [&type](const Row& candidate) { return type.starts_with(candidate.name); });
    if (row == kRows.end())
        return;
    parameter.type = row->type;
    parameter.bitCount = row->bits;
    if (parameter.type == Parameter::kBit || parameter.type == Parameter::kBitGroup)
        parameter.firstBit = digitAt(type, kPlace);
    if (parameter.type == Parameter::kBitGroup)
        parameter.bitCount = digitAt(type, kPlace + 1);
}

Parameter readParameter(const _parastruct& record, unsigned firstByte)
{
    Parameter parameter;
    const std::string reference = fromField(record.reference, kReferenceWidth);
    parameter.name = fromField(record.name, kTextWidth);
    parameter.byte = static_cast<unsigned>(decimal(reference.c_str() + kReferenceTag)) - firstByte;
    readType(parameter, fromField(record.dataType, kTypeWidth));
    const bool isBinaryText = parameter.type == Parameter::kBinary || parameter.type == Parameter::kBitGroup;
    parameter.defaultValue = isBinaryText ? binary(record.defaultValue) : decimal(record.defaultValue);
    parameter.minimum = decimal(record.minValue);
    parameter.maximum = decimal(record.maxValue);
    parameter.mayBeShortened = parameter.type == Parameter::kUint;
    return parameter;
}

/// The library keeps a signed parameter that is not an INT as an unsigned one: its negative limits, default and value
/// texts come back as large numbers. Limits on both sides of zero give it away: the minimum is then a large number and the
/// maximum a small one. (A range that stands the wrong way round, 10-0, is none of a signed parameter.)
void unwrapSigned(Parameter& parameter)
{
    const bool isUnsigned = parameter.type == Parameter::kByte || parameter.type == Parameter::kUint;
    const std::int64_t modulus = std::int64_t{1} << parameter.bitCount;
    if (!isUnsigned || parameter.minimum < modulus / 2 || parameter.maximum >= modulus / 2)
        return;
    parameter.minimum -= modulus;
    if (parameter.defaultValue > parameter.maximum)
        parameter.defaultValue -= modulus;
    for (ValueText& entry : parameter.texts) {
        if (entry.value > parameter.maximum) // kept in 16 bits whatever the type
            entry.value = (entry.value & (modulus - 1)) - modulus;
    }
}

ValueText readValueText(const PARA_HELPMESSAGE_TYPE& message)
{
    return {message.value, fromField(message.text), {}};
}

void readStationParameters(const cTypDescriptor& descriptor, Device& device)
{
    const int length = std::clamp(device.data.userPrmDataLen - static_cast<int>(kStandardBytes), 0,
                                  static_cast<int>(sizeof device.data.userPrmData));
    device.parameters.bytes.assign(device.data.userPrmData, device.data.userPrmData + length);
    for (int i = 0; i < descriptor.getParaStructCnt(); ++i) {
        _parastruct record = {};
        descriptor.getParaStruct(i, &record);
        Parameter parameter = readParameter(record, kStandardBytes);
        for (int line = 0; line < descriptor.getHelpMessageCnt(record.helpNumber); ++line) {
            PARA_HELPMESSAGE_TYPE message = {};
            descriptor.getParaHelpMessage(record.helpNumber, line, &message);
            parameter.texts.push_back(readValueText(message));
        }
        unwrapSigned(parameter);
        device.parameters.parameters.push_back(std::move(parameter));
    }
}

ParameterArea readBlock(cTypDescriptor& descriptor, int index)
{
    ParameterArea block;
    int length = 0;
    block.bytes.resize(static_cast<std::size_t>(descriptor.getMaxSPBlockLen()));
    descriptor.getSlotParameters(index, block.bytes.data(), &length);
    block.bytes.resize(static_cast<std::size_t>(length));
    for (int i = 0; i < descriptor.getStructuredSlotParameterCnt(index); ++i) {
        _parastruct record = {};
        if (descriptor.getStructuredSlotParameter(index, i, &record) != kOk)
            break;
        Parameter parameter = readParameter(record, 0);
        for (int line = 0; line < descriptor.getSPHelpCnt(record.helpNumber); ++line) {
            PARA_HELPMESSAGE_TYPE message = {};
            descriptor.getSPHelpItem(record.helpNumber, line, &message);
            parameter.texts.push_back(readValueText(message));
        }
        unwrapSigned(parameter);
        block.parameters.push_back(std::move(parameter));
    }
    KEYWORD_TYPE keyword = {};
    while (descriptor.hasSPBlockThisKeyWord(&keyword, index, 0) == 1) {
        const bool isByte = fromField(keyword.dataType) == "BYTE";
        block.slotNumbers.push_back({static_cast<unsigned>(keyword.byteOffset), isByte ? 1U : 2U});
    }
    return block;
}

ModulePart readPart(const MLFB_ITEM& item, std::string text)
{
    return {std::move(text), fromField(item.mlfb), decodeIdentifier(item.preset), item.spIndex};
}

void readModules(const cTypDescriptor& descriptor, Device& device)
{
    for (int i = 0; i < descriptor.getMLFBListCnt(); ++i) {
        MLFB_ITEM item = {};
        descriptor.getMLFBListItem(i, &item);
        Module module;
        module.name = fromField(item.mlfb);
        module.parts.push_back(readPart(item, {}));
        if (device.isKgp())
            module.kgp = KgpModule{item.kgpId, {item.kgpData, item.kgpData + sizeof item.kgpData}};
        device.modules.push_back(std::move(module));
    }
    for (int list = 0; list < descriptor.getLSKCnt(); ++list) {
        Module module;
        int isFixed = 0;
        char text[kTextWidth + 1] = {};
        descriptor.getLSKText(list, text);
        module.name = fromField(text);
        module.isFromOrderList = false;
        const int count = descriptor.getSKListCnt(list, &isFixed);
        module.isFixed = isFixed != 0;
        for (int i = 0; i < count; ++i) {
            LSK_ITEM entry = {};
            descriptor.getSKListItem(list, i, &entry);
            module.parts.push_back(readPart(entry.item, fromField(entry.text)));
        }
        device.modules.push_back(std::move(module));
    }
}

void readPresetSlots(const cTypDescriptor& descriptor, Device& device)
{
    int count = 0;
    if (descriptor.isKonfigFixed(&count) == 0)
        return;
    for (int i = 0; i < count; ++i) {
        MLFB_ITEM item = {};
        descriptor.getFixedSlotId(i, &item);
        device.presetSlots.push_back(
            {{}, fromField(item.mlfb), decodeIdentifier(item.preset), item.spIndex, item.preset.xSlot == 0, {}});
    }
}

/// Device diagnostic texts are asked for bit by bit: there is no list of the bits that have one.
void readBitTexts(const cTypDescriptor& descriptor, Device& device)
{
    constexpr int kHundreds = 10;
    constexpr int kLastByte = 62;
    const int wanted = descriptor.getSlaveDiagMsgCnt() - descriptor.getSlaveBGrDiagMsgCnt();
    int found = 0;
    for (int high = 0; high < kHundreds; ++high) {
        for (int low = 1; low <= kLastByte; ++low) {
            for (int bit = 0; bit < 8 && found < wanted; ++bit) {
                SLAVE_DIAG_TYPE message = {};
                if (descriptor.getSlaveDiagMsg(high, low, bit, &message) != kOk)
                    continue;
                found += message.setFound + message.clearFound;
                device.diagnosisTexts.bits.push_back({static_cast<unsigned>(100 * high + low),
                                                      static_cast<unsigned>(bit),
                                                      fromField(message.setText),
                                                      fromField(message.clearText),
                                                      {},
                                                      {}});
            }
        }
    }
}

void readAreaTexts(const cTypDescriptor& descriptor, Device& device)
{
    for (int i = 0; i < descriptor.getSlaveBGrDiagMsgCnt(); ++i) {
        SLAVE_BGR_DIAG_TYPE message = {};
        descriptor.getSlaveBGrDiagMsg(i, &message);
        const unsigned byte = message.byteHigh * 100U + message.byteLow;
        std::vector<AreaText>& areas = device.diagnosisTexts.areas;
        auto area = std::find_if(areas.begin(), areas.end(), [&](const AreaText& known) {
            return known.byte == byte && known.firstBit == message.firstBit && known.lastBit == message.lastBit;
        });
        if (area == areas.end())
            area = areas.insert(areas.end(), {byte, message.firstBit, message.lastBit, {}});
        area->texts.push_back({message.value, fromField(message.text), {}});
    }
}

void readChannelTexts(const cTypDescriptor& descriptor, Device& device)
{
    constexpr int kFirstType = 16;
    constexpr int kLastType = 31;
    for (int type = kFirstType; type <= kLastType; ++type) {
        char text[kTextWidth + 1] = {};
        if (descriptor.getChannelDiagMsg(type, text) == kOk)
            device.channelTexts.push_back({type, fromField(text), {}});
    }
}

void readIdentification(cTypDescriptor& descriptor, Device& device)
{
    char family[11] = {};
    char bitmap[8] = {};
    char library[9] = {};
    char orderNumber[kTextWidth + 1] = {};
    descriptor.getSlaveTypeHeader(&device.header);
    descriptor.getFamily(family);
    device.modelName = fromField(device.header.modelName);
    device.vendorName = fromField(device.header.vendorName);
    device.family = fromField(family);
    device.periphery = fromField(device.header.periphery);
    device.stationType = fromField(device.header.stationType);
    if (descriptor.getMLFBstring(orderNumber) == kOk)
        device.orderNumber = fromField(orderNumber);
    if (descriptor.getBitMapFileName(bitmap) == kOk)
        device.bitmapName = fromField(bitmap);
    if (descriptor.getDLLFileName(library) == kOk)
        device.libraryName = fromField(library);
}

} // namespace

std::string Parameter::typeInWords() const
{
    switch (type) {
    case kBit:
        return "bit " + std::to_string(firstBit);
    case kBitGroup:
        return "bits " + std::to_string(firstBit) + '-' + std::to_string(firstBit + bitCount - 1);
    case kBinary:
        return "8 single bits";
    default:
        return (isSigned() ? "signed " : "unsigned ") + std::to_string(bitCount) + " bit";
    }
}

std::string Parameter::textOf(std::int64_t value) const
{
    // A type file keeps the texts of negative values in 16 bits, too.
    const std::int64_t mask = bitCount > 16 ? 0xFFFFFFFF : 0xFFFF;
    const auto found = std::find_if(texts.begin(), texts.end(), [value, mask](const ValueText& entry) {
        return (entry.value & mask) == (value & mask);
    });
    return found == texts.end() ? std::string() : found->text;
}

bool Parameter::allows(std::int64_t value) const
{
    if (!allowed.empty())
        return std::find(allowed.begin(), allowed.end(), value) != allowed.end();
    return value >= minimum && value <= maximum;
}

std::string Parameter::allowedInWords() const
{
    std::string range = std::to_string(minimum) + " to " + std::to_string(maximum);
    if (minimum > maximum)
        return "none (" + range + " is the wrong way round)";
    if (allowed.empty())
        return range;
    std::string words;
    for (std::size_t i = 0; i < allowed.size(); ++i)
        words += (i == 0 ? "" : i + 1 == allowed.size() ? " or " : ", ") + std::to_string(allowed[i]);
    return words;
}

const char* typeName(Parameter::Type type)
{
    constexpr std::array<const char*, 9> kNames = {"bit",      "binary", "uint8", "int16", "uint16",
                                                   "bitGroup", "int8",   "int32", "uint32"};
    return kNames.at(static_cast<std::size_t>(type));
}

bool isSameArea(const ParameterArea& left, const ParameterArea& right)
{
    const auto isSame = [](const Parameter& one, const Parameter& other) {
        const auto isSameText = [](const ValueText& text, const ValueText& otherText) {
            return text.value == otherText.value && text.text == otherText.text;
        };
        return one.name == other.name && one.type == other.type && one.byte == other.byte &&
               one.firstBit == other.firstBit && one.bitCount == other.bitCount &&
               one.defaultValue == other.defaultValue && one.minimum == other.minimum && one.maximum == other.maximum &&
               one.allowed == other.allowed && one.isChangeable == other.isChangeable &&
               one.isVisible == other.isVisible &&
               std::equal(one.texts.begin(), one.texts.end(), other.texts.begin(), other.texts.end(), isSameText);
    };
    const auto isSameField = [](const SlotNumberField& field, const SlotNumberField& other) {
        return field.byte == other.byte && field.byteCount == other.byteCount;
    };
    return left.bytes == right.bytes &&
           std::equal(left.parameters.begin(), left.parameters.end(), right.parameters.begin(), right.parameters.end(),
                      isSame) &&
           std::equal(left.slotNumbers.begin(), left.slotNumbers.end(), right.slotNumbers.begin(),
                      right.slotNumbers.end(), isSameField);
}

bool SlotRule::allows(unsigned reference) const
{
    return std::any_of(allowed.begin(), allowed.end(), [reference](const References& range) {
        return reference >= range.first && reference <= range.last;
    });
}

unsigned Device::slotCount() const
{
    const auto preset = static_cast<unsigned>(presetSlots.size());
    if (!isModular)
        return std::max(1U, preset); // a compact station has one configuration out of several
    if (gsd && gsd->maxModule)
        return std::max(*gsd->maxModule, preset);
    return std::max(static_cast<unsigned>(std::max(data.maxModule, 0)), preset);
}

unsigned Device::parameterBudget() const
{
    const auto length = static_cast<std::size_t>(std::max<int>(data.userPrmDataLenRead, 0));
    return length > kStandardBytes ? static_cast<unsigned>(length - kStandardBytes) : 0;
}

Device readDevice(cTypDescriptor& descriptor)
{
    Device device;
    readIdentification(descriptor, device);
    device.isCategoryII = descriptor.getSlaveTypeData(&device.data) != 0;
    device.isModular = descriptor.isModular() != 0 && !device.isCategoryII;
    device.isFromGsd = descriptor.getGsdRevision() >= 0;
    device.gsdRevision = std::max(descriptor.getGsdRevision(), 0);
    device.slotOffset = descriptor.getSlotOffset();
    if (SLOT_NUMBERING_TYPE numbering = {}; static_cast<short>(descriptor.getSlotNumbering(&numbering)) == kOk)
        device.slotNumbering = numbering;
    readPresetSlots(descriptor, device);
    readModules(descriptor, device);
    readStationParameters(descriptor, device);
    for (int i = 0; i < descriptor.getSPBlockAnz(); ++i)
        device.blocks.push_back(readBlock(descriptor, i));
    readBitTexts(descriptor, device);
    readAreaTexts(descriptor, device);
    readChannelTexts(descriptor, device);
    device.warnings = warningsOf(descriptor);
    return device;
}

std::vector<GSD_WARNING_ITEM> warningsOf(const cTypDescriptor& descriptor)
{
    std::vector<GSD_WARNING_ITEM> warnings(static_cast<std::size_t>(descriptor.getGsdCntOfWarnings()));
    descriptor.getGsdWarnings(reinterpret_cast<char*>(warnings.data()));
    return warnings;
}

const std::vector<FeatureName>& featureNames()
{
    static const std::vector<FeatureName> names = {
        {kFeatureMakerDevice, "makerDevice", "the maker's own device"},
        {kFeatureSetSlaveAddress, "setSlaveAddress", "its address can be set over the bus"},
        {kFeatureSyncMode, "syncMode", "sync mode"},
        {kFeatureFreezeMode, "freezeMode", "freeze mode"},
        {kFeatureDiagBufferable, "diagBufferable", "diagnostics can be buffered"},
        {kFeatureActive, "active", "active device"},
        {kFeatureMaster, "master", "master"},
        {kFeatureFailSafe, "failSafe", "fail-safe"},
        {kFeaturePublisher, "publisher", "publisher"},
        {kFeatureSubscriber, "subscriber", "subscriber"},
        {kFeatureEvenSlotNumber, "evenSlotNumber", "needs an even number of slots"},
        {kFeatureOnlyNormal, "onlyNormalModules", "only modules without special-format identifiers"},
        {kFeatureOnlySpecial, "onlySpecialModules", "only modules with special-format identifiers"},
        {kFeatureDpAsiLink, "dpAsiLink", "DP/AS-i link"},
        {kFeatureKgp, "kgpStation", "KGP station"},
    };
    return names;
}

std::vector<std::string> baudRates(const Device& device)
{
    struct Rate {
        unsigned bit;
        const char* text;
    };
    static constexpr std::array kRates = {
        Rate{0, "9.6 kbit/s"},   Rate{1, "19.2 kbit/s"},  Rate{5, "31.25 or 45.45 kbit/s"},
        Rate{2, "93.75 kbit/s"}, Rate{3, "187.5 kbit/s"}, Rate{4, "500 kbit/s"},
        Rate{6, "1.5 Mbit/s"},   Rate{7, "3 Mbit/s"},     Rate{8, "6 Mbit/s"},
        Rate{9, "12 Mbit/s"}};
    std::vector<std::string> rates;
    for (const Rate& rate : kRates) {
        if ((device.data.baudRates >> rate.bit & 1U) != 0)
            rates.emplace_back(rate.text);
    }
    return rates;
}

std::string chipName(const Device& device)
{
    constexpr std::array<const char*, 5> kChips = {"QMX2", "WQMX2", "VRC3", "TVRC2", "TVRC2-DP"};
    const auto code = static_cast<std::size_t>(device.data.asicType);
    return code < kChips.size() && !device.isCategoryII ? kChips[code] : "";
}

} // namespace typdescriptor
