// Configuration identifiers: their decoding against the bit fields of the standard, the interpreter step by step, and
// the splitting of a module's configuration.

#include "typefile/cfgDecoder.h"

#include "descriptor/resultCodes.h"
#include "generator/splitConfig.h"
#include "host/identifier.h"
#include "tests/caseTable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bitset>
#include <cstdio>
#include <cstring>
#include <locale>
#include <sstream>
#include <vector>

using namespace typdescriptor::internal;

namespace {

std::string fields(const CFG_IDENT_INFO& info)
{
    std::ostringstream text;
    for (const unsigned field : {unsigned{info.direction}, unsigned{info.length}, unsigned{info.wordStructure},
                                 unsigned{info.consistency}, unsigned{info.length2}, unsigned{info.wordStructure2},
                                 unsigned{info.consistency2}, info.compactFlag, info.shortItem})
        text << field << ' ';
    return text.str();
}

/// One side of an identifier of the standard: bit 7 whole consistency, bit 6 words, a length code below.
struct Side {
    Side(unsigned byte, unsigned codes)
        : word(byte / 64 % 2), length((byte % codes + 1) * (word + 1)),
          consistency(length == 1 ? 0 : byte / 128 * 2 + word)
    {}
    std::string text() const
    {
        return std::to_string(length) + ' ' + std::to_string(word) + ' ' + std::to_string(consistency) + ' ';
    }

