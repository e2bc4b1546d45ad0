// One device type in all its forms gives the same answers: compiled from GSD, read back from the written type file, and
// taken back from its object image.

#include "descriptor/cTypDescriptor.h"
#include "tests/gsdText.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

namespace {

template <class Record>
void add(std::string& answers, const Record& record)
{
    answers.append(reinterpret_cast<const char*>(&record), sizeof record);
}

/// What every query says, as bytes.
std::string answersOf(cTypDescriptor& device)
{
    std::string answers;
    const auto ask = [&answers](auto query, auto record) { // the record begins all zero, its padding as well
        std::memset(&record, 0, sizeof record);
        add(answers, query(record));
        add(answers, record);
    };
    struct Text {
        char text[31];
    };
    struct Bytes {
        unsigned char bytes[237];
        int length;
    };
    ask([&](auto& r) { return device.getSlaveTypeHeader(&r); }, SLAVE_TYPE_HEADER_INFO());
    ask([&](auto& r) { return device.getSlaveTypeData(&r); }, SLAVE_TYPEDATA_TYPE());
    ask([&](auto& r) { return device.getSlotNumbering(&r); }, SLOT_NUMBERING_TYPE());
    ask([&](auto& r) { return device.getFamily(r.text); }, Text());
    ask([&](auto& r) { return device.getBitMapFileName(r.text); }, Text());
    ask([&](auto& r) { return device.getDLLFileName(r.text); }, Text());
    ask([&](auto& r) { return device.getMLFBstring(r.text); }, Text());
    int slots = 0;
    device.isKonfigFixed(&slots);
    for (const int value :
         {slots, device.getSlotOffset(), device.isModular(), device.isPresetKonfigFixed(), device.getMaxSPBlockLen(),
          device.changeTypeFilePossible(), device.isMLFBModeP36(), device.isP36KY(), device.getSlaveDiagMsgCnt(),
          device.getChannelDiagMsgCnt(), device.getParaStructCnt(), device.getPSLHelpAnz(), device.getSPHelpAnz()})
        add(answers, value);
    for (int i = 0; i < slots; ++i)
        ask([&](auto& r) { return device.getFixedSlotId(i, &r); }, MLFB_ITEM());
    for (int i = 0; i < device.getMLFBListCnt(); ++i)
        ask([&](auto& r) { return device.getMLFBListItem(i, &r); }, MLFB_ITEM());
    for (int list = 0; list < device.getLSKCnt(); ++list) {
        ask([&](auto& r) { return device.getLSKText(list, r.text); }, Text());
        int isFixed = 0;
        for (int i = 0; i < device.getSKListCnt(list, &isFixed); ++i)
            ask([&](auto& r) { return device.getSKListItem(list, i, &r); }, LSK_ITEM());
    }
    for (int bit = 0; bit < 62 * 8; ++bit)
        ask([&](auto& r) { return device.getSlaveDiagMsg(0, bit / 8 + 1, bit % 8, &r); }, SLAVE_DIAG_TYPE());
    for (int i = 0; i < device.getSlaveBGrDiagMsgCnt(); ++i)
        ask([&](auto& r) { return device.getSlaveBGrDiagMsg(i, &r); }, SLAVE_BGR_DIAG_TYPE());
    for (int type = 16; type <= 31; ++type)
        ask([&](auto& r) { return device.getChannelDiagMsg(type, r.text); }, Text());
    for (int i = 0; i < device.getParaStructCnt(); ++i)
        ask([&](auto& r) { return device.getParaStruct(i, &r); }, _parastruct());
    for (int block = 0; block < device.getSPBlockAnz(); ++block) {
        ask([&](auto& r) { return device.getSlotParameters(block, r.bytes, &r.length); }, Bytes());
        for (int i = 0; i < device.getStructuredSlotParameterCnt(block); ++i)
            ask([&](auto& r) { return device.getStructuredSlotParameter(block, i, &r); }, _parastruct());
        KEYWORD_TYPE keyword{};
        while (device.hasSPBlockThisKeyWord(&keyword, block, 0) != 0)
            add(answers, keyword);
    }
    for (int i = 0; i < device.getPSLHelpAnz(); ++i) {
        const int block = device.getPSLHelpRef(i);
        for (int line = 0; line < device.getHelpMessageCnt(block); ++line)
            ask([&](auto& r) { return device.getParaHelpMessage(block, line, &r); }, PARA_HELPMESSAGE_TYPE());
    }
    for (int block = 1; block <= device.getSPHelpAnz(); ++block)
        for (int line = 0; line < device.getSPHelpCnt(block); ++line)
            ask([&](auto& r) { return device.getSPHelpItem(block, line, &r); }, PARA_HELPMESSAGE_TYPE());
    return answers;
}

TEST(RoundTrip, EveryFormGivesTheSameAnswers)
{
    const std::filesystem::path examples = std::filesystem::path(TYPDESCRIPTOR_SOURCE_DIR) / "examples/gsd";
    for (const auto& entry : std::filesystem::directory_iterator(examples)) {
        SCOPED_TRACE(entry.path().filename());
        const std::string written = putFile("written.410", "");
        cTypDescriptor compiled(entry.path().string().c_str(), 1, written.c_str());
        ASSERT_EQ(compiled.checkTypeFileContents(), kOk);
        cTypDescriptor read(written.c_str(), 0, nullptr);
        ASSERT_EQ(read.checkTypeFileContents(), kOk);
        std::vector<char> object(compiled.getDataSize());
        ASSERT_EQ(compiled.writeObject(object.data()), 1);
        cTypDescriptor restored(compiled.getDataSize(), object.data());
        ASSERT_EQ(restored.checkTypeFileContents(), kOk);

        const std::string answers = answersOf(compiled);
        EXPECT_GT(answers.size(), 37000U); // every diagnostic bit alone gives that much
        EXPECT_EQ(answersOf(read), answers);
        EXPECT_EQ(answersOf(restored), answers);
    }
}

} // namespace
