// Writes what the fuzzers start from: a dictionary for each target that has one, and seeds for each target.
//
// fuzz_inputs FOLDER: FOLDER/TARGET.dict; FOLDER/seeds/TARGET/; FOLDER/replay/TARGET/, inputs too slow to go on from.

#include "fuzz/property.h"
#include "fuzz/recordInput.h"
#include "fuzz/roundTrips.h"
#include "gsd/keywordTable.h"
#include "tests/typeFileBuilder.h"
#include "tools/diagnosis.h"
#include "typefile/format.h"
#include "typefile/stationTypes.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

using namespace typdescriptor::internal;

namespace fs = std::filesystem;

namespace {

const fs::path kSource = TYPDESCRIPTOR_SOURCE_DIR;

constexpr std::string_view kCompactDevice = R"(#Profibus_DP
Vendor_Name = "Kessel"
Model_Name = "Valves"
Revision = "1"
Ident_Number = 0x1234
Protocol_Ident = 0
Station_Type = 0
Hardware_Release = "1"
Software_Release = "1"
9.6_supp = 1
MaxTsdr_9.6 = 60
Min_Slave_Intervall = 20
Module = "Valve" 0x31
EndModule
)";
constexpr std::string_view kModularStation = R"(Modular_Station = 1
Max_Module = 8
Max_Input_Len = 32
Max_Output_Len = 32
Max_Data_Len = 64
)";

