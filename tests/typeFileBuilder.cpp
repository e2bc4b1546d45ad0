#include "tests/typeFileBuilder.h"

#include "descriptor/cTypDescriptor.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

namespace {

const std::string kSep = ";\r\n";

std::string padded(std::string_view text, std::size_t width)
{
    std::string result(text);
    if (result.size() < width)
        result.resize(width, ' ');
    return result;
}

std::string digits(std::size_t number, std::size_t width = 3)
{
    const std::string text = std::to_string(number);
    return text.size() < width ? std::string(width - text.size(), '0') + text : text;
}

std::string joined(const TypeFileBuilder::Records& records)
{
    std::string result;
    for (const std::string& one : records)
        result += one;
    return result;
}

std::string group(std::string_view tag, const TypeFileBuilder::Records& records)
{
    return std::string(tag) + digits(records.size()) + kSep + joined(records);
}

// Bytes as the two-digit records of a "PV" group.
std::string byteGroup(const TypeFileBuilder::Records& bytes)
{
    std::string result = "PV" + digits(bytes.size()) + kSep;
    for (const std::string& byte : bytes)
        result += byte + kSep;
    return result;
}

// An identifier and its closing quote, which a special-format identifier brings along.
std::string quoted(std::string_view identifier)
{
    std::string result(identifier);
    if (result.back() != '"')
        result += '"';
    return result;
}

std::string blockReference(unsigned block)
{
    return "SP" + digits(block) + "\"" + kSep;
}

std::string headerOf(const TypeFileBuilder& file)
{
    constexpr std::size_t kWidths[] = {0, 17, 10, 10, 10, 15, 0, 0, 0};
    const std::size_t* width = kWidths;
    std::string result;
#define ADD(field, value) result += padded(file.field, *width++) + kSep;
    TYPE_FILE_HEADER_FIELDS(ADD)
#undef ADD
    return result;
}

std::string version5GroupsOf(const TypeFileBuilder& file)
{
    std::string result = group("DKK", file.channelDiag) + file.bitmapName + kSep + file.libraryName + kSep + "SO" +
                         file.slotOffset + kSep + file.slotNumbering + file.maxDataLen + kSep +
                         group("MLFB", file.orderNumbers) + group("LSK", file.moduleLists) + file.commonPrmLen + kSep +
                         group("SPT", file.slotPrmBlocks) + group("HTT", file.slotHelpBlocks);
    if (file.version[3] >= '1' && file.version[3] <= '9')
        result += "ETER" + file.eterDelay + kSep + "MRD" + file.responseDelay + kSep;
    return result;
}

std::string categoryIOf(const TypeFileBuilder& file)
{
// NOLINTNEXTLINE(bugprone-macro-parentheses): it is one link of a sum
#define ADD(field, value) file.field + kSep +
    std::string result = TYPE_FILE_FIXED_FIELDS(ADD) byteGroup(file.userPrmBytes) + group("PSL", file.prms);
    if (!file.helpBlocks.empty())
        result += group("HTT", file.helpBlocks);
    result += group(file.structureCode, file.presetSlots) + "SY" + kSep + group("DKM", file.deviceDiag);
    return file.version[1] < '5' ? result : result + version5GroupsOf(file);
}

std::string categoryIIOf(const TypeFileBuilder& file)
{
    return TYPE_FILE_CATEGORY_II_FIELDS(ADD) group("DKM", file.deviceDiag);
}
#undef ADD

#define NAMED(field, value) {#field, &TypeFileBuilder::field},
#define NAMED_GROUP(field) {#field, &TypeFileBuilder::field},
const std::map<std::string_view, std::string TypeFileBuilder::*> kFields = {TYPE_FILE_HEADER_FIELDS(
    NAMED) TYPE_FILE_FIXED_FIELDS(NAMED) TYPE_FILE_CATEGORY_II_FIELDS(NAMED) TYPE_FILE_OTHER_FIELDS(NAMED)};
const std::map<std::string_view, TypeFileBuilder::Records TypeFileBuilder::*> kGroups = {TYPE_FILE_GROUPS(NAMED_GROUP)};
#undef NAMED
#undef NAMED_GROUP

} // namespace

TypeFileBuilder TypeFileBuilder::with(std::string_view changes) const
{
    TypeFileBuilder file = *this;
    while (!changes.empty()) {
        const std::string_view change = changes.substr(0, changes.find('+'));
        changes.remove_prefix(std::min(change.size() + 1, changes.size()));
        const std::string_view name = change.substr(0, change.find('='));
        const std::string value(change.substr(name.size() + 1));
        if (const auto field = kFields.find(name); field != kFields.end())
            file.*field->second = value;
        else if (const auto list = kGroups.find(name); list != kGroups.end())
            file.*list->second = value.empty() ? Records{} : Records{value + kSep};
        else
            ADD_FAILURE() << "no field " << name;
    }
    return file;
}

