#include "tests/answers.h"

#include <cstddef>
#include <cstring>

namespace {

struct Text {
    char text[31];
};

struct Bytes {
    unsigned char bytes[237];
    int length;
};

/// The host record with room for its two texts.
struct HostRecord {
    TYPEFILE_COM_QX410 fields;
    char userPrm[2 * 999 + 1];
    char slots[3 * 17 * 255 + 1];
};

} // namespace

std::string answersOf(cTypDescriptor& device)
{
    std::string answers;
    ask(device, answers);
    return answers;
}

void ask(cTypDescriptor& device, std::string& answers)
{
    const auto add = [&answers](const auto& value) {
        answers.append(reinterpret_cast<const char*>(&value), sizeof value);
    };
    const auto askOne = [&add](auto record, auto query) {
        std::memset(static_cast<void*>(&record), 0, sizeof record); // its padding as well
        add(query(record));
        add(record);
    };
    const auto askEach = [&askOne](int count, auto record, auto query) {
        for (int i = -1; i <= count + 1; ++i)
            askOne(record, [&](auto& r) { return query(i, r); });
    };
    askOne(SLAVE_TYPE_HEADER_INFO(), [&](auto& r) { return device.getSlaveTypeHeader(&r); });
    askOne(SLAVE_TYPEDATA_TYPE(), [&](auto& r) { return device.getSlaveTypeData(&r); });
    askOne(SLOT_NUMBERING_TYPE(), [&](auto& r) { return device.getSlotNumbering(&r); });
    askOne(Text(), [&](auto& r) { return device.getFamily(r.text); });
    askOne(Text(), [&](auto& r) { return device.getBitMapFileName(r.text); });
    askOne(Text(), [&](auto& r) { return device.getDLLFileName(r.text); });
    askOne(Text(), [&](auto& r) { return device.getMLFBstring(r.text); });
    int slots = 0;
    device.isKonfigFixed(&slots);
    for (const int value :
         {slots, device.getSlotOffset(), device.isModular(), device.isPresetKonfigFixed(), device.getMaxSPBlockLen(),
          device.changeTypeFilePossible(), device.isMLFBModeP36(), device.isP36KY(), device.getSlaveDiagMsgCnt(),
          device.getChannelDiagMsgCnt(), device.getParaStructCnt(), device.getPSLHelpAnz(), device.getSPHelpAnz()})
        add(value);
    HostRecord host;
    std::memset(static_cast<void*>(&host), 0, sizeof host);
    host.fields.userPrmHex = host.userPrm;
    host.fields.fixedSlotText = host.slots;
    add(device.getCOMTypeData(&host.fields));
    // Without the head line, which shows the time.
    constexpr std::size_t kFirst = offsetof(TYPEFILE_COM_QX410, modelName);
    answers.append(reinterpret_cast<const char*>(&host) + kFirst, offsetof(TYPEFILE_COM_QX410, userPrmHex) - kFirst);
    answers.append(host.userPrm).append(host.slots);

    askEach(slots, MLFB_ITEM(), [&](int i, auto& r) { return device.getFixedSlotId(i, &r); });
    askEach(slots, CSLAVE_SLOT_PRESET_TYPE(), [&](int i, auto& r) { return device.getFixedSlotId(i, &r); });
    askEach(device.getMLFBListCnt(), MLFB_ITEM(), [&](int i, auto& r) { return device.getMLFBListItem(i, &r); });
    askEach(device.getLSKCnt(), Text(), [&](int i, auto& r) { return device.getLSKText(i, r.text); });
    for (int list = -1; list <= device.getLSKCnt(); ++list) {
        int isFixed = 0;
        askEach(device.getSKListCnt(list, &isFixed), LSK_ITEM(),
                [&](int i, auto& r) { return device.getSKListItem(list, i, &r); });
        add(isFixed);
    }
    for (int bit = -1; bit <= 62 * 8; ++bit)
        askOne(SLAVE_DIAG_TYPE(), [&](auto& r) { return device.getSlaveDiagMsg(0, bit / 8 + 1, bit % 8, &r); });
    askEach(device.getSlaveBGrDiagMsgCnt(), SLAVE_BGR_DIAG_TYPE(),
            [&](int i, auto& r) { return device.getSlaveBGrDiagMsg(i, &r); });
    askEach(31, Text(), [&](int type, auto& r) { return device.getChannelDiagMsg(type, r.text); });
    askEach(device.getParaStructCnt(), _parastruct(), [&](int i, auto& r) { return device.getParaStruct(i, &r); });
    for (int block = -1; block <= device.getSPBlockAnz(); ++block) {
        askOne(Bytes(), [&](auto& r) { return device.getSlotParameters(block, r.bytes, &r.length); });
        askEach(device.getStructuredSlotParameterCnt(block), _parastruct(),
                [&](int i, auto& r) { return device.getStructuredSlotParameter(block, i, &r); });
        KEYWORD_TYPE keyword{};
        while (device.hasSPBlockThisKeyWord(&keyword, block, 0) != 0)
            add(keyword);
    }
    for (int i = -1; i <= device.getPSLHelpAnz(); ++i) {
        const int block = device.getPSLHelpRef(i);
        askEach(device.getHelpMessageCnt(block), PARA_HELPMESSAGE_TYPE(),
                [&](int line, auto& r) { return device.getParaHelpMessage(block, line, &r); });
    }
    for (int block = -1; block <= device.getSPHelpAnz() + 1; ++block)
        askEach(device.getSPHelpCnt(block), PARA_HELPMESSAGE_TYPE(),
                [&](int line, auto& r) { return device.getSPHelpItem(block, line, &r); });
}
