// A device type as one value: everything the library tells about it, read once.
//
// Texts are UTF-8 without padding, numbers are numbers, byte positions of parameters count from the first byte of their
// area. What the commands print, write as JSON or work out, they take from here.

#pragma once

#include "host/identifier.h"

#include "descriptor/cTypDescriptor.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace typdescriptor {

constexpr int kNoBlock = -1; // "no slot parameter block" where the index of one could stand

struct ValueText {
    std::int64_t value = 0;
    std::string text;
    std::string help; // from a GSD file only
};

struct Parameter {
    /// The last three only from a GSD file: a type file has no place for them.
    enum Type { kBit, kBinary, kByte, kInt, kUint, kBitGroup, kInt8, kInt32, kUint32 };

    std::string name;
    Type type = kByte;
    unsigned byte = 0;     // in its area, from 0
    unsigned firstBit = 0; // kBit and kBitGroup
    unsigned bitCount = 8;
    std::int64_t defaultValue = 0;
    std::int64_t minimum = 0;
    std::int64_t maximum = 0;
    std::vector<std::int64_t> allowed; // where a GSD file lists single values; else empty
    bool isChangeable = true;          // a GSD file may say that it is not; so isVisible
    bool isVisible = true;
    bool mayBeShortened = false; // of a type file, which keeps parameters of 32 bits in 16
    std::vector<ValueText> texts;

    unsigned byteCount() const { return type == kBit || type == kBitGroup ? 1 : bitCount / 8; }
    /// Whether its values may be negative.
    bool isSigned() const
    {
        return type == kInt || type == kInt8 || type == kInt32 || ((type == kByte || type == kUint) && minimum < 0);
    }
    TYPDESCRIPTOR_HOST_API bool allows(std::int64_t value) const;
    /// For people: "10 to 60000", "0, 1 or 5".
    TYPDESCRIPTOR_HOST_API std::string allowedInWords() const;
    /// For example "bits 2-4", "unsigned 16 bit".
    TYPDESCRIPTOR_HOST_API std::string typeInWords() const;
    /// The text of a value, empty when it has none.
    TYPDESCRIPTOR_HOST_API std::string textOf(std::int64_t value) const;
};

/// Stable, for programs: "bit", "binary", "uint8", "int16", "uint16", "bitGroup", "int8", "int32", "uint32".
TYPDESCRIPTOR_HOST_API const char* typeName(Parameter::Type type);

/// Where a block wants the number of the slot that its module is plugged into.
struct SlotNumberField {
    unsigned byte = 0;
    unsigned byteCount = 1;
};

/// A run of parameter bytes with the parameters in it: the station's own, or one block of a module.
struct ParameterArea {
    std::vector<std::uint8_t> bytes; // the defaults are in them
    std::vector<Parameter> parameters;
    std::vector<SlotNumberField> slotNumbers; // blocks only
};

/// Whether two areas have the same bytes and describe the same parameters.
TYPDESCRIPTOR_HOST_API bool isSameArea(const ParameterArea& left, const ParameterArea& right);

struct ModulePart {
    std::string text;
    std::string orderNumber;
    Identifier identifier;
    int block = kNoBlock;
};

struct KgpModule {
    unsigned number = 0;
    std::vector<std::uint8_t> values;
};

struct Module {
    std::string name;
    bool isFromOrderList = true;      // else from the module lists
    bool isFixed = false;             // a module list that may not be changed
    bool hasSafetyParameters = false; // F_ keywords; from a GSD file only
    std::vector<ModulePart> parts;
    std::optional<KgpModule> kgp;
    std::string fullName; // these from a GSD file only
    std::optional<unsigned> reference;
    std::string infoText;
    std::vector<ValueText> channelTexts; // of its channels' maker-specific errors; from a GSD file only

    /// In full where it is known.
    const std::string& wholeName() const { return fullName.empty() ? name : fullName; }
};

struct PresetSlot {
    std::string name; // of its module, from a GSD file only
    std::string orderNumber;
    Identifier identifier;
    int block = kNoBlock;
    bool isFixed = false;
    std::vector<ValueText> channelTexts; // as those of a module
};

struct BitText {
    unsigned byte = 0; // of the device-related diagnosis, from 1
    unsigned bit = 0;
    std::string set;
    std::string clear;
    std::string setHelp; // from a GSD file only, as clearHelp
    std::string clearHelp;
};

