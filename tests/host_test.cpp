// The host library: devices, configurations and the way back from captured telegrams.
//
// HOSTE057.GSE has what a type file loses: parameters of 32 bits, lists of values, slot definitions, its own Max_Module,
// areas wider than 8 bits, channel texts of modules, texts in UTF-8. The expected bytes were worked out by hand from it.

#include "tests/caseTable.h"
#include "tests/testFiles.h"

#include "host/hexBytes.h"
#include "host/json.h"
#include "host/jsonValues.h"
#include "host/loadDevice.h"
#include "host/readBack.h"
#include "tools/configurationText.h"
#include "tools/deviceText.h"
#include "tools/diagnosisText.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <random>
#include <sstream>

using namespace typdescriptor;

namespace {

const std::string kGsd = TYPDESCRIPTOR_SOURCE_DIR "/tests/data/host/HOSTE057.GSE";
const std::string kExamples = TYPDESCRIPTOR_SOURCE_DIR "/examples/gsd/";

using Strings = std::vector<std::string>;
using Bytes = std::vector<std::uint8_t>;

std::string typeFileOf(const std::string& gsd)
{
    std::string file = newFile("host.410");
    const cTypDescriptor written(gsd.c_str(), 1, file.c_str());
    return file;
}

/// The parts of a text between separators, without the blanks ahead of them.
Strings split(const std::string& text, char separator)
{
    Strings parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);)
        parts.push_back(separator == ';' ? part.substr(std::min(part.find_first_not_of(' '), part.size())) : part);
    return parts;
}

Bytes bytesOf(const std::string& hex)
{
    std::string wrong;
    return parseHexBytes({hex}, wrong).value_or(Bytes());
}

Plan planOf(const Device& device, const Strings& choices)
{
    Strings slots;
    Strings values;
    for (const std::string& choice : choices)
        (choice.find(':') < choice.find('=') ? values : slots).push_back(choice);
    return planFromArguments(device, slots, values);
}

/// Whether every piece of an expectation stands in a text, and problems are there as it says.
void expectPieces(const std::string& text, bool hasProblems, const std::string& expected, const std::string& input)
{
    for (std::string piece : split(expected, '/')) {
        if (piece.starts_with('!') || piece.starts_with('?'))
            piece.erase(0, 1);
        EXPECT_NE(text.find(piece), std::string::npos) << input << ": " << piece << "\nis not in\n" << text;
    }
    EXPECT_EQ(hasProblems, expected.find('!') != std::string::npos) << input << "\n" << text;
    EXPECT_EQ(text.starts_with("refused"), expected.find('?') != std::string::npos) << input << "\n" << text;
}

template <class Check>
void forEachCaseOf(const std::string& wanted, Check check)
{
    forEachCaseIn("host.txt", [&](const std::string& section, const std::string& input, const std::string& expected) {
        if (section == wanted)
            check(input, expected);
    });
}

void expectConfigurations(const Device& device, const std::string& section)
{
    forEachCaseOf(section, [&device](const std::string& input, const std::string& expected) {
        try {
            const Configuration result = configure(device, planOf(device, split(input, ';')));
            std::string text = configurationText(device, result, false);
            for (const Refusal& refusal : result.refusals)
                text += refusal.text + '\n';
            EXPECT_EQ(result.refusals.size(), result.problems.size());
            expectPieces(text, !result.problems.empty(), expected, input);
        } catch (const ChoiceError& error) {
            EXPECT_EQ(error.refusal.text, error.what());
            expectPieces(std::string("refused: ") + error.what(), false, expected, input);
        }
    });
}

/// A module of general identifiers, without parameters.
Module moduleOf(const std::string& name, const Bytes& identifiers)
{
    Module module;
    module.name = name;
    for (const std::uint8_t byte : identifiers) {
        CSLAVE_SLOT_PRESET_TYPE preset = {};
        preset.identifier = byte;
        preset.kind = 1;
        module.parts.push_back({{}, {}, decodeIdentifier(preset), kNoBlock});
    }
    return module;
}

} // namespace

