#include "host/gsdFactReader.h"

#include <algorithm>

namespace typdescriptor {

using gsdfile::BlockKind;
using gsdfile::kNone;
using gsdfile::Statement;
using gsdfile::Value;

/// The texts that a block of the diagnosis belongs to: those of the station, or of the UnitDiagType around it.
DiagnosisTexts& FactReader::textsOf(std::size_t block)
{
    for (; block != kNone; block = document.blocks()[block].parent) {
        if (document.blocks()[block].kind != BlockKind::unitDiagType)
            continue;
        const Statement& opening = document.statements()[document.blocks()[block].opening];
        const unsigned number = asUnsigned(numberOf(opening).value_or(0));
        auto& types = device.diagnosisTypes;
        const auto known = std::find_if(types.begin(), types.end(),
                                        [number](const DiagnosisType& type) { return type.number == number; });
        if (known != types.end())
            return known->texts;
        types.push_back({number, {}});
        return types.back().texts;
    }
    return stationTexts;
}

void FactReader::addBit(DiagnosisTexts& texts, const Statement& statement, std::string BitText::*member) const
{
    if (!statement.argument)
        return;
    const unsigned position = asUnsigned(statement.argument->first.value);
    const unsigned byte = position / 8 + 1;
    const unsigned bit = position % 8;
    auto known = std::find_if(texts.bits.begin(), texts.bits.end(),
                              [=](const BitText& text) { return text.byte == byte && text.bit == bit; });
    if (known == texts.bits.end()) {
        texts.bits.push_back({byte, bit, {}, {}, {}, {}});
        known = texts.bits.end() - 1;
    }
    if (std::string& text = (*known).*member; text.empty())
        text = textOf(statement); // of several the first counts, as in the class
}

void FactReader::addArea(const Statement& statement, std::size_t block)
{
    constexpr std::int64_t kMostBits = 16;
    if (statement.values.empty() || statement.values.front().kind != Value::range)
        return;
    const std::int64_t first = statement.values.front().first.value;
    const std::int64_t last = statement.values.front().last.value;
    if (first < 0 || last < first || last - first >= kMostBits)
        return;
    const unsigned start = asUnsigned(first);
    DiagnosisTexts& texts = textsOf(document.blocks()[block].parent);
    areas[block] = texts.areas.size();
    texts.areas.push_back({start / 8 + 1, start % 8, start % 8 + static_cast<unsigned>(last - first), {}});
}

void FactReader::addValue(DiagnosisTexts& texts, const Statement& statement, std::size_t area, bool isHelp) const
{
    if (!statement.argument || area >= texts.areas.size())
        return;
    std::vector<ValueText>& values = texts.areas[area].texts;
    const std::int64_t value = statement.argument->first.value;
    auto known =
        std::find_if(values.begin(), values.end(), [value](const ValueText& text) { return text.value == value; });
    if (known == values.end())
        known = values.insert(values.end(), {value, {}, {}});
    (isHelp ? known->help : known->text) = textOf(statement);
}

void FactReader::readDiagnosis(const Statement& statement)
{
    struct Row {
        const char* keyword;
        std::string BitText::*member;
    };
    constexpr Row kRows[] = {{"Unit_Diag_Bit", &BitText::set},
                             {"X_Unit_Diag_Bit", &BitText::set},
                             {"Unit_Diag_Not_Bit", &BitText::clear},
                             {"Unit_Diag_!Bit", &BitText::clear},
                             {"X_Unit_Diag_Not_Bit", &BitText::clear},
                             {"Unit_Diag_Bit_Help", &BitText::setHelp},
                             {"X_Unit_Diag_Bit_Help", &BitText::setHelp},
                             {"Unit_Diag_Not_Bit_Help", &BitText::clearHelp},
                             {"X_Unit_Diag_Not_Bit_Help", &BitText::clearHelp}};
    for (const Row& row : kRows) {
        if (is(statement, row.keyword))
            addBit(textsOf(statement.block), statement, row.member);
    }
    const auto area = areas.find(statement.block);
    if (area == areas.end())
        return;
    const bool isHelp = is(statement, "Value_Help") || is(statement, "X_Value_Help");
    if (isHelp || is(statement, "Value") || is(statement, "X_Value"))
        addValue(textsOf(document.blocks()[statement.block].parent), statement, area->second, isHelp);
}

/// The text of a maker's channel error, or the help for it.
void FactReader::addChannelText(const Statement& statement, std::vector<ValueText>& texts) const
{
    if (!statement.argument)
        return;
    const std::int64_t type = statement.argument->first.value;
    if (is(statement, "Channel_Diag") || is(statement, "ChannelDiag"))
        texts.push_back({type, textOf(statement), {}});
    for (ValueText& text : texts) {
        if (is(statement, "Channel_Diag_Help") && text.value == type)
            text.help = textOf(statement);
    }
}

} // namespace typdescriptor
