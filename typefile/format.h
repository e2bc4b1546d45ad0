// The type-file format: every position, width, tag and terminator, once. The generator writes through this header and
// the checks read through it.
//
// A type file is an optional head line, a header of 100 characters and the type data: a fixed block, then record
// groups, each a tag with a count and as many records. Every field and record ends with ";\r\n"; quotes separate the
// fields inside a record; numbers are zero-padded decimal digits of fixed count.

#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace typdescriptor::internal {

/// A field at a fixed place.
struct TextField {
    std::size_t position;
    std::size_t width;
    constexpr std::size_t end() const { return position + width; }
};

inline constexpr std::string_view kTerminator = ";\r\n";
inline constexpr std::string_view kLineEnd = "\r\n";
inline constexpr char kQuote = '"';
inline constexpr std::size_t kNumberDigits = 3;
inline constexpr std::size_t kHexByteDigits = 2;
inline constexpr std::size_t kLongNumberDigits = 5;
inline constexpr std::size_t kMaxByte = 255;

// What a type file read from disk may have at most, and the room that every image has at least: a head line and a
// converted version-3 header.
inline constexpr std::size_t kMaxFileSize = 65534;
inline constexpr std::size_t kMinImageSize = 219;

// --- Head line -------------------------------------------------------------------------------------------------------

inline constexpr std::size_t kMaxHeadLineLength = 80; // without its line end
inline constexpr char kOrderNumberOpen = '<';
inline constexpr char kOrderNumberClose = '>';
inline constexpr std::size_t kOrderNumberWidth = 30;

// --- Header ----------------------------------------------------------------------------------------------------------

inline constexpr std::size_t kHeaderLength = 100;
inline constexpr TextField kVersion{0, 4};
inline constexpr std::size_t kMajorVersion = 1; // digit, within the version
inline constexpr std::size_t kMinorVersion = 3;
inline constexpr TextField kModelName{7, 17};
inline constexpr TextField kVendorName{27, 10};
inline constexpr TextField kFamily{40, 10};
inline constexpr TextField kPeriphery{53, 10};
inline constexpr TextField kStationType{66, 15};
inline constexpr TextField kIdentNumber{84, 5};
inline constexpr std::size_t kMakerDevice = 92;
inline constexpr std::size_t kHeaderCnf = 96;
inline constexpr std::array<std::size_t, 9> kHeaderTerminators{4, 24, 37, 50, 63, 81, 89, 93, 97};

inline constexpr std::string_view kCurrentVersion = "V5.2";
// Of an image built from a host record: the minor "x" is no digit, so that no delay records follow.
inline constexpr std::string_view kHostRecordVersion = "V5.x";

// The old header of version 3: 74 characters with a category-II fixed block of their own and nothing behind them.
namespace version3 {
inline constexpr std::string_view kPrefix = "V3.";
inline constexpr std::size_t kLength = 74;
inline constexpr std::size_t kStationPosition = 7;
inline constexpr std::string_view kStation = "QMX";
inline constexpr TextField kModelName{13, 17};
inline constexpr TextField kIdentNumber{33, 5};
inline constexpr TextField kTypeData{41, 24};
inline constexpr std::string_view kFamily = "DP        ";
} // namespace version3

// --- Fixed block of the category-I type data -------------------------------------------------------------------------

inline constexpr std::size_t kSetSlaveAddress = 0;
inline constexpr std::size_t kSyncMode = 4;
inline constexpr std::size_t kFreezeMode = 8;
inline constexpr std::size_t kPublisherSubscriber = 12; // 'J' both, 'P' publisher, 'S' subscriber, 'N' neither
inline constexpr std::size_t kDiagBufferable = 16;
inline constexpr std::size_t kActiveMaster = 20; // 'M' master, 'J' active, 'N' neither
inline constexpr std::size_t kEvenSlotNumber = 24;
inline constexpr std::size_t kChangeable = 28;
inline constexpr std::size_t kAsicCode = 32; // '0' to '4', 'N' not stated
inline constexpr std::size_t kModular = 36;
inline constexpr std::size_t kFailSafe = 40;
inline constexpr std::size_t kModuleKinds = 44; // 'E' only normal, 'S' only special, 'N' all
inline constexpr TextField kSlaveInterval{48, 5};
inline constexpr TextField kBaudRates{56, 10}; // 12 M first, 9.6 k last; 31.25 k and 45.45 k share a digit
// The fixed positions end with the baud rates; these hold as long as no length is given in bits.
inline constexpr TextField kMaxInputLen{69, 3};
inline constexpr TextField kMaxOutputLen{75, 3};
inline constexpr TextField kMaxModule{81, 3};
inline constexpr TextField kMaxDiagLen{87, 3};
inline constexpr std::size_t kUserPrmLen = 93;
inline constexpr std::array<std::size_t, 18> kTypeDataTerminators{1,  5,  9,  13, 17, 21, 25, 29, 33,
                                                                  37, 41, 45, 53, 66, 72, 78, 84, 90};
