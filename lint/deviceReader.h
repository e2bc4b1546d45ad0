#pragma once

// Builds a DeviceIndex from one statement after the other.

#include "lint/deviceIndex.h"

#include <string_view>
#include <unordered_map>
#include <vector>

namespace typdescriptor::gsdfile {
struct Keyword;
}

namespace typdescriptor::lint {

// A statement as its tokens say it, not yet what it means.
struct Statement {
    const gsdfile::Keyword* row = nullptr; // null when the keyword is unknown, or there is none
    std::string_view keyword;              // as the table spells it; empty for a number alone on its line
    Span place;                            // of the keyword
    std::vector<Number> argument;          // one number, or the two of "first-last"
    Span argumentPlace;
    std::optional<Text> text;
    std::vector<Number> numbers;
    bool isRange = false; // the last two numbers are written "first-last"
    bool isWhole = true;  // false: something in it cannot be read
};

class DeviceReader {
public:
    explicit DeviceReader(DeviceIndex& device);

    void take(const Statement& statement);
    // After the last statement: what refers to something that stands further down is told from what refers to nothing.
    void finish();

private:
    using Handler = void (DeviceReader::*)(const Statement&);
    static Handler handlerOf(std::string_view keyword);
    static const std::vector<Handler>& handlers();

    void beginTextBlock(const Statement& statement);
    void takeText(const Statement& statement);
    void beginDefinition(const Statement& statement);
    void takeType(const Statement& statement);
    void takeTextReference(const Statement& statement);
    void beginModule(const Statement& statement);
    void takeModuleReference(const Statement& statement);
    void takeLength(const Statement& statement);
    void takePlacement(const Statement& statement);
    void takeConstants(const Statement& statement);
    void beginDataArea(const Statement& statement);
    void endDataArea(const Statement& statement);
    void beginSlots(const Statement& statement);
    void takeSlot(const Statement& statement);
    void takeDiagBit(const Statement& statement);
    void beginDiagArea(const Statement& statement);
    void takeDiagValue(const Statement& statement);
    void beginDiagType(const Statement& statement);
    void endTypedDiagArea(const Statement& statement);
    void endBlock(const Statement& statement);
    void keepEntry(const Statement& statement);

    PrmBlock& prmBlockOf(std::string_view keyword);
    DiagTexts& diagTextsOf(std::string_view keyword);
    void leaveBlocks();

    DeviceIndex& _device;
    const Entry* _entry = nullptr; // of the statement at hand
    TextBlock* _textBlock = nullptr;
    Definition* _definition = nullptr;
    Module* _module = nullptr;
    DataArea* _dataArea = nullptr;
    bool _isInSlots = false;
    DiagTexts* _diagType = nullptr;
    DiagTexts* _areaTexts = nullptr;                            // whose last area is open
    std::unordered_map<std::int64_t, TextBlock*> _textBlocks;   // the first of each number
    std::unordered_map<std::int64_t, Definition*> _definitions; // the same
};

} // namespace typdescriptor::lint
