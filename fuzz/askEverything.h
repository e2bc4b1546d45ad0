// Checks a descriptor and asks it every question, with indexes inside and outside of what there is.

#pragma once

#include "descriptor/cTypDescriptor.h"

#include <climits>
#include <vector>

inline void askEverything(cTypDescriptor& device)
{
    if (device.checkTypeFileContents() != kOk)
        return;
    SLAVE_TYPE_HEADER_INFO header;
    SLAVE_TYPEDATA_TYPE data;
    SLOT_NUMBERING_TYPE numbering;
    CSLAVE_SLOT_PRESET_TYPE preset;
    MLFB_ITEM module;
    LSK_ITEM slot;
    SLAVE_DIAG_TYPE bit;
    SLAVE_BGR_DIAG_TYPE group;
    _parastruct prm;
    PARA_HELPMESSAGE_TYPE help;
    KEYWORD_TYPE keyword;
    char text[31];
    unsigned char bytes[237];
    int number = 0;
    device.getSlaveTypeHeader(&header);
    device.getSlaveTypeData(&data);
    device.getSlotNumbering(&numbering);
    device.getFamily(text);
    device.getBitMapFileName(text);
    device.getDLLFileName(text);
    for (const int i : {INT_MIN, -1, 0, 1, 2, 16, 31, 999, INT_MAX}) {
        device.getFixedSlotId(i, &module);
        device.getFixedSlotId(i, &preset);
        device.getMLFBListItem(i, &module);
        device.getLSKText(i, text);
        device.getSKListCnt(i, &number);
        device.getSlaveBGrDiagMsg(i, &group);
        device.getChannelDiagMsg(i, text);
        device.getParaStruct(i, &prm);
        device.getHelpMessageCnt(i);
        device.getSPHelpCnt(i);
        device.getPSLHelpRef(i);
        device.getSlotParameters(i, bytes, &number);
        while (device.hasSPBlockThisKeyWord(&keyword, i, 0) != 0) {
        }
        for (const int k : {INT_MIN, -1, 0, 1, INT_MAX}) {
            device.getSKListItem(i, k, &slot);
            device.getStructuredSlotParameter(i, k, &prm);
            device.getParaHelpMessage(i, k, &help);
            device.getSPHelpItem(i, k, &help);
            device.getSlaveDiagMsg(i, k, 0, &bit);
        }
    }
    std::vector<char> hexDigits(2 * 999 + 1);
    std::vector<char> slots(3 * 17 * 255 + 1);
    TYPEFILE_COM_QX410 record;
    record.userPrmHex = hexDigits.data();
    record.fixedSlotText = slots.data();
    device.getCOMTypeData(&record);
    cTypDescriptor again(&record);
    again.checkTypeFileContents();
    std::vector<char> object(65536 + 8);
    if (device.writeObject(object.data()) != 0) {
        cTypDescriptor restored(device.getDataSize(), object.data());
        restored.checkTypeFileContents();
    }
    device.getMLFBstring(text);
    device.checkTypeFileContents();
}