inline constexpr std::size_t kFixedTerminators = 14; // as many of them stand before the first length

inline constexpr std::string_view kBitUnit = "BIT";  // behind a length: it is given in bits
inline constexpr char kSlotPrmMode = 'V';            // before the user parameter length
inline constexpr std::size_t kStandardPrmBytes = 7;  // of every DP parameter telegram, before the user's bytes
inline constexpr std::size_t kMaxPrmTelegram = 244;  // with the standard bytes
inline constexpr std::size_t kMaxUserPrmBytes = 237; // without them
inline constexpr unsigned kMaxIoLen = 244;           // bytes in one direction
inline constexpr unsigned kMaxModules = 244;
inline constexpr unsigned kMinDiagBytes = 6;
inline constexpr unsigned kMaxDiagBytes = 244;
inline constexpr unsigned kMaxCommonPrmLen = 236;

// --- Category-II type data -------------------------------------------------------------------------------------------

inline constexpr std::size_t kCat2Digit0 = 0;
inline constexpr std::size_t kCat2Flag4 = 4;
inline constexpr std::size_t kCat2Digit8 = 8;
inline constexpr std::size_t kCat2Digit12 = 12;
inline constexpr std::size_t kCat2Digit16 = 16;
inline constexpr std::size_t kCat2Flag20 = 20;
inline constexpr std::size_t kCat2DiagTexts = 24;
inline constexpr std::array<std::size_t, 7> kCat2Terminators{1, 5, 9, 13, 17, 21, 30};

// --- Record groups of category I, in their order ---------------------------------------------------------------------

inline constexpr std::string_view kTagUserPrmBytes = "PV";
inline constexpr std::string_view kTagPrmList = "PSL";
inline constexpr std::string_view kTagPrm = "PS";
inline constexpr std::string_view kTagHelpList = "HTT";
inline constexpr std::string_view kTagHelp = "HI";
inline constexpr std::string_view kTagHelpLines = "L";
inline constexpr std::string_view kTagPresetByIdentifier = "KX";
inline constexpr std::string_view kTagPresetClosed = "KY";
inline constexpr std::string_view kTagSlotsEnd = "SY";
inline constexpr std::string_view kTagDeviceDiag = "DKM";
inline constexpr std::string_view kTagDiagByte = "DBO";
inline constexpr std::string_view kTagBitGroup = "BGR";
inline constexpr std::string_view kTagChannelDiag = "DKK";
inline constexpr std::string_view kTagChannelError = "KFC";
inline constexpr TextField kBitmapName{0, 7};
inline constexpr std::string_view kDefaultBitmap = "DP_NORM";
inline constexpr std::string_view kDefaultLibrary = "ISNONAME";
inline constexpr std::string_view kTagSlotOffset = "SO";
inline constexpr std::string_view kTagSlotNumbering = "SN";
inline constexpr std::string_view kTagSlotCount = "KO";
inline constexpr std::string_view kTagOrderNumbers = "MLFB";
inline constexpr std::string_view kTagModuleLists = "LSK";
inline constexpr std::string_view kTagModuleList = "SK";
inline constexpr std::string_view kTagSlotPrmBlock = "SP"; // also a reference to such a block
inline constexpr std::string_view kTagSlotPrmBlocks = "SPT";
inline constexpr std::string_view kTagEterDelay = "ETER";
inline constexpr std::string_view kTagResponseDelay = "MRD";

