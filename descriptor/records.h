/// @file
/// The records that cross the boundary between host and library.
///
/// Members have their natural alignment; host and library share the one layout. Texts are 8-bit characters of fixed
/// width, ended by a NUL where the width leaves room for it; blanks that pad a field in the type file are kept.

#ifndef TYPDESCRIPTOR_DESCRIPTOR_RECORDS_H
#define TYPDESCRIPTOR_DESCRIPTOR_RECORDS_H

#include <stdint.h>

#ifndef __cplusplus
/* In C as well a record is named without "struct". */
typedef struct GSD_WARNING_ITEM GSD_WARNING_ITEM;
typedef struct SLAVE_TYPE_HEADER_INFO SLAVE_TYPE_HEADER_INFO;
typedef struct SLAVE_TYPEDATA_TYPE SLAVE_TYPEDATA_TYPE;
typedef struct CSLAVE_SLOT_PRESET_TYPE CSLAVE_SLOT_PRESET_TYPE;
typedef struct MLFB_ITEM MLFB_ITEM;
typedef struct LSK_ITEM LSK_ITEM;
typedef struct SLOT_NUMBERING_TYPE SLOT_NUMBERING_TYPE;
typedef struct SLAVE_DIAG_TYPE SLAVE_DIAG_TYPE;
typedef struct SLAVE_BGR_DIAG_TYPE SLAVE_BGR_DIAG_TYPE;
typedef struct KEYWORD_TYPE KEYWORD_TYPE;
typedef struct _parastruct _parastruct;
typedef struct PARA_HELPM_INFO PARA_HELPM_INFO;
typedef struct PARA_HELPMESSAGE_TYPE PARA_HELPMESSAGE_TYPE;
typedef struct TYPEFILE_COM_QX410 TYPEFILE_COM_QX410;
#endif

/// One warning of a GSD compilation, 8 bytes.
struct GSD_WARNING_ITEM {
    int32_t code;        ///< -301 to -305
    uint32_t lineNumber; ///< physical line of the GSD file, counted from 1
};

/// The type file's header, 84 bytes.
struct SLAVE_TYPE_HEADER_INFO {
    char version[5];      ///< "V5.2": major digit at 1, minor digit at 3
    char modelName[18];   ///< 17 characters
    char vendorName[11];  ///< 10 characters
    char family[11];      ///< 10 characters, device family
    char periphery[11];   ///< 10 characters
    char stationType[16]; ///< 15 characters, blank-padded
    uint16_t identNumber; ///< PROFIBUS ident number
    int32_t makerDevice;  ///< 1 for a device of the maker itself, else 0
    int32_t headerCnf;    ///< 1 when configuration identifiers are in the standard format ('J', '0' or '1'), else 0
};

/// The type file's type data, 356 bytes. What a category does not have is 0. Lengths in bytes that count the 7 standard
/// bytes of the parameter telegram say so.
struct SLAVE_TYPEDATA_TYPE {
    char modelName[18];         ///< 17 characters, as in the header
    char stationType[16];       ///< 15 characters, as in the header
    uint16_t identNumber;       ///< PROFIBUS ident number
    int32_t asicType;           ///< protocol chip 0 to 4, or 78 ('N') when not stated
    uint32_t features;          ///< bits of SlaveFeature
    uint16_t minSlaveInterval;  ///< in units of 100 microseconds
    uint16_t baudRates;         ///< bit 9 = 12 Mbit/s ... bit 5 = 31.25 or 45.45 ... bit 0 = 9.6 kbit/s
    int32_t maxInputLen;        ///< bytes, bits rounded up
    int32_t maxOutputLen;       ///< bytes, bits rounded up
    int32_t maxModule;          ///< number of modules
    int32_t maxDiagDataLen;     ///< bytes
    int32_t userPrmDataLen;     ///< bytes with the 7 standard bytes; in slot-parameter mode those of the common part
    int32_t userPrmDataLenRead; ///< bytes with the 7 standard bytes, as the file says
    int32_t commonPrmDataLen;   ///< bytes of the device-wide part behind the 7 standard bytes
    int32_t maxDataLen;         ///< bytes, input and output together
    int32_t maxInputBits;       ///< bits
    int32_t maxOutputBits;      ///< bits
    int32_t eterDelay;          ///< 0 to 999
    int32_t maxResponseDelay;   ///< 0 to 100
    int32_t slotCount;          ///< number of slots of a KGP station
    int32_t kgpDevice;          ///< 1 for a KGP station
    uint8_t userPrmData[237];   ///< the user parameter bytes behind the 7 standard bytes
    uint8_t cat2Digit0;         ///< category II, position 0
    int32_t cat2Flag4;          ///< category II, position 4
    uint8_t cat2Digit8;         ///< category II, position 8
    uint8_t cat2Digit12;        ///< category II, position 12
    uint8_t cat2Digit16;        ///< category II, position 16
    int32_t cat2Flag20;         ///< category II, position 20
};

