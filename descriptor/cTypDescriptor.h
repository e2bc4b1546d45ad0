/// @file
/// cTypDescriptor: everything a hardware-configuration application needs to know about one PROFIBUS-DP slave type.
///
/// This is the one header a host includes. A host
///   1. constructs a descriptor from a GSD file, a type file, a host record or a descriptor object image,
///   2. reads the outcome with getStatus() and the GSD getters,
///   3. calls checkTypeFileContents(), which validates the image and decodes it,
///   4. asks its questions, and may save the type file with writeTypeFile().
///
/// Most answers are plain integers: 0 or a count for success, a negative ResultCode for a failure; what answers 1 or 0
/// instead says so. No exception leaves the library. A descriptor is used by one thread at a time, since some queries
/// write into it too; different descriptors may be used on different threads at once. Records and buffers handed over
/// by the host stay the host's. Names of files go to the system as they are, in its own code page.
///
/// The page "Building the telegrams", below, says how what it answers becomes what a master sends.

#ifndef TYPDESCRIPTOR_DESCRIPTOR_CTYPDESCRIPTOR_H
#define TYPDESCRIPTOR_DESCRIPTOR_CTYPDESCRIPTOR_H

#include "descriptor/export.h"
#include "descriptor/records.h"
#include "descriptor/resultCodes.h"

#include <stddef.h>
#include <stdint.h>

// NOLINTNEXTLINE(modernize-concat-nested-namespaces): C++11 has no other form
namespace typdescriptor {
namespace internal {
struct TypeFile;
}
} // namespace typdescriptor

