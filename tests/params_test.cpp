// User parameters, structured parameters, slot parameter blocks and help blocks: what is accepted, with which code the
// rest is refused, and which parameter bytes come out.

#include "descriptor/cTypDescriptor.h"
#include "tests/checkCases.h"
#include "tests/typeFileBuilder.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <string>
#include <utility>

namespace {

using record::helpBlock;
using record::helpLine;
using record::prm;
using record::slotNumberPrm;
using record::slotPrmBlock;
using Records = TypeFileBuilder::Records;

std::string hexText(const unsigned char* bytes, int count)
{
    std::string text;
    for (int i = 0; i < count; ++i) {
        std::array<char, 3> digits{};
        std::snprintf(digits.data(), digits.size(), "%02X", static_cast<unsigned>(bytes[i]));
        text += digits.data();
    }
    return text;
}

// A station with four user parameter bytes, at the indexes 7 to 10.
TypeFileBuilder station(const Records& prms)
{
    TypeFileBuilder file;
    file.version = "V5.0"; // the only major version 5 that can be changed
    file.userPrmLen = "011";
    file.userPrmBytes = {"fF", "00", "Aa"};
    file.prms = prms;
    return file;
}

// A device with room for slot parameter blocks of every length.
TypeFileBuilder slotDevice(const Records& blocks)
{
    TypeFileBuilder file;
    file.userPrmLen = "V244";
    file.slotPrmBlocks = blocks;
    return file;
}

TEST(StructuredPrm, DefaultsReachTheBytes)
{
    struct Case {
        const char* bytes; // preset FF 00 AA 00
        Records prms;
    };
    const Case cases[] = {
        {"FF00AA00", {}},
        {"FB18AA00", {prm(7, "Group", "BGR23", "110", "0", "7"), prm(8, "", "BGR23", "110", "0", "7")}},
        {"0000AA80", {prm(7, "Whole byte", "BGR08", "00000000", "0", "255"), prm(10, "", "BGR71", "1", "0", "1")}},
        {"A700AA00", {prm(7, "Bit string", "BIN  ", "10100111", "000", "255")}},
        {"0000AA00", {prm(7, "No default", "BYTE ", "", "", "")}},
        {"FB00AA00", {prm(7, "Negative", "BYTE ", "-5", "0", "255")}},
        {"FF11AA00", {prm(8, "Eight digits", "BYTE ", "00000017", "0", "255")}},
        {"FF00FFFF", {prm(9, "Minus one", "UINT ", "-1", "0", "65535")}},
        {"0D00AA00", {prm(7, "Byte first", "BYTE ", "12", "0", "255"), prm(7, "then bit", "BIT0 ", "1", "0", "1")}},
    };
    for (const Case& c : cases) {
        const auto device = checked(station(c.prms));
        EXPECT_EQ(device->changeTypeFilePossible(), c.prms.empty() ? 1 : 0);
        EXPECT_EQ(device->getParaStructCnt(), static_cast<int>(c.prms.size()));
        SLAVE_TYPEDATA_TYPE data;
        device->getSlaveTypeData(&data);
        EXPECT_EQ(hexText(data.userPrmData, 4), c.bytes);
    }
}

// One image with everything in it, and what becomes of it when a single text is replaced.
TEST(PrmGroups, OneTextReplaced)
{
    TypeFileBuilder file = slotDevice({slotPrmBlock(1, 17, {"0B"}, {slotNumberPrm(0, "UINT ")})});
    file.userPrmLen = "V020"; // bytes 7 to 19
    file.userPrmBytes = {"fF", "00", "Aa"};
    file.prms = {
        prm(7, "Byte", "BYTE ", "00000011", "12", "13", 1),  prm(8, "Bit", "BIT6 ", "1", "0", "1"),
        prm(8, "Group", "BGR23", "101", "4", "7"),           prm(9, "String", "BIN  ", "10100101", "9", "254"),
        prm(10, "Signed", "INT  ", "-1", "-32768", "32767"), prm(18, "Unsigned", "UINT ", "258", "3", "65535")};
    file.helpBlocks = {helpBlock(2, {helpLine(0, "off"), helpLine(65432, "on")})};
    const std::string image = file.build();

    forEachCaseIn("parameters.txt", [&image](const std::string&, const std::string& change, const std::string& code) {
        EXPECT_EQ(checkResult(edited(image, change)), std::stoi(code)) << change;
    });
    EXPECT_EQ(checkResult(station({slotNumberPrm(7, "BYTE ")}).build()), kErrPrmRecord);
    EXPECT_EQ(checkResult(station({prm(7, "", "BIT0 ", "1", "0", "1"), prm(7, "", "BYTE ", "1", "0", "1")}).build()),
              kErrPrmValue);
    EXPECT_EQ(checkResult(slotDevice({slotPrmBlock(1, 1, {"01", "02"}, {})}).build()), kErrSlotPrm);
}

TEST(HelpBlock, HasAtMost999Lines)
{
    TypeFileBuilder file;
    file.helpBlocks = {helpBlock(1, Records(999, helpLine(1, "again")))};
    EXPECT_EQ(checkResult(file.build()), kOk);
    file.helpBlocks = {helpBlock(1, Records(1000, helpLine(1, "again")))};
    EXPECT_EQ(checkResult(file.build()), kErrHelpBlock);
}

TEST(UserPrm, FixedProfileHasNone)
{
    TypeFileBuilder file = fixedProfileFile();
    file.prms = {prm(7, "", "BYTE ", "1", "0", "1")};
    EXPECT_EQ(checkResult(file.build()), kErrFixedProfile);
    file.userPrmBytes = {"00"};
    EXPECT_EQ(checkResult(file.build()), kErrUserPrm);
}

TEST(SlotPrmBlock, AcceptedWithItsBytes)
{
    const std::pair<std::string, std::string> cases[] = {
        {slotPrmBlock(1, 2, {"0a", "F0"}, {}), "0AF0"},
        {slotPrmBlock(1, 237, {}, {prm(236, "Last", "BYTE ", "66", "0", "255")}), std::string(472, '0') + "42"},
    };
    for (const auto& [block, expected] : cases) {
        const auto device = checked(slotDevice({block}));
        unsigned char bytes[237];
        int length = 0;
        EXPECT_EQ(device->getSlotParameters(0, bytes, &length), kOk);
        EXPECT_EQ(hexText(bytes, length), expected);
    }
}

TEST(SlotPrmBlock, OneNumberTwice)
{
    const auto device =
        checked(slotDevice({slotPrmBlock(1, 2, {"01"}, {}), slotPrmBlock(1, 1, {"02"}, {slotNumberPrm(0, "BYTE ")})}));
    unsigned char bytes[2];
    int length = 7;
    EXPECT_EQ(device->getSlotParameters(0, bytes, &length), kOk);
    EXPECT_EQ(hexText(bytes, length), "02"); // the later one
    EXPECT_EQ(device->getSlotParameters(1, bytes, &length), kErrSlotPrm);
    EXPECT_EQ(length, 0);
    _parastruct entry;
    EXPECT_EQ(device->getStructuredSlotParameterCnt(1), 0);
    EXPECT_EQ(device->getStructuredSlotParameter(1, -1, &entry), kErrSlotPrm);
    KEYWORD_TYPE keyword;
    EXPECT_EQ(device->hasSPBlockThisKeyWord(&keyword, 1, 0), 0);
}

TEST(SlotPrmBlock, KeywordsOneAfterTheOther)
{
    const auto device = checked(
        slotDevice({slotPrmBlock(1, 120, {},
                                 {slotNumberPrm(105, "INT  "), prm(1, "Not a keyword", "BYTE ", "1", "0", "1"),
                                  slotNumberPrm(7, "BYTE "), prm(2, "x [SlotNumber] y", "BYTE ", "1", "0", "1")}),
                    slotPrmBlock(2, 2, {}, {prm(0, "Semi;colon", "BYTE ", "1", "0", "1"), slotNumberPrm(1, "BYTE ")}),
                    slotPrmBlock(3, 2, {}, {})}));
    const auto next = [&](int block, int which = 0) {
        KEYWORD_TYPE keyword{};
        const int found = device->hasSPBlockThisKeyWord(&keyword, block, which);
        return found != 0 ? std::to_string(keyword.byteOffset) + keyword.dataType : "none";
    };
    EXPECT_EQ(next(0), "5INT  "); // without its hundreds
    EXPECT_EQ(next(0), "7BYTE ");
    EXPECT_EQ(next(0), "2y    "); // looks like one
    EXPECT_EQ(next(0), "none");
    EXPECT_EQ(next(0), "5INT  "); // again from the first
    EXPECT_EQ(next(1), "none");   // goes on at record 1, which the semicolon has moved
    EXPECT_EQ(next(2), "none");
    EXPECT_EQ(next(0), "5INT  ");
    for (const auto& [block, which] : {std::pair(3, 0), std::pair(-1, 0), std::pair(0, 1)})
        EXPECT_EQ(next(block, which), "none"); // not looked for, so that the search stays where it is
    EXPECT_EQ(next(0), "7BYTE ");
}

} // namespace
