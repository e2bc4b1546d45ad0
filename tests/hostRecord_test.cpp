// Host records in both directions: what image a record gives, and what record an image gives.

#include "descriptor/cTypDescriptor.h"
#include "generator/hostRecordImage.h"
#include "tests/typeFileBuilder.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace {

/// A record with the buffers that it points to.
struct HostRecord {
    TYPEFILE_COM_QX410 fields{};
    std::vector<char> userPrm = std::vector<char>(8000);
    std::vector<char> slots = std::vector<char>(8000);

    HostRecord()
    {
        fields.userPrmHex = userPrm.data();
        fields.fixedSlotText = slots.data();
    }
};

/// Writes a text into a member, NUL included when there is room for it.
template <std::size_t Size>
void set(char (&member)[Size], const std::string& text)
{
    std::memset(member, 0, Size);
    text.copy(member, Size);
}

void set(std::vector<char>& buffer, const std::string& text)
{
    ASSERT_LT(text.size(), buffer.size());
    text.copy(buffer.data(), text.size());
    buffer[text.size()] = '\0';
}

HostRecord plainRecord()
{
    HostRecord record;
    TYPEFILE_COM_QX410& fields = record.fields;
    set(fields.headLine, "Drive");
    set(fields.orderNumber, "DX-7/40");
    set(fields.modelName, "Drive 40         ");
    set(fields.vendorName, "Kessel");
    set(fields.family, "Drives");
    set(fields.periphery, "DP");
    set(fields.identNumber, "04660");
    fields.syncModeSupp = 1;
    fields.activeOrMaster = 1;
    fields.modularStation = 1;
    fields.asicCode = '3';
    set(fields.minSlaveInterval, "00020");
    fields.baudRates[3] = 0x00010001;
    set(fields.maxInputLen, "032");
    set(fields.maxOutputLen, "016");
    set(fields.maxModule, "244");
    set(fields.maxDiagDataLen, "016");
    set(fields.userPrmDataLen, "010");
    set(record.userPrm, "0A1bFF");
    set(record.slots, "033193003005170000");
    return record;
}

/// Records of an image, told apart by "|" to keep them readable.
std::string image(const std::string& records)
{
    std::string result;
    for (const char c : records)
        result += c == '|' ? std::string(";\r\n") : std::string(1, c);
    return result;
}

std::string imageOf(const TYPEFILE_COM_QX410& fields)
{
    const std::size_t capacity = typdescriptor::internal::hostRecordImageSize(fields);
    std::string whole(capacity, '\0');
    typdescriptor::internal::writeHostRecordImage(whole.data(), static_cast<std::uint32_t>(capacity), fields);
    return whole.substr(0, whole.find('\0'));
}

int checkResult(const TYPEFILE_COM_QX410& fields)
{
    return cTypDescriptor(&fields).checkTypeFileContents();
}

const std::string kHeader = "V5.x|Drive 40         |Kessel    |Drives    |DP        |DPS/CLASS1     |04660|N|J|";
const std::string kSlots = "KX003|033|193\"003\"005\"170\"|000|SY|";

TEST(HostRecordIn, WritesEveryFieldInItsPlace)
{
    HostRecord record = plainRecord();
    EXPECT_EQ(imageOf(record.fields),
              "Drive<DX-7/40>\r\n" + image(kHeader +
                                           "N|J|N|N|N|J|N|J|3|J|N|N|00020|0000001100|032|016|244|016|"
                                           "010|PV003|0A|1b|FF|PSL000|" +
                                           kSlots +
                                           "DKM000|DKK000|DP_NORM|ISNONAME|SO000|048|MLFB000|LSK000|000|SPT000|"
                                           "HTT000|"));
    EXPECT_EQ(checkResult(record.fields), kOk);
}