/// @page telegrams Building the telegrams
///
/// To run a slave, a master sends it two telegrams: its parameters (Set_Prm) and its configuration (Chk_Cfg). A descriptor
/// has what goes into them, for a station of category I that is no KGP station. This page says what the records leave to be
/// guessed; its code is compiled and compared with what the host library builds, which does all of this and checks it too.
///
/// **Configuration**: the identifiers of the slots, in slot order; a free slot ahead of a plugged one is the identifier
/// 0x00. A module of the order-number list has one identifier, one of the module lists has one in each of its entries. An
/// identifier of the special format has length bytes: lengthByte1 is the only one, or that of the input, and lengthByte2
/// that of the output. The wire wants the output's first.
///
/// **Parameters**: 7 standard bytes, which the host makes (station status, two watchdog factors, min TSDR, ident number
/// with the high byte first, groups), the user parameters of the station, then the block of every plugged module that has
/// one, in slot order. Which length to send: of the station userPrmDataLen, which counts the 7 standard bytes; of a block
/// what getSlotParameters() says. The others are no lengths of what is sent. userPrmDataLenRead is the most that all of it
/// may take, 7 standard bytes included. commonPrmDataLen is the station's part without them in slot-parameter mode (the GSD
/// file has the keywords of Ext_User_Prm_Data), and else 0. The text TYPEFILE_COM_QX410::userPrmDataLen has in that mode
/// only the first two digits of userPrmDataLenRead, behind a "V". getMaxSPBlockLen() is the room that a buffer needs.
///
/// **Places**: a reference counts bytes from the beginning of the telegram for the station, and from the beginning of the
/// block for a block. "PS010" of a station is the byte 3 of its user parameters, "PS002" of a block the byte 2 of the block.
///
/// **Values**: defaults are in the bytes already. The texts of the defaults of "BIN" and "BGR" are binary digits, the most
/// significant first; all other numbers are decimal, limits of "BIN" and "BGR" too. Words ("INT" and "UINT") lie in the
/// telegram with the high byte first. What a GSD file declares as Signed8, Signed32 or Unsigned32 is kept as a shorter or
/// unsigned type (kWarnDataType): a value of 32 bits keeps its low word, at the place of the high one.
///
/// **Files**: what was compiled from a GSD file is not changeable, neither fresh nor read again from a type file, so that
/// writeTypeFile() answers kErrNotChangeable (-31) for it. To have the type file written, ask the constructor. Names of
/// files are in the system's own code page, whatever the encoding of texts is elsewhere in the host.
///
/// @code{.cpp}
/// #include "descriptor/cTypDescriptor.h"
///
/// #include <cstdlib>
/// #include <cstring>
/// #include <string>
/// #include <vector>
///
/// typedef std::vector<unsigned char> Bytes;
///
/// // Appends an identifier to a configuration telegram.
/// void appendIdentifier(const CSLAVE_SLOT_PRESET_TYPE& preset, Bytes& configuration)
/// {
///     configuration.push_back(preset.identifier);
///     if (preset.kind != 5) // only the special format goes on
///         return;
///     const int directions = preset.identifier >> 6; // 1 input, 2 output, 3 both
///     if (directions == 3)
///         configuration.push_back(static_cast<unsigned char>(preset.lengthByte2)); // the output's
///     if (directions != 0)
///         configuration.push_back(static_cast<unsigned char>(preset.lengthByte1));
///     const int count = preset.identifier & 15;
///     if (count != 15)
///         configuration.insert(configuration.end(), preset.mfrData, preset.mfrData + count);
/// }
///
/// // The user parameters of the station.
/// Bytes stationParameters(const cTypDescriptor& device)
/// {
///     SLAVE_TYPEDATA_TYPE data;
///     device.getSlaveTypeData(&data);
///     return Bytes(data.userPrmData, data.userPrmData + (data.userPrmDataLen - 7));
/// }
///
/// // The parameters of a module, with the number of its slot where the block wants it.
/// Bytes moduleParameters(cTypDescriptor& device, const MLFB_ITEM& module, int slot)
/// {
///     Bytes bytes(static_cast<std::size_t>(device.getMaxSPBlockLen()));
///     int length = 0;
///     if (module.spIndex >= 0)
///         device.getSlotParameters(module.spIndex, bytes.data(), &length);
///     bytes.resize(static_cast<std::size_t>(length));
///     KEYWORD_TYPE field;
///     while (device.hasSPBlockThisKeyWord(&field, module.spIndex, 0) == 1) {
///         std::size_t place = static_cast<std::size_t>(field.byteOffset);
///         if (std::strncmp(field.dataType, "BYTE", 4) != 0)
///             bytes[place++] = 0; // high byte of a word
///         bytes[place] = static_cast<unsigned char>(slot);
///     }
///     return bytes;
/// }
///
/// // The default of a parameter as a number.
/// long defaultOf(const _parastruct& parameter)
/// {
///     const std::string type(parameter.dataType, 3);
///     return std::strtol(parameter.defaultValue, nullptr, type == "BIN" || type == "BGR" ? 2 : 10);
/// }
///
/// // Puts a value into the bytes that a parameter is described in.
/// // @param standardBytes  7 for the station's, 0 for a block's
/// // @return false when the parameter lies behind them
/// bool putValue(const _parastruct& parameter, int standardBytes, long value, Bytes& bytes)
/// {
///     const std::string type(parameter.dataType, 3);
///     const bool isWord = type == "INT" || type == "UIN";
///     const long reference = std::strtol(std::string(parameter.reference + 2, 3).c_str(), nullptr, 10);
///     const std::size_t place = static_cast<std::size_t>(reference - standardBytes);
///     if (place + (isWord ? 2 : 1) > bytes.size())
///         return false;
///     if (isWord) {
///         bytes[place] = static_cast<unsigned char>(value >> 8 & 0xFF);
///         bytes[place + 1] = static_cast<unsigned char>(value & 0xFF);
///     } else if (type == "BIT" || type == "BGR") {
///         const int firstBit = parameter.dataType[3] - '0';
///         const int bitCount = type == "BIT" ? 1 : parameter.dataType[4] - '0';
///         const long mask = ((1L << bitCount) - 1) << firstBit;
///         bytes[place] = static_cast<unsigned char>((bytes[place] & ~mask) | (value << firstBit & mask));
///     } else {
///         bytes[place] = static_cast<unsigned char>(value & 0xFF);
///     }
///     return true;
/// }
/// @endcode

