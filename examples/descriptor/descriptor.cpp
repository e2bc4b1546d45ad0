// A host of the class alone: loads a device type from a GSD file or a type file, checks it and prints what it knows.

#include "descriptor/cTypDescriptor.h"

#include <cstdio>

static void printParameters(const cTypDescriptor& device)
{
    for (int i = 0; i < device.getParaStructCnt(); ++i) {
        _parastruct prm;
        device.getParaStruct(i, &prm);
        std::printf("parameter %s %s %s = %s (%s to %s)\n", prm.reference, prm.name, prm.dataType, prm.defaultValue,
                    prm.minValue, prm.maxValue);
        for (int line = 0; line < device.getHelpMessageCnt(prm.helpNumber); ++line) {
            PARA_HELPMESSAGE_TYPE help;
            device.getParaHelpMessage(prm.helpNumber, line, &help);
            std::printf("    %5u %s\n", help.value, help.text);
        }
    }
}

static void printSlotsAndModules(const cTypDescriptor& device)
{
    int slots = 0; // stays 0 when there are none
    device.isKonfigFixed(&slots);
    for (int i = 0; i < slots; ++i) {
        CSLAVE_SLOT_PRESET_TYPE slot;
        device.getFixedSlotId(i, &slot);
        std::printf("slot %d: identifier 0x%02X\n", i + 1, slot.identifier);
    }
    for (int list = 0; list < device.getLSKCnt(); ++list) {
        char text[31];
        int isFixed = 0;
        device.getLSKText(list, text);
        std::printf("module list %s\n", text);
        for (int i = 0; i < device.getSKListCnt(list, &isFixed); ++i) {
            LSK_ITEM module;
            device.getSKListItem(list, i, &module);
            std::printf("    %s identifier 0x%02X\n", module.text, module.item.preset.identifier);
        }
    }
    for (int i = 0; i < device.getMLFBListCnt(); ++i) {
        MLFB_ITEM module;
        device.getMLFBListItem(i, &module);
        std::printf("module %s identifier 0x%02X\n", module.mlfb, module.preset.identifier);
    }
}

static void printDiagnostics(const cTypDescriptor& device)
{
    for (int bit = 0; bit < 62 * 8; ++bit) {
        SLAVE_DIAG_TYPE diag;
        if (device.getSlaveDiagMsg(0, bit / 8 + 1, bit % 8, &diag) == kOk)
            std::printf("diagnosis byte %d bit %d: %s/ %s\n", bit / 8 + 1, bit % 8, diag.setText, diag.clearText);
    }
    for (int i = 0; i < device.getSlaveBGrDiagMsgCnt(); ++i) {
        SLAVE_BGR_DIAG_TYPE diag;
        device.getSlaveBGrDiagMsg(i, &diag);
        std::printf("diagnosis byte %d bits %d to %d, value %d: %s\n", diag.byteHigh * 100 + diag.byteLow,
                    diag.firstBit, diag.lastBit, diag.value, diag.text);
    }
    for (int errorType = 16; errorType <= 31; ++errorType) {
        char text[31];
        if (device.getChannelDiagMsg(errorType, text) == kOk)
            std::printf("channel error %d: %s\n", errorType, text);
    }
}

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: descriptor FILE\n");
        return 2;
    }
    cTypDescriptor device(argv[1], 0, nullptr);
    const int result = device.checkTypeFileContents();
    if (result != kOk) {
        std::fprintf(stderr, "%s", argv[1]);
        if (device.getGsdErrLineNr() > 0)
            std::fprintf(stderr, ":%d", device.getGsdErrLineNr());
        std::fprintf(stderr, ": error: %s (%d)\n", resultText(result), result);
        return 1;
    }
    SLAVE_TYPE_HEADER_INFO header;
    device.getSlaveTypeHeader(&header);
    std::printf("%s by %s, ident number 0x%04X, family %s\n", header.modelName, header.vendorName, header.identNumber,
                header.family);
    printSlotsAndModules(device);
    printParameters(device);
    printDiagnostics(device);
    return 0;
}
