// The parts of typdesc that work without a terminal: identifiers, diagnosis, telegrams, reports, JSON.
//
// The devices are the examples; the expected telegrams were worked out by hand from their GSD files.

#include "tests/caseTable.h"
#include "tests/testFiles.h"

#include "host/configuration.h"
#include "host/diagnosis.h"
#include "host/hexBytes.h"
#include "host/jsonValues.h"
#include "host/text.h"
#include "tools/configurationText.h"
#include "tools/deviceText.h"
#include "tools/diagnosisText.h"
#include "tools/displayText.h"
#include "tools/lineDiff.h"
#include "tools/reportJson.h"
#include "tools/reportText.h"
#include "tools/sourceText.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <numeric>
#include <random>
#include <set>
#include <sstream>

using namespace typdescriptor;

namespace {

Device example(const std::string& name)
{
    cTypDescriptor descriptor((TYPDESCRIPTOR_SOURCE_DIR "/examples/gsd/" + name).c_str(), 0, nullptr);
    EXPECT_EQ(descriptor.checkTypeFileContents(), kOk) << name;
    return readDevice(descriptor);
}

template <class Check>
void forEachCaseOf(const std::string& wanted, Check check)
{
    forEachCaseIn("tools.txt", [&](const std::string& section, const std::string& input, const std::string& expected) {
        if (section == wanted)
            check(input, expected);
    });
}

std::vector<std::uint8_t> bytesOf(const std::string& hex)
{
    std::string wrong;
    return parseHexBytes({hex}, wrong).value_or(std::vector<std::uint8_t>());
}

Configuration configure(const Device& device, const std::vector<std::string>& slots,
                        const std::vector<std::string>& values)
{
    return typdescriptor::configure(device, planFromArguments(device, slots, values));
}

} // namespace

TEST(ToolTexts, AreConvertedAndCompared)
{
    EXPECT_EQ(fromLatin1("Ger\xE4t\x1b[1m\x85\t\x7f"), "Ger\u00e4t\ufffd[1m\ufffd\t\ufffd");
    EXPECT_EQ(toLatin1("Ger\u00e4t \u20ac 5"), "Ger\xE4t ? 5");
    EXPECT_EQ(fromField("AB \0C"), "AB");
    EXPECT_EQ(fromField("ABC ", 2), "AB");
    EXPECT_EQ(fromArgument("Ger\xE4t"), fromArgument("Ger\u00e4t"));
    EXPECT_EQ(padded("\u00e4\u00f6", 4), "\u00e4\u00f6  ");
    EXPECT_TRUE(isSameText("ak Z", "AK z") && !isSameText("ak", "ak1"));
    forEachCase("C3A4 > 1 | C3 > 0 | A4 > 0 | E282AC > 1 | E282 > 0 | C080 > 0 | F5808080 > 0 | 41 > 1",
                [](const std::string& hex, const std::string& expected) {
                    const std::vector<std::uint8_t> bytes = bytesOf(hex);
                    EXPECT_EQ(isUtf8(std::string(bytes.begin(), bytes.end())), expected == "1") << hex;
                });
}

TEST(ToolIdentifiers, AreSaidInWordsAndTurnedForTheWire)
{
    forEachCaseOf("identifiers", [](const std::string& input, const std::string& expected) {
        const bool isCompact = input[0] == 'c';
        const std::vector<std::uint8_t> bytes = bytesOf(isCompact ? input.substr(2) : input);
        const std::size_t lengthBytes = bytes[0] >= 0xC0U ? 2 : bytes[0] >= 0x40U ? 1 : 0;
        CSLAVE_SLOT_PRESET_TYPE preset = {};
        preset.identifier = bytes[0];
        preset.kind = isCompact ? 3 : bytes[0] == 0 ? 0 : (bytes[0] & 0x30U) != 0 ? 1 : 5;
        if (preset.kind == 5) {
            preset.lengthByte1 = lengthBytes > 0 ? static_cast<std::int8_t>(bytes[1]) : std::int8_t{-1};
            preset.lengthByte2 = lengthBytes > 1 ? static_cast<std::int8_t>(bytes[2]) : std::int8_t{-1};
            std::copy(bytes.begin() + 1 + static_cast<std::ptrdiff_t>(lengthBytes), bytes.end(), preset.mfrData);
        }
        const Identifier identifier = decodeIdentifier(preset);
        std::string words = inWords(identifier) + " [" + asHex(identifier.wireBytes) + "]";
        std::replace(words.begin(), words.end(), '\'', '"'); // as in the table
        EXPECT_EQ(words, expected) << input;
        EXPECT_EQ(identifier.fileBytes, bytes);
    });
}