/// One PROFIBUS-DP slave device type.
class TYPDESCRIPTOR_API cTypDescriptor {
public:
    /// @name Construction
    /// A constructor never fails visibly: the outcome is getStatus(). None of them checks the contents.
    /// @{

    /// Loads a device type from a file.
    ///
    /// A name whose third-last and second-last characters are "GS" in any case is a GSD file and is compiled; its last
    /// letter chooses the language of the family's name (E English, F French, I Italian, P or S Spanish; any other
    /// German). Any other file is a type file of at most 65534 bytes and is read whole.
    /// @param fileName    the file, NUL-terminated; null gives the status kErrFile
    /// @param writeFlag   not 0: write the compiled type file as well (GSD files only); a failed write is not reported
    /// @param outputName  name of the written type file; null for the default name "__iiii_s.410" in the current
    ///                    directory (ident number in four hexadecimal digits; E, F, I or S for the language, D for a
    ///                    name in G, X for any other)
    cTypDescriptor(const char* fileName, int writeFlag, const char* outputName);

    /// Builds the type-file image from a host record.
    /// @param record  the device type; its two text buffers may be null; nothing of it is kept; null gives the status
    ///                kErrFile
    explicit cTypDescriptor(const TYPEFILE_COM_QX410* record);

    /// Takes back a descriptor object image made by writeObject().
    /// @param size  size of the object image in bytes; less than 8 gives an empty type-file image
    /// @param data  the object image, copied; null for a size of 8 or more gives the status kErrFile
    cTypDescriptor(unsigned short size, char* data);

    /// Frees every buffer that the descriptor owns.
    ~cTypDescriptor();

    cTypDescriptor(const cTypDescriptor&) = delete;

    /// Copies every field as it stands, pointers included. The two objects then share their buffers and what a check of
    /// either finds, though each refuses until a check of its own. The caller sees to it that only one of them is
    /// destroyed, and that the buffers this object owned before are not lost.
    cTypDescriptor& operator=(const cTypDescriptor& other);

    /// The outcome of the construction, later of checkTypeFileContents().
    /// @return 0 or a negative ResultCode
    int getStatus() const;

    /// @}
    /// @name Results of a GSD compilation
    /// @{

    /// @return the number of physical lines read when a compilation failed: the line of the fault, or the end of the file
    ///         (behind its last line feed a file has one more, empty, line); 0 when the file cannot be opened; -1 when no
    ///         compilation failed
    int getGsdErrLineNr() const;
    /// @return the number of warnings; 0 when the descriptor was not built from a GSD file
    int getGsdCntOfWarnings() const;
    /// Copies the warnings in the order in which they were raised.
    /// @param dst  room for getGsdCntOfWarnings() items of 8 bytes, each a GSD_WARNING_ITEM
    void getGsdWarnings(char* dst) const;
    /// @return GSD_Revision (0 when the file has none), also of an object image made from one; -1 when the descriptor was
    ///         not built from a GSD file
    int getGsdRevision() const;
    /// Copies one byte for each mandatory keyword: 0 missing, 1 found, 255 not required. The order is Vendor_Name,
    /// Model_Name, Revision, Ident_Number, Protocol_Ident, Station_Type, Hardware_Release, Software_Release, Module,
    /// Min_Slave_Intervall, a baud rate, a MaxTsdr, Max_Module, Max_Input_Len, Max_Output_Len, Max_Data_Len,
    /// Slave_Family, Max_Diag_Data_Len.
    /// @param dst  18 bytes; nothing is written when the descriptor was not built from a GSD file
    void getGsdFoundMandatories(unsigned char* dst) const;

    /// @}
    /// @name Validation
    /// @{

    /// Validates the image and decodes it. Must succeed before any query; a failure is final for the descriptor.
    /// @return 0; or -1 to -90, -201 to -220 for the first thing that is wrong
    int checkTypeFileContents();

    /// @}
    /// @name Host record and object image
    /// @{