    unsigned word;
    unsigned length;
    unsigned consistency;
};

TEST(IdentifierDecoding, StandardFormats)
{
    CFG_IDENT_INFO info;
    for (unsigned byte = 0; byte < 256; ++byte) {
        EXPECT_EQ(decodeIdentifier(1U << 16 | byte, info), 0);
        EXPECT_EQ(fields(info), std::to_string(byte / 16 % 4) + ' ' + Side(byte, 16).text() + "0 0 0 0 0 ") << byte;
        EXPECT_EQ(info.value, 1U << 16 | byte);
        const std::string side = Side(byte, 64).text();
        EXPECT_EQ(decodeIdentifier(6U << 16 | byte, info), 0);
        EXPECT_EQ(fields(info), "1 " + side + "0 0 0 0 0 ") << byte;
        EXPECT_EQ(decodeIdentifier(7U << 16 | byte << 8, info), 0);
        EXPECT_EQ(fields(info), "2 0 0 0 " + side + "0 0 ") << byte;
        const unsigned other = 255 - byte;
        EXPECT_EQ(decodeIdentifier(8U << 16 | other << 8 | byte, info), 0);
        EXPECT_EQ(fields(info), "3 " + side + Side(other, 64).text() + "0 0 ") << byte;
        for (const unsigned identifier :
             {1U << 16 | byte, 6U << 16 | byte, 7U << 16 | byte << 8, 8U << 16 | other << 8 | byte})
            EXPECT_EQ(isValidIdentifier(identifier), 1) << identifier;
    }
}

TEST(IdentifierDecoding, CompactFormat)
{
    CFG_IDENT_INFO info;
    const std::array<std::array<unsigned, 4>, 2> lengths{{{1, 1, 1, 2}, {2, 4, 6, 8}}}; // of bytes, of words
    for (unsigned byte = 0; byte < 256; ++byte) {
        const std::bitset<8> bits(byte);
        const unsigned direction = byte / 8 % 4;
        const unsigned word = bits[2] ? 1 : 0;
        const unsigned length = lengths[word][byte % 4];
        const unsigned input = bits[6] ? 2 + word : direction == 2 ? 0 : word;
        const unsigned output = bits[7] ? 2 + word : direction == 1 ? 0 : word;
        EXPECT_EQ(decodeIdentifier(3U << 16 | byte, info), 0);
        std::ostringstream expected;
        expected << direction << ' ' << length << ' ' << word << ' ' << input << " 0 0 " << output << ' ' << bits[5]
                 << ' ' << (byte % 8 == 0) << ' ';
        EXPECT_EQ(fields(info), expected.str()) << byte;
        const bool valid = direction != 0 && !(length == 1 && (bits[6] || bits[7])) && !(bits[2] && bits[5]) &&
                           !(direction == 1 && bits[7]) && !(direction == 2 && bits[6]);
        EXPECT_EQ(isValidIdentifier(3U << 16 | byte), valid ? 1 : 0) << byte;
    }
}

TEST(IdentifierDecoding, FormatsAndSpecialByte)
{
    CFG_IDENT_INFO info;
    for (std::uint32_t format = 0; format <= 0xFFFF; ++format) {
        const bool known = format == 1 || format == 3 || (format >= 6 && format <= 8);
        if (known)
            continue;
        const int expected = format == 0 ? 1 : format == 11 || format == 0xFFFF ? -1 : kErrIdentFormat;
        ASSERT_EQ(decodeIdentifier(format << 16 | 0x11, info), expected) << format;
        ASSERT_EQ(isValidIdentifier(format << 16 | 0x11), format == 0 ? 1 : 0) << format;
    }
    const std::array<unsigned, 4> kinds{11, 6, 7, 8};
    for (unsigned byte = 0; byte < 256; ++byte) {
        CFG_SPECIAL_INFO special;
        EXPECT_EQ(decodeSpecialByte(byte, special), 0);
        EXPECT_EQ(special.mfrLength, byte % 16);
        EXPECT_EQ(special.hasInput, byte / 64 % 2);
        EXPECT_EQ(special.hasOutput, byte / 128);
        EXPECT_EQ(special.kind, kinds[byte / 64]);
    }
}

// One direction as the library and as the tool say it: bytes, words, consistency over the whole length.
std::string side(unsigned length, unsigned word, unsigned consistency)
{
    return std::to_string(length) + ' ' + std::to_string(word) + ' ' + std::to_string(consistency / 2) + ' ';
}
std::string side(const std::optional<typdescriptor::IoData>& data)
{
    return data ? side(data->bytes(), data->inWords ? 1 : 0, data->isConsistent ? 2 : 0) : "- ";
}

TEST(IdentifierDecoding, TheToolSaysTheSame)
{
    const auto expectSame = [](unsigned format, unsigned first, unsigned input, unsigned output) {
        CSLAVE_SLOT_PRESET_TYPE preset = {};
        preset.kind = format < 6 ? static_cast<int>(format) : 5;
        preset.identifier = static_cast<std::uint8_t>(first);
        preset.lengthByte1 = static_cast<std::int8_t>(format == 7 ? output : input);
        preset.lengthByte2 = static_cast<std::int8_t>(output);
        const typdescriptor::Identifier tool = typdescriptor::decodeIdentifier(preset);
        CFG_IDENT_INFO info;
        ASSERT_EQ(decodeIdentifier(format << 16 | (format < 6 ? first : output << 8 | input), info), 0);
        const bool hasInput = (info.direction & 1U) != 0;
        const bool hasOutput = (info.direction & 2U) != 0;
        const std::string inputSide = side(info.length, info.wordStructure, info.consistency);
        const std::string outputSide = format == 3   ? side(info.length, info.wordStructure, info.consistency2)
                                       : format == 1 ? inputSide
                                                     : side(info.length2, info.wordStructure2, info.consistency2);
        EXPECT_EQ(side(tool.input), hasInput ? inputSide : "- ") << format << ' ' << first << ' ' << input;
        EXPECT_EQ(side(tool.output), hasOutput ? outputSide : "- ") << format << ' ' << first << ' ' << output;
    };
    for (unsigned byte = 0; byte < 256; ++byte) {
        expectSame(1, byte, 0, 0);
        expectSame(3, byte, 0, 0);
        expectSame(6, 0x40, byte, 0);
        expectSame(7, 0x80, 0, byte);
        expectSame(8, 0xC0, byte, 255 - byte);
    }
}

std::string interpreted(const std::string& sequence)
{
    CFG_DECODER decoder;
    std::istringstream steps(sequence);
    std::ostringstream outcome;
    outcome.imbue(std::locale::classic());
    for (std::string step; steps >> step;) {
        unsigned value = 0;
        int format = 0;
        int role = 0;
        if (std::sscanf(step.c_str(), "%x,%d,%d", &value, &format, &role) == 3)
            outcome << decoder.interpretCfgByte(value, format, role) << ' ';
        else
            decoder.setAllowRestart(step != "!");
    }
    std::uint32_t identifier = 0;
    decoder.getCurrent(identifier);
    outcome << std::hex << identifier << ' ' << decoder.getState();
    return outcome.str();
}

std::string split(const std::string& config)
{
    std::vector<std::uint8_t> bytes;
    std::istringstream stream(config);
    stream >> std::hex;
    for (unsigned byte = 0; stream >> byte;)
        bytes.push_back(static_cast<std::uint8_t>(byte));
    Arena arena;
    GSD_MODULE module;
    std::copy(bytes.begin(), bytes.end(), module.keep(arena, "", bytes.size()).begin());
    bool several = false;
    std::ostringstream outcome;
    outcome << splitModuleConfig(module, several) << std::hex;
    for (const GSD_IDENT_ITEM identifier : module.identifiers()) {
        outcome << " [";
        for (const unsigned byte : identifier.bytes)
            outcome << ' ' << byte;
        outcome << " ]";
    }
    return outcome.str() + (several ? " +" : "");
}

TEST(Interpreter, StepsAndConfigurations)
{
    forEachCaseIn("identifiers.txt",
                  [](const std::string& section, const std::string& input, const std::string& expected) {
                      EXPECT_EQ(section == "interpreter" ? interpreted(input) : split(input), expected) << input;
                  });
}

TEST(Interpreter, Accessors)
{
    CFG_DECODER decoder(0x0134);
    std::uint8_t byte = 0;
    std::uint8_t bytes[15] = {};
    unsigned count = 0;
    std::uint32_t counter = 1;
    std::array<std::int32_t, 3> words{};
    EXPECT_TRUE(decoder == CFG_DECODER(0xC134)); // the two top bits are forced
    EXPECT_TRUE(decoder < CFG_DECODER(0xC234) && !(CFG_DECODER(0xC234) < decoder));
    EXPECT_EQ(decoder.getSpecialByte(byte), kErrIdentFormat);
    EXPECT_EQ(decoder.getCounter(1, counter), kCfgNoCounter);
    EXPECT_EQ(decoder.getPreserved(words), kCfgNothingPreserved);
    decoder.setLabel("a label that is far too long");
    decoder.setNote("note");
    EXPECT_EQ(decoder.getLabel(), "a label that is far too");

    // An empty identifier empties the label; a special one behind it keeps tag and preserved words and nothing else.
    decoder.setPreserved({7, 8, 9});
    EXPECT_EQ(decoder.interpretCfgByte(0, 1, 0), kCfgEmpty);
    EXPECT_EQ(decoder.getLabel(), "");
    EXPECT_EQ(decoder.getNote(), "note");
    EXPECT_EQ(decoder.interpretCfgByte(0xC2, 1, 0), kCfgSpecial);
    EXPECT_EQ(decoder.getPreserved(words), 0);
    EXPECT_EQ(words, (std::array<std::int32_t, 3>{7, 8, 9}));
    EXPECT_EQ(decoder.getNote(), "");
    EXPECT_TRUE(decoder == CFG_DECODER(0xC134));
    EXPECT_EQ(decoder.getSpecialByte(byte), kCfgSpecial);
    EXPECT_EQ(byte, 0xC2);

    const std::uint8_t data[2] = {0xAB, 0xCD};
    EXPECT_EQ(decoder.setMfrData(data), 0);
    EXPECT_EQ(decoder.copyWithoutCounters().getMfrData(bytes, count), 0);
    EXPECT_EQ(count, 2U);
    EXPECT_EQ(std::memcmp(bytes, data, 2), 0);
    decoder.setAllowRestart(false);
    decoder.setNote("later");
    EXPECT_EQ(decoder.getNote(), "");
    // The byte length counts the identifier byte twice.
    forEachCase(
        "c2 > 6 0 | 42 > 5 0 | 81 > 4 0 | 03 > 5 0 | 40 > 3 -15 | cf > 4 -15 | 11 > 1 -16",
        [&](const std::string& first, const std::string& expected) {
            CFG_DECODER held;
            EXPECT_EQ(held.byteLength(), 0U);
            held.interpretCfgByte(static_cast<std::uint32_t>(std::stoul(first, nullptr, 16)), 1, 0);
            EXPECT_EQ(std::to_string(held.byteLength()) + ' ' + std::to_string(held.getMfrData(bytes, count)), expected)
                << first;
        });
}

} // namespace
