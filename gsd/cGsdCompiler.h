// The GSD compiler: turns one GSD file into a type-file image.
//
// It is created over a buffer that its creator owns, compiles once, is asked for its results and destroyed. compile()
// is the driver: it reads physical lines, cuts comments, joins continuations, and hands every keyword line of the
// "#Profibus_DP" section to the keyword's handler, which fills the model; at the end of the file it checks the file as
// a whole and runs the generator. Warnings are collected, the first error ends the compilation.

#pragma once

#include "descriptor/records.h"
#include "generator/list.h"
#include "generator/model.h"
#include "gsd/keywordTable.h"
#include "gsd/lineReader.h"
#include "gsd/tokenizer.h"
#include "gsd/valueReader.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

class cGsdCompiler {
public:
    static constexpr std::size_t kMandatoryCount = kMandatoryKeywords;
    static constexpr std::uint32_t kMinImageCapacity = 308; // head line, header and fixed type data, and some more

    /// @param image     buffer for the image, not owned; it must outlive the compiler
    /// @param capacity  its size in characters; below kMinImageCapacity the compiler refuses to compile
    cGsdCompiler(char* image, std::uint32_t capacity);

    /// Compiles a GSD file. May be called once.
    /// @param fileName    the file; its last letter chooses the language
    /// @param writeFlag   not 0: write the type file too; a failure to write is not reported
    /// @param outputName  name of the type file; null for the default name
    /// @return 0 or a negative ResultCode, -201 to -220
    int compile(const char* fileName, int writeFlag, const char* outputName);

    std::size_t warningCount() const { return warnings.count(); }
    /// Copies the warnings in the order in which they were raised.
    void copyWarnings(GSD_WARNING_ITEM* items) const;
    std::size_t spareCount() const { return spareMessages.count(); }
    void copySpareItems(GSD_WARNING_ITEM* items) const;
    /// Copies kMandatoryCount bytes: 0 missing, 1 found, 255 not required.
    void copyFoundMandatories(std::uint8_t* found) const;
    /// Number of physical lines read.
    std::uint32_t errorLine() const { return lineNumber; }
    std::uint32_t revision() const { return model.gsdRevision; }
    std::size_t imageLength() const { return model.image.imageLength; }

private:
    friend struct GsdKeywordTable;

    // Driver.
    void resetModel();
    void chooseLanguage(std::string_view fileName);
    int compileFile(const char* fileName);
    int readLines();
    int takePhysicalLine(const PhysicalLine& physical, std::string_view& line);
    int joinContinuations(std::string_view& line);
    int handleLine(std::string_view text);
    int checkWholeFile();
    bool isKgpConsistent() const;
    void writeTypeFile(const char* outputName) const;
    std::string defaultOutputName() const;

    /// Gives one keyword line its meaning.
    int handleKeyword(const GsdLine& line);
    void addWarning(int code);
    void warnOfLongText(std::string_view text);

    // Places in the fixed part of the image.
    void setHeader(typefile::TextField field, std::string_view text);
    void setHeader(std::size_t position, char c);
    void setTypeData(std::size_t position, char c);
    void setTypeDataNumber(typefile::TextField field, std::uint32_t value);

    // Handlers that serve several keywords.
    int dropFlag(const GsdLine& line);
    int dropByte(const GsdLine& line);
    int dropString(const GsdLine& line);
    template <std::int32_t GsdModel::*Field>
    int storeFlag(const GsdLine& line);
    template <std::uint16_t GsdModel::*Field, IntegerKind Kind, std::uint32_t Maximum>
    int storeNumber(const GsdLine& line);
    template <std::size_t Position>
    int storeFlagCharacter(const GsdLine& line);
    template <int Code>
    int requireZero(const GsdLine& line);
    template <unsigned Bit>
    int handleBaudRate(const GsdLine& line);
    template <unsigned Bit>
    int handleMaxTsdr(const GsdLine& line);