    /// Fills a host record from the loaded type file.
    /// @param record  cleared up to and including userPrmDataLen, then filled; userPrmHex (two characters a byte and a
    ///                NUL) and fixedSlotText (three characters for every byte of every preset slot and a NUL)
    ///                are written to where they are not null; for category II they are left as they are
    /// @return 1 when the type file may be changed; 0 when not, or when nothing is loaded
    int getCOMTypeData(TYPEFILE_COM_QX410* record);
    /// @return the size of the object image in bytes, modulo 65536; 0 when nothing is loaded or for category II
    unsigned short getDataSize() const;
    /// Writes the object image: the type-file image and two 32-bit words, low byte first on every machine.
    /// @param buffer  room for the image and 8 bytes (getDataSize() bytes, plus 65536 where that wrapped)
    /// @return 1; 0 when nothing is loaded or for category II
    int writeObject(char* buffer) const;

    /// @}
    /// @name Output
    /// @{

    /// Writes the type file, where it may be changed: one that was compiled from a GSD file never may (the constructor
    /// writes that one). What stands in the file is lost only when everything that can refuse has been asked.
    /// @param path  file to create or to overwrite
    /// @return 0; kErrMemory not loaded, or no memory to look at what the path names; kErrNotChangeable this type file may
    ///         not be changed; kErrTargetProtected the path names a valid type file that may not be changed; kErrWriteOpen
    ///         (also for a null path) or kErrWrite on failure
    unsigned short writeTypeFile(const char* path);
    /// @return 1 when the type file may be changed, else 0; always 0 for one that was compiled from a GSD file
    int changeTypeFilePossible() const;
    /// The order number of the head line, without trailing white space. After a successful writeTypeFile() it is not
    /// told from what follows it: the first 30 characters from its beginning are handed out.
    /// @param text  at least 31 bytes
    /// @return 0; kErrMemory not loaded; kErrNoOrderNumber none there or a blank one
    unsigned short getMLFBstring(char* text);

    /// @}
    /// @name Header and type data
    /// @{

    /// @return 0; kErrHeader when not loaded (the record is then left as it is)
    unsigned short getSlaveTypeHeader(SLAVE_TYPE_HEADER_INFO* record) const;
    /// @return 0 category I, 1 category II, 2 station type QX410K; kErrFile when not loaded (record left as it is)
    unsigned short getSlaveTypeData(SLAVE_TYPEDATA_TYPE* record) const;
    /// The device family, 10 characters and a NUL. For formats before version 5 it follows from the station type and
    /// may differ from the header's.
    /// @param text  at least 11 bytes
    /// @return 0; kErrHeader when not loaded
    int getFamily(char* text) const;
    /// The bitmap name, 7 characters and a NUL.
    /// @param name  at least 8 bytes
    /// @return 0; kErrBitmapName when not loaded or for formats before version 5
    int getBitMapFileName(char* name) const;
    /// The name of the device-specific library, 8 characters and a NUL.
    /// @param name  at least 9 bytes
    /// @return 0; kErrLibraryName when not loaded or for formats before version 5
    int getDLLFileName(char* name) const;
    /// @return the slot offset (Modul_Offset); 0 when not loaded
    int getSlotOffset() const;
    /// @return 1 for a modular station, for category II and before any check; 0 for a compact one
    int isModular() const;
    /// @param count  receives the number of preset slots when the result is 1; left as it is otherwise
    /// @return 1 when there are preset slots; 0 when there are none or nothing is loaded
    int isKonfigFixed(int* count) const;
    /// Whether the second letter of the preset slots' structure code is 'V'. A compiled GSD file never has it: slots
    /// that FixPresetModules fixes are told by isP36KY().
    /// @return 1 when it is; 0 when not, when there are no preset slots or nothing is loaded
    int isPresetKonfigFixed() const;
    /// The identifier of one preset slot.
    /// @param index   0 to the count of isKonfigFixed() - 1; outside, the record is cleared
    /// @param preset  receives the identifier
    /// @return 0, also for an index outside; kErrIdentifier when there are no preset slots
    int getFixedSlotId(int index, CSLAVE_SLOT_PRESET_TYPE* preset) const;
    /// One preset slot as a whole; see the other getFixedSlotId().
    int getFixedSlotId(int index, MLFB_ITEM* item) const;
    /// @return 0; kErrTypeData when not loaded or without slot numbering (record left as it is)
    int getSlotNumbering(SLOT_NUMBERING_TYPE* numbering) const;
    /// @return the length of the longest slot parameter block in bytes; 0 when not loaded
    int getMaxSPBlockLen() const;

