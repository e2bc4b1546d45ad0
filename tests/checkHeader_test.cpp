// The head line, the header, the old header of version 3, and checks that are asked for twice.

#include "descriptor/cTypDescriptor.h"
#include "tests/checkCases.h"
#include "tests/typeFileBuilder.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

using namespace std::string_literals;

SLAVE_TYPE_HEADER_INFO headerOf(const cTypDescriptor& device)
{
    SLAVE_TYPE_HEADER_INFO header = SLAVE_TYPE_HEADER_INFO();
    EXPECT_EQ(device.getSlaveTypeHeader(&header), kOk);
    return header;
}

// A text inside the image of a checked descriptor, before its diagnostic texts.
char* find(const cTypDescriptor& device, std::string_view text)
{
    char* p = device.getDKMPos();
    while (std::string_view(p, text.size()) != text)
        --p;
    return p;
}

std::string version3Image(const std::string& model, const std::string& typeData)
{
    return "V3.0;\r\nQMX   " + model + "   04711   " + typeData + "behind   ";
}

const std::string kOldModel = "Old island       ";
const std::string kOldTypeData = "1;\r\nN;\r\n2;\r\n0;\r\n3;\r\nJ;\r\n";

TEST(CheckHeader, FieldsThatAreEmpty)
{
    TypeFileBuilder file;
    file.modelName[0] = '\0';
    EXPECT_EQ(checkResult(file.build()), kErrHeader);
    file = TypeFileBuilder();
    file.family[0] = '\0';
    EXPECT_EQ(checkResult(file.build()), kErrHeader);
}

TEST(CheckHeader, ConfigurationAndMaker)
{
    forEachCase("J > 1 3 | N > 0 1 | 0 > 1 65539 | 1 > 1 131075",
                [](const std::string& cnf, const std::string& expected) {
                    const auto device = descriptorOf(TypeFileBuilder().with("makerDevice=J+headerCnf=" + cnf).build());
                    ASSERT_EQ(device->checkTypeFileContents(), kOk);
                    const SLAVE_TYPE_HEADER_INFO header = headerOf(*device);
                    EXPECT_EQ(header.makerDevice, 1);
                    SLAVE_TYPEDATA_TYPE data;
                    EXPECT_EQ(device->getSlaveTypeData(&data), 0);
                    EXPECT_EQ(std::to_string(header.headerCnf) + ' ' + std::to_string(data.features), expected);
                });
}

TEST(CheckHeader, HeadLine)
{
    const std::string thirty(30, 'x');
    const struct {
        std::string line; // with its line end
        int code;
        std::string orderNumber; // empty for none
    } cases[] = {
        {"No brackets\r\n", kOk, ""},
        {std::string(80, '-') + "\r\n", kOk, ""},
        {std::string(81, '-') + "\r\n", kErrHeader, ""},
        {"No line feed\r", kErrHeader, ""},
        {"With; semicolon\r\n", kErrHeader, ""}, // no head line then, and no header
        {"\0behind a NUL <A1>\r\n"s, kOk, "A1"},
        {"Number <A1> <B2>\r\n", kOk, "A1"},
        {"Number <" + thirty + ">\r\n", kOk, thirty},
        {"Number <" + thirty + "x>\r\n", kOk, ""},
        {"Number A1>\r\n", kOk, ""},
    };
    for (const auto& one : cases) {
        const auto device = descriptorOf(one.line + TypeFileBuilder().build());
        EXPECT_EQ(device->checkTypeFileContents(), one.code) << one.line;
        EXPECT_EQ(device->getStatus(), one.code);
        char number[31] = "";
        if (one.code == kOk) {
            EXPECT_EQ(device->getMLFBstring(number), uint16_t(one.orderNumber.empty() ? kErrNoOrderNumber : kOk));
        }
        EXPECT_EQ(number, one.orderNumber) << one.line;
    }
    for (const char* image : {"", ";", "\r\n", "no line end;", "<>\r\n;"})
        EXPECT_EQ(checkResult(image), kErrHeader) << image;
}