std::string contentsOf(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void write(const fs::path& path, std::string_view contents)
{
    fs::create_directories(path.parent_path());
    std::ofstream file(path, std::ios::binary);
    file.write(contents.data(), static_cast<std::streamsize>(contents.size()));
    require(file.good(), "the inputs can be written");
}

/// One word on a line of a dictionary: every character by its number, so that none has a meaning of its own.
std::string entry(std::string_view word)
{
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string line = "\"";
    for (const char c : word) {
        const auto byte = static_cast<std::uint8_t>(c);
        line += {'\\', 'x', kDigits[byte >> 4], kDigits[byte & 15]};
    }
    return line + "\"\n";
}

std::string gsdDictionary()
{
    std::string lines;
    for (const GsdKeyword& keyword : GsdKeywordTable::kRows) {
        std::string word(keyword.spelling);
        if (keyword.takesArgument())
            word += "(0)";
        word += keyword.takesEquals() ? " = " : "";
        lines += entry('\n' + word);
    }
    for (const char* word : {"0x", "\"", "\\\n", ",", "-", "@TdF@", "[SlotNumber]", "\"[Slotnumber]\"", ";", "65535"})
        lines += entry(word);
    return lines;
}

std::string imageDictionary()
{
    using namespace typdescriptor::internal;
    std::string lines;
    for (const std::string_view head :
         {kTagUserPrmBytes, kTagPrmList,       kTagHelpList,           kTagPresetByIdentifier, kTagPresetClosed,
          kTagDeviceDiag,   kTagChannelDiag,   kTagSlotOffset,         kTagSlotCount,          kTagOrderNumbers,
          kTagModuleLists,  kTagSlotPrmBlocks, kTagEterDelay,          kTagResponseDelay,      kTagHelp,
          kTagHelpLines,    kTagSlotPrmBlock,  std::string_view("MV"), std::string_view("MX"), std::string_view("KV")})
        lines += entry(std::string(head) + "001" + std::string(kTerminator));
    for (const std::string_view word :
         {kTagPrm,         kTagSlotsEnd,       kTagDiagByte,      kTagBitGroup,       kTagChannelError, kDefaultBitmap,
          kDefaultLibrary, kTagSlotNumbering,  kTagModuleList,    kTypeBit,           kTypeBitString,   kTypeByte,
          kTypeSigned,     kTypeUnsigned,      kBitUnit,          kKeywordSlotNumber, kKeywordTail,     kTerminator,
          kCurrentVersion, kHostRecordVersion, version3::kStation})
        lines += entry(word);
    for (const Station& station : kStations)
        if (station.category != kCategoryUnknown)
            lines += entry(station.name);
    return lines;
}

std::vector<fs::path> gsdFiles()
{
    std::vector<fs::path> files;
    for (const char* folder : {"examples/gsd", "tests/data/gsd"})
        for (const auto& file : fs::directory_iterator(kSource / folder))
            files.push_back(file.path());
    return files;
}

/// A device that fills its image up to the end with three diagnostic texts, and a little more with four.
std::string largeDevice(int diagTexts)
{
    constexpr int kModules = 51;
    std::string text = std::string(kCompactDevice) + std::string(kModularStation);
    for (int i = 0; i < kModules; ++i)
        text +=
            "Module = \"M\" 0x11\nExt_Module_Prm_Data_Len = 237\nExt_User_Prm_Data_Const(236) = " + std::to_string(i) +
            "\nEndModule\n";
    for (int i = 0; i < diagTexts; ++i)
        text += "Unit_Diag_Bit(" + std::to_string(i) + ") = \"bit\"\n";
    return text;
}

/// Each file with the letter of its language in front, and the shortest files that compile.
void writeGsdSeeds(const fs::path& seeds)
{
    for (const fs::path& file : gsdFiles()) {
        const std::string name = file.filename().string();
        write(seeds / name, std::string(1, name.back()) + '\n' + contentsOf(file));
    }
    write(seeds / "compact", std::string(kCompactDevice));
    write(seeds / "modular", std::string(kCompactDevice) + std::string(kModularStation));
}

/// Compiled files, and files made by hand of the station types and versions that no compilation gives.
void writeImageSeeds(const fs::path& seeds)
{
    for (const auto& file : fs::directory_iterator(kSource / "tests/data/compiled")) {
        if (file.path().extension() == ".410")
            write(seeds / file.path().filename(), contentsOf(file.path()));
    }
    write(seeds / "plain", TypeFileBuilder().build());
    write(seeds / "full", TypeFileBuilder::fullFile().build());
    write(seeds / "presets", TypeFileBuilder::fullPresetFile().build());
    write(seeds / "version40", TypeFileBuilder::fullPresetFile().with("version=V4.0").build());
    write(seeds / "category2", TypeFileBuilder::categoryIIFile().build());
    write(seeds / "version3",
          "V3.0;\r\nQMX;\r\nModel            ;\r\n00815;\r\n2;\r\nJ;\r\n0;\r\n0;\r\n0;\r\nJ;\r\n   ;\r\n");
}

/// What a device fills a record with, their baud rates in the form that builds.
void writeRecordSeeds(const fs::path& seeds)
{
    for (const fs::path& file : gsdFiles()) {
        cTypDescriptor device(file.string().c_str(), 0, nullptr);
        if (device.checkTypeFileContents() != kOk)
            continue;
        const HostRecord filled(device);
        RecordInput input;
        input.record = filled.record;
        input.record.baudRates[0] = 0x10001;
        input.userPrmHex = filled.userPrmHex.data();
        input.fixedSlotText = filled.fixedSlotText.data();
        write(seeds / file.stem(), input.bytes());
    }
}

/// Answers of each kind of block, whole and cut, for every device.
void writeDiagSeeds(const fs::path& seeds)
{
    constexpr const char* kAnswers[] = {
        "02 05 00 FF 0C 21",
        "08 0C 80 02 0C 21 03 81 80 43 05 80 BF 7F A6 80 C0 30 C5",
        "08 0C 00 02 0C 21 08 04 2B C0 FF 00 55 AA",
        "08 0C 00 02 0C 21 42 00 00 AA BB",
        "08 0C 00 02 0C 21 06 01",
        "08 0C 00 02",
    };
    for (std::size_t i = 0; i < std::size(kAnswers); ++i) {
        std::string wrong;
        const auto answer = parseHexBytes({kAnswers[i]}, wrong);
        const auto device = static_cast<char>(i);
        const std::string texts = i % 2 == 0 ? std::string(1, '\0') : std::string("\x02\x01\x10\x04\x02\x85\x01", 7);
        write(seeds / std::to_string(i), device + texts + std::string(answer->begin(), answer->end()));
    }
}

} // namespace

int main(int argc, char** argv)
{
    require(argc == 2, "usage: fuzz_inputs FOLDER");
    const fs::path folder = argv[1];
    write(folder / "gsd.dict", gsdDictionary());
    write(folder / "image.dict", imageDictionary());
    writeGsdSeeds(folder / "seeds/gsd");
    write(folder / "replay/gsd/full", largeDevice(3));
    write(folder / "replay/gsd/overfull", largeDevice(4));
    writeImageSeeds(folder / "seeds/image");
    writeRecordSeeds(folder / "seeds/record");
    writeDiagSeeds(folder / "seeds/diag");
    return 0;
}