    /// @}
    /// @name Diagnostic texts
    /// @{

    /// @return the number of device diagnostic texts of both kinds; 0 when not loaded
    int getSlaveDiagMsgCnt() const;
    /// The texts of one device diagnostic bit.
    /// @param byteHigh  hundreds of the byte number
    /// @param byteLow   its last two digits; byte 1 is the first one behind the header byte of the device-related
    ///                  diagnosis
    /// @param bit       0 to 7
    /// @param message   receives the texts found; both halves are cleared first
    /// @return 0 when a text was found; else kErrDeviceDiag
    int getSlaveDiagMsg(int byteHigh, int byteLow, int bit, SLAVE_DIAG_TYPE* message) const;
    /// @return the number of bit-group texts; 0 when not loaded
    int getSlaveBGrDiagMsgCnt() const;
    /// One bit-group text.
    /// @param index    0 to getSlaveBGrDiagMsgCnt() - 1
    /// @param message  receives the text; left as it is on failure
    /// @return 0; kErrDeviceDiag
    int getSlaveBGrDiagMsg(int index, SLAVE_BGR_DIAG_TYPE* message) const;
    /// @return the number of channel diagnostic texts; 0 when not loaded
    int getChannelDiagMsgCnt() const;
    /// The text of one channel error type, 30 characters and a NUL.
    /// @param errorType  16 to 31
    /// @param text       at least 31 bytes; left as it is on failure
    /// @return 0; kErrChannelDiag
    int getChannelDiagMsg(int errorType, char* text) const;

    /// @}
    /// @name Order-number list and module lists
    /// @{

    /// @return the number of order-number entries; 0 when not loaded
    int getMLFBListCnt() const;
    /// @param index  0 to getMLFBListCnt() - 1; below 0 the record is cleared
    /// @param item   receives the entry
    /// @return 0; kErrOrderList when not loaded, behind the list or without one (record left as it is)
    int getMLFBListItem(int index, MLFB_ITEM* item) const;
    /// @return the number of module lists; 0 when not loaded
    int getLSKCnt() const;
    /// The text of a module list, 30 characters and a NUL.
    /// @param index  0 to getLSKCnt() - 1; below 0 the text is empty
    /// @param text   at least 31 bytes; empty on failure
    /// @return 0; kErrModuleList when not loaded, behind the lists or without any
    int getLSKText(int index, char* text) const;
    /// @param index  0 to getLSKCnt() - 1
    /// @param vFlag  receives 1 when the second letter of the list's structure code is 'V', else 0 (as in every
    ///               compiled GSD file); left as it is when there is no such list
    /// @return the number of slot entries of the module list; 0 when there is no such list
    int getSKListCnt(int index, int* vFlag) const;
    /// @param index  0 to getLSKCnt() - 1; below 0 the record is cleared
    /// @param item   0 to getSKListCnt() - 1; below 0 the record is cleared
    /// @param entry  receives the slot entry
    /// @return 0; kErrModuleList when not loaded or behind the lists or entries (record left as it is)
    int getSKListItem(int index, int item, LSK_ITEM* entry) const;

    /// @}
    /// @name Parameters
    /// @{

