// Diagnostic texts, configuration identifiers, order-number list, module lists, slot parameter and help blocks, and the
// references between them.

#include "descriptor/cTypDescriptor.h"
#include "tests/checkCases.h"
#include "tests/typeFileBuilder.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// "identifier headerCnf > kind lengthByte1 lengthByte2 mfrData[0]"; 17 is general for one configuration and compact for
// the other, 15 and 79 say 15 manufacturer bytes, which stand for none, and a length byte of 255 is -1.
TEST(CheckIdentifiers, Decoded)
{
    forEachCase(
        "000 J > 0 0 0 0 | 017 J > 1 0 0 0 | 255 J > 1 0 0 0 | 017 N > 3 0 0 0 | 015 J > 5 -1 -1 0 | "
        "002'170'187' J > 5 -1 -1 170 | 064'005' J > 5 5 -1 0 | 064'000' J > 5 0 -1 0 | 079'255' J > 5 -1 -1 0 | "
        "129'007'009' J > 5 7 -1 9 | 193'005'003'170' 0 > 5 5 3 170 | 193'005'005'170' 1 > 5 5 5 170",
        [](const std::string& input, const std::string& expected) {
            const std::string identifier = input.substr(0, input.size() - 2);
            for (const char* reference : {"", "SP000\""}) {
                const auto device =
                    descriptorOf(TypeFileBuilder()
                                     .with("presetSlots=" + identifier + reference + "+headerCnf=" + input.back())
                                     .build());
                ASSERT_EQ(device->checkTypeFileContents(), kOk) << input;
                CSLAVE_SLOT_PRESET_TYPE preset;
                ASSERT_EQ(device->getFixedSlotId(0, &preset), kOk);
                EXPECT_EQ(std::to_string(preset.kind) + ' ' + std::to_string(preset.lengthByte1) + ' ' +
                              std::to_string(preset.lengthByte2) + ' ' + std::to_string(preset.mfrData[0]),
                          expected);
                EXPECT_EQ(preset.identifier, std::stoi(input));
            }
        });
}

TEST(CheckLists, RulesBetweenGroups)
{
    TypeFileBuilder file = TypeFileBuilder::fullFile();
    file.moduleLists.pop_back();
    expectChecks(file, "evenSlotNumber=J > 0 | orderNumbers= > 0 | orderNumbers=+userPrmLen=040 > -87 | "
                       "orderNumbers=+slotPrmBlocks= > -87");
    file.slotPrmBlocks[1] = file.slotPrmBlocks[0];
    EXPECT_EQ(checkResult(file.build()), kErrModuleList); // no block 2

    // The budget is that of one list: two lists of ten bytes fit where one of twenty does not.
    const std::string slot = record::slotEntry("017", "", 1);
    file = TypeFileBuilder().with("userPrmLen=V017");
    file.slotPrmBlocks = {record::slotPrmBlock(1, 10, {}, {})};
    file.moduleLists = {record::moduleList(1, "", "KX", {slot}), record::moduleList(2, "", "KX", {slot})};
    EXPECT_EQ(checkResult(file.build()), kOk);
    file.moduleLists = {record::moduleList(1, "", "KX", {slot, slot})};
    EXPECT_EQ(checkResult(file.build()), kErrPrmLen);
}

TEST(CheckLists, KgpModules)
{
    // The five digits are what the generator writes for module 1000.
    TypeFileBuilder file = TypeFileBuilder().with("stationType=KGP/QX410L+userPrmLen=V020+slotNumbering=KO000;\r\n");
    file.orderNumbers = {record::kgpModule("4711", "1023", "000\"128\"255", 0)};
    expectEdits(file.build(),
                "1023'=0000' > 0 | 1023'=1024' > -86 | 1023'=-001' > -86 | 1023'=01000' > -86 | '255'='256' > -86 | "
                "'128'='-01' > -86 | '128'=' > -86");
    const auto device = checked(file);
    MLFB_ITEM item;
    ASSERT_EQ(device->getMLFBListItem(0, &item), kOk);
    EXPECT_EQ(item.kgpId, 1023);
    EXPECT_EQ(item.kgpData[1], 128);
    EXPECT_EQ(item.kgpData[2], 255);
    EXPECT_EQ(item.spIndex, -1);
}

} // namespace
