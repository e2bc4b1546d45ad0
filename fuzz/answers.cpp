#include "fuzz/answers.h"

#include "fuzz/property.h"

#include <array>
#include <climits>
#include <cstring>

namespace {

constexpr int kDiagBytes = 62;
constexpr int kBits = 8;
constexpr int kFirstChannelError = 16;
constexpr int kLastChannelError = 31;

template <std::size_t Size>
struct Text {
    char text[Size];
};

struct Bytes {
    unsigned char bytes[237];
    int length;
};

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

/// What a query gives inside its indexes (a success, and where it says so a failure), below them and behind them.
struct Results {
    int success = kOk;
    int failure = kOk;
    int below = kOk;
    int behind = kOk;
};

/// Collects results and the records that came with them.
class Answers {
public:
    Answers(std::string& answers, bool isLoaded) : bytes(answers), isStrict(isLoaded) {}

    template <class Value>
    void add(const Value& value)
    {
        bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
    }
    int addCount(const char* name, int count)
    {
        if (isStrict && count < 0)
            requireResult(count, {0}, name);
        add(count);
        return count;
    }
    template <class Record, class Query>
    int ask(const char* name, Results results, Query query)
    {
        Record record;
        std::memset(&record, 0, sizeof record); // padding as well
        const int result = query(record);
        if (isStrict)
            requireResult(result, {results.success, results.failure}, name);
        add(result);
        add(record);
        return result;
    }
    /// A query of each index, and of some that are none: where that is a success, the record is a cleared one.
    template <class Record, class Query>
    void askEach(const char* name, int count, Results results, Query query)
    {
        for (int i = 0; i < count; ++i)
            ask<Record>(name, results, [&](Record& record) { return query(i, record); });
        for (const int i : {INT_MIN, -1, count, count + 1, INT_MAX}) {
            Record record;
            std::memset(&record, 0x55, sizeof record);
            const int result = query(i, record);
            if (!isStrict)
                continue;
            requireResult(result, {i < 0 ? results.below : results.behind}, name);
            require(result < kOk || result != results.success || isCleared(record),
                    "what there is not is answered by a cleared record");
        }
    }

