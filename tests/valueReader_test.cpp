// The value parsers: what each reads from a text, how much of it, and with which code it refuses the rest.

#include "gsd/valueReader.h"

#include "descriptor/resultCodes.h"
#include "tests/caseTable.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <map>

using namespace typdescriptor::internal;

namespace {

std::string joined(const NumberList& list)
{
    std::string text;
    for (std::size_t i = 0; i < list.count; ++i) {
        text += i == 0 ? "" : ",";
        text += std::to_string(list.values[i]);
    }
    return text;
}

std::string readAs(const std::string& parser, ValueReader& reader)
{
    using enum IntegerKind;
    static const std::map<std::string, IntegerKind> kinds{{"u8", unsigned8}, {"s8", signed8},     {"u16", unsigned16},
                                                          {"s16", signed16}, {"u32", unsigned32}, {"s32", signed32}};
    const std::string argument = parser.substr(parser.find(' ') + 1);
    if (parser == "flag")
        return std::to_string(reader.flag());
    if (parser.starts_with("string"))
        return std::string(reader.string(std::stoul(argument)));
    if (parser == "u8, string, bytes") {
        const std::uint32_t number = reader.unsigned8();
        const std::string_view text = reader.string();
        return std::to_string(number) + ' ' + std::string(text) + ' ' + joined(reader.bytes());
    }
    if (parser == "family") {
        const FamilyValue family = reader.family();
        std::string text = std::to_string(family.number);
        for (std::size_t i = 0; i < family.subFamilyCount; ++i)
            text += '@' + std::string(family.subFamilies[i]);
        return text;
    }
    if (parser.starts_with("list"))
        return joined(reader.list(3, kinds.at(argument)));
    if (parser.starts_with("range")) {
        const NumberRange range = reader.range(kinds.at(argument));
        return std::to_string(range.first) + ',' + std::to_string(range.last);
    }
    return std::to_string(reader.number(kinds.at(parser)));
}

std::string scanned(const char* text)
{
    ScannedNumber number;
    std::array<char, 16> read{"none"};
    if (scanNumber(text, number))
        std::snprintf(read.data(), read.size(), "%s%X", number.negative ? "-" : "", number.value);
    return read.data() + std::string(text);
}

TEST(ValueReader, Cases)
{
    forEachCaseIn("values.txt", [](const std::string& parser, const std::string& text, const std::string& expected) {
        if (parser == "token") {
            EXPECT_EQ(scanned(text.c_str()), expected) << text;
            return;
        }
        GsdLine line;
        ValueReader reader(text.c_str(), line);
        const std::string read = readAs(parser, reader);
        EXPECT_EQ(reader.finish() < 0 ? std::to_string(reader.finish()) : read, expected) << parser << ": " << text;
    });
}

TEST(ValueReader, TheFirstFailureStays)
{
    ValueReader reader("? 1 2-3 4");
    EXPECT_EQ(reader.flag(), 0U);
    EXPECT_EQ(reader.unsigned8(), 0U);
    EXPECT_EQ(reader.range(IntegerKind::unsigned8).last, 0U);
    EXPECT_EQ(reader.family().number, 0U);
    EXPECT_EQ(reader.flag(), 0U);
    EXPECT_EQ(reader.finish(), kErrGsdFlag);
}

TEST(ValueReader, LongestList)
{
    std::string text = "0";
    for (int i = 1; i < 244; ++i)
        text += ',' + std::to_string(i);
    EXPECT_EQ(joined(ValueReader(text.c_str()).bytes()), text);
    text += ",1";
    ValueReader reader(text.c_str());
    reader.bytes();
    EXPECT_EQ(reader.finish(), kErrGsdTooMany);
}

} // namespace
