// Category-I type data: fixed block, lengths, preset slots, the groups since version 5 and the rules of stations.

#include "descriptor/cTypDescriptor.h"
#include "tests/checkCases.h"
#include "tests/typeFileBuilder.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>

namespace {

SLAVE_TYPEDATA_TYPE dataOf(const TypeFileBuilder& file)
{
    SLAVE_TYPEDATA_TYPE data = SLAVE_TYPEDATA_TYPE();
    EXPECT_EQ(checked(file)->getSlaveTypeData(&data), 0);
    return data;
}

TEST(CheckTypeData, Cases)
{
    std::map<std::string, TypeFileBuilder> files = {{"plain", TypeFileBuilder()},
                                                    {"fixed profile", fixedProfileFile()},
                                                    {"gateway", gatewayFile()},
                                                    {"kgp", kgpFile()},
                                                    {"3 presets", presetFile("KX", 3)},
                                                    {"44 presets", presetFile("KX", 44)},
                                                    {"presets by order number", presetFile("MX", 2)},
                                                    {"full", TypeFileBuilder::fullFile()},
                                                    {"full presets", TypeFileBuilder::fullPresetFile()}};
    for (const auto& [name, file] : files)
        EXPECT_EQ(checkResult(file.build()), kOk) << name;
    const std::string edits = "edits of ";
    forEachCaseIn("checks.txt", [&](const std::string& section, const std::string& change, const std::string& code) {
        const bool isEdit = section.starts_with(edits);
        const TypeFileBuilder& good = files.at(isEdit ? section.substr(edits.size()) : section);
        const std::string image = isEdit ? edited(good.build(), change) : good.with(withTerminators(change)).build();
        EXPECT_EQ(checkResult(image), std::stoi(code)) << section << ": " << change;
    });
}

TEST(CheckTypeData, Decoded)
{
    TypeFileBuilder file = TypeFileBuilder().with(
        "setSlaveAddress=J+freezeMode=J+evenSlotNumber=J+publisherSubscriber=s+activeMaster=m+moduleKinds=e+asicCode=3+"
        "baudRates=1000000010+maxInputLen=017BIT+maxOutputLen=016BIT+maxDataLen=004+eterDelay=998+responseDelay=099");
    file.userPrmBytes = {"aB", "01"};
    SLAVE_TYPEDATA_TYPE data = dataOf(file);
    EXPECT_STREQ(data.stationType, "DPS/CLASS1     ");
    EXPECT_EQ(data.identNumber, 4660);
    EXPECT_EQ(data.features,
              uint32_t(kFeatureHeaderCnf | kFeatureSetSlaveAddress | kFeatureFreezeMode | kFeatureEvenSlotNumber |
                       kFeatureSubscriber | kFeatureMaster | kFeatureOnlyNormal));
    EXPECT_EQ(data.asicType, 3);
    EXPECT_EQ(data.minSlaveInterval, 20);
    EXPECT_EQ(data.baudRates, 0x202);
    EXPECT_EQ(data.maxInputLen, 3);
    EXPECT_EQ(data.maxInputBits, 17);
    EXPECT_EQ(data.maxOutputLen, 2);
    EXPECT_EQ(data.maxOutputBits, 16);
    EXPECT_EQ(data.maxModule, 10);
    EXPECT_EQ(data.maxDiagDataLen, 32);
    EXPECT_EQ(data.maxDataLen, 4);
    EXPECT_EQ(data.eterDelay, 998);
    EXPECT_EQ(data.maxResponseDelay, 99);
    EXPECT_EQ(data.userPrmData[0], 0xAB);
    EXPECT_EQ(data.userPrmData[2], 0x00);
    EXPECT_EQ(dataOf(TypeFileBuilder()).asicType, 'N');
    EXPECT_EQ(dataOf(TypeFileBuilder()).maxInputBits, 256);

    // In slot-parameter mode the length becomes that of the common part, which files before version 5 do not have.
    data = dataOf(TypeFileBuilder::fullFile());
    EXPECT_EQ(data.userPrmDataLen, 12);
    EXPECT_EQ(data.userPrmDataLenRead, 40);
    EXPECT_EQ(data.commonPrmDataLen, 5);
    data = dataOf(TypeFileBuilder::fullPresetFile().with("version=V4.9"));
    EXPECT_EQ(data.userPrmDataLen, 40);
    EXPECT_EQ(data.commonPrmDataLen, 0);
    EXPECT_EQ(data.maxDataLen, 48);
    EXPECT_EQ(data.eterDelay, 0);
}

TEST(CheckTypeData, OnlyAPlainDeviceIsChangeable)
{
    const TypeFileBuilder plain = TypeFileBuilder().with("version=V5.0");
    TypeFileBuilder full = TypeFileBuilder::fullFile();
    const auto isChangeable = [](const TypeFileBuilder& file) { return checked(file)->changeTypeFilePossible(); };
    forEachCase("version=V5.0 > 1 | changeable=n > 0 | version=V4.0 > 1 | version=V5.1 > 0 | "
                "syncMode=J+publisherSubscriber=J+activeMaster=J+diagBufferable=J > 1 | publisherSubscriber=p > 0 | "
                "activeMaster=M > 0 | failSafe=J > 0 | moduleKinds=S > 0 | makerDevice=J > 0 | "
                "stationType=DPS/CLASS2 > 0 | maxInputLen=256BIT > 0 | userPrmLen=V020 > 0 | structureCode=KY > 0 | "
                "structureCode=ZX > 0 | presetSlots=017 > 1 | bitmapName=DP_VLVE > 0 | libraryName=VALVELIB > 0 | "
                "slotOffset=001 > 0 | maxDataLen=047 > 0 | commonPrmLen=001 > 0",
                [&](const std::string& changes, const std::string& expected) {
                    EXPECT_EQ(isChangeable(plain.with(changes)), std::stoi(expected)) << changes;
                });
    // A record in any of these groups is enough.
    full.orderNumbers = {record::orderNumber("4711", "017", 0)};
    full.moduleLists = {record::moduleList(1, "All", "KX", {record::slotEntry("017", "One", 0)})};
    for (const auto group : {&TypeFileBuilder::prms, &TypeFileBuilder::deviceDiag, &TypeFileBuilder::channelDiag,
                             &TypeFileBuilder::orderNumbers, &TypeFileBuilder::moduleLists,
                             &TypeFileBuilder::slotPrmBlocks, &TypeFileBuilder::slotHelpBlocks}) {
        TypeFileBuilder file = plain;
        file.*group = full.*group;
        EXPECT_EQ(isChangeable(file), 0) << file.build();
    }
}

TEST(CheckTypeData, StationRules)
{
    TypeFileBuilder file = kgpFile().with("presetSlots=+slotNumbering=KO000;\r\n");
    EXPECT_EQ(checkResult(file.build()), kOk);
    file.moduleLists = {record::moduleList(1, "All", "KX", {record::slotEntry("017", "One", 0)})};
    EXPECT_EQ(checkResult(file.build()), kErrTypeData);

    SLOT_NUMBERING_TYPE numbering;
    ASSERT_EQ(checked(kgpFile())->getSlotNumbering(&numbering), kOk);
    EXPECT_EQ(numbering.value1, 12);
    EXPECT_STREQ(numbering.text, "ab");
    EXPECT_EQ(numbering.value2, 34);
    EXPECT_EQ(numbering.digit, 5);
    const SLAVE_TYPEDATA_TYPE data = dataOf(kgpFile());
    EXPECT_EQ(data.slotCount, 1);
    EXPECT_EQ(data.kgpDevice, 1);
    EXPECT_EQ(data.features, uint32_t(kFeatureHeaderCnf | kFeatureKgp));
    EXPECT_EQ(dataOf(gatewayFile()).features, uint32_t(kFeatureHeaderCnf | kFeatureDpAsiLink));
}

TEST(CheckPresetSlots, Count)
{
    EXPECT_EQ(checkResult(presetFile("KX", 244).build()), kOk);
    // Without slots there is nothing to be fixed.
    const auto empty = checked(presetFile("MV", 0));
    EXPECT_EQ(empty->isMLFBModeP36(), 0);
    EXPECT_EQ(empty->isPresetKonfigFixed(), 0);
}

TEST(CheckPresetSlots, Entries)
{
    TypeFileBuilder file = TypeFileBuilder::fullPresetFile();
    MLFB_ITEM slot;
    for (const char* code : {"KX", "KY", "KV"}) {
        const auto device = checked(file.with(std::string("structureCode=") + code));
        for (const int block : {-1, 0, 1}) {
            ASSERT_EQ(device->getFixedSlotId(block + 1, &slot), kOk);
            EXPECT_EQ(slot.spIndex, block);
            EXPECT_EQ(slot.preset.xSlot, code[1] == 'X');
        }
    }
    // Two blocks with the number 2: none has the number 1.
    file.orderNumbers.clear();
    file.slotPrmBlocks[0] = file.slotPrmBlocks[1];
    EXPECT_EQ(checkResult(file.build()), kErrOrderList);
}

TEST(CheckPresetSlots, ByOrderNumber)
{
    for (const char* code : {"MX", "MV", "MY"}) {
        const auto device = checked(presetFile(code, 2));
        MLFB_ITEM slot;
        ASSERT_EQ(device->getFixedSlotId(1, &slot), kOk);
        EXPECT_EQ(std::string(slot.mlfb).substr(0, 5), "4711 ");
        EXPECT_EQ(slot.preset.identifier, 33);
        EXPECT_EQ(slot.preset.xSlot, code[1] == 'X');
        EXPECT_EQ(slot.spIndex, -1);
    }
}

} // namespace
