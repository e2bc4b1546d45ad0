// Type files for tests, built field by field.
//
// A fresh builder gives a valid type file of the usual station type with every optional group empty. Each field is a
// plain text that goes into the file blank-padded to its width but otherwise as it stands, each record group a list of
// complete records, so that a test can break one field and leave the rest alone. The builder writes the format on its
// own: it shares no position or width with the library.

#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

class cTypDescriptor;

struct TypeFileBuilder {
    using Records = std::vector<std::string>;

    // The fields in the order of the file. The head line is given without its line end, empty for none; lengths with "BIT"
    // or "V" where wanted; slotNumbering is raw: the "SN" and "KO" records of a KGP station. The last two are left out for
    // the minor version 0.
    // It never settles on these lines.
    // clang-format off
#define TYPE_FILE_HEADER_FIELDS(X)                                                                                     \
    X(version, "V5.2")                                                                                                 \
    X(modelName, "Valve island 8")                                                                                     \
    X(vendorName, "Kessel")                                                                                            \
    X(family, "Valves")                                                                                                \
    X(periphery, "DP") X(stationType, "DPS/CLASS1") X(identNumber, "04660") X(makerDevice, "N") X(headerCnf, "J")
#define TYPE_FILE_FIXED_FIELDS(X)                                                                                      \
    X(setSlaveAddress, "N")                                                                                            \
    X(syncMode, "N")                                                                                                   \
    X(freezeMode, "N")                                                                                                 \
    X(publisherSubscriber, "N")                                                                                        \
    X(diagBufferable, "N")                                                                                             \
    X(activeMaster, "N") X(evenSlotNumber, "N") X(changeable, "J") X(asicCode, "N") X(modular, "J") X(failSafe, "N")   \
        X(moduleKinds, "N") X(slaveInterval, "00020") X(baudRates, "0000000001") X(maxInputLen, "032")                 \
            X(maxOutputLen, "016") X(maxModule, "010") X(maxDiagLen, "032") X(userPrmLen, "020")
#define TYPE_FILE_CATEGORY_II_FIELDS(X)                                                                                \
    X(cat2Digit0, "2") X(cat2Flag4, "J") X(cat2Digit8, "0") X(cat2Digit12, "0") X(cat2Digit16, "0") X(cat2Flag20, "J")
#define TYPE_FILE_OTHER_FIELDS(X)                                                                                      \
    X(headLine, "")                                                                                                    \
    X(structureCode, "KX")                                                                                             \
    X(bitmapName, "DP_NORM")                                                                                           \
    X(libraryName, "ISNONAME")                                                                                         \
    X(slotOffset, "000")                                                                                               \
    X(slotNumbering, "") X(maxDataLen, "048") X(commonPrmLen, "000") X(eterDelay, "000") X(responseDelay, "000")
#define TYPE_FILE_GROUPS(X)                                                                                            \
    X(prms)                                                                                                            \
    X(presetSlots) X(deviceDiag) X(channelDiag) X(orderNumbers) X(moduleLists) X(slotPrmBlocks) X(slotHelpBlocks)
    // clang-format on
#define TYPE_FILE_FIELD(name, value) std::string name{value};
#define TYPE_FILE_GROUP(name) Records name;
    TYPE_FILE_HEADER_FIELDS(TYPE_FILE_FIELD)
    TYPE_FILE_FIXED_FIELDS(TYPE_FILE_FIELD)
    TYPE_FILE_CATEGORY_II_FIELDS(TYPE_FILE_FIELD) // with deviceDiag the type data of category II
    TYPE_FILE_OTHER_FIELDS(TYPE_FILE_FIELD)       // NOLINT(readability-redundant-string-init): one field is empty
    TYPE_FILE_GROUPS(TYPE_FILE_GROUP)
#undef TYPE_FILE_FIELD
#undef TYPE_FILE_GROUP
    Records userPrmBytes; // two hexadecimal digits each, without terminator
    Records helpBlocks;   // the group is left out when there are none
    bool categoryII = false;

    std::string build() const;

    /// A copy with other fields: "field=value", several of them joined by "+". A record list takes one record of that
    /// text and the terminator, or none when the text is empty.
    TypeFileBuilder with(std::string_view changes) const;

    /// A valid category-II file of station type QX410K.
    static TypeFileBuilder categoryIIFile();
    /// A category-I file in slot-parameter mode with records in every group that allows the others.
    static TypeFileBuilder fullFile();
    /// The same with preset slots in place of module lists.
    static TypeFileBuilder fullPresetFile();
};

TypeFileBuilder fixedProfileFile();
TypeFileBuilder gatewayFile();
TypeFileBuilder kgpFile();
/// A file with `count` preset slots of one structure code.
TypeFileBuilder presetFile(const std::string& code, std::size_t count);

/// Valid images of every station kind, category and version, with records in every group between them.
std::vector<std::string> imagesOfEachKind();

/// Complete records, terminators included.
namespace record {

/// A preset slot: identifier in record form ("193\"005\"003\"170\""), block number 000 for none or "" for no reference.
std::string presetSlot(std::string_view identifier, std::string_view block = "");
/// A preset slot by order number.
std::string presetNumber(unsigned number);
std::string deviceBit(unsigned byte, char bit, char value, std::string_view text);
std::string deviceGroup(unsigned byte, char firstBit, char bits, unsigned value, std::string_view text);
std::string channelError(unsigned type, std::string_view text);
std::string orderNumber(std::string_view text, std::string_view identifier, unsigned block);
std::string kgpModule(std::string_view text, std::string_view id, std::string_view values, unsigned block);
/// A slot entry by identifier; slotNumber() is one by order number.
std::string slotEntry(std::string_view identifier, std::string_view text, unsigned block);
std::string slotNumber(unsigned number, std::string_view text);
std::string moduleList(unsigned number, std::string_view text, std::string_view code,
                       const TypeFileBuilder::Records& slots);
/// A structured parameter. `type` has five characters.
std::string prm(unsigned byte, std::string_view name, std::string_view type, std::string_view value,
                std::string_view minimum, std::string_view maximum, unsigned help = 0);
/// A keyword record "[SlotNumber]". `type` has five characters.
std::string slotNumberPrm(unsigned byte, std::string_view type);
std::string slotPrmBlock(unsigned number, unsigned length, const TypeFileBuilder::Records& bytes,
                         const TypeFileBuilder::Records& prms);
std::string helpLine(unsigned value, std::string_view text);
std::string helpBlock(unsigned number, const TypeFileBuilder::Records& lines);

} // namespace record

/// Replaces the one occurrence of `from`; fails the test when it does not occur.
std::string replaced(std::string image, std::string_view from, std::string_view to);

/// A descriptor made from an image of at most 65527 characters, unchecked.
std::unique_ptr<cTypDescriptor> descriptorOf(const std::string& image);

/// A descriptor of that file; fails the test when the check does not succeed.
std::unique_ptr<cTypDescriptor> checked(const TypeFileBuilder& file);

/// What the check of a fresh descriptor of that image says.
int checkResult(const std::string& image);
