/// @file
/// The result codes of the library, each with its sentence.
///
/// Zero is success; queries that count answer zero or more. Operations that return a code as `unsigned short` hand out
/// its 16-bit two's complement: -1 arrives as 65535, `static_cast<short>(result)` gives the code back.

#ifndef TYPDESCRIPTOR_DESCRIPTOR_RESULTCODES_H
#define TYPDESCRIPTOR_DESCRIPTOR_RESULTCODES_H

/// Every code once: its name, its value and one sentence for the person who reads it.
#define TYPDESCRIPTOR_RESULT_CODES(X)                                                                                  \
    X(kOk, 0, "The operation succeeded.")                                                                              \
    X(kErrFile, -1, "The file cannot be opened, measured or read, or there is no memory for it.")                      \
    X(kErrHeader, -2, "The head line or the header is malformed, or the station type is unknown.")                     \
    X(kErrTypeData, -3, "A character of the type data is out of place, or a rule of the station type is broken.")      \
    X(kErrIdentifier, -4, "A configuration identifier or a preset slot is invalid.")                                   \
    X(kErrFixedProfile, -7, "A station of type QX410U/VRC deviates from its fixed profile.")                           \
    X(kErrFixedCategoryII, -8, "A station of type QX410K does not have its fixed values.")                             \
    X(kErrNoOrderNumber, -9, "The head line has no order number, or a blank one.")                                     \
    X(kErrModelName, -10, "The model name is blank.")                                                                  \
    X(kErrIdentNumber, -11, "The ident number is not five digits, or above 65535.")                                    \
    X(kErrSlaveInterval, -12, "The minimum slave interval is 1000 or more.")                                           \
    X(kErrBaudRates, -13, "No baud rate is supported.")                                                                \
    X(kErrInputLen, -14, "The maximum input length is above 244 bytes.")                                               \
    X(kErrOutputLen, -15, "The maximum output length is above 244 bytes.")                                             \
    X(kErrNoData, -16, "The device has neither input nor output data.")                                                \
    X(kErrMaxModule, -17, "The maximum number of modules is above 244, or odd where it must be even.")                 \
    X(kErrDiagLen, -18, "The maximum diagnostic data length is not between 6 and 244.")                                \
    X(kErrPrmLen, -19, "The user parameter length is not between 7 and 244, or the slots' blocks exceed it.")          \
    X(kErrPresetCount, -21, "The number of preset slots is invalid.")                                                  \
    X(kErrUserPrm, -22, "The user parameter section is malformed or has too many bytes.")                              \
    X(kErrMemory, -23, "There is not enough memory, or nothing is loaded.")                                            \
    X(kErrUserPrmByte, -24, "A user parameter byte is not two hexadecimal digits.")                                    \
    X(kErrPrmList, -25, "The list of structured parameters is missing.")                                               \
    X(kErrPrmRecord, -26, "A structured parameter is malformed.")                                                      \
    X(kErrPrmValue, -27, "A structured parameter has an unknown type, a value out of range or an occupied byte.")      \
    X(kErrHelpBlock, -28, "A block of parameter help texts is malformed.")                                             \
    X(kErrNotChangeable, -31, "This type file may not be changed.")                                                    \
    X(kErrWriteOpen, -32, "The type file cannot be opened for writing.")                                               \
    X(kErrWrite, -33, "The type file cannot be written.")                                                              \
    X(kErrTargetProtected, -34, "The target is a valid type file that may not be changed.")                            \
    X(kErrDeviceDiag, -80, "A device diagnostic text is malformed, or there is none of that kind.")                    \
    X(kErrChannelDiag, -81, "A channel diagnostic text is malformed, or there is none of that kind.")                  \
    X(kErrBitmapName, -82, "The bitmap name is malformed, or the type file has none.")                                 \
    X(kErrLibraryName, -83, "The library name is malformed, or the type file has none.")                               \
    X(kErrSlotNumbering, -84, "A slot offset or slot numbering record is malformed, or the slot counts differ.")       \
    X(kErrMaxDataLen, -85, "The maximum data length is 0 or above the input and output lengths together.")             \
    X(kErrOrderList, -86, "The order-number list is malformed, or there is no such entry or block.")                   \
    X(kErrModuleList, -87, "A module list is malformed, or there is no such list, entry or block.")                    \
    X(kErrSlotPrm, -88, "A slot parameter block is malformed, or there is no such block.")                             \
    X(kErrSlotHelp, -89, "A block of slot help texts is malformed, or there is no such block or line.")                \
    X(kErrCommonPrmLen, -90, "The common parameter length is above 236.")                                              \
    X(kErrIdentFormat, -100, "The format of a configuration identifier is unknown.")                                   \
    X(kErrGsdSyntax, -201, "The line is malformed, or its keyword must not stand here.")                               \
    X(kErrGsdKeyword, -202, "The keyword is unknown.")                                                                 \
    X(kErrGsdProtocol, -203, "Protocol_Ident must be 0 (PROFIBUS-DP).")                                                \
    X(kErrGsdMandatory, -204, "A mandatory keyword is missing.")                                                       \
    X(kErrGsdMemory, -205, "There is not enough memory to compile the GSD file.")                                      \
    X(kErrGsdSlotNumberType, -206, "The slot-number parameter must be Unsigned8, Unsigned16 or Signed16.")             \
    X(kErrGsdNoSection, -207, "The file has no line #Profibus_DP.")                                                    \
    X(kErrGsdFlag, -208, "The value must be 0 or 1.")                                                                  \
    X(kErrGsdNumber, -209, "The number cannot be read or is out of its range.")                                        \
    X(kErrGsdOpen, -210, "The GSD file cannot be opened or read.")                                                     \
    X(kErrGsdRepeated, -211, "The keyword may occur only once.")                                                       \
    X(kErrGsdStationType, -212, "Station_Type must be 0 (DP slave).")                                                  \
    X(kErrGsdTooMany, -213, "There are too many values, or parameter data beyond the declared length.")                \
    X(kErrGsdSecondCompile, -214, "A compiler compiles only one file.")                                                \
    X(kErrGsdEmptyBlock, -215, "The block ends without any content.")                                                  \
    X(kErrGsdImageFull, -216, "The device is too large for a type file.")                                              \
    X(kErrGsdNoPrmLen, -217, "Parameter data is given without a parameter length.")                                    \
    X(kErrGsdReference, -218, "The referenced ExtUserPrmData or PrmText block is not defined.")                        \
    X(kErrGsdConfiguration, -219, "The configuration bytes are wrong, or do not fit the kind of device.")              \
    X(kErrGsdStringLen, -220, "The text is longer than 32 characters.")                                                \
    X(kWarnDataType, -301, "The data type Unsigned32, Signed8 or Signed32 is kept as a shorter or unsigned one.")      \
    X(kWarnTextCut, -302, "The text is too long for its field.")                                                       \
    X(kWarnDiagArea, -303, "The diagnostic area is wider than 8 bits or crosses a byte boundary.")                     \
    X(kWarnPrmTextRef, -304, "The keyword is spelled PrmTextRef instead of Prm_Text_Ref.")                             \
    X(kWarnChannelDiag, -305, "The keyword is spelled ChannelDiag instead of Channel_Diag.")

/// The result codes by name. -201 to -220 end a GSD compilation, -301 to -305 are its warnings, collected and never
/// returned; -100 and -202 stay inside the library.
enum ResultCode {
#define TYPDESCRIPTOR_ENUMERATOR(name, value, sentence) name = (value),
    TYPDESCRIPTOR_RESULT_CODES(TYPDESCRIPTOR_ENUMERATOR)
#undef TYPDESCRIPTOR_ENUMERATOR
};

/// The sentence of a result code.
/// @param code  any result of the library, warnings included
/// @return one English sentence, never null; a static text, nothing is allocated
static inline const char* resultText(int code)
{
    switch (code) {
#define TYPDESCRIPTOR_CASE(name, value, sentence)                                                                      \
    case name:                                                                                                         \
        return sentence;
        TYPDESCRIPTOR_RESULT_CODES(TYPDESCRIPTOR_CASE)
#undef TYPDESCRIPTOR_CASE
    default:
        return "This is not a result code of the library.";
    }
}

#endif
