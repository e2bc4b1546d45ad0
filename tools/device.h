// A device type as one value: everything the library tells about it, read once.
//
// Texts are UTF-8 without padding, numbers are numbers, byte positions of parameters count from the first byte of their
// area. What the commands print, write as JSON or work out, they take from here.

#pragma once

#include "tools/configIdentifier.h"

#include "descriptor/cTypDescriptor.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

constexpr int kNoBlock = -1; // "no slot parameter block" where the index of one could stand

struct ValueText {
    int value = 0;
    std::string text;
};

struct Parameter {
    enum Type { kBit, kBinary, kByte, kInt, kUint, kBitGroup };

    std::string name;
    Type type = kByte;
    unsigned byte = 0;     // in its area, from 0
    unsigned firstBit = 0; // kBit and kBitGroup
    unsigned bitCount = 8;
    long defaultValue = 0;
    long minimum = 0;
    long maximum = 0;
    std::vector<ValueText> texts;

    unsigned byteCount() const { return type == kInt || type == kUint ? 2 : 1; }
    /// Whether its values may be negative.
    bool isSigned() const { return type == kInt || ((type == kByte || type == kUint) && minimum < 0); }
    /// For example "bits 2-4", "unsigned 16 bit".
    std::string typeInWords() const;
    /// The text of a value, empty when it has none.
    std::string textOf(long value) const;
};

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
    bool isFromOrderList = true; // else from the module lists
    bool isFixed = false;        // a module list that may not be changed
    std::vector<ModulePart> parts;
    std::optional<KgpModule> kgp;
};

struct PresetSlot {
    std::string orderNumber;
    Identifier identifier;
    int block = kNoBlock;
    bool isFixed = false;
};

struct BitText {
    unsigned byte = 0; // of the device-related diagnosis, from 1
    unsigned bit = 0;
    std::string set;
    std::string clear;
};

struct AreaText {
    unsigned byte = 0;
    unsigned firstBit = 0;
    unsigned lastBit = 0;
    std::vector<ValueText> texts;
};

struct Device {
    SLAVE_TYPE_HEADER_INFO header = {};
    SLAVE_TYPEDATA_TYPE data = {};
    bool isCategoryII = false;
    bool isModular = false;
    bool isFromGsd = false;
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
    std::vector<BitText> bitTexts;
    std::vector<AreaText> areaTexts;
    std::vector<ValueText> channelTexts;
    std::vector<GSD_WARNING_ITEM> warnings;

    bool isKgp() const { return data.kgpDevice != 0; }
    bool has(SlaveFeature feature) const { return (data.features & feature) != 0; }
    /// The bytes that user parameters may take: the telegram without its standard part.
    unsigned parameterBudget() const;
};

/// @param descriptor  one whose check succeeded
Device readDevice(cTypDescriptor& descriptor);

std::vector<GSD_WARNING_ITEM> warningsOf(const cTypDescriptor& descriptor);

struct FeatureName {
    SlaveFeature feature;
    const char* name; // in JSON
    const char* text; // for people
};
/// The features that are properties of the device, not of its type file.
const std::vector<FeatureName>& featureNames();

/// The supported baud rates, lowest first, for example "93.75 kbit/s".
std::vector<std::string> baudRates(const Device& device);
/// The name of the protocol chip, empty when not stated.
std::string chipName(const Device& device);