TEST(HostDevice, IsLoadedOrRefusedWithCodeAndLine)
{
    const Device device = loadDevice(kGsd);
    EXPECT_EQ(device.gsd->modelName, "Pr\u00fcfger\u00e4t mit \u00f6ligem Namen");
    EXPECT_EQ(baudRates(device), (Strings{"9.6 kbit/s", "31.25 or 45.45 kbit/s", "93.75 kbit/s", "12 Mbit/s"}));
    EXPECT_EQ(device.slotCount(), 4U);
    EXPECT_FALSE(loadDevice(kGsd, {false}).gsd);
    const Device typeFile = loadDevice(typeFileOf(kGsd));
    EXPECT_EQ(typeFile.modelName, "Pr\u00fcfger\u00e4tmit\u00f6l") << "UTF-8 that was taken for Latin-1";
    EXPECT_EQ(typeFile.parameters.parameters[4].texts[1].text, "ein f\u00fcr immer");
    EXPECT_EQ(nlohmann::json::parse(toJson(typeFile))["gsd"], nullptr);

    struct Case {
        std::string file;
        int code, line;
        std::string text;
    };
    const Case cases[] = {
        {putFile("bad.gsd", "#Profibus_DP\nIdent_Number = 99999\n"), -209, 2, "bad.gsd:2: "},
        {putFile("bad.410", "V5.2;"), -1, -1, "bad.410: "},
        {newFile("none.gsd"), 0, -1, "none.gsd: no such file or folder"},
        {kExamples, 0, -1, ": is a folder"},
    };
    for (const Case& item : cases) {
        try {
            loadDevice(item.file);
            ADD_FAILURE() << item.file;
        } catch (const LoadError& error) {
            EXPECT_EQ(error.code == 0, item.code == 0) << error.what();
            EXPECT_EQ(error.line, item.line) << error.what();
            EXPECT_NE(std::string(error.what()).find(item.text), std::string::npos) << error.what();
        }
    }
}

TEST(HostDevice, IsFoundInAFolderByItsIdentNumber)
{
    namespace fs = std::filesystem;
    const fs::path folder = fs::path(putFile("readme.txt", "")).parent_path() / "devices";
    fs::create_directories(folder / "inner");
    fs::copy_file(kGsd, folder / "inner" / "a.gse", fs::copy_options::overwrite_existing);
    fs::copy_file(kGsd, folder / "B.GSG", fs::copy_options::overwrite_existing);
    fs::copy_file(typeFileOf(kGsd), folder / "c.410", fs::copy_options::overwrite_existing);
    fs::copy_file(kExamples + "MDRV0C21.GSE", folder / "d.gse", fs::copy_options::overwrite_existing);
    std::ofstream(folder / "e.gsd") << "#Profibus_DP\nident_number = 0xE057 ; and no more\n";
    std::ofstream(folder / "f.txt") << "#Profibus_DP\nIdent_Number = 0xE057\n";
    std::ofstream(folder / "g.gsd") << "#Profibus_DP\nIdent_Number = 1000000\nIdent_Number = none\n";
    EXPECT_EQ(findDevices(folder.string(), 0xE057),
              (Strings{(folder / "B.GSG").string(), (folder / "c.410").string(), (folder / "e.gsd").string()}));
    EXPECT_EQ(findDevices(folder.string(), 0xE057, {true}).size(), 4U);
    EXPECT_TRUE(findDevices(folder.string(), 1).empty());
    EXPECT_THROW(findDevices(newFile("nowhere"), 1), LoadError);
    fs::remove_all(folder);
}

TEST(HostConfiguration, FollowsTheGsdFile)
{
    expectConfigurations(loadDevice(kGsd), "configuration");
}

TEST(HostConfiguration, SaysWhatATypeFileHasLost)
{
    expectConfigurations(loadDevice(typeFileOf(kGsd)), "typeFile");
}