TEST(HostRecordIn, KeepsItsOddRules)
{
    const struct {
        const char* name;
        std::function<void(HostRecord&)> change;
        std::string expected; // a part of the image
    } cases[] = {
        {"no head line", [](HostRecord& r) { r.fields.headLine[0] = r.fields.orderNumber[0] = '\0'; }, kHeader},
        {"order number alone", [](HostRecord& r) { r.fields.headLine[0] = '\0'; }, "<DX-7/40>\r\nV5.x|"},
        {"head line alone", [](HostRecord& r) { r.fields.orderNumber[0] = '\0'; }, "Drive\r\nV5.x|"},
        {"texts without NUL",
         [](HostRecord& r) {
             set(r.fields.headLine, std::string(49, 'h'));
             set(r.fields.orderNumber, std::string(31, 'o'));
             set(r.fields.modelName, "Eighteen character");
         },
         std::string(49, 'h') + "<" + std::string(31, 'o') + ">\r\nV5.x|Eighteen characte|"},
        {"flags other than 1",
         [](HostRecord& r) {
             r.fields.setSlaveAddSupp = 2;
             r.fields.modularStation = 2;
         },
         "|N|J|N|N|N|J|N|J|3|J|"},
        {"baud rates are 16-bit units",
         [](HostRecord& r) {
             for (int32_t& flag : r.fields.baudRates)
                 flag = 1;
         },
         "|1010101010|"},
        {"low bytes of baud rates count", [](HostRecord& r) { r.fields.baudRates[3] = 0x7F010002; }, "|0000000100|"},
        {"sum of lengths has three digits",
         [](HostRecord& r) {
             set(r.fields.maxInputLen, "600");
             set(r.fields.maxOutputLen, "500");
         },
         "|SO000|999|MLFB000|"},
        {"no buffers", [](HostRecord& r) { r.fields.userPrmHex = r.fields.fixedSlotText = nullptr; },
         "|PV000|PSL000|KX000|SY|"},
        {"half a byte, half a group",
         [](HostRecord& r) {
             set(r.userPrm, "0A1");
             set(r.slots, "03306");
         },
         "|PV001|0A|PSL000|KX001|033|SY|"},
        {"one group", [](HostRecord& r) { set(r.slots, "000"); }, "|KX001|000|SY|"},
        {"special identifiers of each kind",
         [](HostRecord& r) { set(r.slots, "002001002064200130007001002192255128"); },
         "|KX004|002\"001\"002\"|064\"200\"|130\"007\"001\"002\"|192\"255\"128\"|SY|"},
        {"fifteen manufacturer bytes count",
         [](HostRecord& r) {
             std::string text = "079";
             for (int i = 0; i < 16; ++i)
                 text += "100";
             set(r.slots, text + "033");
         },
         "100\"100\"|033|SY|"},
        {"999 bytes at most", [](HostRecord& r) { set(r.userPrm, std::string(3000, '0')); }, "|PV999|00|"},
        {"999 slots at most", [](HostRecord& r) { set(r.slots, std::string(3600, '0')); }, "|KX999|000|"},
        {"groups missing", [](HostRecord& r) { set(r.slots, "193003"); }, "|KX001|193\"003\"|SY|"},
    };
    for (const auto& row : cases) {
        HostRecord record = plainRecord();
        row.change(record);
        const std::string text = imageOf(record.fields);
        EXPECT_NE(text.find(image(row.expected)), std::string::npos) << row.name << '\n' << text;
    }
}