TEST(ToolDiagnosis, ExplainsTelegrams)
{
    const Device drive = example("MDRV0C21.GSE");
    forEachCaseOf("diagnosis", [&drive](const std::string& hex, const std::string& expected) {
        const bool isDpv1 = hex.starts_with("d ");
        DiagnosisOptions options;
        if (isDpv1)
            options.isDpv1 = true;
        const Diagnosis diagnosis = explainDiagnosis(drive, bytesOf(isDpv1 ? hex.substr(2) : hex), options);
        std::string text = diagnosisText(diagnosis, false) + '!';
        for (const DiagnosisState& problem : diagnosis.problems)
            text += problem.text + '!';
        std::size_t from = 0;
        for (std::size_t end = 0; end != std::string::npos; from = end + 1) {
            end = expected.find('/', from);
            const std::string piece = expected.substr(from, end == std::string::npos ? end : end - from);
            EXPECT_NE(text.find(piece), std::string::npos) << hex << ": " << piece << "\nis not in\n" << text;
            if (end == std::string::npos)
                break;
        }
        EXPECT_EQ(diagnosis.problems.empty(), expected.find('!') == std::string::npos) << text;
    });
}

TEST(ToolDiagnosis, NamesEveryCutAndNothingElse)
{
    const Device drive = example("MDRV0C21.GSE");
    const std::vector<std::uint8_t> whole = bytesOf("080C00020C21 05818000FF 4205 8141A6 82C278 C5");
    const std::set<std::size_t> boundaries = {11, 13, 16, 19, 20};
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        const std::vector<std::uint8_t> cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
        const Diagnosis diagnosis = explainDiagnosis(drive, cut);
        EXPECT_EQ(diagnosis.problems.empty(), boundaries.contains(length)) << length;
        EXPECT_EQ(diagnosisJson(diagnosis)["problems"].size(), diagnosis.problems.size());
    }
    EXPECT_EQ(explainDiagnosis(drive, bytesOf("00 04 00 02 0C 22" + std::string(54, 'C'))).problems.size(), 2U)
        << "another ident number, and one byte more than Max_Diag_Data_Len";
}

TEST(ToolDiagnosis, ReadsHexInManyForms)
{
    std::string wrong;
    const std::vector<std::uint8_t> bytes = {0x08, 0x0C, 0xFF};
    for (const char* const form :
         {"080CFF", "08 0c ff", "0x08,0x0C,0xFF", "8:C:ff", " 08-0CFF ", "[08, 0C, FF]", "{0x08, 0X0C, 0xFF};",
          "\\x08\\x0c\\xff", "08h 0CH ffh", "$08 $0C $FF", "08.0C.FF", "'080CFF'"})
        EXPECT_EQ(parseHexBytes({form}, wrong), bytes) << form;
    EXPECT_EQ(parseHexBytes({"08", "0C", "FF"}, wrong), bytes);
    for (const char* const form : {"08 0G", "080", "0x", "08 +C", "-0x", "h", "0xh", "0x0x08", "08hh"})
        EXPECT_FALSE(parseHexBytes({form}, wrong)) << form;
}