inline constexpr char kPresetByIdentifier = 'K';  // first letter of a module-structure code
inline constexpr char kPresetByOrderNumber = 'M'; // the other one
inline constexpr char kFixedStructure = 'V';      // its second letter
inline constexpr char kOpenStructure = 'X';
inline constexpr char kClosedStructure = 'Y';

// Layout of the diagnostic entries, from their first character; each is ended by the terminator at its length.
inline constexpr std::size_t kDiagByteHundreds = 3;
inline constexpr TextField kDiagByteNumber{4, 2}; // 01 to 62
inline constexpr std::size_t kDiagByteQuote = 6;
inline constexpr std::size_t kDiagKind = 7; // bit number, or "BGR" for a group of bits

namespace diagBit {
inline constexpr TextField kText{9, 30};
inline constexpr std::size_t kValue = 40;
inline constexpr std::array<std::size_t, 3> kQuotes{8, 39, 41};
inline constexpr std::size_t kLength = 42;
} // namespace diagBit

namespace diagGroup {
inline constexpr std::size_t kFirstBit = 10;
inline constexpr std::size_t kBitCount = 11;
inline constexpr TextField kText{13, 30};
inline constexpr TextField kValue{44, 3};
inline constexpr std::array<std::size_t, 3> kQuotes{12, 43, 47};
inline constexpr std::size_t kLength = 48;
} // namespace diagGroup

namespace channelError {
inline constexpr TextField kType{3, 2}; // 16 to 31
inline constexpr TextField kText{6, 30};
inline constexpr std::array<std::size_t, 2> kQuotes{5, 36};
inline constexpr std::size_t kLength = 37;
} // namespace channelError

// Heads of record groups: tag, three-digit count, terminator.
inline constexpr std::size_t kListHeadWidth = 9;       // of the three-letter tags
inline constexpr std::size_t kOrderListHeadWidth = 10; // of the order-number list
inline constexpr std::size_t kStructureWidth = 8;      // of a module-structure code with its count

// Layout of a structured parameter, from its tag to its data type. Behind that its texts end at their quotes.
namespace prmRecord {
inline constexpr TextField kReference{0, 5}; // the tag and the byte index
inline constexpr TextField kByteIndex{2, 3};
inline constexpr std::size_t kKind = 5; // a quote, or the bracket of a keyword
inline constexpr TextField kName{6, 30};
inline constexpr TextField kDataType{37, 5};
inline constexpr std::size_t kDefaultValue = 43;
} // namespace prmRecord

// Layout of a line of help texts; it is ended by the terminator at its length.
namespace helpLine {
inline constexpr TextField kText{1, 30};
inline constexpr TextField kValue{32, 5};
inline constexpr std::array<std::size_t, 3> kQuotes{0, 31, 37};
inline constexpr std::size_t kLength = 38;
} // namespace helpLine

inline constexpr std::size_t kMaxHelpLineDigits = 3; // of the number of lines, written without leading zeros
inline constexpr int kMaxHelpNumber = 999;

// Widths of texts inside records.
inline constexpr std::size_t kNameWidth = 30;     // names, diagnostic, help and order-number texts
inline constexpr std::size_t kSlotTextWidth = 20; // text of a slot entry
inline constexpr std::size_t kHelpValueDigits = 5;
inline constexpr std::size_t kKgpIdDigits = 4;

// Data types of structured parameters, five characters each; those of single bits and bit groups carry their digits.
inline constexpr std::size_t kDataTypeWidth = 5;
inline constexpr std::string_view kTypeBit = "BIT";
inline constexpr std::string_view kTypeBitString = "BIN  ";
inline constexpr std::string_view kTypeByte = "BYTE ";
inline constexpr std::string_view kTypeSigned = "INT  ";
inline constexpr std::string_view kTypeUnsigned = "UINT ";
inline constexpr std::string_view kTypeBitGroup = "BGR";
inline constexpr std::string_view kKeywordSlotNumber = "[SlotNumber]";
inline constexpr std::string_view kKeywordTail = "[000]";

} // namespace typdescriptor::internal