TEST(HostRecordIn, LeavesTheRefusalToTheCheck)
{
    const struct {
        const char* name;
        std::function<void(HostRecord&)> change;
        int expected;
    } cases[] = {
        {"vendor too long", [](HostRecord& r) { set(r.fields.vendorName, "Kessel & Co"); }, kErrHeader},
        {"family too long", [](HostRecord& r) { set(r.fields.family, "Servodrives"); }, kErrHeader},
        {"periphery too long", [](HostRecord& r) { set(r.fields.periphery, "distributed"); }, kErrHeader},
        {"vendor fits", [](HostRecord& r) { set(r.fields.vendorName, "Kessel Co."); }, kOk},
        {"groups missing", [](HostRecord& r) { set(r.slots, "193003"); }, kErrIdentifier},
    };
    for (const auto& row : cases) {
        HostRecord record = plainRecord();
        row.change(record);
        EXPECT_EQ(checkResult(record.fields), row.expected) << row.name;
    }
    EXPECT_EQ(checkResult(*std::make_unique<TYPEFILE_COM_QX410>()), kErrHeader) << "empty record";
    cTypDescriptor none(static_cast<const TYPEFILE_COM_QX410*>(nullptr));
    EXPECT_EQ(none.getStatus(), kErrFile);
}

TEST(HostRecordOut, IsClearedWhenNothingIsLoaded)
{
    HostRecord record = plainRecord();
    cTypDescriptor unchecked(&record.fields);
    EXPECT_EQ(unchecked.getCOMTypeData(&record.fields), 0);
    const std::string members(reinterpret_cast<const char*>(&record.fields), offsetof(TYPEFILE_COM_QX410, userPrmHex));
    EXPECT_EQ(members, std::string(members.size(), '\0'));
    EXPECT_STREQ(record.fields.userPrmHex, "0A1bFF");
    EXPECT_STREQ(record.fields.fixedSlotText, "033193003005170000");
    EXPECT_EQ(unchecked.getCOMTypeData(nullptr), 0);
}

TEST(HostRecordOut, TakesEveryFieldFromItsPlace)
{
    TypeFileBuilder file;
    file.headLine = "Left <DX-7/40   > right";
    file.setSlaveAddress = "J";
    file.syncMode = "j";
    file.freezeMode = file.modular = "n";
    file.publisherSubscriber = "P";
    file.activeMaster = "m";
    file.asicCode = "n";
    file.slaveInterval = "00999";
    file.baudRates = "1000010001";
    file.userPrmBytes = {"0a", "FF"};
    file.presetSlots = {record::presetSlot("000"), record::presetSlot("065\"200\"170\""),
                        record::presetSlot("193\"003\"005\"255\""), record::presetSlot("002\"001\"002\"")};
    const auto device = descriptorOf(file.build());
    ASSERT_EQ(device->checkTypeFileContents(), kOk);

    HostRecord record;
    std::memset(static_cast<void*>(&record.fields), 0x5A, offsetof(TYPEFILE_COM_QX410, userPrmHex));
    EXPECT_EQ(device->getCOMTypeData(&record.fields), 0) << "a publisher's type file may not be changed";
    const TYPEFILE_COM_QX410& fields = record.fields;
    const std::string texts = std::string(fields.headLine) + "|" + fields.orderNumber + "|" + fields.modelName + "|" +
                              fields.vendorName + "|" + fields.family + "|" + fields.periphery + "|" +
                              fields.identNumber + "|" + fields.minSlaveInterval + "|" + fields.maxInputLen + "|" +
                              fields.maxOutputLen + "|" + fields.maxModule + "|" + fields.maxDiagDataLen + "|" +
                              fields.userPrmDataLen + "|" + fields.userPrmHex + "|" + fields.fixedSlotText;
    EXPECT_EQ(texts,
              "Left  right|DX-7/40   |Valve island 8   |Kessel    |Valves    |DP        |04660|00999|032|016|010|"
              "032|020|0AFF|000065200170193003005255002001002");
    EXPECT_EQ(fields.asicCode, 'N');
    const std::vector<int32_t> flags = {fields.setSlaveAddSupp,        fields.syncModeSupp,   fields.freezeModeSupp,
                                        fields.publisherSubscriber,    fields.diagBufferable, fields.activeOrMaster,
                                        fields.evenSlotNumberRequired, fields.modularStation};
    EXPECT_EQ(flags, std::vector<int32_t>({1, 1, 0, 1, 0, 1, 0, 0}));
    EXPECT_EQ(std::vector<int32_t>(fields.baudRates, fields.baudRates + 9),
              std::vector<int32_t>({1, 0, 0, 0, 1, 0, 0, 0, 1}));
}

