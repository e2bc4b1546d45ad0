// The GSD compiler: turns one GSD file into a type-file image.
//
// It is created over a buffer that its creator owns, compiles once, is asked for its results and destroyed. compile()
// is the driver: it reads physical lines, cuts comments, joins continuations, and hands every keyword line of the
// "#Profibus_DP" section to the keyword's handler, which fills the model; at the end of the file it checks the file as
// a whole and runs the generator. Warnings are collected, the first error ends the compilation.

#pragma once

#include "generator/outputImage.h"
#include "gsd/gsdReading.h"
#include "gsd/lineReader.h"
#include "gsd/tokenizer.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace typdescriptor::internal {

class cGsdCompiler {
public:
    static constexpr std::size_t kMandatoryCount = kMandatoryKeywords;
    static constexpr std::uint32_t kMinImageCapacity = 308; // head line, header and fixed type data, and some more

    /// @param image     buffer for the image, not owned; it must outlive the compiler
    /// @param capacity  its size in characters; below kMinImageCapacity the compiler refuses to compile
    cGsdCompiler(char* image, std::uint32_t capacity) : isUsable(capacity >= kMinImageCapacity), output(image, capacity)
    {}

    /// Compiles a GSD file. May be called once.
    /// @param fileName    the file; its last letter chooses the language
    /// @param writeFlag   not 0: write the type file too; a failure to write is not reported
    /// @param outputName  name of the type file; null for the default name
    /// @return 0 or a negative ResultCode, -201 to -220; the image is whole only after 0
    int compile(const char* fileName, int writeFlag, const char* outputName);

    std::size_t warningCount() const { return reading.warnings.count(); }
    /// Copies the warnings in the order in which they were raised.
    void copyWarnings(GSD_WARNING_ITEM* items) const;
    /// Messages that are no warnings: there are none so far.
    std::size_t spareCount() const { return spareMessages.count(); }
    void copySpareItems(GSD_WARNING_ITEM* items) const;
    /// Copies kMandatoryCount bytes: 0 missing, 1 found, 255 not required.
    void copyFoundMandatories(std::uint8_t* found) const;
    /// Number of physical lines read.
    std::uint32_t errorLine() const { return reading.lineNumber; }
    std::uint32_t revision() const { return reading.model.gsdRevision; }
    std::size_t imageLength() const { return output.imageLength; }

private:
    void chooseLanguage(std::string_view fileName);
    int compileFile(const char* fileName);
    int readLines();
    int takePhysicalLine(const PhysicalLine& physical, std::string_view& line);
    int joinContinuations(std::string_view& line);
    void readLinesAhead();
    int readWholeLine(std::string_view text);
    int handleLine(const char* text, GsdLine& line);
    int checkWholeFile();
    bool isKgpConsistent() const;
    void writeTypeFile(const char* outputName) const;
    std::string defaultOutputName() const;

    bool isUsable;
    bool compileStarted = false;
    OutputImage output;
    GsdReading reading;
    GSD_LIST<GSD_WARNING_ITEM> spareMessages;
    std::array<std::uint8_t, GsdKeywordTable::kCount> keywordSeen{};

    LineReader lines;
    GsdTokenizer tokenizer;
    bool sectionStarted = false;
    char languageLetter = 'X';        // in the default output name
    std::string lineBuffer;           // a logical line of several physical ones
    std::string wholeLine;            // the line that is read as a whole, with what can be read behind it
    std::size_t lineBufferSize = 500; // one more than the characters that a physical line may have
};

} // namespace typdescriptor::internal
