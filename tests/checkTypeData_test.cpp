// Category-I type data: fixed block, lengths, preset slots, the groups since version 5 and the rules of stations.

#include "descriptor/cTypDescriptor.h"
#include "tests/checkCases.h"
#include "tests/failingNew.h"
#include "tests/typeFileBuilder.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

std::unique_ptr<cTypDescriptor> checked(const TypeFileBuilder& file)
{
    auto device = descriptorOf(file.build());
    EXPECT_EQ(device->checkTypeFileContents(), kOk);
    return device;
}

SLAVE_TYPEDATA_TYPE dataOf(const TypeFileBuilder& file)
{
    SLAVE_TYPEDATA_TYPE data = SLAVE_TYPEDATA_TYPE();
    EXPECT_EQ(checked(file)->getSlaveTypeData(&data), 0);
    return data;
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

std::vector<std::string> oneImageOfEachKind()
{
    return {TypeFileBuilder().build(),
            TypeFileBuilder::fullFile().build(),
            TypeFileBuilder::fullPresetFile().build(),
            TypeFileBuilder::fullPresetFile().with("version=V4.0").build(),
            TypeFileBuilder::categoryIIFile().build(),
            fixedProfileFile().build(),
            gatewayFile().build(),
            kgpFile().build(),
            presetFile("MX", 2).build()};
}

bool isCheckCode(int code)
{
    return code <= kOk && code >= kErrCommonPrmLen && std::string(resultText(code)) != resultText(1);
}

TEST(CheckTypeData, FixedBlock)
{
    expectChecks(
        TypeFileBuilder(),
        "setSlaveAddress=X > -3 | setSlaveAddress=NN > -3 | syncMode=j > 0 | syncMode=1 > -3 | freezeMode=_ > -3 | "
        "publisherSubscriber=M > -3 | publisherSubscriber=n > 0 | diagBufferable=P > -3 | activeMaster=P > -3 | "
        "activeMaster=j > 0 | evenSlotNumber=V > -3 | changeable=0 > -3 | asicCode=0 > 0 | asicCode=4 > 0 | asicCode=5 "
        "> -3 | asicCode=n > 0 | "
        "modular=M > -3 | modular=N > 0 | failSafe=E > -3 | moduleKinds=J > -3 | moduleKinds=n > 0 | "
        "slaveInterval=00999 > 0 | "
        "slaveInterval=01000 > -12 | slaveInterval=-0001 > -12 | baudRates=0000000002 > -3 | "
        "baudRates=0000000000 > -13");
}

TEST(CheckTypeData, Lengths)
{
    expectChecks(
        TypeFileBuilder(),
        "maxInputLen=244 > 0 | maxInputLen=245 > -14 | maxInputLen=-01 > -14 | maxInputLen=999BIT > 0 | "
        "maxInputLen=-07BIT > -14 | maxInputLen=032BTT > -3 | maxOutputLen=245 > -15 | maxOutputLen=0016 > -3 | "
        "maxInputLen=000BIT+maxOutputLen=000 > -16 | maxInputLen=000+maxDataLen=016 > 0 | maxModule=244 > 0 | "
        "maxModule=245 > -17 | "
        "maxModule=-01 > -17 | maxModule=10 > -3 | maxModule=011+evenSlotNumber=J > -17 | maxDiagLen=005 > -18 | "
        "maxDiagLen=006 > 0 | maxDiagLen=245 > -18 | maxDiagLen=0244 > -3 | userPrmLen=006 > -19 | "
        "userPrmLen=007 > 0 | userPrmLen=245 > -19 | userPrmLen=V244 > 0 | userPrmLen=v20 > -19 | "
        "userPrmLen=VV20 > -19 | userPrmLen=V0020 > -3");
}

TEST(CheckTypeData, GroupsSinceVersion5)
{
    const TypeFileBuilder file;
    // Only a KGP station has slot numbering; the 20 bytes of the telegram have no room for more than 13 common ones.
    expectChecks(file, "bitmapName=DP_NORM1 > -82 | libraryName=ISNONAM > -83 | slotOffset=0000 > -84 | "
                       "slotOffset=-01 > -84 | slotNumbering=SN012'ab'034'5'^ > -85 | maxDataLen=000 > -85 | "
                       "maxDataLen=001 > 0 | maxDataLen=049 > -85 | maxDataLen=0480 > -85 | commonPrmLen=013 > 0 | "
                       "commonPrmLen=014 > -19 | userPrmLen=244+commonPrmLen=236 > 0 | commonPrmLen=237 > -90 | "
                       "commonPrmLen=0010 > -90 | eterDelay=999 > 0 | eterDelay=-01 > -3 | responseDelay=100 > 0 | "
                       "responseDelay=101 > -3 | version=V9.9 > 0 | version=V5.0 > 0 | version=V5.x > 0 | "
                       "version=V4.9 > 0");
    expectEdits(file.build(), "SO000=SX000 > -84 | ETER=ETEX > -3 | MRD000=MRX000 > -3 | V5.2=V4.2 > 0");
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

TEST(CheckTypeData, FixedProfile)
{
    expectChecks(fixedProfileFile(),
                 "setSlaveAddress=J > -7 | syncMode=J > -7 | freezeMode=J > -7 | publisherSubscriber=J > -7 | "
                 "publisherSubscriber=P > 0 | diagBufferable=J > -7 | activeMaster=J > -7 | activeMaster=M > 0 | "
                 "evenSlotNumber=N > -7 | failSafe=J > 0 | slaveInterval=00021 > -7 | slaveInterval=01000 > -12 | "
                 "baudRates=0001111111 > -7 | baudRates=0000000000 > -13 | maxInputLen=031 > -7 | "
                 "maxInputLen=256BIT > 0 | maxOutputLen=000 > -7 | maxModule=030 > -7 | userPrmLen=008 > -7");
}

TEST(CheckTypeData, StationRules)
{
    expectChecks(gatewayFile(),
                 "userPrmLen=V140 > -3 | userPrmLen=139 > -3 | structureCode=KV > -3 | structureCode=KY > 0 | "
                 "presetSlots=017 > -3 | maxInputLen=017 > -3 | maxOutputLen=017 > -3 | maxModule=005 > -3 | "
                 "evenSlotNumber=J > -3 | headerCnf=N > -3 | version=V4.0+maxModule=005 > 0");
    expectChecks(
        kgpFile(),
        "structureCode=KV > -3 | presetSlots= > -84 | slotNumbering=KO001^ > 0 | slotNumbering=KO002^ > -84 | "
        "slotNumbering= > -84 | slotNumbering=SN012'ab'034'5'^ > -84 | slotNumbering=SN0012'ab'034'5'^KO001^ > -84 | "
        "slotNumbering=SN012'ab'000'5'^KO001^ > -84 | slotNumbering=SN012'ab'034'0'^KO001^ > -84 | "
        "slotNumbering=SN012'ab'034'x'^KO001^ > -84 | slotNumbering=SN012'ab.034'5'^KO001^ > -84 | "
        "slotNumbering=KO-01^ > -84 | slotNumbering=SN000'ab'001'1'^KO001^ > 0 | slotNumbering=SN-01'ab'001'1'^KO001^ "
        "> -84 | userPrmLen=020+slotNumbering=KO000^+presetSlots=+orderNumbers= > -3");
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
    // 300 is 44 in eight bits; "44;" is a number as well, with the next terminator behind it.
    const std::string image = presetFile("KX", 44).build();
    expectEdits(image, "KX044=KX300 > 0 | KX044=KX245 > -21 | KX044=KX043 > -3 | KX044=KX44; > 0 | KX044=KX44 > -3 | "
                       "KX044=ZX044 > 0 | KX044=KZ044 > 0 | KX044=ZZ044 > -3 | SY;=SX; > -3");
    expectChecks(presetFile("KX", 3),
                 "maxModule=002 > -21 | maxModule=003 > 0 | structureCode=KV > 0 | evenSlotNumber=J > 0 | "
                 "structureCode=KV+evenSlotNumber=J > -21");
    EXPECT_EQ(checkResult(presetFile("KX", 244).build()), kOk);
    // Without slots there is nothing to be fixed.
    const auto empty = checked(presetFile("MV", 0));
    EXPECT_EQ(empty->isMLFBModeP36(), 0);
    EXPECT_EQ(empty->isPresetKonfigFixed(), 0);
}

TEST(CheckPresetSlots, Entries)
{
    // 40 bytes for 7 standard ones, 5 common ones and blocks of 4 and 2. The quote before a reference may be missing.
    TypeFileBuilder file = TypeFileBuilder::fullPresetFile();
    expectChecks(file, "presetSlots=017'SP000' > 0 | presetSlots=017SP001' > 0 | presetSlots=017' > -4 | "
                       "presetSlots=017'SQ001' > -4 | presetSlots=017'SP001. > -4 | presetSlots=017'SP003' > -87 | "
                       "presetSlots=017'SP-01' > -87 | userPrmLen=V018 > 0 | userPrmLen=V017 > -19 | "
                       "userPrmLen=040 > -86 | userPrmLen=040+presetSlots=017'SP-01' > -86");
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
    expectChecks(presetFile("MX", 2), "presetSlots=002 > -4 | presetSlots=000 > -4 | presetSlots=-01 > -4 | "
                                      "presetSlots=0001 > -4 | presetSlots=0011 > -3 | orderNumbers= > -4 | "
                                      "orderNumbers=+version=V4.0 > 0");
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

TEST(CheckImages, EveryTerminatorMustStand)
{
    for (const std::string& image : oneImageOfEachKind()) {
        for (std::size_t p = image.find(";\r\n"); p != std::string::npos; p = image.find(";\r\n", p + 1)) {
            for (const std::size_t position : {p, p + 1, p + 2}) {
                std::string broken = image;
                broken[position] = '0';
                EXPECT_NE(checkResult(broken), kOk) << position << " of\n" << image;
            }
        }
    }
}

// Wherever an image ends or a NUL or another character stands, the answer is a code of the checks.
TEST(CheckImages, CutOrHoled)
{
    for (const std::string& image : oneImageOfEachKind()) {
        EXPECT_EQ(checkResult(image), kOk) << image;
        for (std::size_t position = 0; position < image.size(); ++position) {
            const int cut = checkResult(image.substr(0, position));
            EXPECT_TRUE(cut != kOk && isCheckCode(cut)) << cut << " at " << position << " of\n" << image;
            for (const char c : {'\0', '-', '"', '9', ' ', '\xff'}) {
                std::string holed = image;
                holed[position] = c;
                const int code = checkResult(holed);
                EXPECT_TRUE(isCheckCode(code)) << code << " at " << position << " of\n" << image;
            }
        }
    }
}

TEST(CheckImages, EveryAllocationMayFail)
{
    for (const std::string& image : oneImageOfEachKind()) {
        bool hasFailed = true;
        for (long successes = 0; hasFailed; ++successes) {
            const auto device = descriptorOf(image);
            const FailingNew failing(successes);
            const int code = device->checkTypeFileContents();
            hasFailed = failing.hasFailed();
            EXPECT_EQ(code, hasFailed ? kErrMemory : kOk) << successes << " of\n" << image;
            EXPECT_EQ(device->getStatus(), code);
        }
    }
}

} // namespace
