// Every query: what it answers before a check, what a checked descriptor answers, and where its indexes end.

#include "descriptor/cTypDescriptor.h"
#include "tests/typeFileBuilder.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <memory>
#include <string>
#include <utility>

namespace {

std::string paddedTo30(std::string text)
{
    text.resize(30, ' ');
    return text;
}

template <class... Number>
std::string numbers(Number... number)
{
    return ((std::to_string(number) + " ") + ...);
}

// Room for every answer, filled with a pattern that no query writes.
struct Answers {
    SLAVE_TYPE_HEADER_INFO header;
    SLAVE_TYPEDATA_TYPE data;
    SLOT_NUMBERING_TYPE numbering;
    MLFB_ITEM module;
    LSK_ITEM slot;
    CSLAVE_SLOT_PRESET_TYPE preset;
    _parastruct prm;
    KEYWORD_TYPE keyword;
    PARA_HELPMESSAGE_TYPE help;
    SLAVE_BGR_DIAG_TYPE group;
    SLAVE_DIAG_TYPE bit;
    char text[31];
    int number;
    unsigned char bytes[237];

    Answers() { std::memset(static_cast<void*>(this), 0x5A, sizeof *this); }
    bool isUntouched() const
    {
        const Answers fresh;
        return std::memcmp(this, &fresh, sizeof *this) == 0;
    }
};

TEST(Queries, RefuseBeforeTheCheckAndAfterAFailedOne)
{
    TypeFileBuilder broken = TypeFileBuilder::fullFile();
    broken.responseDelay = "101"; // the very last field
    const auto unchecked = descriptorOf(TypeFileBuilder::fullFile().build());
    const auto failed = descriptorOf(broken.build());
    ASSERT_EQ(failed->checkTypeFileContents(), kErrTypeData);
    for (cTypDescriptor* device : {unchecked.get(), failed.get()}) {
        Answers answers;
        EXPECT_EQ(numbers(device->getSlaveTypeHeader(&answers.header), device->getSlaveTypeData(&answers.data),
                          device->getFamily(answers.text), device->getBitMapFileName(answers.text),
                          device->getDLLFileName(answers.text), device->getSlotNumbering(&answers.numbering),
                          device->getSlaveBGrDiagMsg(0, &answers.group), device->getChannelDiagMsg(16, answers.text),
                          device->getMLFBListItem(0, &answers.module), device->getSKListItem(0, 0, &answers.slot),
                          device->getStructuredSlotParameter(0, 0, &answers.prm),
                          device->getSPHelpItem(1, 0, &answers.help), device->getSPHelpCnt(1)),
                  "65534 65535 -2 -82 -83 -3 -80 -81 -86 -87 -88 -88 -88 ");
        EXPECT_EQ(numbers(device->getSlotOffset(), device->isPresetKonfigFixed(), device->getMaxSPBlockLen(),
                          device->getSlaveDiagMsgCnt(), device->getSlaveBGrDiagMsgCnt(), device->getChannelDiagMsgCnt(),
                          device->getMLFBListCnt(), device->getLSKCnt(), device->getParaStructCnt(),
                          device->getStructuredSlotParameterCnt(0), device->getHelpMessageCnt(1),
                          device->isKonfigFixed(&answers.number), device->getSKListCnt(0, &answers.number),
                          device->getParaStruct(0, &answers.prm), device->getParaHelpMessage(1, 0, &answers.help),
                          device->hasSPBlockThisKeyWord(&answers.keyword, 0, 0)),
                  "0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 ");
        EXPECT_TRUE(answers.isUntouched());

        // These three say in their answer that there is none.
        EXPECT_EQ(device->getLSKText(0, answers.text), kErrModuleList);
        EXPECT_STREQ(answers.text, "");
        EXPECT_EQ(device->getSlaveDiagMsg(0, 1, 0, &answers.bit), kErrDeviceDiag);
        EXPECT_EQ(answers.bit.setFound + answers.bit.clearFound + answers.bit.setText[0] + answers.bit.clearText[0], 0);
        EXPECT_EQ(device->getSlotParameters(0, answers.bytes, &answers.number), kErrSlotPrm);
        EXPECT_EQ(answers.number, 0);
    }
    MLFB_ITEM module;
    EXPECT_EQ(unchecked->isModular(), 1);
    EXPECT_EQ(unchecked->getFixedSlotId(0, &module), kErrIdentifier);
    EXPECT_EQ(unchecked->getDKMPos(), nullptr);
}

TEST(HeaderQueries, FollowVersionAndStationType)
{
    struct Case {
        const char* version;
        const char* stationType;
        const char* answers; // category, slot offset, modular, family, bitmap, library
    };
    const Case cases[] = {
        {"V5.0", "DPS/CLASS1", "0 7 0 Valves    |VALVE_8|VALVELIB"},
        {"V9.2", "QX410B/AC", "0 7 0 Valves    |VALVE_8|VALVELIB"},
        {"V4.9", "QX410U/DP", "0 0 0 QX 410U   |-82|-83"},
        {"V4.0", "QX410B/AC", "0 0 0 QX 410B   |-82|-83"},
        {"V4.0", "QX410C/AC", "0 0 0 QX 410C   |-82|-83"},
        {"V4.0", "PPROCDPS", "0 0 0 KORVANT   |-82|-83"},
        {"V/.0", "DPS/CLASS3", "0 0 0 DP-NORM   |-82|-83"},
        {"V\xff.0", "DPS/CLASS2", "0 0 0 DP-NORM   |-82|-83"},
        {"V4.0", "QX410B/24V/QMX", "1 0 1 QX 410B   |-82|-83"},
        {"V4.0", "QX410K", "2 0 1 DP        |-82|-83"},
        {"V4.0", "QMX", "1 0 1 DP        |-82|-83"},
        {"V5.0", "QMX", "1 0 1 Valves    ||"},
    };
    for (const Case& c : cases) {
        TypeFileBuilder file;
        file.version = c.version;
        file.stationType = c.stationType;
        file.categoryII = c.answers[0] != '0';
        file.modular = "N";
        file.bitmapName = "VALVE_8";
        file.libraryName = "VALVELIB";
        file.slotOffset = "007";
        const auto device = checked(file);
        Answers a;
        std::string all = numbers(device->getSlaveTypeData(&a.data), device->getSlotOffset(), device->isModular());
        EXPECT_EQ(device->getFamily(a.text), kOk);
        all += a.text;
        const int bitmap = device->getBitMapFileName(a.text);
        all += '|' + (bitmap == kOk ? a.text : std::to_string(bitmap));
        const int library = device->getDLLFileName(a.text);
        all += '|' + (library == kOk ? a.text : std::to_string(library));
        EXPECT_EQ(all, c.answers) << c.version << c.stationType;
        EXPECT_EQ(device->getSlotNumbering(&a.numbering), kErrTypeData);
    }
}

TEST(HeaderQueries, PresetSlots)
{
    TypeFileBuilder file = TypeFileBuilder::fullPresetFile();
    const auto device = checked(file);
    Answers answers;
    EXPECT_EQ(device->isKonfigFixed(&answers.number), 1);
    EXPECT_EQ(answers.number, 3);
    EXPECT_EQ(device->isPresetKonfigFixed(), 0);
    for (const char* code : {"KV", "KY", "MX"}) {
        file.structureCode = code;
        if (code[0] == 'M')
            file.presetSlots = {record::presetNumber(2)};
        const auto coded = checked(file);
        EXPECT_EQ(coded->isMLFBModeP36(), code[0] == 'M');
        EXPECT_EQ(coded->isPresetKonfigFixed(), code[1] == 'V');
        EXPECT_EQ(coded->isP36KY(), code[1] == 'Y');
    }
}

TEST(DiagQueries, Texts)
{
    TypeFileBuilder file;
    file.deviceDiag = {record::deviceBit(105, '3', '1', "set"),        record::deviceGroup(2, '2', '3', 7, "group"),
                       record::deviceBit(105, '3', '0', "clear"),      record::deviceBit(105, '3', '1', "set again"),
                       record::deviceBit(962, '7', '0', "clear only"), record::deviceGroup(105, '3', '1', 1, "last")};
    file.channelDiag = {record::channelError(31, "one"), record::channelError(16, "two"),
                        record::channelError(31, "three")};
    const auto device = checked(file);
    EXPECT_EQ(numbers(device->getSlaveDiagMsgCnt(), device->getSlaveBGrDiagMsgCnt(), device->getChannelDiagMsgCnt()),
              "6 2 3 ");
    EXPECT_EQ(std::string(device->getDKMPos(), 6), "DKM006");
    const auto bit = [&](int high, int low, int number) {
        Answers answers;
        const int result = device->getSlaveDiagMsg(high, low, number, &answers.bit);
        return numbers(result, answers.bit.setFound, answers.bit.clearFound) + answers.bit.setText +
               answers.bit.clearText;
    };
    EXPECT_EQ(bit(1, 5, 3), "0 1 1 " + paddedTo30("set") + paddedTo30("clear"));
    EXPECT_EQ(bit(0, 105, 3), bit(1, 5, 3));
    EXPECT_EQ(bit(9, 62, 7), "0 0 1 " + paddedTo30("clear only"));
    EXPECT_EQ(bit(1, 5, 2), "-80 0 0 ");
    EXPECT_EQ(bit(0, 2, 2), "-80 0 0 ");
    EXPECT_EQ(bit(INT_MAX, INT_MAX, 3), "-80 0 0 ");
}

TEST(ListQueries, OrderNumbersAndModuleLists)
{
    const auto device = checked(TypeFileBuilder::fullFile());
    EXPECT_EQ(numbers(device->getMLFBListCnt(), device->getLSKCnt()), "2 2 ");
    const auto module = [&](int index) {
        MLFB_ITEM item{};
        const int result = device->getMLFBListItem(index, &item);
        return numbers(result, item.spIndex) + item.mlfb;
    };
    EXPECT_EQ(module(1), "0 -1 " + paddedTo30("4711-M2"));
    EXPECT_EQ(module(2), "-86 0 ");
    EXPECT_EQ(module(-1), "0 0 ");
    const auto slot = [&](int index, int item) {
        LSK_ITEM entry{};
        const int result = device->getSKListItem(index, item, &entry);
        return numbers(result, entry.item.spIndex, entry.item.preset.mfrData[1], entry.item.preset.xSlot) + entry.text +
               std::string(entry.item.mlfb).substr(0, 8);
    };
    EXPECT_EQ(slot(0, 1), "0 1 187 1 Slot two            ");
    EXPECT_EQ(slot(1, 0), "0 0 0 0 First               4711-M1 ");
    EXPECT_EQ(slot(0, 2), "-87 0 0 0 ");
    EXPECT_EQ(slot(2, 0), "-87 0 0 0 ");
    for (const auto& [index, item] : {std::pair(0, -1), std::pair(-1, 0), std::pair(-1, 99)})
        EXPECT_EQ(slot(index, item), "0 0 0 0 ");
}

TEST(HelpQueries, StationAndSlotBlocks)
{
    using record::helpBlock;
    using record::helpLine;
    TypeFileBuilder file;
    file.helpBlocks = {helpBlock(0, {helpLine(7, "zero")}),
                       helpBlock(999, {helpLine(1, "one"), helpLine(65535, "two")}),
                       helpBlock(999, {helpLine(3, "unseen")})};
    file.slotHelpBlocks = {helpBlock(3, {helpLine(1, "one"), helpLine(2, "two")}), helpBlock(1, {helpLine(4, "four")}),
                           helpBlock(1, {helpLine(5, "five")})};
    const auto device = checked(file);
    EXPECT_EQ(numbers(device->getPSLHelpAnz(), device->getSPHelpAnz()), "3 3 ");
    EXPECT_EQ(numbers(device->getPSLHelpRef(1), device->getPSLHelpRef(-1), device->getPSLHelpRef(3)), "999 0 0 ");
    EXPECT_EQ(numbers(device->getHelpMessageCnt(999), device->getHelpMessageCnt(0), device->getHelpMessageCnt(1)),
              "2 0 0 ");
    const auto ofStation = [&](int block, int line) {
        Answers answers;
        const int result = device->getParaHelpMessage(block, line, &answers.help);
        return numbers(result, answers.help.value) + answers.help.text;
    };
    EXPECT_EQ(ofStation(0, 0), "1 7 " + paddedTo30("zero"));
    EXPECT_EQ(ofStation(999, 1), "1 65535 " + paddedTo30("two"));
    EXPECT_EQ(ofStation(999, 2).substr(4, 6), "I999;\r"); // what follows the block, read as a line
    EXPECT_EQ(ofStation(1, 0), "0 0 ");
    for (const int outsideImage : {100000, INT_MAX, INT_MIN})
        EXPECT_EQ(ofStation(999, outsideImage), "1 0 ");

    for (const auto& [block, count] :
         {std::pair(1, 1), std::pair(2, 0), std::pair(3, 2), std::pair(0, 0), std::pair(-1, 0), std::pair(4, 0)}) {
        EXPECT_EQ(device->getSPHelpCnt(block), count) << block;
        Answers answers;
        for (const int line : {-1, count, INT_MAX})
            EXPECT_EQ(device->getSPHelpItem(block, line, &answers.help), kErrSlotHelp) << block << "," << line;
        EXPECT_TRUE(answers.isUntouched());
    }
    Answers answers;
    EXPECT_EQ(device->getSPHelpItem(3, 1, &answers.help), kOk);
    EXPECT_EQ(numbers(answers.help.value) + answers.help.text, "2 " + paddedTo30("two"));
    EXPECT_EQ(device->getSPHelpItem(1, 0, &answers.help), kOk);
    EXPECT_EQ(answers.help.value, 5); // the later of two
}

} // namespace