    std::string& bytes;
    const bool isStrict;
};

void askHeader(cTypDescriptor& device, Answers& answers)
{
    answers.ask<SLAVE_TYPE_HEADER_INFO>("getSlaveTypeHeader", {},
                                        [&](auto& r) { return device.getSlaveTypeHeader(&r); });
    SLAVE_TYPEDATA_TYPE data;
    const int category = device.getSlaveTypeData(&data);
    answers.ask<SLAVE_TYPEDATA_TYPE>("getSlaveTypeData", {category, category},
                                     [&](auto& r) { return device.getSlaveTypeData(&r); });
    if (answers.isStrict)
        requireResult(category, {0, 1, 2}, "getSlaveTypeData");
    answers.ask<SLOT_NUMBERING_TYPE>("getSlotNumbering", {kOk, kErrTypeData},
                                     [&](auto& r) { return device.getSlotNumbering(&r); });
    answers.ask<Text<11>>("getFamily", {}, [&](auto& r) { return device.getFamily(r.text); });
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
    const Results results{kOk, kErrDeviceDiag, kErrDeviceDiag, kErrDeviceDiag};
    answers.addCount("getSlaveDiagMsgCnt", device.getSlaveDiagMsgCnt());
    for (int bit = 0; bit < kDiagBytes * kBits; ++bit)
        answers.ask<SLAVE_DIAG_TYPE>("getSlaveDiagMsg", results, [&](auto& r) {
            return device.getSlaveDiagMsg(0, bit / kBits + 1, bit % kBits, &r);
        });
    answers.askEach<SLAVE_DIAG_TYPE>("getSlaveDiagMsg", kBits, results,
                                     [&](int i, auto& r) { return device.getSlaveDiagMsg(0, 1, i, &r); });
    for (const int far : {INT_MIN, -1, 100, INT_MAX}) {
        SLAVE_DIAG_TYPE message;
        device.getSlaveDiagMsg(far, far, far, &message);
        device.getSlaveDiagMsg(far, 0, 0, &message);
        device.getSlaveDiagMsg(0, far, 0, &message);
    }
    const int groups = answers.addCount("getSlaveBGrDiagMsgCnt", device.getSlaveBGrDiagMsgCnt());
    answers.askEach<SLAVE_BGR_DIAG_TYPE>("getSlaveBGrDiagMsg", groups, {kOk, kOk, kErrDeviceDiag, kErrDeviceDiag},
                                         [&](int i, auto& r) { return device.getSlaveBGrDiagMsg(i, &r); });
    answers.addCount("getChannelDiagMsgCnt", device.getChannelDiagMsgCnt());
    answers.askEach<Text<31>>("getChannelDiagMsg", kLastChannelError + 1,
                              {kOk, kErrChannelDiag, kErrChannelDiag, kErrChannelDiag},
                              [&](int i, auto& r) { return device.getChannelDiagMsg(i, r.text); });
    char text[31];
    if (answers.isStrict)
        requireResult(device.getChannelDiagMsg(kFirstChannelError - 1, text), {kErrChannelDiag}, "getChannelDiagMsg");
}

void askModules(cTypDescriptor& device, Answers& answers)
{
    int slots = 0;
    device.isKonfigFixed(&slots);
    answers.addCount("isKonfigFixed", slots);
    const int noSlot = slots > 0 ? kOk : kErrIdentifier;
    answers.askEach<MLFB_ITEM>("getFixedSlotId", slots, {kOk, kOk, noSlot, noSlot},
                               [&](int i, auto& r) { return device.getFixedSlotId(i, &r); });
    answers.askEach<CSLAVE_SLOT_PRESET_TYPE>("getFixedSlotId", slots, {kOk, kOk, noSlot, noSlot},
                                             [&](int i, auto& r) { return device.getFixedSlotId(i, &r); });
    const int modules = answers.addCount("getMLFBListCnt", device.getMLFBListCnt());
    answers.askEach<MLFB_ITEM>("getMLFBListItem", modules, {kOk, kOk, modules > 0 ? kOk : kErrOrderList, kErrOrderList},
                               [&](int i, auto& r) { return device.getMLFBListItem(i, &r); });
    const int lists = answers.addCount("getLSKCnt", device.getLSKCnt());
    const Results ofLists{kOk, kOk, lists > 0 ? kOk : kErrModuleList, kErrModuleList};
    answers.askEach<Text<31>>("getLSKText", lists, ofLists,
                              [&](int i, auto& r) { return device.getLSKText(i, r.text); });
    answers.askEach<LSK_ITEM>("getSKListItem of no list", 0, {kOk, kOk, ofLists.below, ofLists.behind},
                              [&](int i, auto& r) { return device.getSKListItem(i < 0 ? i : lists, 0, &r); });
    for (int list = -1; list <= lists; ++list) {
        int isFixed = 0;
        const int entries = answers.addCount("getSKListCnt", device.getSKListCnt(list, &isFixed));
        answers.add(isFixed);
        if (list < 0 || list == lists)
            requireResult(entries, {0}, "getSKListCnt outside");
        else
            answers.askEach<LSK_ITEM>("getSKListItem", entries, {kOk, kOk, kOk, kErrModuleList},
                                      [&](int i, auto& r) { return device.getSKListItem(list, i, &r); });
    }
}

void askKeywords(cTypDescriptor& device, int block, Answers& answers)
{
    constexpr int kOtherKeyword = 1;
    KEYWORD_TYPE keyword;
    std::memset(&keyword, 0, sizeof keyword);
    if (answers.isStrict)
        requireResult(device.hasSPBlockThisKeyWord(&keyword, block, kOtherKeyword), {0}, "hasSPBlockThisKeyWord");
    while (device.hasSPBlockThisKeyWord(&keyword, block, 0) != 0)
        answers.add(keyword);
}

void askSlotBlocks(cTypDescriptor& device, Answers& answers)
{
    const int most = answers.addCount("getMaxSPBlockLen", device.getMaxSPBlockLen());
    const int blocks = answers.addCount("getSPBlockAnz", device.getSPBlockAnz());
    const Results refusal{kErrSlotPrm, kErrSlotPrm, kErrSlotPrm, kErrSlotPrm};
    for (int block = -1; block <= blocks; ++block) {
        const bool isBlock = block >= 0 && block < blocks;
        const auto parameters = [&](auto& r) { return device.getSlotParameters(block, r.bytes, &r.length); };
        const int result =
            answers.ask<Bytes>("getSlotParameters", {isBlock ? kOk : kErrSlotPrm, kErrSlotPrm}, [&](auto& r) {
                const int code = parameters(r);
                require(r.length >= 0 && r.length <= most && (code == kOk || r.length == 0),
                        "a slot parameter block is no longer than the longest");
                return code;
            });
        const int count =
            answers.addCount("getStructuredSlotParameterCnt", device.getStructuredSlotParameterCnt(block));
        require(count == 0 || result == kOk || !answers.isStrict, "a block with structured parameters can be read");
        answers.askEach<_parastruct>("getStructuredSlotParameter", count,
                                     result == kOk ? Results{kOk, kOk, kOk, kErrSlotPrm} : refusal,
                                     [&](int i, auto& r) { return device.getStructuredSlotParameter(block, i, &r); });
        askKeywords(device, block, answers);
    }
}

void askParameters(cTypDescriptor& device, Answers& answers)
{
    // The index just behind the last one is accepted like those below 0, see askEach().
    const int count = answers.addCount("getParaStructCnt", device.getParaStructCnt());
    answers.askEach<_parastruct>("getParaStruct", count, {1, 1, 1, 0}, [&](int i, auto& r) {
        const int result = device.getParaStruct(i, &r);
        return i == count && result == 1 && isCleared(r) ? 0 : result;
    });
    const int helps = answers.addCount("getPSLHelpAnz", device.getPSLHelpAnz());
    for (int i = -1; i <= helps; ++i) {
        const int block = answers.addCount("getPSLHelpRef", device.getPSLHelpRef(i));
        const int lines = answers.addCount("getHelpMessageCnt", device.getHelpMessageCnt(block));
        for (int line = 0; line < lines; ++line)
            answers.ask<PARA_HELPMESSAGE_TYPE>("getParaHelpMessage", {1, 1},
                                               [&](auto& r) { return device.getParaHelpMessage(block, line, &r); });
        PARA_HELPMESSAGE_TYPE behind;
        for (const int line : {INT_MIN, -1, lines, INT_MAX}) // what stands in the image there, or nothing
            device.getParaHelpMessage(block, line, &behind);
    }
    const int slotHelps = answers.addCount("getSPHelpAnz", device.getSPHelpAnz());
    for (int block = -1; block <= slotHelps + 1; ++block) {
        const int lines = device.getSPHelpCnt(block);
        if (answers.isStrict && (block < 1 || block > slotHelps))
            requireResult(lines, {0}, "getSPHelpCnt outside");
        answers.add(lines);
        answers.askEach<PARA_HELPMESSAGE_TYPE>("getSPHelpItem", lines, {kOk, kOk, kErrSlotHelp, kErrSlotHelp},
                                               [&](int i, auto& r) { return device.getSPHelpItem(block, i, &r); });
    }
}

void askAll(cTypDescriptor& device, Answers answers)
{
    askHeader(device, answers);
    askDiagnosticTexts(device, answers);
    askModules(device, answers);
    askSlotBlocks(device, answers);
    askParameters(device, answers);
}

} // namespace

std::string answersOf(cTypDescriptor& device)
{
    std::string answers;
    askAll(device, Answers(answers, true));
    return answers;
}

void askAnything(cTypDescriptor& device, std::string& answers)
{
    askAll(device, Answers(answers, false));
}

std::string orderNumberOf(cTypDescriptor& device)
{
    char text[31];
    const int result = static_cast<short>(device.getMLFBstring(text));
    requireResult(result, {kOk, kErrNoOrderNumber}, "getMLFBstring");
    return result == kOk ? text : "";
}