TEST(HostConfiguration, TellsARefusalApart)
{
    const Device device = loadDevice(kGsd);
    try {
        configure(device, {{}, {{0, "One of three", "3"}}, {}});
        ADD_FAILURE();
    } catch (const ChoiceError& error) {
        const nlohmann::ordered_json json = refusalJson(error.refusal);
        EXPECT_EQ(json.dump(),
                  R"({"name":"outOfRange","text":"station: One of three: 3 is out of its range, 0, 1 or 5",)"
                  R"("slot":0,"parameter":"One of three","value":"3","allowed":"0, 1 or 5"})");
    }
    Plan plan;
    plan.standard = {650000, 12, 0x81, true, true, false};
    const Configuration result = configure(device, plan);
    EXPECT_EQ(asHex(valuesOf(result.parameters)).substr(0, 20), "78 FF FF 0C E0 57 81");
    ASSERT_EQ(result.refusals.size(), 1U);
    EXPECT_EQ(result.refusals[0].name, "noFreezeMode");
    for (const StandardParameters& wrong : {StandardParameters{650251}, {0, 10}, {0, 256}, {0, 11, 256}})
        EXPECT_THROW(configure(device, {{}, {}, wrong}), ChoiceError);
}

// A plan is what it was after it went through JSON, and a choice on the command line takes the place of its own.
TEST(HostPlan, IsKeptAndChanged)
{
    const Device device = loadDevice(kGsd);
    const Plan plan = withWholeNames(device, planOf(device, {"1=two", "3=reversed", "0:unsigned=7", "0:schal=aus"}));
    EXPECT_EQ(plan.modules[1].module, "Reversed range");
    EXPECT_EQ(plan.values[1].parameter, "Schalter");
    const std::string json = toJson(plan, device);
    EXPECT_EQ(toJson(planFromJson(json, device), device), json);
    const Plan changed = planFromArguments(device, {"3=#4"}, {"0:Schalter=1"}, plan);
    EXPECT_EQ(changed.modules[1].module, "Digital, 8 inputs");
    ASSERT_EQ(changed.values.size(), 2U);
    EXPECT_EQ(changed.values[1].value, "1");
    EXPECT_TRUE(planFromArguments(device, {"3=#4"}, {}, planOf(device, {"3=#2", "3:Reversed=0"})).values.empty());

    forEachCaseOf("plans", [&](const std::string& change, const std::string& expected) {
        const std::size_t mark = change.find("=>");
        std::string wrong = toJson(planOf(device, {"1=two"}), device);
        const std::string old = change.substr(0, mark);
        ASSERT_NE(wrong.find(old), std::string::npos) << change;
        wrong.replace(wrong.find(old), old.size(), change.substr(mark + 2));
        try {
            planFromJson(wrong, device);
            ADD_FAILURE() << wrong;
        } catch (const ChoiceError& error) {
            EXPECT_NE(std::string(error.what()).find(expected), std::string::npos) << error.what();
        }
    });
}

TEST(HostCapture, SaysWhatTelegramsMean)
{
    const Device device = loadDevice(kGsd);
    forEachCaseOf("capture", [&device](const std::string& input, const std::string& expected) {
        Strings parts = split(input, ';');
        std::optional<Configuration> planned;
        if (parts.size() > 2)
            planned = configure(device, planOf(device, {parts.begin() + 2, parts.end()}));
        parts.resize(2);
        const Capture capture = readBack(device, {bytesOf(parts[0]), bytesOf(parts[1])}, planned ? &*planned : nullptr);
        const auto differences = planned ? differencesOf(device, *planned, capture) : std::vector<Difference>();
        std::string text = captureText(capture, planned ? &differences : nullptr, false);
        for (const Refusal& problem : capture.problems)
            text += problem.text + '\n';
        expectPieces(text, !capture.problems.empty(), expected, input);
    });
}

// Modules of several identifiers may be divided in more ways than one.
TEST(HostCapture, NamesEveryWayToDivideATelegram)
{
    Device device;
    device.isModular = true;
    device.data.maxModule = 10;
    device.modules = {moduleOf("pair", {0xF3, 0xF1}), moduleOf("first", {0xF3}), moduleOf("second", {0xF1}),
                      moduleOf("triple", {0xF3, 0xF1, 0x10})};
    const auto namesIn = [&device](const std::string& hex) {
        std::string names;
        for (const CapturedSlot& slot : readBack(device, {bytesOf(hex), {}}).slots) {
            names += (names.empty() ? "" : " + ") + (slot.name.empty() ? "?" : slot.name);
            for (const std::string& other : slot.alternatives)
                names += '/' + other;
        }
        return names;
    };
    EXPECT_EQ(namesIn("F3 F1"), "pair/first");
    EXPECT_EQ(namesIn("F1 F3"), "second + first");
    EXPECT_EQ(namesIn("F3 F1 10"), "triple") << "any other way leaves an identifier that no module has";
    EXPECT_EQ(namesIn("F3 F1 F1"), "pair/first + second");
    EXPECT_EQ(namesIn("10 F3"), "? + first");
}