    /// @return the number of the station's structured parameters; 0 when not loaded
    int getParaStructCnt() const;
    /// @param index  0 to getParaStructCnt() - 1; below 0 or equal to the count, the record is cleared
    /// @param entry  receives the structured parameter
    /// @return 1; 0 when not loaded or above the count
    int getParaStruct(int index, _parastruct* entry) const;
    /// @param block  slot parameter block, from 0
    /// @return the number of its structured parameters; 0 when there is no such block
    int getStructuredSlotParameterCnt(int block) const;
    /// @param block  slot parameter block, from 0
    /// @param index  0 to getStructuredSlotParameterCnt() - 1; below 0 the record is cleared
    /// @param entry  receives the structured parameter
    /// @return 0; kErrSlotPrm when there is no such block or parameter (record left as it is)
    int getStructuredSlotParameter(int block, int index, _parastruct* entry) const;
    /// The parameter bytes of a slot parameter block, defaults of its structured parameters included.
    /// @param index   block, from 0
    /// @param bytes   at least getMaxSPBlockLen() bytes
    /// @param length  receives the number of bytes; 0 on failure
    /// @return 0; kErrSlotPrm
    int getSlotParameters(int index, unsigned char* bytes, int* length) const;
    /// The next keyword record of a slot parameter block. The search goes on where the last call stopped, whatever the
    /// block, and starts again after a search that found nothing; a call with a wrong index or keyword is no search.
    /// @param keyword  receives the record found
    /// @param index    block, from 0
    /// @param which    0: "[SlotNumber]"
    /// @return 1 found; 0 no more
    int hasSPBlockThisKeyWord(KEYWORD_TYPE* keyword, int index, int which);
    /// @param block  number of a station help block, 1 to 999
    /// @return the number of its lines; 0 when there is no such block
    int getHelpMessageCnt(int block) const;
    /// @param block    number of a station help block
    /// @param line     0 to getHelpMessageCnt() - 1
    /// @param message  receives value and text; cleared first when loaded and the number is at most 999
    /// @return 1; 0 when there is no such block
    int getParaHelpMessage(int block, int line, PARA_HELPMESSAGE_TYPE* message) const;
    /// @param block  number of a slot help block, from 1
    /// @return the number of its lines; 0 when there is no such block; kErrSlotPrm when not loaded
    int getSPHelpCnt(int block) const;
    /// @param block    number of a slot help block, from 1
    /// @param line     0 to getSPHelpCnt() - 1
    /// @param message  receives value and text; left as it is on failure
    /// @return 0; kErrSlotPrm when not loaded; kErrSlotHelp when there is no such block or line
    int getSPHelpItem(int block, int line, PARA_HELPMESSAGE_TYPE* message) const;
    /// @return the number of slot parameter blocks
    int getSPBlockAnz() const;
    /// @return the number of slot help blocks
    int getSPHelpAnz() const;
    /// @return the number of station help blocks
    int getPSLHelpAnz() const;
    /// @param i  0 to getPSLHelpAnz() - 1
    /// @return the number of the i-th station help block; 0 outside the range
    int getPSLHelpRef(int i) const;
    /// @return 1 when there are preset slots, given as numbers of order-number entries; else 0
    int isMLFBModeP36() const;
    /// Whether the second letter of the preset slots' structure code is 'Y'. In a compiled GSD file it is when the
    /// slots are fixed: FixPresetModules is 1, or the device has one module alone.
    /// @return 1 when it is; 0 when not or when there are no preset slots
    int isP36KY() const;
    /// @return the device diagnostic group inside the image, owned by the descriptor; null before a check reached it
    char* getDKMPos() const;

    /// @}

private:
    uint32_t madeFromGsd = 0;
    SLAVE_TYPE_HEADER_INFO header = SLAVE_TYPE_HEADER_INFO();
    SLAVE_TYPEDATA_TYPE typeData = SLAVE_TYPEDATA_TYPE();
    int32_t status = 0;
    int32_t typeCategory = 65535; // 0 category I, 1 category II, 65535 before any header check

    typdescriptor::internal::TypeFile* typeFile = nullptr; // owned; for what the checks find

    char* image = nullptr; // owned, imageCapacity characters and the slack behind them
    uint32_t imageSize = 0;
    uint32_t imageCapacity = 0;

    int32_t gsdErrLineNr = -1;
    int32_t gsdCntOfWarnings = 0;
    GSD_WARNING_ITEM* gsdWarnings = nullptr; // owned
    uint8_t* gsdFoundMandatories = nullptr;  // owned, 18 bytes
    int32_t gsdRevision = -1;
};

#endif