TEST(ToolConfiguration, BuildsTheTelegramsOfAModularDevice)
{
    const Device device = example("SLOTPARM.GSE");
    const Configuration result = configure(device, {"3=AK741 AI 4 x 14 bit", "4=ak761", "8=#1"},
                                           {"0:Bus monitoring time (ms)=0x1234", "0:Data format=as wired",
                                            "3:Measuring range channel 0=4 .. 20 mA, 4-wire transducer",
                                            "3:Lower limit=-1", "4:#1=1", "4:Count direction reversed=enabled"});
    const std::string parameters = "00 00 00 25 00 00 12 34 00 00 " // station: up to the first module's bytes
                                   "00 02 0F 00 00 00 "             // slot 2: slot number, substitute pattern
                                   "0C 41 02 09 6C 00 FF FF 00 00 00 03 "
                                   "0E 80 00 01 05 04 11 70 00 00 79 60 00 00 "
                                   "0E 80 00 01 10 05 11 70 00 00 79 60 00 00 " // slot 5: the same block, untouched
                                   "08 00 01 00";                               // slot 8
    const std::string configuration = "10 20 42 C3 01 4E C3 85 C3 03 61 00 C1 87 C5 62 81 83 2F 00 10";
    const auto json = configurationJson(result);
    EXPECT_EQ(json["userParameters"]["hex"], parameters);
    EXPECT_EQ(json["configuration"]["hex"], configuration);
    EXPECT_EQ(json["configuration"]["bytes"][7]["source"], "AK761 counter 500 kHz: output length");
    EXPECT_EQ(json["userParameters"]["bytes"][11]["source"], "preset: slot number");
    EXPECT_EQ(json["userParameters"]["bytes"][11]["slot"], 2);
    EXPECT_EQ(result.inputBytes, 1U + 8 + 8 + 12 + 1);
    EXPECT_EQ(result.outputBytes, 1U + 6 + 8 + 4);
    EXPECT_EQ(result.notes.size(), 4U) << "slot 7 is free, the watchdog is off, and two losses of a type file";
    EXPECT_TRUE(result.problems.empty());
    EXPECT_NE(configurationText(device, result, false).find("  " + parameters + '\n'), std::string::npos);
}

TEST(ToolConfiguration, TakesNegativeValuesAndNamesWithOtherBlanks)
{
    const Device device = example("ENCABS58.GSP");
    const auto set = [&device](const std::string& value) {
        return configure(device, {"1=posici\u00f3n16bits"}, {"0:" + value}).userParameters[10].value;
    };
    forEachCase("-5 > 251 | 10 > 10 | 251 > 251 | -40 > 216 | 0x55 > 85",
                [&set](const std::string& value, const std::string& expected) {
                    EXPECT_EQ(std::to_string(set("Compensaci\u00f3nt\u00e9rmica=" + value)), expected) << value;
                });
    for (const char* const value : {"-41", "86", "215", "256"})
        EXPECT_THROW(set("Compensaci\u00f3n t\u00e9rmica=" + std::string(value)), ChoiceError) << value;
    const std::string json = sectionJson(device, "parameters").dump();
    EXPECT_NE(json.find(R"("default":-5,"minimum":-40,"maximum":85)"), std::string::npos);
}

TEST(ToolConfiguration, RefusesWhatTheDeviceDoesNotHave)
{
    const Device device = example("SLOTPARM.GSE");
    forEachCaseOf("choices", [&device](const std::string& argument, const std::string& expected) {
        const bool isValue = argument.find(':') < argument.find('=');
        try {
            isValue ? configure(device, {}, {argument}) : configure(device, {argument}, {});
            ADD_FAILURE() << argument << " is accepted";
        } catch (const ChoiceError& error) {
            EXPECT_NE(std::string(error.what()).find(expected), std::string::npos) << argument << ": " << error.what();
        }
    });
    EXPECT_THROW(configure(device, {"3=AK741", "3=AK742"}, {}), ChoiceError);
    EXPECT_THROW(configure(example("KGPUNIT7.GSD"), {}, {}), ChoiceError);
}

TEST(ToolConfiguration, ChecksTheLimits)
{
    const Device rack = example("RIO40A17.GSE");
    EXPECT_TRUE(configure(rack, {"5=40-4AI Pt100"}, {"5:Sensor=1"}).problems.empty());
    EXPECT_EQ(configure(rack, {"2=40-4AI Pt100"}, {}).problems.size(), 1U) << "slot 2 is fixed";

    std::vector<std::string> slots;
    for (int slot = 5; slot <= 35; ++slot)
        slots.push_back(std::to_string(slot) + "=40-2AI/2AO U/I 12 bit");
    EXPECT_EQ(configure(rack, {slots.begin(), slots.begin() + 29}, {}).problems.size(), 0U) << "118 and 117 bytes";
    EXPECT_EQ(configure(rack, {slots.begin(), slots.begin() + 30}, {}).problems.size(), 1U) << "together above 240";
    EXPECT_EQ(configure(example("MDRV0C21.GSE"), {}, {}).problems.size(), 1U) << "no module";

    std::vector<std::string> analog;
    for (int slot = 5; slot <= 40; ++slot)
        analog.push_back(std::to_string(slot) + "=40-2AI U/I 12 bit");
    EXPECT_EQ(configure(rack, {analog.begin(), analog.begin() + 17}, {}).problems.size(), 0U) << "13 + 136 = 149";
    EXPECT_EQ(configure(rack, {analog.begin(), analog.begin() + 18}, {}).problems.size(), 1U) << "157 bytes of 150";

    const Device ring = example("PUBSUB09.GSE");
    EXPECT_TRUE(configure(ring, {}, {}).problems.empty());
    EXPECT_EQ(configure(ring, {"3=#1"}, {}).problems.size(), 1U) << "an even number is required";
}

