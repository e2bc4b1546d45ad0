// Host records in both directions: what image a record gives, and what record an image gives.

#include "descriptor/cTypDescriptor.h"
#include "generator/hostRecordImage.h"
#include "tests/caseTable.h"
#include "tests/hostRecord.h"
#include "tests/typeFileBuilder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <sstream>
#include <string>
#include <vector>

namespace {

/// A text with its repetitions written out: "h*49".
std::string writtenOut(const std::string& text)
{
    const std::size_t star = text.find('*');
    return star == std::string::npos ? text : std::string(std::stoul(text.substr(star + 1)), text[0]);
}

/// Sets members: "member=value", several of them joined by "+".
HostRecord changed(HostRecord record, const std::string& changes)
{
    std::istringstream stream(changes);
    for (std::string change; std::getline(stream, change, '+');) {
        const std::string name = change.substr(0, change.find('='));
        const std::string value = writtenOut(change.substr(name.size() + 1));
        const auto member = std::find_if(std::begin(kHostRecordMembers), std::end(kHostRecordMembers),
                                         [&name](const HostRecordMember& one) { return one.name == name; });
        if (name == "userPrmHex" || name == "fixedSlotText") {
            const bool isPrm = name == "userPrmHex";
            record.setTexts(isPrm ? value : record.userPrmHex.data(), isPrm ? record.fixedSlotText.data() : value);
        } else if (name == "texts") {
            record.fields.userPrmHex = record.fields.fixedSlotText = nullptr;
        } else if (name == "baudRates") {
            std::fill(record.fields.baudRates, record.fields.baudRates + 9, std::stoi(value));
        } else if (name == "asicCode") {
            record.fields.asicCode = value[0];
        } else if (member == std::end(kHostRecordMembers)) {
            ADD_FAILURE() << "no member " << name;
        } else {
            const std::int32_t flag = member->kind == HostRecordMember::kFlag ? std::stoi(value) : 0;
            setMember(record.fields, *member,
                      member->kind == HostRecordMember::kFlag
                          ? std::string(reinterpret_cast<const char*>(&flag), sizeof flag)
                          : value);
        }
    }
    return record;
}

HostRecord plainRecord()
{
    HostRecord record = changed(
        HostRecord(), "headLine=Drive+orderNumber=DX-7/40+modelName=Drive 40         +vendorName=Kessel+family=Drives+"
                      "periphery=DP+identNumber=04660+syncModeSupp=1+activeOrMaster=1+modularStation=1+asicCode=3+"
                      "minSlaveInterval=00020+maxInputLen=032+maxOutputLen=016+maxModule=244+maxDiagDataLen=016+"
                      "userPrmDataLen=010+userPrmHex=0A1bFF+fixedSlotText=033193003005170000");
    record.fields.baudRates[3] = 0x00010001;
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

TEST(HostRecordIn, Cases)
{
    forEachCaseIn("records.txt", [](const std::string& section, const std::string& input, const std::string& expected) {
        const HostRecord record = changed(plainRecord(), input);
        if (section == "checks") {
            EXPECT_EQ(checkResult(record.fields), std::stoi(expected)) << input;
            return;
        }
        const std::string text = imageOf(record.fields);
        EXPECT_NE(text.find(image(expected)), std::string::npos) << input << '\n' << text;
    });
    HostRecord lowBytes = plainRecord();
    lowBytes.fields.baudRates[3] = 0x7F010002;
    EXPECT_NE(imageOf(lowBytes.fields).find(image("|0000000100|")), std::string::npos);
    const HostRecord wide = changed(plainRecord(), "headLine=h*49+orderNumber=o*31+modelName=Eighteen character");
    EXPECT_TRUE(
        imageOf(wide.fields)
            .starts_with(std::string(49, 'h') + '<' + std::string(31, 'o') + ">\r\nV5.x;\r\nEighteen characte;"));
    EXPECT_TRUE(imageOf(changed(plainRecord(), "headLine=").fields).starts_with("<DX-7/40>\r\nV5.x;"));
    EXPECT_TRUE(imageOf(changed(plainRecord(), "orderNumber=").fields).starts_with("Drive\r\nV5.x;"));
    EXPECT_TRUE(imageOf(changed(plainRecord(), "headLine=+orderNumber=").fields).starts_with(image(kHeader)));
    EXPECT_EQ(checkResult(TYPEFILE_COM_QX410()), kErrHeader) << "empty record";
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
    const auto device = checked(file);

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
    const auto device = checked(file);
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
        const auto device = checked(file);
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
