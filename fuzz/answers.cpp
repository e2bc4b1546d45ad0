#include "fuzz/answers.h"

#include "fuzz/property.h"

#include <array>
#include <climits>
#include <cstring>
#include <initializer_list>
#include <vector>

namespace {

constexpr int kDiagBytes = 62;
constexpr int kBits = 8;
constexpr int kFirstChannelError = 16;
constexpr int kLastChannelError = 31;

template <std::size_t Size>
struct Text {
    char text[Size];
};

/// Collects results and the records that came with them.
class Answers {
public:
    /// A query that fills a record and gives one of these results.
    template <class Record, class Query>
    int ask(const char* name, std::initializer_list<int> allowed, Query query)
    {
        Record record;
        std::memset(&record, 0, sizeof record); // padding as well
        const int result = query(record);
        requireResult(result, allowed, name);
        add(result);
        add(record);
        return result;
    }

    template <class Value>
    void add(const Value& value)
    {
        bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
    }
    /// A count, which is never negative.
    int addCount(const char* name, int count)
    {
        if (count < 0)
            requireResult(count, {0}, name);
        add(count);
        return count;
    }
    void addText(const std::vector<unsigned char>& text) { bytes.append(text.begin(), text.end()); }

    std::string bytes;
};

void askHeader(cTypDescriptor& device, Answers& answers)
{
    answers.ask<SLAVE_TYPE_HEADER_INFO>("getSlaveTypeHeader", {kOk},
                                        [&](auto& r) { return device.getSlaveTypeHeader(&r); });
    answers.ask<SLAVE_TYPEDATA_TYPE>("getSlaveTypeData", {0, 1, 2},
                                     [&](auto& r) { return device.getSlaveTypeData(&r); });
    answers.ask<SLOT_NUMBERING_TYPE>("getSlotNumbering", {kOk, kErrTypeData},
                                     [&](auto& r) { return device.getSlotNumbering(&r); });
    answers.ask<Text<11>>("getFamily", {kOk}, [&](auto& r) { return device.getFamily(r.text); });
    answers.ask<Text<8>>("getBitMapFileName", {kOk, kErrBitmapName},
                         [&](auto& r) { return device.getBitMapFileName(r.text); });
    answers.ask<Text<9>>("getDLLFileName", {kOk, kErrLibraryName},
                         [&](auto& r) { return device.getDLLFileName(r.text); });
    for (const int value :
         {device.getSlotOffset(), device.isModular(), device.isPresetKonfigFixed(), device.changeTypeFilePossible(),
          device.isMLFBModeP36(), device.isP36KY(), static_cast<int>(device.getDKMPos() != nullptr)})
        answers.add(value);
}

void askDiagnosticTexts(cTypDescriptor& device, Answers& answers)
{
    if (answers.addCount("getSlaveDiagMsgCnt", device.getSlaveDiagMsgCnt()) > 0) {
        for (int bit = 0; bit < kDiagBytes * kBits; ++bit)
            answers.ask<SLAVE_DIAG_TYPE>("getSlaveDiagMsg", {kOk, kErrDeviceDiag}, [&](auto& r) {
                return device.getSlaveDiagMsg(0, bit / kBits + 1, bit % kBits, &r);
            });
    }
    const int groups = answers.addCount("getSlaveBGrDiagMsgCnt", device.getSlaveBGrDiagMsgCnt());
    for (int i = 0; i < groups; ++i)
        answers.ask<SLAVE_BGR_DIAG_TYPE>("getSlaveBGrDiagMsg", {kOk},
                                         [&](auto& r) { return device.getSlaveBGrDiagMsg(i, &r); });
    answers.addCount("getChannelDiagMsgCnt", device.getChannelDiagMsgCnt());
    for (int type = kFirstChannelError; type <= kLastChannelError; ++type)
        answers.ask<Text<31>>("getChannelDiagMsg", {kOk, kErrChannelDiag},
                              [&](auto& r) { return device.getChannelDiagMsg(type, r.text); });
}

void askModules(cTypDescriptor& device, Answers& answers)
{
    int slots = 0;
    device.isKonfigFixed(&slots);
    answers.addCount("isKonfigFixed", slots);
    for (int i = 0; i < slots; ++i) {
        answers.ask<MLFB_ITEM>("getFixedSlotId", {kOk}, [&](auto& r) { return device.getFixedSlotId(i, &r); });
        answers.ask<CSLAVE_SLOT_PRESET_TYPE>("getFixedSlotId", {kOk},
                                             [&](auto& r) { return device.getFixedSlotId(i, &r); });
    }
    const int modules = answers.addCount("getMLFBListCnt", device.getMLFBListCnt());
    for (int i = 0; i < modules; ++i)
        answers.ask<MLFB_ITEM>("getMLFBListItem", {kOk}, [&](auto& r) { return device.getMLFBListItem(i, &r); });
    const int lists = answers.addCount("getLSKCnt", device.getLSKCnt());
    for (int list = 0; list < lists; ++list) {
        answers.ask<Text<31>>("getLSKText", {kOk}, [&](auto& r) { return device.getLSKText(list, r.text); });
        int isFixed = 0;
        const int entries = answers.addCount("getSKListCnt", device.getSKListCnt(list, &isFixed));
        answers.add(isFixed);
        for (int i = 0; i < entries; ++i)
            answers.ask<LSK_ITEM>("getSKListItem", {kOk}, [&](auto& r) { return device.getSKListItem(list, i, &r); });
    }
}

void askSlotBlock(cTypDescriptor& device, int block, Answers& answers)
{
    const int most = device.getMaxSPBlockLen();
    std::vector<unsigned char> bytes(static_cast<std::size_t>(most));
    int length = 0;
    const int result = device.getSlotParameters(block, bytes.data(), &length);
    requireResult(result, {kOk, kErrSlotPrm}, "getSlotParameters");
    require(length >= 0 && length <= most, "no slot parameter block is longer than getMaxSPBlockLen()");
    bytes.resize(static_cast<std::size_t>(length));
    answers.addText(bytes);

    const int count = answers.addCount("getStructuredSlotParameterCnt", device.getStructuredSlotParameterCnt(block));
    require(count == 0 || result == kOk, "a block with structured parameters can be read");
    for (int i = 0; i < count; ++i)
        answers.ask<_parastruct>("getStructuredSlotParameter", {kOk},
                                 [&](auto& r) { return device.getStructuredSlotParameter(block, i, &r); });
    KEYWORD_TYPE keyword;
    std::memset(&keyword, 0, sizeof keyword);
    while (device.hasSPBlockThisKeyWord(&keyword, block, 0) != 0)
        answers.add(keyword);
}

void askParameters(cTypDescriptor& device, Answers& answers)
{
    const int count = answers.addCount("getParaStructCnt", device.getParaStructCnt());
    for (int i = 0; i < count; ++i)
        answers.ask<_parastruct>("getParaStruct", {1}, [&](auto& r) { return device.getParaStruct(i, &r); });
    const int helps = answers.addCount("getPSLHelpAnz", device.getPSLHelpAnz());
    for (int i = 0; i < helps; ++i) {
        const int block = answers.addCount("getPSLHelpRef", device.getPSLHelpRef(i));
        const int lines = answers.addCount("getHelpMessageCnt", device.getHelpMessageCnt(block));
        for (int line = 0; line < lines; ++line)
            answers.ask<PARA_HELPMESSAGE_TYPE>("getParaHelpMessage", {1},
                                               [&](auto& r) { return device.getParaHelpMessage(block, line, &r); });
    }
    answers.addCount("getMaxSPBlockLen", device.getMaxSPBlockLen());
    const int blocks = answers.addCount("getSPBlockAnz", device.getSPBlockAnz());
    for (int block = 0; block < blocks; ++block)
        askSlotBlock(device, block, answers);
    const int slotHelps = answers.addCount("getSPHelpAnz", device.getSPHelpAnz());
    for (int block = 1; block <= slotHelps; ++block) {
        const int lines = answers.addCount("getSPHelpCnt", device.getSPHelpCnt(block));
        for (int line = 0; line < lines; ++line)
            answers.ask<PARA_HELPMESSAGE_TYPE>("getSPHelpItem", {kOk},
                                               [&](auto& r) { return device.getSPHelpItem(block, line, &r); });
    }
}

std::array<int, 5> outside(int count)
{
    return {INT_MIN, -1, count, count + 1, INT_MAX};
}

template <class Record>
bool isCleared(const Record& record)
{
    const Record cleared{};
    return std::memcmp(&record, &cleared, sizeof record) == 0;
}

template <std::size_t Size>
bool isCleared(const Text<Size>& text)
{
    return text.text[0] == '\0';
}

/// Holds a query to its results below 0 and behind the last index, and to a cleared record where that is a success.
template <class Record, class Query>
void askAround(const char* name, int count, int below, int behind, Query query)
{
    for (const int i : outside(count)) {
        Record record;
        std::memset(&record, 0x55, sizeof record);
        const int result = query(i, record);
        requireResult(result, {i < 0 ? below : behind}, name);
        require(result != kOk || isCleared(record), "what there is not is answered by a cleared record");
    }
}

void askModulesOutside(cTypDescriptor& device)
{
    int slots = 0;
    device.isKonfigFixed(&slots);
    const int slotResult = slots > 0 ? kOk : kErrIdentifier;
    askAround<MLFB_ITEM>("getFixedSlotId outside", slots, slotResult, slotResult,
                         [&](int i, auto& r) { return device.getFixedSlotId(i, &r); });
    askAround<CSLAVE_SLOT_PRESET_TYPE>("getFixedSlotId outside", slots, slotResult, slotResult,
                                       [&](int i, auto& r) { return device.getFixedSlotId(i, &r); });
    const int modules = device.getMLFBListCnt();
    askAround<MLFB_ITEM>("getMLFBListItem outside", modules, modules > 0 ? kOk : kErrOrderList, kErrOrderList,
                         [&](int i, auto& r) { return device.getMLFBListItem(i, &r); });
    const int lists = device.getLSKCnt();
    const int belowLists = lists > 0 ? kOk : kErrModuleList;
    askAround<Text<31>>("getLSKText outside", lists, belowLists, kErrModuleList,
                        [&](int i, auto& r) { return device.getLSKText(i, r.text); });
    int isFixed = 0;
    for (const int i : outside(lists))
        requireResult(device.getSKListCnt(i, &isFixed), {0}, "getSKListCnt outside");
    askAround<LSK_ITEM>("getSKListItem outside", lists, belowLists, kErrModuleList,
                        [&](int i, auto& r) { return device.getSKListItem(i, 0, &r); });
    if (lists > 0)
        askAround<LSK_ITEM>("getSKListItem outside", device.getSKListCnt(0, &isFixed), kOk, kErrModuleList,
                            [&](int i, auto& r) { return device.getSKListItem(0, i, &r); });
}

void askDiagnosticTextsOutside(cTypDescriptor& device)
{
    for (const int i : outside(device.getSlaveBGrDiagMsgCnt())) {
        SLAVE_BGR_DIAG_TYPE group;
        requireResult(device.getSlaveBGrDiagMsg(i, &group), {kErrDeviceDiag}, "getSlaveBGrDiagMsg outside");
        SLAVE_DIAG_TYPE message;
        device.getSlaveDiagMsg(i, i, i, &message);
        device.getSlaveDiagMsg(i, 0, 0, &message);
        device.getSlaveDiagMsg(0, i, 0, &message);
        requireResult(device.getSlaveDiagMsg(0, 1, i < 0 ? i : kBits, &message), {kErrDeviceDiag},
                      "getSlaveDiagMsg of a bit outside");
    }
    for (const int type : {INT_MIN, -1, kFirstChannelError - 1, kLastChannelError + 1, INT_MAX}) {
        Text<31> text;
        requireResult(device.getChannelDiagMsg(type, text.text), {kErrChannelDiag}, "getChannelDiagMsg outside");
    }
}

void askSlotBlocksOutside(cTypDescriptor& device)
{
    const int blocks = device.getSPBlockAnz();
    std::vector<unsigned char> bytes(static_cast<std::size_t>(device.getMaxSPBlockLen()));
    _parastruct prm;
    KEYWORD_TYPE keyword;
    for (const int i : outside(blocks)) {
        int length = 1;
        requireResult(device.getSlotParameters(i, bytes.data(), &length), {kErrSlotPrm}, "getSlotParameters outside");
        require(length == 0, "there are no parameter bytes outside");
        requireResult(device.getStructuredSlotParameterCnt(i), {0}, "getStructuredSlotParameterCnt outside");
        requireResult(device.getStructuredSlotParameter(i, 0, &prm), {kErrSlotPrm},
                      "getStructuredSlotParameter outside");
        requireResult(device.hasSPBlockThisKeyWord(&keyword, i, 0), {0}, "hasSPBlockThisKeyWord outside");
        requireResult(device.hasSPBlockThisKeyWord(&keyword, 0, i == 0 ? 1 : i), {0}, "hasSPBlockThisKeyWord outside");
    }
    for (int block = 0; block < blocks; ++block) {
        for (const int i : outside(device.getStructuredSlotParameterCnt(block))) {
            const int result = device.getStructuredSlotParameter(block, i, &prm);
            requireResult(result, {i < 0 ? kOk : kErrSlotPrm, kErrSlotPrm}, "getStructuredSlotParameter outside");
            require(result != kOk || isCleared(prm), "what there is not is answered by a cleared record");
        }
    }
}

void askParametersOutside(cTypDescriptor& device)
{
    const int count = device.getParaStructCnt();
    for (const int i : outside(count)) {
        _parastruct prm;
        const int result = device.getParaStruct(i, &prm);
        requireResult(result, {i <= count ? 1 : 0}, "getParaStruct outside");
        require(result == 0 || isCleared(prm), "what there is not is answered by a cleared record");
    }
    for (const int i : outside(device.getPSLHelpAnz()))
        requireResult(device.getPSLHelpRef(i), {0}, "getPSLHelpRef outside");
    PARA_HELPMESSAGE_TYPE help;
    for (const int block : {INT_MIN, -1, 0, 1000, INT_MAX}) {
        requireResult(device.getHelpMessageCnt(block), {0}, "getHelpMessageCnt outside");
        requireResult(device.getParaHelpMessage(block, 0, &help), {0, block == 0 ? 1 : 0},
                      "getParaHelpMessage of a block outside");
    }
    for (int i = 0; i < device.getPSLHelpAnz(); ++i) {
        const int block = device.getPSLHelpRef(i);
        for (const int line : outside(device.getHelpMessageCnt(block)))
            requireResult(device.getParaHelpMessage(block, line, &help), {1}, "getParaHelpMessage of a line outside");
    }
    const int slotHelps = device.getSPHelpAnz();
    for (const int block : {INT_MIN, -1, 0, slotHelps + 1, INT_MAX}) {
        requireResult(device.getSPHelpCnt(block), {0}, "getSPHelpCnt outside");
        requireResult(device.getSPHelpItem(block, 0, &help), {kErrSlotHelp}, "getSPHelpItem outside");
    }
    for (int block = 1; block <= slotHelps; ++block)
        for (const int line : outside(device.getSPHelpCnt(block)))
            requireResult(device.getSPHelpItem(block, line, &help), {kErrSlotHelp}, "getSPHelpItem outside");
}

} // namespace

std::string answersOf(cTypDescriptor& device)
{
    Answers answers;
    askHeader(device, answers);
    askDiagnosticTexts(device, answers);
    askModules(device, answers);
    askParameters(device, answers);
    return answers.bytes;
}

std::string orderNumberOf(cTypDescriptor& device)
{
    char text[31];
    const int result = static_cast<short>(device.getMLFBstring(text));
    requireResult(result, {kOk, kErrNoOrderNumber}, "getMLFBstring");
    return result == kOk ? text : "";
}

void askOutside(cTypDescriptor& device)
{
    askModulesOutside(device);
    askDiagnosticTextsOutside(device);
    askSlotBlocksOutside(device);
    askParametersOutside(device);
}