TEST(ToolShow, SaysTheSameInTextAndJson)
{
    const Device device = example("SLOTPARM.GSE");
    nlohmann::ordered_json json;
    for (const std::string& section : sectionNames()) {
        json[section] = sectionJson(device, section);
        EXPECT_EQ(json[section].is_null(), section == "gsd") << section;
        EXPECT_GT(sectionText(device, section, false).size(), section.size()) << section;
    }
    EXPECT_EQ(json["identification"]["identNumber"], 0xB30F);
    EXPECT_EQ(json["slots"]["preset"].size(), 6U);
    EXPECT_EQ(json["slots"]["preset"][4]["identifier"]["wireBytes"].dump(), "[193,135,197,98]");
    EXPECT_EQ(json["modules"][3]["parts"][0]["identifier"]["input"]["bytes"], 8);
    EXPECT_EQ(json["modules"][3]["parts"][0]["block"], 3);
    EXPECT_EQ(json["modules"][2]["parts"][0]["block"], nullptr);
    const auto& block = json["blocks"][2];
    EXPECT_EQ(block["parameters"][3]["default"], -27648);
    EXPECT_EQ(block["parameters"][0]["texts"][1]["text"], "4 .. 20 mA, 4-wire transducer");
    EXPECT_EQ(block["slotNumbers"].dump(), R"([{"byte":10,"byteCount":2}])");
    EXPECT_NE(sectionText(device, "blocks", false)
                  .find("Gate function                    byte 4, bits 2-4, default 4 (hardware gate), range 0 to 4"),
              std::string::npos);
    const Device encoder = example("ENCABS58.GSP");
    EXPECT_EQ(sectionJson(encoder, "diagnostics")["bits"][0]["set"], "Error de posici\u00f3n");
}

TEST(ToolReport, MarksThePlaceInEveryEncoding)
{
    struct Case {
        std::string bytes, marked; // the first place of these bytes is marked
        std::size_t line, column;
        std::string excerpt;
    };
    const std::string wide = "\u65e5\u672c";
    const Case cases[] = {
        {"A\r\n\t\xE4 = \"b\xF6\"\r\n", "\"b\xF6\"", 2, 6, "        \u00e4 = \"b\u00f6\"\n            ^~~~"},
        {wide + "\t= 1" + wide, "1" + wide, 1, 6, wide + "    = 1" + wide + "\n          ^~~~~"},
        {"\xEF\xBB\xBF"
         "A=1",
         "A", 1, 1, "A=1\n^"},
        {std::string("\xFF\xFE"
                     "A\0\n\0B\0=\0",
                     10),
         std::string("=\0", 2), 2, 2, "B=\n ^"},
        {"A\rB\x1B[2J=\rC", "=", 2, 6, "B\ufffd[2J=\n     ^"},
        {std::string(200, 'x') + "=1", "=1", 1, 201,
         "..." + std::string(40, 'x') + "=1\n" + std::string(43, ' ') + "^~"},
    };
    for (const Case& item : cases) {
        const typdescriptor::gsdfile::Document document(item.bytes);
        const SourceText source(document);
        const auto begin = static_cast<std::uint32_t>(item.bytes.find(item.marked));
        const auto end = static_cast<std::uint32_t>(begin + item.marked.size());
        const Position position = source.positionOf(begin);
        EXPECT_EQ(position.line, item.line) << item.bytes;
        EXPECT_EQ(position.column, item.column) << item.bytes;
        const Excerpt excerpt = source.excerpt({begin, end});
        const std::string mark = '^' + std::string(excerpt.width - 1, '~');
        EXPECT_EQ(excerpt.text + '\n' + std::string(excerpt.begin, ' ') + mark, item.excerpt);
        for (const std::size_t most : {40U, 61U}) {
            const Excerpt narrow = source.excerpt({begin, end}, most);
            EXPECT_LE(columnsOf(narrow.text), most) << narrow.text;
            EXPECT_LE(narrow.begin + narrow.width, std::max(columnsOf(narrow.text), narrow.begin + 1)) << narrow.text;
        }
    }
    EXPECT_EQ(readable("\x9B[1m\x07"), "\ufffd[1m\ufffd");
    EXPECT_EQ(readable("\u009b\u202e\t\u00e4"), "\ufffd\ufffd\t\u00e4");
    EXPECT_EQ(uriOf("a b/\xE4%.gsd"), "a%20b/%E4%25.gsd");
    EXPECT_NE(jsonText({{"file", "\xE4.gsd"}}).find("\ufffd.gsd"), std::string::npos) << "never an exception";
}