TEST(HostRecordOut, CutsALongHeadLineAndEmptiesOnlyTheSlotText)
{
    TypeFileBuilder file;
    file.headLine = std::string(40, 'a') + "<" + std::string(29, 'o') + ">" + "bbbbbbbbb";
    const auto device = descriptorOf(file.build());
    ASSERT_EQ(device->checkTypeFileContents(), kOk);
    HostRecord record = plainRecord();
    EXPECT_EQ(device->getCOMTypeData(&record.fields), 0);
    EXPECT_EQ(record.fields.headLine, std::string(40, 'a') + "bbbbbbbb");
    EXPECT_EQ(record.fields.orderNumber, std::string(29, 'o'));
    EXPECT_STREQ(record.fields.userPrmHex, "0A1bFF");
    EXPECT_STREQ(record.fields.fixedSlotText, "");
}

TEST(HostRecordOut, DerivesTheLengthsOfCategoryII)
{
    const struct {
        const char* station;
        const char* digit0;
        const char* flag4;
        const char* digit8;
        const char* lengths; // input, output, modules
    } cases[] = {
        {"QX410K", "2", "J", "0", "003 002 004"},
        {"QX410C/24V/QMX", "1", "J", "3", "000 001 001"},
        {"QMX", "4", "N", "1", "003 004 007"},
        {"QMX", "0", "N", "0", "008 000 008"},
    };
    for (const auto& row : cases) {
        TypeFileBuilder file = TypeFileBuilder::categoryIIFile();
        file.stationType = row.station;
        file.cat2Digit0 = row.digit0;
        file.cat2Flag4 = row.flag4;
        file.cat2Digit8 = row.digit8;
        const auto device = descriptorOf(file.build());
        ASSERT_EQ(device->checkTypeFileContents(), kOk) << row.station;
        HostRecord record = plainRecord();
        EXPECT_EQ(device->getCOMTypeData(&record.fields), 0);
        const TYPEFILE_COM_QX410& fields = record.fields;
        EXPECT_EQ(std::string(fields.maxInputLen) + " " + fields.maxOutputLen + " " + fields.maxModule, row.lengths)
            << row.station;
        EXPECT_EQ(std::vector<int32_t>(fields.baudRates, fields.baudRates + 9),
                  std::vector<int32_t>({0, 0, 0, 1, 1, 1, 1, 1, 1}));
        EXPECT_EQ(fields.setSlaveAddSupp, 1);
        EXPECT_STREQ(fields.minSlaveInterval, "00000");
        EXPECT_STREQ(fields.maxDiagDataLen, "");
        EXPECT_STREQ(fields.userPrmDataLen, "");
        EXPECT_STREQ(fields.userPrmHex, "0A1bFF") << "category II has no user parameters";
    }
}

TEST(HostRecord, ComesBackFromItsOwnImage)
{
    HostRecord record = plainRecord();
    record.fields.baudRates[0] = 0x00010001;
    record.fields.baudRates[3] = 0;
    cTypDescriptor first(&record.fields);
    ASSERT_EQ(first.checkTypeFileContents(), kOk);
    HostRecord filled;
    EXPECT_EQ(first.getCOMTypeData(&filled.fields), 1);
    EXPECT_STREQ(filled.fields.fixedSlotText, record.fields.fixedSlotText);

    // All but the baud rates: two flags of 32 bits lie two units of 16 bits apart.
    const std::string expected = replaced(imageOf(record.fields), "\n1100000000;", "\n1010000000;");
    EXPECT_EQ(imageOf(filled.fields), replaced(expected, "\n1b;", "\n1B;"));
}

} // namespace
