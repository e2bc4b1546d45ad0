// The driver of the compilation; see the header.

#include "gsd/cGsdCompiler.h"

#include "descriptor/resultCodes.h"
#include "generator/typeFileGenerator.h"
#include "gsd/textScan.h"
#include "typefile/scan.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <new>
#include <utility>

namespace typdescriptor::internal {

namespace {

constexpr std::size_t kContinuationLimit = 499;
constexpr std::string_view kSectionLine = "#Profibus_DP";
constexpr std::uint8_t kNotRequired = 255;

struct Language {
    char lastLetter;
    std::uint32_t index;
    char letter;
};

constexpr std::array<Language, 6> kLanguages{{
    {'E', 1, 'E'},
    {'F', 2, 'F'},
    {'G', 0, 'D'},
    {'I', 4, 'I'},
    {'P', 3, 'S'},
    {'S', 3, 'S'},
}};

std::tm localTime()
{
    const std::time_t now = std::time(nullptr);
    std::tm local{};
#if defined(_WIN32)
    localtime_s(&local, &now);
#else
    localtime_r(&now, &local);
#endif
    return local;
}

bool isContinued(std::string_view line)
{
    return !line.empty() && line.back() == kContinuationMark;
}

void copyItems(const GSD_LIST<GSD_WARNING_ITEM>& list, GSD_WARNING_ITEM* items)
{
    for (const GSD_WARNING_ITEM& item : list)
        *items++ = item;
}

} // namespace

int cGsdCompiler::compile(const char* fileName, int writeFlag, const char* outputName)
{
    if (compileStarted)
        return kErrGsdSecondCompile;
    compileStarted = true;
    if (!isUsable)
        return kErrGsdMemory;
    reading.lineNumber = 0;
    reading.model.started = localTime();
    try {
        chooseLanguage(fileName);
        if (const int result = compileFile(fileName); result < 0)
            return result;
        if (writeFlag != 0)
            writeTypeFile(outputName);
        return kOk;
    } catch (const std::bad_alloc&) {
        return kErrGsdMemory;
    }
}

void cGsdCompiler::copyWarnings(GSD_WARNING_ITEM* items) const
{
    copyItems(reading.warnings, items);
}

void cGsdCompiler::copySpareItems(GSD_WARNING_ITEM* items) const
{
    copyItems(spareMessages, items);
}

void cGsdCompiler::copyFoundMandatories(std::uint8_t* found) const
{
    std::copy_n(reading.foundMandatories.begin(), kMandatoryCount, found);
}

void cGsdCompiler::chooseLanguage(std::string_view fileName)
{
    const char last = fileName.empty() ? '\0' : toUpper(fileName.back());
    const auto language = std::find_if(kLanguages.begin(), kLanguages.end(),
                                       [last](const Language& candidate) { return candidate.lastLetter == last; });
    if (language == kLanguages.end())
        return;
    reading.languageIndex = language->index;
    languageLetter = language->letter;
}

int cGsdCompiler::compileFile(const char* fileName)
{
    if (!lines.open(fileName))
        return kErrGsdOpen;
    int result = readLines();
    lines.close();
    if (result == kOk)
        result = checkWholeFile();
    if (result < 0)
        return result;
    return TypeFileGenerator(reading.model, output).generateTypeFile();
}

int cGsdCompiler::readLines()
{
    while (lines.good()) {
        if (sectionStarted)
            readLinesAhead();
        const PhysicalLine physical = lines.read(lineBufferSize - 1);
        std::string_view line;
        if (const int result = takePhysicalLine(physical, line); result < 0)
            return result;
        if (line.empty())
            continue;
        if (!sectionStarted) {
            sectionStarted = compareIgnoringCase(line, kSectionLine) == 0;
            keywordSeen[GsdKeywordTable::kSectionStart] = sectionStarted ? 1 : 0;
            continue;
        }
        if (physical.mayHaveBackslash) {
            if (const int result = joinContinuations(line); result < 0)
                return result;
        }
        if (const int result = readWholeLine(line); result < 0)
            return result;
    }
    return kOk;
}

/// Reads lines where they stand: most lines end where their value does, and then they are all right. Stops before the
/// first that does not, or is wrong in any way; with that nothing has happened, and it has to be read as a whole.
void cGsdCompiler::readLinesAhead()
{
    const char* start = lines.ahead();
    while (lines.isAhead(start)) {
        GsdLine line;
        line.value = skipBlanks(start);
        line.limit = start + (lineBufferSize - 1);
        ++reading.lineNumber;
        const bool isEmpty = isOf(kEndOfLine | kComment, *line.value) && line.value < line.limit;
        if (!isEmpty && handleLine(line.value, line) != kOk) {
            --reading.lineNumber;
            break;
        }
        start = lines.behind(line.value);
    }
    lines.goOn(start);
}

/// Counts a physical line that was just read, and leaves of it what is neither comment nor blanks around it. A line
/// longer than its limit may lose nothing but comment, or it is refused; before the section such a line is skipped.
int cGsdCompiler::takePhysicalLine(const PhysicalLine& physical, std::string_view& line)
{
    ++reading.lineNumber;
    if (lines.failed())
        return kErrGsdOpen;
    const std::size_t comment = findUnquoted(physical.text, kCommentMark, physical.semicolon);
    if (comment == std::string_view::npos && !physical.isComplete)
        return sectionStarted ? kErrGsdSyntax : kOk;
    line = withoutTrailingBlanks(withoutLeadingBlanks(physical.text.substr(0, comment)));
    return kOk;
}

/// Joins a line that ends in a backslash with the lines with which it goes on; the joined line stands in the line
/// buffer. No other backslash may stand in a line.
int cGsdCompiler::joinContinuations(std::string_view& line)
{
    if (!isContinued(line))
        return line.find(kContinuationMark) == std::string_view::npos ? static_cast<int>(kOk) : kErrGsdSyntax;
    lineBuffer = line;
    std::size_t searched = 0; // no backslash stands before
    while (isContinued(lineBuffer) && lines.good()) {
        lineBuffer.pop_back();
        if (lineBuffer.find(kContinuationMark, searched) != std::string::npos)
            return kErrGsdSyntax;
        lineBuffer.resize(withoutTrailingBlanks(lineBuffer).size());
        searched = lineBuffer.size();
        lineBuffer += kContinuationMark; // stays in its place until a line that is not empty takes it

        std::string_view continuation;
        if (const int result = takePhysicalLine(lines.read(kContinuationLimit), continuation); result < 0)
            return result;
        if (continuation.empty())
            continue;
        lineBufferSize = std::max(lineBufferSize, lineBuffer.size() + continuation.size() + 2);
        lineBuffer.pop_back();
        lineBuffer += continuation;
    }
    line = lineBuffer;
    return line.find(kContinuationMark, searched) == std::string_view::npos ? static_cast<int>(kOk) : kErrGsdSyntax;
}

/// Reads a line of which nothing is left but keyword and value. Its code is final; unknown keywords are other readers'.
int cGsdCompiler::readWholeLine(std::string_view text)
{
    wholeLine.assign(text).append(kReadableBehindText, '\0');
    GsdLine line;
    const int result = handleLine(wholeLine.c_str(), line);
    return result == kErrGsdKeyword ? static_cast<int>(kOk) : result;
}

int cGsdCompiler::handleLine(const char* text, GsdLine& line)
{
    if (const int result = tokenizer.tokenize(text, line); result < 0)
        return result;
    const GsdKeyword& keyword = GsdKeywordTable::kRows[line.keyword];
    std::uint8_t& seen = keywordSeen[line.keyword];
    if (seen != 0 && keyword.occurrence == GsdOccurrence::once)
        return kErrGsdRepeated;
    if (*line.argument != '\0' && !keyword.takesArgument())
        return kErrGsdSyntax;
    std::uint8_t& found = reading.foundMandatories[keyword.mandatory];
    const std::uint8_t foundBefore = std::exchange(found, 1);
    const bool isInPlace = (keyword.blocks & reading.openBlock) != 0;
    const int result = isInPlace ? keyword.handler(reading, line) : kErrGsdSyntax;
    if (result == kOk)
        seen = 1;
    else if (!line.isWhole())
        found = foundBefore;
    return result;
}

int cGsdCompiler::checkWholeFile()
{
    if (!sectionStarted)
        return kErrGsdNoSection;
    if (reading.openBlock != kOutside)
        return kErrGsdSyntax;
    for (const GsdMandatory optional : {kModuleFound, kSlaveFamilyFound, kMaxDiagDataLenFound})
        reading.foundMandatories[static_cast<std::size_t>(optional)] = kNotRequired;
    if (!reading.model.modularStation) {
        for (const GsdMandatory ofModular : {kMaxModuleFound, kMaxInputLenFound, kMaxOutputLenFound, kMaxDataLenFound})
            reading.foundMandatories[static_cast<std::size_t>(ofModular)] = kNotRequired;
    }
    reading.foundMandatories[kNotMandatory] = kNotRequired;
    if (std::find(reading.foundMandatories.begin(), reading.foundMandatories.end(), 0) !=
        reading.foundMandatories.end())
        return kErrGsdMandatory;
    return isKgpConsistent() ? kOk : kErrGsdConfiguration;
}

bool cGsdCompiler::isKgpConsistent() const
{
    const GsdModel& model = reading.model;
    if (!model.isKgpDevice)
        return model.kgpModules.empty();
    if (model.multiIdentifierModuleSeen)
        return false;
    for (const GSD_MODULE& module : model.modules) {
        if (module.preset == 0)
            return false;
    }
    return true;
}

void cGsdCompiler::writeTypeFile(const char* outputName) const
{
    const std::string name = outputName != nullptr ? outputName : defaultOutputName();
    if (const File file(std::fopen(name.c_str(), "wb")); file)
        static_cast<void>(std::fwrite(output.data(), 1, output.imageLength, file.get()));
}

std::string cGsdCompiler::defaultOutputName() const
{
    std::array<char, 16> name{};
    return std::string(RecordText(name.data())
                           .text("__")
                           .hexByte(static_cast<std::uint8_t>(reading.model.identNumber >> 8))
                           .hexByte(static_cast<std::uint8_t>(reading.model.identNumber & 0xFF))
                           .character('_')
                           .character(languageLetter)
                           .text(".410")
                           .view());
}

} // namespace typdescriptor::internal