std::string TypeFileBuilder::build() const
{
    return (headLine.empty() ? "" : headLine + "\r\n") + headerOf(*this) +
           (categoryII ? categoryIIOf(*this) : categoryIOf(*this));
}

TypeFileBuilder TypeFileBuilder::categoryIIFile()
{
    TypeFileBuilder file;
    file.stationType = "QX410K";
    file.categoryII = true;
    return file;
}

TypeFileBuilder TypeFileBuilder::fullFile()
{
    TypeFileBuilder file;
    file.headLine = "Made by hand <4711-VX8                      >";
    file.userPrmLen = "V040";
    file.userPrmBytes = {"01", "fE", "80"};
    file.prms = {record::prm(7, "Watch mode", "BIT0 ", "1", "0", "1", 1),
                 record::prm(8, "Delay", "BYTE ", "10", "0", "200"),
                 record::prm(9, "Limit", "INT  ", "-1", "-100", "100")};
    file.helpBlocks = {record::helpBlock(1, {record::helpLine(0, "off"), record::helpLine(1, "on")})};
    file.deviceDiag = {record::deviceBit(1, '0', '1', "Supply missing"),
                       record::deviceGroup(2, '0', '4', 15, "Overheated")};
    file.channelDiag = {record::channelError(16, "Wire broken")};
    file.orderNumbers = {record::orderNumber("4711-M1", "017", 1),
                         record::orderNumber("4711-M2", "193\"005\"003\"170\"", 0)};
    file.moduleLists = {record::moduleList(1, "Valves", "KX",
                                           {record::slotEntry("033", "Slot one", 1),
                                            record::slotEntry("066\"001\"170\"187\"", "Slot two", 2)}),
                        record::moduleList(2, "By order number", "MV", {record::slotNumber(1, "First")})};
    file.commonPrmLen = "005";
    file.slotPrmBlocks = {record::slotPrmBlock(1, 4, {"0A", "0B"},
                                               {record::prm(1, "Gain", "BGR24", "1010", "0", "15", 1),
                                                record::slotNumberPrm(2, "UINT ")}),
                          record::slotPrmBlock(2, 2, {}, {})};
    file.slotHelpBlocks = {record::helpBlock(1, {record::helpLine(10, "ten"), record::helpLine(65535, "all")})};
    file.eterDelay = "012";
    file.responseDelay = "100";
    return file;
}

TypeFileBuilder TypeFileBuilder::fullPresetFile()
{
    TypeFileBuilder file = fullFile();
    file.moduleLists.clear();
    file.presetSlots = {record::presetSlot("017"), record::presetSlot("033", "001"),
                        record::presetSlot("193\"005\"003\"170\"", "002")};
    return file;
}

TypeFileBuilder fixedProfileFile()
{
    return TypeFileBuilder().with("stationType=QX410U/VRC+evenSlotNumber=J+baudRates=0001011111+maxOutputLen=032+"
                                  "maxModule=032+userPrmLen=007");
}

TypeFileBuilder gatewayFile()
{
    TypeFileBuilder file = TypeFileBuilder().with("stationType=DPASI/GATE+maxInputLen=016+maxDataLen=032+"
                                                  "maxModule=004+userPrmLen=140");
    file.presetSlots.assign(3, record::presetSlot("017"));
    return file;
}

TypeFileBuilder kgpFile()
{
    TypeFileBuilder file = TypeFileBuilder().with("stationType=KGP/QX410L+userPrmLen=V020+presetSlots=017\"SP001\"");
    file.slotNumbering = "SN012\"ab\"034\"5\";\r\nKO001;\r\n";
    file.orderNumbers = {record::kgpModule("4711", "1023", "000\"128\"255", 1)};
    file.slotPrmBlocks = {record::slotPrmBlock(1, 4, {"01"}, {})};
    return file;
}

TypeFileBuilder presetFile(const std::string& code, std::size_t count)
{
    TypeFileBuilder file = TypeFileBuilder().with("maxModule=244+structureCode=" + code);
    file.presetSlots.assign(count, code[0] == 'M' ? record::presetNumber(1) : record::presetSlot("017"));
    file.orderNumbers = {record::orderNumber("4711", "033", 0)};
    return file;
}

std::vector<std::string> imagesOfEachKind()
{
    return {TypeFileBuilder().build(),
            TypeFileBuilder::fullFile().build(),
            TypeFileBuilder::fullPresetFile().build(),
            TypeFileBuilder::fullPresetFile().with("version=V4.0").build(),
            TypeFileBuilder::categoryIIFile().build(),
            fixedProfileFile().build(),
            gatewayFile().build(),
            kgpFile().build(),
            presetFile("MX", 2).build(),
            "V3.0;\r\nQMX   Old island          04711   1;\r\nN;\r\n2;\r\n0;\r\n3;\r\nJ;\r\n"};
}