/// Bits of SLAVE_TYPEDATA_TYPE::features.
enum SlaveFeature {
    kFeatureMakerDevice = 0x00000001, ///< the maker's own device
    kFeatureHeaderCnf = 0x00000002,   ///< identifiers in the standard format
    kFeatureSetSlaveAddress = 0x00000004,
    kFeatureSyncMode = 0x00000008,
    kFeatureFreezeMode = 0x00000010,
    kFeatureDiagBufferable = 0x00000040,
    kFeatureActive = 0x00000080,         ///< an active device
    kFeatureEvenSlotNumber = 0x00000100, ///< an even number of slots is required
    kFeatureFailSafe = 0x00000200,
    kFeatureDpAsiLink = 0x00000400, ///< station type DPASI/GATE
    kFeatureMaster = 0x00000800,
    kFeaturePublisher = 0x00001000,
    kFeatureSubscriber = 0x00002000,
    kFeatureOnlyNormal = 0x00004000,  ///< no special-format identifiers
    kFeatureOnlySpecial = 0x00008000, ///< only special-format identifiers
    kFeatureHeaderCnf0 = 0x00010000,  ///< header configuration '0'
    kFeatureHeaderCnf1 = 0x00020000,  ///< header configuration '1'
    kFeatureKgp = 0x00040000          ///< station type KGP/QX410L
};

/// One configuration identifier, 28 bytes.
///
/// The two high bits of a special-format identifier say which lengths follow it: 0x40 that of the input, 0x80 that of
/// the output, 0xC0 both, and here that of the input is the first. In the configuration telegram the output's comes
/// first: a host that builds one sends lengthByte2 before lengthByte1. A length byte of 0xFF reads -1 as well, so ask
/// the identifier whether there is one.
struct CSLAVE_SLOT_PRESET_TYPE {
    int32_t kind;       ///< 0 empty, 1 general, 3 compact, 5 special format
    uint8_t identifier; ///< the identifier byte
    int8_t lengthByte1; ///< special format: the length byte, or the input's of two; -1 for none
    int8_t lengthByte2; ///< special format: the output's length byte of two; -1 for none
    uint8_t
        mfrData[14]; ///< special format: manufacturer bytes, as many as the identifier's low four bits say (15: none)
    int32_t xSlot;   ///< 1 when the second letter of the list's structure code is neither 'V' nor 'Y'
};

/// One entry of the order-number list, or one preset slot; 72 bytes.
struct MLFB_ITEM {
    char mlfb[31];                  ///< order number, 30 characters
    CSLAVE_SLOT_PRESET_TYPE preset; ///< its configuration identifier (not for KGP modules)
    int32_t spIndex;                ///< slot parameter block, from 0; -1 for none
    uint16_t kgpId;                 ///< KGP module: module number, 0 to 1023
    uint8_t kgpData[3];             ///< KGP module: its three values
};

/// One slot entry of a module list, 96 bytes.
struct LSK_ITEM {
    char text[21];  ///< 20 characters
    MLFB_ITEM item; ///< the module: an entry of the order-number list, or the entry's own identifier
};

/// Slot numbering of a KGP station, 16 bytes.
struct SLOT_NUMBERING_TYPE {
    int32_t value1; ///< first value, 0 to 999
    char text[4];   ///< two characters and NULs
    int32_t value2; ///< never 0
    int32_t digit;  ///< 1 to 9
};

/// The texts of one device diagnostic bit, 72 bytes.
struct SLAVE_DIAG_TYPE {
    int32_t setFound;   ///< 1 when there is a text for the bit set
    char setText[31];   ///< 30 characters
    int32_t clearFound; ///< 1 when there is a text for the bit clear
    char clearText[31]; ///< 30 characters
};