// The brackets belong to the first characters of the image, not to the head line.
TEST(CheckHeader, BracketsMayStandInTheHeader)
{
    for (const bool isNear : {true, false}) {
        TypeFileBuilder file = TypeFileBuilder().with("modelName=A>");
        file.headLine = std::string(isNear ? 79 : 78, '-') + (isNear ? "<" : "");
        file.version = isNear ? "V5.2" : "<5.2"; // the bracket is then at position 80
        const auto device = checked(file);
        EXPECT_EQ(headerOf(*device).modelName[1], isNear ? '\0' : '>');
    }
}

TEST(CheckHeader, SecondCheckRunsOnTheChangedImage)
{
    const auto device = descriptorOf(TypeFileBuilder::fullFile().build());
    char number[31];
    for (const int code : {kOk, kErrNoOrderNumber}) {
        ASSERT_EQ(device->checkTypeFileContents(), kOk);
        EXPECT_EQ(device->getMLFBstring(number), uint16_t(code));
        EXPECT_EQ(device->getSlaveBGrDiagMsgCnt(), 1);
    }
    // A failure is final, whatever happens to the image.
    char* position = find(*device, "04660");
    *position = 'X';
    EXPECT_EQ(device->checkTypeFileContents(), kErrIdentNumber);
    *position = '0';
    EXPECT_EQ(device->checkTypeFileContents(), kErrIdentNumber);
    SLAVE_TYPE_HEADER_INFO header;
    EXPECT_EQ(device->getSlaveTypeHeader(&header), uint16_t(kErrHeader));
}

// The bare names are no stations of the table. The category of an earlier check lets them pass, and only that.
TEST(CheckHeader, BareStationNames)
{
    for (const std::string& name : {"QX410B\0"s, "QX410C\0"s}) {
        const std::string image = TypeFileBuilder().build();
        EXPECT_EQ(checkResult(replaced(image, "DPS/CLASS1     ", name + "        ")), kErrHeader);
        // The identifier is valid in both header configurations.
        forEachCase("presetSlots=017 > 0 | presetSlots= > -21 | presetSlots=017+headerCnf=N > -2",
                    [&name](const std::string& changes, const std::string& code) {
                        const auto device = checked(TypeFileBuilder().with(changes));
                        std::memcpy(find(*device, "DPS/CLASS1"), name.data(), name.size());
                        EXPECT_EQ(device->checkTypeFileContents(), std::stoi(code)) << changes;
                    });
    }
}

TEST(CheckHeader, Version3IsConverted)
{
    for (const std::string& headLine : {""s, std::string(80, '-') + "\r\n"}) {
        const std::string image = headLine + version3Image(kOldModel, kOldTypeData);
        const auto device = descriptorOf(image);
        ASSERT_EQ(device->checkTypeFileContents(), kOk);
        const SLAVE_TYPE_HEADER_INFO header = headerOf(*device);
        EXPECT_STREQ(header.version, "V3.0");
        EXPECT_EQ(header.modelName, kOldModel);
        EXPECT_STREQ(header.vendorName, "");
        EXPECT_STREQ(header.family, "DP        ");
        EXPECT_STREQ(header.stationType, "QMX            ");
        EXPECT_EQ(header.identNumber, 4711);
        SLAVE_TYPEDATA_TYPE data;
        EXPECT_EQ(device->getSlaveTypeData(&data), 1);
        EXPECT_EQ(data.features, uint32_t(kFeatureMakerDevice));
        EXPECT_EQ(data.cat2Digit8, 2);
        EXPECT_EQ(data.cat2Digit16, 3);
        EXPECT_EQ(device->getSlaveDiagMsgCnt(), 0);
        EXPECT_EQ(device->checkTypeFileContents(), kErrHeader); // no longer an old header
        expectEdits(image, "QMX=QMY > -2 | 04711=O4711 > -11 | V3.0;=V3.0, > -2 | Old island=           > -10 | "
                           "2^0=8^0 > -3");
    }
    // A model name that begins like the old station type lets the second check convert the new header once more.
    const auto device = descriptorOf(version3Image("QMX island       ", kOldTypeData));
    EXPECT_EQ(device->checkTypeFileContents(), kOk);
    EXPECT_EQ(device->checkTypeFileContents(), kErrIdentNumber);
}

} // namespace