namespace record {

std::string presetSlot(std::string_view identifier, std::string_view block)
{
    if (block.empty())
        return std::string(identifier) + kSep;
    return quoted(identifier) + "SP" + std::string(block) + "\"" + kSep;
}

std::string presetNumber(unsigned number)
{
    return digits(number) + kSep;
}

std::string deviceBit(unsigned byte, char bit, char value, std::string_view text)
{
    return "DBO" + digits(byte) + "\"" + bit + "\"" + padded(text, 30) + "\"" + value + "\"" + kSep;
}

std::string deviceGroup(unsigned byte, char firstBit, char bits, unsigned value, std::string_view text)
{
    return "DBO" + digits(byte) + "\"BGR" + firstBit + bits + "\"" + padded(text, 30) + "\"" + digits(value) + "\"" +
           kSep;
}

std::string channelError(unsigned type, std::string_view text)
{
    return "KFC" + digits(type, 2) + "\"" + padded(text, 30) + "\"" + kSep;
}

std::string orderNumber(std::string_view text, std::string_view identifier, unsigned block)
{
    return "\"" + padded(text, 30) + "\"" + quoted(identifier) + blockReference(block);
}

std::string kgpModule(std::string_view text, std::string_view id, std::string_view values, unsigned block)
{
    return "\"" + padded(text, 30) + "\"" + std::string(id) + "\"" + std::string(values) + "\"" + blockReference(block);
}

std::string slotEntry(std::string_view identifier, std::string_view text, unsigned block)
{
    return quoted(identifier) + padded(text, 20) + "\"" + blockReference(block);
}

std::string slotNumber(unsigned number, std::string_view text)
{
    return digits(number) + "\"" + padded(text, 20) + "\"" + kSep;
}

std::string moduleList(unsigned number, std::string_view text, std::string_view code,
                       const TypeFileBuilder::Records& slots)
{
    return "SK" + digits(number) + "\"" + padded(text, 30) + "\"" + kSep + group(code, slots);
}

std::string prm(unsigned byte, std::string_view name, std::string_view type, std::string_view value,
                std::string_view minimum, std::string_view maximum, unsigned help)
{
    // A default of eight characters is ended by its width; the quote behind it is skipped like any other character.
    return "PS" + digits(byte) + "\"" + padded(name, 30) + "\"" + padded(type, 5) + "\"" + std::string(value) + "\"" +
           std::string(minimum) + "\"" + std::string(maximum) + "\"HI" + digits(help) + "\"" + kSep;
}

std::string slotNumberPrm(unsigned byte, std::string_view type)
{
    return "PS" + digits(byte) + "[SlotNumber][" + padded(type, 5) + "][000]" + kSep;
}

std::string slotPrmBlock(unsigned number, unsigned length, const TypeFileBuilder::Records& bytes,
                         const TypeFileBuilder::Records& prms)
{
    return "SP" + digits(number) + kSep + digits(length) + kSep + byteGroup(bytes) + group("PSL", prms);
}

std::string helpLine(unsigned value, std::string_view text)
{
    return "\"" + padded(text, 30) + "\"" + digits(value, 5) + "\"" + kSep;
}

std::string helpBlock(unsigned number, const TypeFileBuilder::Records& lines)
{
    return "HI" + digits(number) + kSep + "L" + digits(lines.size()) + kSep + joined(lines);
}

} // namespace record

std::string replaced(std::string image, std::string_view from, std::string_view to)
{
    const std::size_t position = image.find(from);
    EXPECT_NE(position, std::string::npos) << from;
    EXPECT_EQ(image.find(from, position + 1), std::string::npos) << from << " occurs twice";
    return position == std::string::npos ? image : image.replace(position, from.size(), to);
}

std::unique_ptr<cTypDescriptor> descriptorOf(const std::string& image)
{
    // Behind an image, an object image has two 32-bit words: not made from a GSD file, and no GSD revision.
    std::string object = image + std::string(4, '\0') + std::string(4, '\xff');
    return std::make_unique<cTypDescriptor>(static_cast<unsigned short>(object.size()), object.data());
}

std::unique_ptr<cTypDescriptor> checked(const TypeFileBuilder& file)
{
    auto device = descriptorOf(file.build());
    EXPECT_EQ(device->checkTypeFileContents(), kOk) << device->getStatus();
    return device;
}

int checkResult(const std::string& image)
{
    return descriptorOf(image)->checkTypeFileContents();
}