/// The texts of a value that fills several bits.
struct AreaText {
    unsigned byte = 0; // as in BitText
    unsigned firstBit = 0;
    unsigned lastBit = 0; // above 7 where the area goes on in the next byte
    std::vector<ValueText> texts;
};

struct DiagnosisTexts {
    std::vector<BitText> bits;
    std::vector<AreaText> areas;
};

/// Texts that hold for the device-related blocks of one DPV1 type alone.
struct DiagnosisType {
    unsigned number = 0; // second byte of the block: an alarm type, or 128 and a status type
    DiagnosisTexts texts;
};

struct NamedNumber {
    std::string name;
    std::int64_t value = 0;
};

/// What a GSD file's SlotDefinition says of one slot.
struct SlotRule {
    struct References {
        unsigned first = 0;
        unsigned last = 0;
    };

    unsigned slot = 0; // from 1
    std::string name;
    std::optional<unsigned> preset; // reference of a module
    std::vector<References> allowed;

    TYPDESCRIPTOR_HOST_API bool allows(unsigned reference) const;
};

/// What a GSD file says and a type file cannot hold.
struct GsdFacts {
    std::string modelName; // in full, as vendorName
    std::string vendorName;
    std::string revision;
    std::string hardwareRelease;
    std::string softwareRelease;
    std::string infoText;
    std::vector<NamedNumber> maxTsdr; // by rate, "1.5M"; in bit times
    std::optional<unsigned> maxModule;
    std::vector<SlotRule> slots;
    bool hasSafetyParameters = false; // F_ keywords of the station: neither the library nor this one carries them
    std::vector<NamedNumber> others;  // keywords of the station with a number that the library does not read
};

struct Device {
    SLAVE_TYPE_HEADER_INFO header = {};
    SLAVE_TYPEDATA_TYPE data = {};
    bool isCategoryII = false;
    bool isModular = false;
    bool isFromGsd = false;
    std::optional<bool> isDpv1; // a type file does not say
    int gsdRevision = 0;
    std::string modelName;
    std::string vendorName;
    std::string family;
    std::string periphery;
    std::string stationType;
    std::string orderNumber;
    std::string bitmapName;
    std::string libraryName;
    int slotOffset = 0;
    std::optional<SLOT_NUMBERING_TYPE> slotNumbering;

    std::vector<PresetSlot> presetSlots;
    std::vector<Module> modules;
    ParameterArea parameters;
    std::vector<ParameterArea> blocks;
    DiagnosisTexts diagnosisTexts;
    std::vector<DiagnosisType> diagnosisTypes; // from a GSD file only
    std::vector<ValueText> channelTexts;
    std::vector<GSD_WARNING_ITEM> warnings;
    std::optional<GsdFacts> gsd; // of a GSD file: see gsdFacts.h

    bool isKgp() const { return data.kgpDevice != 0; }
    bool has(SlaveFeature feature) const { return (data.features & feature) != 0; }
    /// How many slots there are: what the GSD file says, or else the type file, whose number is too high where modules have
    /// several identifiers.
    TYPDESCRIPTOR_HOST_API unsigned slotCount() const;
    /// The bytes that user parameters may take: the telegram without its standard part.
    TYPDESCRIPTOR_HOST_API unsigned parameterBudget() const;
};

/// @param descriptor  one whose check succeeded
TYPDESCRIPTOR_HOST_API Device readDevice(cTypDescriptor& descriptor);

TYPDESCRIPTOR_HOST_API std::vector<GSD_WARNING_ITEM> warningsOf(const cTypDescriptor& descriptor);

/// The names of a device's sections, in their order: the members of its JSON.
TYPDESCRIPTOR_HOST_API const std::vector<std::string>& sectionNames();

struct FeatureName {
    SlaveFeature feature;
    const char* name; // in JSON
    const char* text; // for people
};
/// The features that are properties of the device, not of its type file.
TYPDESCRIPTOR_HOST_API const std::vector<FeatureName>& featureNames();

/// The supported baud rates, lowest first, for example "93.75 kbit/s".
TYPDESCRIPTOR_HOST_API std::vector<std::string> baudRates(const Device& device);
/// The name of the protocol chip, empty when not stated.
TYPDESCRIPTOR_HOST_API std::string chipName(const Device& device);

} // namespace typdescriptor
