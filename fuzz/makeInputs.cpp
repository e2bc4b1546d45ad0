// Writes what the fuzzers start from: a dictionary for each target that has one, and seeds for each target.
//
// fuzz_inputs FOLDER: FOLDER/TARGET.dict; FOLDER/seeds/TARGET/; FOLDER/replay/TARGET/, inputs too slow to go on from.

#include "fuzz/property.h"
#include "fuzz/roundTrips.h"
#include "gsd/keywordTable.h"
#include "tests/hostRecord.h"
#include "tests/typeFileBuilder.h"

#include <cstdint>
#include <cstdio>
#include <exception>
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
    std::string text = contentsOf(kSource / "fuzz/seeds/gsd/modular");
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
    for (const char* name : {"compact", "modular"})
        write(seeds / name, contentsOf(kSource / "fuzz/seeds/gsd" / name));
}

/// Files as they are, in UTF-8, their beginnings in UTF-16 of either order, and files that end where something has begun.
void writeDocumentSeeds(const fs::path& seeds)
{
    constexpr std::size_t kWide = 1500;
    const std::string ends[] = {"",
                                "\n",
                                "\r",
                                "\\",
                                "#Profibus_DP\n\\",
                                "#Profibus_DP\nA=\"\\\n\\\n",
                                "#Profibus_DP\nSlave_Family=3@@\\x",
                                "#Profibus_DP\nModule=\"\" 1\nData_Area_Beg\nLength=1\nEndModule"};
    for (std::size_t i = 0; i < std::size(ends); ++i)
        write(seeds / std::to_string(i), ends[i]);
    for (const fs::path& file : gsdFiles()) {
        const std::string text = contentsOf(file);
        write(seeds / file.filename(), text);
        std::string little = "\xFF\xFE";
        std::string big;
        std::string eight;
        for (const char c : text.substr(0, kWide)) {
            little += {c, '\0'};
            big += {'\0', c};
        }
        for (const char c : text) {
            const auto byte = static_cast<unsigned char>(c);
            eight += byte < 0x80 ? std::string(1, c) : std::string{'\xC3', static_cast<char>(0x80U | (byte & 0x3FU))};
        }
        write(seeds / ("utf8-" + file.filename().string()), eight);
        write(seeds / ("little-" + file.filename().string()), little);
        write(seeds / ("big-" + file.filename().string()), big);
    }
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
        write(seeds / file.stem(), RecordInput(HostRecord(device)).bytes());
    }
}

/// Answers of each kind of block, whole and cut, for every device.
void writeDiagSeeds(const fs::path& seeds)
{
    using namespace std::string_literals;
    const std::string answers[] = {
        "\x02\x05\x00\xFF\x0C\x21"s,
        "\x08\x0C\x80\x02\x0C\x21\x03\x81\x80\x43\x05\x80\xBF\x7F\xA6\x80\xC0\x30\xC5"s,
        "\x08\x0C\x00\x02\x0C\x21\x08\x04\x2B\xC0\xFF\x00\x55\xAA"s,
        "\x08\x0C\x00\x02\x0C\x21\x42\x00\x00\xAA\xBB"s,
        "\x08\x0C\x00\x02\x0C\x21\x06\x82\x00\x00\x24\x01\x05\x01\x03\x1D\x07\x08\x83\x00\x00\x05\x80\x07\x40"s,
        "\x08\x0C\x00\x02\x0C\x21\x06\x01"s,
        // Captured telegrams of the rack among the examples, the first one of five bytes, and a plan.
        "\x05\x00\x30\x10\x00\x53\x88\x01\x32\x0B\x0A\x17\x05\x00\x00\x00\x12\x00\x01\xF4\x00\x01\x00\x02\x02\x00\x01\x00\x05"s,
        "\"modules\":[{\"slot\":3,\"module\":\"#1\"}],\"values\":[{\"slot\":0,\"parameter\":\"#1\",\"value\":\"0x1\"}]"s,
        "\x08\x0C\x00\x02"s,
    };
    for (std::size_t i = 0; i < std::size(answers); ++i) {
        const std::string texts = i % 2 == 0 ? "\0"s : "\x02\x01\x10\x04\x02\x85\x01"s;
        write(seeds / std::to_string(i), static_cast<char>(i) + texts + answers[i]);
    }
}

void writeAll(const fs::path& folder)
{
    write(folder / "gsd.dict", gsdDictionary());
    writeGsdSeeds(folder / "seeds/gsd");
    write(folder / "replay/gsd/full", largeDevice(3));
    write(folder / "replay/gsd/overfull", largeDevice(4));
    writeImageSeeds(folder / "seeds/image");
    writeRecordSeeds(folder / "seeds/record");
    writeDiagSeeds(folder / "seeds/diag");
    write(folder / "document.dict", gsdDictionary());
    writeDocumentSeeds(folder / "seeds/document");
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fputs("usage: fuzz_inputs FOLDER\n", stderr);
        return 2;
    }
    try {
        writeAll(argv[1]);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "fuzz_inputs: %s\n", error.what());
        return 1;
    }
    return 0;
}