// A diff, applied to the one text, gives the other, whatever they are.
TEST(ToolReport, ShowsEveryDifferenceOfTwoTexts)
{
    std::mt19937 random(7);
    const auto below = [&random](unsigned limit) { return static_cast<unsigned>(random() % limit); };
    for (int run = 0; run < 500; ++run) {
        const unsigned words = 2 + below(60);
        std::vector<std::string> before(below(40));
        std::vector<std::string> after;
        for (std::string& line : before)
            line = std::to_string(below(words)) + '\n';
        for (const std::string& line : before) {
            if (below(8) == 0)
                after.push_back("new " + std::to_string(below(words)) + '\n');
            if (below(8) != 0)
                after.push_back(line);
        }
        const auto joined = [](const std::vector<std::string>& lines) {
            return std::accumulate(lines.begin(), lines.end(), std::string());
        };
        const std::string diff = unifiedDiff("f", joined(before), joined(after));
        EXPECT_EQ(diff.empty(), before == after);
        std::string text;
        std::size_t next = 0; // line of the old text
        std::istringstream lines(diff);
        for (std::string line; std::getline(lines, line);) {
            if (line.starts_with("---") || line.starts_with("+++"))
                continue;
            if (line.starts_with("@@")) {
                const auto start = static_cast<std::size_t>(std::stoul(line.substr(4)));
                const bool isInsertion = line.substr(0, line.find(" +")).ends_with(",0");
                while (next < start - (isInsertion ? 0 : 1))
                    text += before.at(next++);
            } else if (line.starts_with('+')) {
                text += line.substr(1) + '\n';
            } else {
                ASSERT_EQ(before.at(next++), line.substr(1) + '\n') << diff;
                text += line.starts_with(' ') ? line.substr(1) + '\n' : "";
            }
        }
        while (next < before.size())
            text += before[next++];
        EXPECT_EQ(text, joined(after)) << diff;
    }
}

TEST(ToolReport, TellsThePlaceInATypeFile)
{
    const std::string good = newFile("good.410");
    const cTypDescriptor written(TYPDESCRIPTOR_SOURCE_DIR "/examples/gsd/SLOTPARM.GSE", 1, good.c_str());
    FileReport report;
    report.file = good;
    checkFile(report, {});
    EXPECT_TRUE(report.findings.empty());
    const std::string whole = fileContents(good);
    // What is replaced, by what > line (the head line is the first) and what is there.
    const char* const cases = "45839;=4583x; > :8:1: [ident number] | 0001011111;=0000000000; > :24:1: [baud rates] | "
                              "DKM=DKX > : ";
    forEachCase(cases, [&](const std::string& change, const std::string& expected) {
        std::string text = whole;
        const std::size_t mark = change.find('=');
        text.replace(text.find(change.substr(0, mark)), mark, change.substr(mark + 1));
        FileReport bad;
        bad.file = putFile("bad.410", text);
        checkFile(bad, {});
        const std::string shown = reportText(bad, false);
        const std::size_t space = expected.find(' ');
        EXPECT_NE(shown.find("bad.410" + expected.substr(0, space) + " error: "), std::string::npos) << shown;
        EXPECT_NE(shown.find(expected.substr(std::min(space + 1, expected.size()))), std::string::npos) << shown;
    });
}
