/* A host in C: loads a device type from a GSD file or a type file, checks it and prints its modules and parameters. */

#include "c/typdescriptor.h"

#include <stddef.h>
#include <stdio.h>

static void printModules(const typdescriptor_device* device)
{
    int i;
    for (i = 0; i < typdescriptor_getMLFBListCnt(device); ++i) {
        MLFB_ITEM module;
        if (typdescriptor_getMLFBListItem(device, i, &module) == kOk)
            printf("module %s identifier 0x%02X\n", module.mlfb, (unsigned)module.preset.identifier);
    }
}

static void printParameters(const typdescriptor_device* device)
{
    int i;
    for (i = 0; i < typdescriptor_getParaStructCnt(device); ++i) {
        _parastruct prm;
        int line;
        if (typdescriptor_getParaStruct(device, i, &prm) != 1)
            continue;
        printf("parameter %.5s %.30s %.5s = %s (%s to %s)\n", prm.reference, prm.name, prm.dataType, prm.defaultValue,
               prm.minValue, prm.maxValue);
        for (line = 0; line < typdescriptor_getHelpMessageCnt(device, prm.helpNumber); ++line) {
            PARA_HELPMESSAGE_TYPE help;
            if (typdescriptor_getParaHelpMessage(device, prm.helpNumber, line, &help) == 1)
                printf("    %5u %s\n", (unsigned)help.value, help.text);
        }
    }
}

static int printDevice(typdescriptor_device* device, const char* fileName)
{
    SLAVE_TYPE_HEADER_INFO header;
    const int result = typdescriptor_checkTypeFileContents(device);
    if (result != kOk) {
        fprintf(stderr, "%s: error: %s (%d)\n", fileName, typdescriptor_resultText(result), result);
        return 1;
    }
    typdescriptor_getSlaveTypeHeader(device, &header);
    printf("%s by %s, ident number 0x%04X\n", header.modelName, header.vendorName, (unsigned)header.identNumber);
    printModules(device);
    printParameters(device);
    return 0;
}

int main(int argc, char** argv)
{
    typdescriptor_device* device;
    int status;
    if (argc != 2) {
        fprintf(stderr, "usage: host FILE\n");
        return 2;
    }
    device = typdescriptor_open(argv[1], 0, NULL);
    if (device == NULL) {
        fprintf(stderr, "no memory\n");
        return 1;
    }
    status = printDevice(device, argv[1]);
    typdescriptor_close(device);
    return status;
}
