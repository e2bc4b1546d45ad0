// The records of the GSD model, as the keyword handlers fill them and the generator reads them. Their texts and bytes
// live in the model's arena.

#pragma once

#include "generator/list.h"
#include "typefile/identifiers.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace typdescriptor::internal {

/// Keyword ids of the data-type lines; they stand for the data types throughout the model.
enum GsdDataType : std::uint8_t {
    kUnsigned8 = 73,
    kUnsigned16 = 74,
    kUnsigned32 = 75,
    kSigned8 = 76,
    kSigned16 = 77,
    kSigned32 = 78,
    kBitArea = 79,
    kBit = 80,
};

/// One configuration identifier of a module: its identifier byte and what belongs to it. Of a special identifier with
/// two length bytes the input length comes first.
struct GSD_IDENT_ITEM {
    std::span<const std::uint8_t> bytes; // within the module's configuration bytes
};

/// The identifiers of a module, cut from its configuration bytes as one walks along them.
class GSD_IDENT_LIST {
public:
    class iterator {
    public:
        explicit iterator(std::span<const std::uint8_t> bytes) : rest(bytes) {}
        GSD_IDENT_ITEM operator*() const { return {rest.first(length())}; }
        iterator& operator++()
        {
            rest = rest.subspan(length());
            return *this;
        }
        bool operator==(const iterator& other) const { return rest.size() == other.rest.size(); }

    private:
        std::size_t length() const { return std::min(identifierLength(rest.front()), rest.size()); }

        std::span<const std::uint8_t> rest;
    };

    GSD_IDENT_LIST(std::span<const std::uint8_t> configBytes, std::size_t count) : bytes(configBytes), used(count) {}

    std::size_t count() const { return used; }
    GSD_IDENT_ITEM first() const { return *begin(); }
    iterator begin() const { return iterator(bytes); }
    iterator end() const { return iterator({}); }

private:
    std::span<const std::uint8_t> bytes;
    std::size_t used;
};

/// Where the parameter image holds a parameter.
struct GSD_PRM_REF_ITEM {
    std::uint32_t reference = 0;  // of an ExtUserPrmData block
    std::uint32_t byteOffset = 0; // in the station's or the module's parameter image
};

/// What a module says of its parameters: most modules say nothing.
struct GSD_MODULE_PRM {
    std::span<std::uint8_t> data; // the parameter image, Ext_Module_Prm_Data_Len bytes
    GSD_LIST<GSD_PRM_REF_ITEM> refs;
    std::int32_t dataEnd = 0;     // highest end of an Ext_User_Prm_Data_Const
    std::int32_t blockNumber = 0; // of the parameter block, 0 for none
    bool ownsBlock = true;        // false: an earlier module has the same block and writes it
};

/// A Module or KGPModule block. There may be many, so its name and bytes are one piece and their lengths are kept in bytes.
class GSD_MODULE {
public:
    /// 1 to 32 characters.
    std::string_view name() const { return {reinterpret_cast<const char*>(content), nameLength}; }
    /// 1 to 244.
    std::span<std::uint8_t> configBytes() const { return {content + nameLength, configByteCount}; }
    /// Keeps the name and makes room for the bytes.
    std::span<std::uint8_t> keep(Arena& arena, std::string_view name, std::size_t configBytesCount)
    {
        content = arena.rawBytes(name.size() + configBytesCount);
        std::copy(name.begin(), name.end(), content);
        nameLength = static_cast<std::uint8_t>(name.size());
        configByteCount = static_cast<std::uint8_t>(configBytesCount);
        return configBytes();
    }
    /// Of a Module only.
    GSD_IDENT_LIST identifiers() const { return {configBytes(), identifierCount}; }
    /// The number of the parameter block, 0 for none.
    std::uint32_t prmBlock() const { return prm == nullptr ? 0 : static_cast<std::uint32_t>(prm->blockNumber); }

    GSD_MODULE_PRM* prm = nullptr; // null without Ext_Module_Prm_Data_Len
    std::uint8_t preset = 0;
    std::uint8_t identifierCount = 0;

private:
    std::uint8_t nameLength = 0;
    std::uint8_t configByteCount = 0;
    std::uint8_t* content = nullptr;
};

/// An ExtUserPrmData block. Values read from the file keep the bit pattern of their type, widened
/// without sign.
struct GSD_EXT_PRM_DEF {
    KeptText name; // empty for the slot-number definition
    std::uint32_t defaultValue = 0;
    std::uint32_t minValue = 0;
    std::uint32_t maxValue = 0;
    std::int32_t prmTextRef = -1; // PrmText block that names the values, -1 for none
    std::uint16_t reference = 0;
    std::uint8_t dataType = 0; // a GsdDataType
    std::uint8_t bitOffset = 0;
    std::uint8_t bitCount = 0;
    bool typeDefined = false;
    bool isSlotNumber = false;
};

/// One Text line of a PrmText block.
struct GSD_PRM_TEXT_ITEM {
    std::int32_t value = 0;
    KeptText text;
};

/// A PrmText block. The generator numbers it, for the station and for the modules apart, when it first refers to it.
struct GSD_PRM_TEXT {
    std::uint16_t reference = 0;
    std::uint16_t stationHelpNumber = 0; // 0: not used
    std::uint16_t moduleHelpNumber = 0;
    GSD_LIST<GSD_PRM_TEXT_ITEM> texts;
};

/// One text of a diagnostic area.
struct GSD_DIAG_VALUE_ITEM {
    std::uint16_t value = 0;
    KeptText text;
};

/// A diagnostic bit (first and last are equal) or area. Bits count from bit 0 of the first device-specific byte.
struct GSD_UNIT_DIAG_AREA {
    std::uint16_t firstBit = 0;
    std::uint16_t lastBit = 0;
    std::uint16_t mask = 0; // as many ones as the area has bits
    GSD_LIST<GSD_DIAG_VALUE_ITEM> values;
};

/// The text of a channel error type.
struct GSD_CHANNEL_DIAG {
    std::uint8_t errorType = 0; // 16 to 31
    KeptText text;
};

} // namespace typdescriptor::internal
