// Reads the document of a GSD file for what the library does not keep of it, and puts it into the device.
//
// The reading, the diagnostic texts and what is done with what was read stand in a file each: gsdFacts.cpp,
// gsdDiagnosisTexts.cpp, gsdApplied.cpp.

#pragma once

#include "host/device.h"

#include "gsdfile/document.h"
#include "gsdfile/keywords.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace typdescriptor {

/// An ExtUserPrmData block, but for its place. Of several blocks with one reference the first counts, as for the library.
struct Definition {
    std::size_t block = gsdfile::kNone;
    Parameter parameter;
    bool isSlotNumber = false;
    std::optional<std::int64_t> texts; // reference of its PrmText block
};

/// A PrmText block; of several with one reference the first counts.
struct TextBlock {
    std::size_t block = gsdfile::kNone;
    std::vector<ValueText> texts;
};

/// A Module block.
struct GsdModule {
    std::string name;
    std::vector<std::uint8_t> bytes;
    std::optional<unsigned> reference;
    std::string infoText;
    std::vector<ValueText> channelTexts;
    std::vector<const gsdfile::Statement*> parameterReferences;
    bool hasSafetyParameters = false;
    bool isPreset = false;
};

bool is(const gsdfile::Statement& statement, std::string_view keyword);
/// The number that a statement's values begin with.
std::optional<std::int64_t> numberOf(const gsdfile::Statement& statement);
/// A number that is to be none below 0 and none of more than 32 bits, whatever stands in the file.
unsigned asUnsigned(std::int64_t number);

/// Reads a document once, from its first statement to its last.
class FactReader {
public:
    FactReader(const gsdfile::Document& source, Device& target) : document(source), device(target) {}

    void read();

private:
    std::string textOf(const gsdfile::Value& value) const;
    std::string textOf(const gsdfile::Statement& statement) const;
    gsdfile::BlockKind blockOf(const gsdfile::Statement& statement) const;
    const gsdfile::Statement& openingOf(const gsdfile::Statement& statement) const;

    void readStation(const gsdfile::Statement& statement);
    void readModule(const gsdfile::Statement& statement);
    void readDefinition(const gsdfile::Statement& statement);
    void readType(const gsdfile::Statement& statement, Parameter& parameter) const;
    void readValueText(const gsdfile::Statement& statement);
    void readSlot(const gsdfile::Statement& statement);
    void readDiagnosis(const gsdfile::Statement& statement);
    DiagnosisTexts& textsOf(std::size_t block);
    void addBit(DiagnosisTexts& texts, const gsdfile::Statement& statement, std::string BitText::*member) const;
    void addValue(DiagnosisTexts& texts, const gsdfile::Statement& statement, std::size_t area, bool isHelp) const;
    void addChannelText(const gsdfile::Statement& statement, std::vector<ValueText>& texts) const;
    void addArea(const gsdfile::Statement& statement, std::size_t block);

    const Definition* definitionOf(const gsdfile::Statement& statement) const;
    std::vector<ValueText> textsOf(std::int64_t reference) const;
    void applyModules();
    void namePresets();
    void applyDiagnosis();
    void applyParameters(const std::vector<const gsdfile::Statement*>& references, ParameterArea& area) const;
    int describedBlock(int block, const GsdModule& module);
    int ownBlock(int index, const GsdModule& module);

    const gsdfile::Document& document;
    Device& device;
    std::map<std::int64_t, Definition> definitions;
    std::map<std::int64_t, TextBlock> valueTexts;
    std::vector<GsdModule> modules;
    std::vector<const gsdfile::Statement*> stationReferences;
    std::set<std::size_t> describedBlocks;
    std::map<std::size_t, std::size_t> areas; // of a block: its place among those of its texts
    DiagnosisTexts stationTexts;
    std::vector<ValueText> channelTexts; // of the station
};

} // namespace typdescriptor