    // Identification and station properties.
    int handleGsdRevision(const GsdLine& line);
    int handleVendorName(const GsdLine& line);
    int handleModelName(const GsdLine& line);
    int handleIdentNumber(const GsdLine& line);
    int handleImplementationType(const GsdLine& line);
    int handleBitmapDevice(const GsdLine& line);
    int handleMinSlaveInterval(const GsdLine& line);
    int handleModularStation(const GsdLine& line);
    int handleMaxDiagDataLen(const GsdLine& line);
    int handleModulOffset(const GsdLine& line);
    int handleSlaveFamily(const GsdLine& line);
    int handleStationTypeFlag(const GsdLine& line, std::int32_t& field, std::string_view stationType);
    int handleIsDpAsiLink(const GsdLine& line);
    int handleIsKgpDevice(const GsdLine& line);
    int handleOrderNumber(const GsdLine& line);
    int handlePeriphery(const GsdLine& line);
    int handleQ5HeaderCnf(const GsdLine& line);
    int handleOffsetFirstMpdBlock(const GsdLine& line);
    int handleKgpGui(const GsdLine& line);

    // Modules and parameter data.
    int openModule(const GsdLine& line, bool isKgp);
    int handleModule(const GsdLine& line);
    int handleKgpModule(const GsdLine& line);
    int handleEndModule(const GsdLine& line);
    int handleModuleReference(const GsdLine& line);
    int handlePreset(const GsdLine& line);
    int handleExtModulePrmDataLen(const GsdLine& line);
    int readPrmLength(const GsdLine& line, std::uint8_t& length);
    int handleUserPrmDataLen(const GsdLine& line);
    int handleMaxUserPrmDataLen(const GsdLine& line);
    int handleUserPrmData(const GsdLine& line);
    int handleExtUserPrmData(const GsdLine& line);
    int handleDataType(const GsdLine& line);
    int readBitPlace(const GsdLine& line, GSD_EXT_PRM_DEF& definition);
    int handlePrmTextRef(const GsdLine& line);
    int handlePrmTextRefOldSpelling(const GsdLine& line);
    int handleEndExtUserPrmData(const GsdLine& line);
    int handleExtUserPrmDataConst(const GsdLine& line);
    int handleExtUserPrmDataRef(const GsdLine& line);
    std::size_t applicablePrmLength() const;
    int placePrmData(std::size_t offset, std::size_t length);

    // Diagnostic and parameter texts.
    int addUnitDiagBit(const GsdLine& line, std::uint16_t shownValue);
    int handleUnitDiagBit(const GsdLine& line);
    int handleUnitDiagNotBit(const GsdLine& line);
    int handleUnitDiagArea(const GsdLine& line);
    int handleValue(const GsdLine& line);
    int handleUnitDiagAreaEnd(const GsdLine& line);
    int addChannelDiag(const GsdLine& line, bool oldSpelling);
    int handleChannelDiag(const GsdLine& line);
    int handleChannelDiagOldSpelling(const GsdLine& line);
    int handlePrmText(const GsdLine& line);
    int handleText(const GsdLine& line);
    int handleEndPrmText(const GsdLine& line);

    GsdModel model;
    bool compileStarted = false;
    GSD_LIST<GSD_WARNING_ITEM> warnings;
    GSD_LIST<GSD_WARNING_ITEM> spareMessages; // for messages that are no warnings; none so far
    std::array<std::uint8_t, kMandatoryCount> foundMandatories{};
    std::array<std::uint8_t, GsdKeywordTable::kCount> keywordSeen{};

    LineReader reader;
    GsdTokenizer tokenizer;
    bool sectionStarted = false;
    std::uint32_t lineNumber = 0xFFFFFFFF; // until a compilation starts
    std::uint32_t languageIndex = 0;       // column of the family names
    char languageLetter = 'X';             // in the default output name
    std::string lineBuffer;                // a logical line of several physical ones
    std::size_t lineBufferSize;            // one more than the characters that a physical line may have

    // The open block, and the record that its lines fill.
    GsdBlock openBlock = kOutside;
    GSD_MODULE* currentModule = nullptr;
    GSD_EXT_PRM_DEF* currentExtPrmDef = nullptr;
    GSD_PRM_TEXT* currentPrmText = nullptr;
    GSD_UNIT_DIAG_AREA* currentUnitDiag = nullptr;
};