// What is planned is read back from its telegrams, and a single changed bit is a difference.
TEST(HostCapture, IsThePlanThatMadeIt)
{
    std::mt19937 random(7);
    const auto below = [&random](std::size_t end) { return random() % std::max<std::size_t>(end, 1); };
    for (const std::string& file :
         {kGsd, kExamples + "RIO40A17.GSE", kExamples + "SLOTPARM.GSE", kExamples + "MDRV0C21.GSE",
          kExamples + "PUBSUB09.GSE", kExamples + "VALVE64T.GSF"}) {
        const Device device = loadDevice(file);
        for (int round = 0; round < 40; ++round) {
            Plan plan;
            const std::size_t preset = device.presetSlots.size();
            for (std::size_t slot = preset + 1; slot <= std::min<std::size_t>(device.slotCount(), preset + 5); ++slot)
                plan.modules.push_back(
                    {static_cast<unsigned>(slot), '#' + std::to_string(1 + below(device.modules.size()))});
            for (std::size_t i = 0; i < device.parameters.parameters.size(); ++i) {
                const Parameter& parameter = device.parameters.parameters[i];
                if (parameter.isChangeable && parameter.minimum <= parameter.maximum && parameter.allowed.empty())
                    plan.values.push_back({0, '#' + std::to_string(i + 1),
                                           std::to_string(below(2) == 0 ? parameter.minimum : parameter.maximum)});
            }
            plan.standard.watchdogMilliseconds = static_cast<unsigned>(10 * below(255));
            plan.standard.groups = static_cast<unsigned>(below(256));
            const Configuration planned = configure(device, plan);
            const CapturedTelegrams captured{valuesOf(planned.configuration), valuesOf(planned.parameters)};
            const Capture known = readBack(device, captured, &planned);
            EXPECT_TRUE(differencesOf(device, planned, known).empty()) << file << ' ' << round;
            const Configuration again = configure(device, readBack(device, captured).plan);
            EXPECT_EQ(valuesOf(again.configuration), captured.configuration) << file << ' ' << round;
            EXPECT_EQ(valuesOf(again.parameters), captured.parameters) << file << ' ' << round;

            CapturedTelegrams changed = captured;
            const std::size_t byte = 7 + below(changed.parameters.size() - 7);
            if (byte >= changed.parameters.size())
                continue;
            changed.parameters[byte] ^= static_cast<std::uint8_t>(1U << below(8));
            EXPECT_FALSE(differencesOf(device, planned, readBack(device, changed, &planned)).empty() &&
                         readBack(device, changed, &planned).problems.empty())
                << file << " byte " << byte;
        }
    }
}

TEST(HostDiagnosis, NamesSlotsAndModules)
{
    const Device device = loadDevice(kGsd);
    const Configuration planned = configure(device, planOf(device, {"1=Two identifiers", "2=Digital, 8 inputs"}));
    forEachCaseOf("diagnosis", [&](const std::string& hex, const std::string& expected) {
        const Diagnosis diagnosis = explainDiagnosis(device, bytesOf(hex), {std::nullopt, &planned});
        std::string text = diagnosisText(diagnosis, false);
        for (const DiagnosisState& problem : diagnosis.problems)
            text += problem.text + '\n';
        expectPieces(text, !diagnosis.problems.empty(), expected, hex);
        EXPECT_EQ(nlohmann::json::parse(toJson(diagnosis))["blocks"].size(), diagnosis.blocks.size());
    });
    EXPECT_FALSE(identNumberIn(bytesOf("01 00 00 FF 00 00")));
    EXPECT_EQ(identNumberIn(bytesOf("08 0C 00 02 E0 57")), 0xE057U);
    EXPECT_EQ(diagnosisText(explainDiagnosis(device, {}), false), "Station\n") << "nothing is said of no bytes";
}
