// The driver of the compilation; see the header.

#include "gsd/cGsdCompiler.h"

#include "descriptor/resultCodes.h"
#include "generator/typeFileGenerator.h"
#include "gsd/families.h"
#include "gsd/textScan.h"
#include "typefile/scan.h"
#include "typefile/stationTypes.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <new>

using namespace typefile;

namespace {

constexpr std::size_t kInitialLineBufferSize = 500;
constexpr std::size_t kContinuationLimit = 499;
constexpr std::string_view kSectionLine = "#Profibus_DP";
constexpr std::uint8_t kNotRequired = 255;
constexpr std::string_view kBlankField = "                 "; // as wide as the widest header field

// The first line of the image, with blanks for the order number.
constexpr std::string_view kHeadLine =
    "TYPGEN V2.53, TimeStamp: mm/dd/yy, hh:mm:ss <                              >\r\n";
constexpr std::size_t kDatePosition = kHeadLine.find("mm/dd");
constexpr std::size_t kTimePosition = kHeadLine.find("hh:mm");

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

/// Three numbers of two digits with a character between them.
void putTwoDigitFields(RecordText record, char separator, int first, int second, int third)
{
    const auto digits = [](int value) { return static_cast<std::uint64_t>(value % 100); };
    record.number(digits(first), 2)
        .character(separator)
        .number(digits(second), 2)
        .character(separator)
        .number(digits(third), 2);
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

cGsdCompiler::cGsdCompiler(char* image, std::uint32_t capacity)
    : model(image, capacity), lineBufferSize(kInitialLineBufferSize)
{
    if (capacity < kMinImageCapacity) {
        model.initError = 1;
        return;
    }
    model.image.headerPos = kHeadLine.size();
    model.image.typeDataPos = model.image.headerPos + kHeaderLength;
}

int cGsdCompiler::compile(const char* fileName, int writeFlag, const char* outputName)
{
    if (compileStarted)
        return kErrGsdSecondCompile;
    compileStarted = true;
    if (model.initError != 0)
        return kErrGsdMemory;
    try {
        resetModel();
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
    copyItems(warnings, items);
}

void cGsdCompiler::copySpareItems(GSD_WARNING_ITEM* items) const
{
    copyItems(spareMessages, items);
}

void cGsdCompiler::copyFoundMandatories(std::uint8_t* found) const
{
    std::copy(foundMandatories.begin(), foundMandatories.end(), found);
}

void cGsdCompiler::resetModel()
{
    lineNumber = 0;
    model.image.clear();
    const std::tm now = localTime();
    model.image.fixedAt(0).text(kHeadLine);
    putTwoDigitFields(model.image.fixedAt(kDatePosition), '/', now.tm_mon + 1, now.tm_mday, now.tm_year);
    putTwoDigitFields(model.image.fixedAt(kTimePosition), ':', now.tm_hour, now.tm_min, now.tm_sec);

    setHeader(kVersion, kCurrentVersion);
    setHeader(kStationType, kStationDpsClass1);
    // The language is not chosen yet: a file without Slave_Family shows the first language's name.
    setHeader(kFamily, kFamilyNames[0][0]);
    setHeader(kMakerDevice, 'N');
    setHeader(kHeaderCnf, 'J');
    for (const std::size_t position : kHeaderTerminators)
        model.image.fixedAt(model.image.headerPos + position).text(kTerminator);

    for (std::size_t i = 0; i < kBaudRates.width; ++i)
        setTypeData(kBaudRates.position + i, '0');
    for (const std::size_t position : {kSetSlaveAddress, kSyncMode, kFreezeMode, kPublisherSubscriber, kDiagBufferable,
                                       kActiveMaster, kEvenSlotNumber, kChangeable, kAsicCode, kFailSafe, kModuleKinds})
        setTypeData(position, 'N');
    setTypeDataNumber(kMaxDiagLen, kMaxDiagLenValue);
}

void cGsdCompiler::chooseLanguage(std::string_view fileName)
{
    const char last = fileName.empty() ? '\0' : toUpper(fileName.back());
    const auto language = std::find_if(kLanguages.begin(), kLanguages.end(),
                                       [last](const Language& candidate) { return candidate.lastLetter == last; });
    if (language == kLanguages.end())
        return;
    languageIndex = language->index;
    languageLetter = language->letter;
}

int cGsdCompiler::compileFile(const char* fileName)
{
    if (!reader.open(fileName))
        return kErrGsdOpen;
    int result = readLines();
    reader.close();
    if (result == kOk)
        result = checkWholeFile();
    if (result < 0)
        return result;
    return TypeFileGenerator(model).generateTypeFile();
}

int cGsdCompiler::readLines()
{
    while (reader.good()) {
        const PhysicalLine physical = reader.read(lineBufferSize - 1);
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
        if (const int result = handleLine(line); result < 0)
            return result;
    }
    return kOk;
}

/// Counts a physical line that was just read, and leaves of it what is neither comment nor blanks around it. A line
/// longer than its limit may lose nothing but comment, or it is refused; before the section such a line is skipped.
int cGsdCompiler::takePhysicalLine(const PhysicalLine& physical, std::string_view& line)
{
    ++lineNumber;
    if (reader.failed())
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
    while (isContinued(lineBuffer) && reader.good()) {
        lineBuffer.pop_back();
        if (lineBuffer.find(kContinuationMark, searched) != std::string::npos)
            return kErrGsdSyntax;
        lineBuffer.resize(withoutTrailingBlanks(lineBuffer).size());
        searched = lineBuffer.size();
        lineBuffer += kContinuationMark; // stays in its place until a line that is not empty takes it

        std::string_view continuation;
        if (const int result = takePhysicalLine(reader.read(kContinuationLimit), continuation); result < 0)
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

int cGsdCompiler::handleLine(std::string_view text)
{
    GsdLine line;
    if (const int result = tokenizer.tokenize(text, line); result < 0)
        return result == kErrGsdKeyword ? static_cast<int>(kOk) : result; // unknown keywords are other readers'
    if (GsdKeywordTable::kRows[line.keyword].occurrence == GsdOccurrence::once) {
        if (keywordSeen[line.keyword] != 0)
            return kErrGsdRepeated;
        keywordSeen[line.keyword] = 1;
    }
    return handleKeyword(line);
}

int cGsdCompiler::handleKeyword(const GsdLine& line)
{
    const GsdKeyword& keyword = GsdKeywordTable::kRows[line.keyword];
    if (!line.argument.empty() && !keyword.takesArgument())
        return kErrGsdSyntax;
    if (keyword.mandatory != kNotMandatory)
        foundMandatories[static_cast<std::size_t>(keyword.mandatory)] = 1;
    if ((keyword.blocks & openBlock) == 0)
        return kErrGsdSyntax;
    return (this->*keyword.handler)(line);
}

int cGsdCompiler::checkWholeFile()
{
    if (!sectionStarted)
        return kErrGsdNoSection;
    if (openBlock != kOutside)
        return kErrGsdSyntax;
    for (const GsdMandatory optional : {kModuleFound, kSlaveFamilyFound, kMaxDiagDataLenFound})
        foundMandatories[static_cast<std::size_t>(optional)] = kNotRequired;
    if (model.modularStation == 0) {
        for (const GsdMandatory ofModular : {kMaxModuleFound, kMaxInputLenFound, kMaxOutputLenFound, kMaxDataLenFound})
            foundMandatories[static_cast<std::size_t>(ofModular)] = kNotRequired;
    }
    if (std::find(foundMandatories.begin(), foundMandatories.end(), 0) != foundMandatories.end())
        return kErrGsdMandatory;
    return isKgpConsistent() ? kOk : kErrGsdConfiguration;
}

bool cGsdCompiler::isKgpConsistent() const
{
    if (model.isKgpDevice == 0)
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
        static_cast<void>(std::fwrite(model.image.data(), 1, model.image.imageLength, file.get()));
}

std::string cGsdCompiler::defaultOutputName() const
{
    std::array<char, 16> name{};
    return std::string(RecordText(name.data())
                           .text("__")
                           .hexByte(static_cast<std::uint8_t>(model.identNumber >> 8))
                           .hexByte(static_cast<std::uint8_t>(model.identNumber & 0xFF))
                           .character('_')
                           .character(languageLetter)
                           .text(".410")
                           .view());
}

void cGsdCompiler::addWarning(int code)
{
    warnings.append(model.arena, {code, lineNumber});
}

void cGsdCompiler::warnOfLongText(std::string_view text)
{
    if (text.size() > kNameWidth)
        addWarning(kWarnTextCut);
}

void cGsdCompiler::setHeader(TextField field, std::string_view text)
{
    text = text.substr(0, field.width);
    model.image.fixedAt(model.image.headerPos + field.position)
        .text(text)
        .text(kBlankField.substr(0, field.width - text.size()));
}

void cGsdCompiler::setHeader(std::size_t position, char c)
{
    model.image.fixedAt(model.image.headerPos + position).character(c);
}

void cGsdCompiler::setTypeData(std::size_t position, char c)
{
    model.image.fixedAt(model.image.typeDataPos + position).character(c);
}

void cGsdCompiler::setTypeDataNumber(TextField field, std::uint32_t value)
{
    model.image.fixedAt(model.image.typeDataPos + field.position).number(value, field.width);
}