/// The text of one value of a device diagnostic bit group, 38 bytes.
struct SLAVE_BGR_DIAG_TYPE {
    uint8_t byteHigh; ///< hundreds of the byte number
    uint8_t byteLow;  ///< its last two digits
    uint8_t firstBit; ///< 0 to 7
    uint8_t lastBit;  ///< 0 to 7
    uint16_t value;   ///< the value that the text explains
    char text[31];    ///< 30 characters
};

/// One keyword record of a slot parameter block, 12 bytes.
struct KEYWORD_TYPE {
    int32_t byteOffset; ///< offset in the block, without its hundreds
    char dataType[6];   ///< "BYTE ", "INT  " or "UINT "
};

/// One structured parameter, 72 bytes. Read `reference`, `name` and `dataType` by their width: the format does not
/// promise a NUL behind them. The byte index of a station's parameter counts from the start of the telegram, so that
/// the first one behind the 7 standard bytes is 7; that of a slot parameter block counts from 0 in the block. Numbers
/// are decimal, but the defaults of "BIN" and "BGR" are binary digits, the most significant first.
struct _parastruct {
    char reference[6];    ///< "PS" and the byte index, 5 characters
    char name[31];        ///< 30 characters
    char dataType[6];     ///< 5 characters: "BIT" and bit, "BIN  ", "BYTE ", "INT  ", "UINT ", "BGR" first bit, width
    char defaultValue[9]; ///< up to 8 characters
    char minValue[7];     ///< up to 6 characters
    char maxValue[7];     ///< up to 6 characters
    int32_t helpNumber;   ///< help block with the texts of the values, 0 for none
};

/// One block of help texts, as the checks locate it.
struct PARA_HELPM_INFO {
    int32_t helpNumber; ///< the block's number
    int32_t lineCount;  ///< number of its lines, at least 1
    char* firstLine;    ///< its first line, inside the image
};

/// One help text, 34 bytes.
struct PARA_HELPMESSAGE_TYPE {
    uint16_t value; ///< the value that the text explains
    char text[31];  ///< 30 characters
};

/// A device type as plain fields, for hosts with a store of their own.
///
/// The two pointers belong to the host: the library never changes them; it writes to the buffers when it fills a record
/// of category I, and reads them when it builds from one.
///
/// A filled record has 0 or 1 in its flags; a record to build from counts 1 alone as set, but for modularStation. The
/// two sides differ in baudRates: a filled record has nine 32-bit flags, a record to build from is read as ten 16-bit
/// units (31.25 and 45.45 kbit/s between 1.5 Mbit/s and 500 kbit/s), the halves of the first five flags with the low
/// one first, each set when its low byte is 1.
struct TYPEFILE_COM_QX410 {
    char headLine[49];              ///< head line without the bracketed order number, at most 48 characters
    char orderNumber[31];           ///< at most 30 characters
    char modelName[18];             ///< 17 characters, blank-padded by the host
    char vendorName[11];            ///< at most 10 characters
    char family[11];                ///< at most 10 characters
    char periphery[11];             ///< at most 10 characters
    char identNumber[6];            ///< 5 decimal digits
    int32_t setSlaveAddSupp;        ///< the slave address can be set
    int32_t syncModeSupp;           ///< sync mode
    int32_t freezeModeSupp;         ///< freeze mode
    int32_t publisherSubscriber;    ///< publisher, subscriber or both
    int32_t diagBufferable;         ///< diagnostics can be buffered
    int32_t activeOrMaster;         ///< active device or master
    int32_t evenSlotNumberRequired; ///< an even number of slots is required
    int32_t modularStation;         ///< modular station; any value but 0 counts
    char asicCode;                  ///< '0' to '4' or 'N'
    char minSlaveInterval[6];       ///< 5 decimal digits
    int32_t baudRates[9];           ///< 12 M, 6 M, 3 M, 1.5 M, 500 k, 187.5 k, 93.75 k, 19.2 k, 9.6 kbit/s
    char maxInputLen[4];            ///< 3 decimal digits
    char maxOutputLen[4];           ///< 3 decimal digits
    char maxModule[4];              ///< 3 decimal digits
    char maxDiagDataLen[4];         ///< 3 decimal digits
    char
        userPrmDataLen[4]; ///< 3 decimal digits, the 7 standard bytes included; in slot-parameter mode 'V' and 2 digits
    char* userPrmHex;      ///< two hexadecimal digits a user parameter byte and a NUL, or null
    char* fixedSlotText;   ///< three decimal digits an identifier or data byte and a NUL, or null
};

#endif
