// GSD files into type files: whole files against their expected type file, single lines against the codes, warnings and
// characters that they give, and the reading of lines.

#include "descriptor/cTypDescriptor.h"
#include "descriptor/image.h"
#include "gsd/cGsdCompiler.h"
#include "tests/caseTable.h"
#include "tests/gsdText.h"

#include <gtest/gtest.h>

#include <array>
#include <ctime>
#include <filesystem>
#include <vector>

using namespace typdescriptor::internal;

namespace {

namespace fs = std::filesystem;

std::string withoutTime(std::string image)
{
    for (std::size_t i = 25; i < std::min<std::size_t>(image.size(), 43); ++i)
        image[i] = image[i] >= '1' && image[i] <= '9' ? '0' : image[i];
    return image;
}

TEST(Compile, WholeFiles)
{
    const fs::path source = TYPDESCRIPTOR_SOURCE_DIR;
    std::size_t count = 0;
    for (const char* folder : {"examples/gsd", "tests/data/gsd"}) {
        for (const auto& entry : fs::directory_iterator(source / folder)) {
            const std::string name = entry.path().filename().string();
            SCOPED_TRACE(name);
            ++count;
            const std::string expected = (source / "tests/data/compiled" / name).string();
            const std::string output = putFile("whole.410", "what stood there before");
            cTypDescriptor device(entry.path().string().c_str(), 1, output.c_str());
            EXPECT_EQ(device.getStatus(), kOk);
            EXPECT_EQ(device.getGsdErrLineNr(), -1);
            const std::string written = fileContents(output);
            EXPECT_EQ(withoutTime(written), fileContents(expected + ".410"));
            // In the descriptor the NUL of the last record stands behind the image, and then blanks.
            std::string image(65000, '?');
            EXPECT_EQ(cGsdCompiler(image.data(), 65000).compile(entry.path().string().c_str(), 0, nullptr), kOk);
            EXPECT_EQ(withoutTime(image), withoutTime(written + '\0' + std::string(64999 - written.size(), ' ')));

            std::vector<GSD_WARNING_ITEM> items(static_cast<std::size_t>(device.getGsdCntOfWarnings()));
            device.getGsdWarnings(reinterpret_cast<char*>(items.data()));
            std::string warnings;
            for (const GSD_WARNING_ITEM& item : items)
                warnings += std::to_string(item.lineNumber) + ' ' + std::to_string(item.code) + '\n';
            EXPECT_EQ(warnings, fileContents(expected + ".warnings"));
            // KGP modules keep their block numbers when a gap is closed, and so a block may be missing.
            EXPECT_EQ(device.checkTypeFileContents(), name == "KGPSHAR8.GSD" ? kErrSlotPrm : kOk);
        }
    }
    EXPECT_EQ(count, 10U);
}

TEST(Compile, HeadLineShowsTheTime)
{
    const auto headLine = [] {
        const std::time_t now = std::time(nullptr);
        std::array<char, 80> line{};
        std::strftime(line.data(), line.size(), "TYPGEN V2.53, TimeStamp: %m/%d/%y, %H:%M:%S <", std::localtime(&now));
        return line.data() + std::string(30, ' ') + ">\r\n";
    };
    const std::string before = headLine();
    const std::string shown = compileGsd(GsdText::of("compact").str()).image.substr(0, 78);
    EXPECT_TRUE(shown >= before && shown <= headLine()) << shown;
}

TEST(Compile, Outcomes)
{
    forEachCaseIn("outcomes.txt", [](const std::string& device, const std::string& lines, const std::string& expected) {
        const unsigned before = GsdText::of(device).lineCount() - (lines[0] == '-' ? 1 : 0);
        const GsdText text = GsdText::of(device).change(lines);
        Compiled compiled = compileGsd(text.str(), "GSD", 65000, before);
        const bool atEnd = compiled.errorLine > text.lineCount();
        compiled.errorLine -= before;
        const std::string outcome =
            compiled.result < 0 && atEnd ? std::to_string(compiled.result) + " end" : compiled.outcome();
        EXPECT_EQ(outcome + compiled.warnings, expected) << device << ": " << lines;
    });
}

TEST(Compile, Images)
{
    forEachCaseIn("images.txt", [](const std::string& device, const std::string& lines, const std::string& expected) {
        const Compiled compiled = compileGsd(GsdText::of(device).change(lines).str());
        ASSERT_EQ(compiled.outcome(), "0") << device << ": " << lines;
        const std::size_t blank = expected.find(' ');
        const std::string wanted = expected.substr(blank + 1);
        if (expected[0] == 'R') {
            EXPECT_NE(compiled.records().find(wanted), std::string::npos) << device << ": " << lines << '\n'
                                                                          << wanted << '\n'
                                                                          << compiled.records();
            return;
        }
        std::size_t position = std::stoul(expected.substr(1, blank - 1));
        if (expected[0] != 'L')
            position += compiled.image.find("\r\n") + (expected[0] == 'H' ? 2 : 102);
        EXPECT_EQ(inShort(compiled.image.substr(position)).substr(0, wanted.size()), wanted) << device << ": " << lines;
    });
}

TEST(Compile, MissingMandatoryKeywords)
{
    const char* const keywords[] = {"Vendor_Name",    "Model_Name",          "Revision",         "Ident_Number",
                                    "Protocol_Ident", "Station_Type",        "Hardware_Release", "Software_Release",
                                    nullptr,          "Min_Slave_Intervall", "9.6_supp",         "MaxTsdr_9.6",
                                    "Max_Module",     "Max_Input_Len",       "Max_Output_Len",   "Max_Data_Len"};
    for (std::size_t i = 0; i < std::size(keywords); ++i) {
        if (keywords[i] == nullptr)
            continue;
        const Compiled compiled = compileGsd(GsdText::of("modular").change('-' + std::string(keywords[i])).str());
        EXPECT_EQ(compiled.outcome(), "-204 18") << keywords[i];
        for (std::size_t k = 0; k < compiled.found.size(); ++k)
            EXPECT_EQ(compiled.found[k], k == i ? 0 : k == 8 || k > 15 ? 255 : 1) << keywords[i] << ' ' << k;
    }
    // A baud rate that is not supported has been found too; a compact station needs no lengths.
    const Compiled compact = compileGsd(GsdText::of("compact // -9.6_supp // 45.45_supp = 0 // Max_Module = 3").str());
    EXPECT_EQ(compact.outcome(), "0");
    EXPECT_EQ(compact.found,
              (std::array<std::uint8_t, 18>{1, 1, 1, 1, 1, 1, 1, 1, 255, 1, 1, 1, 255, 255, 255, 255, 255, 255}));
}

TEST(Compile, LanguagesAndOutputNames)
{
    const fs::path before = fs::current_path();
    const std::string text = GsdText::of("compact // Slave_Family = 2").str();
    const std::string folder = fs::path(putFile("a.GSD", text)).parent_path().string();
    forEachCase("GSD > X Schaltger. | GSE > E Switch | GSF > F Ucommut. | GSG > D Schaltger. | GSI > I Commutaz. | GSP "
                "> S Conmut. | "
                "GSS > S Conmut. | gse > E Switch | gSz > X Schaltger. | gs1 > X Schaltger.",
                [&](const std::string& extension, const std::string& expected) {
                    const std::string path = putFile("named." + extension, text);
                    fs::current_path(folder);
                    const cTypDescriptor device(path.c_str(), 1, nullptr);
                    fs::current_path(before);
                    const std::string output = folder + "/__80A1_" + expected[0] + ".410";
                    EXPECT_EQ(fileContents(output).substr(118, expected.size() - 2), expected.substr(2)) << extension;
                    fs::remove(output);
                });
    // The language is that of the names behind Slave_Family only.
    EXPECT_EQ(compileGsd(GsdText::of("compact").str(), "GSE").image.substr(118, 10), "Sonstige  ");
    fs::current_path(folder);
    for (const std::string name : {"GSD", "GS"}) {
        putFile(name, text);
        EXPECT_EQ(cTypDescriptor(name.c_str(), 0, nullptr).getGsdRevision(), name == "GSD" ? 3 : -1);
    }
    fs::current_path(before);
    // A file is written when it is asked for; one that cannot be written is not reported.
    const std::string output = folder + "/a.410";
    EXPECT_EQ(cTypDescriptor((folder + "/a.GSD").c_str(), 0, output.c_str()).getStatus(), kOk);
    EXPECT_FALSE(fs::exists(output));
    EXPECT_EQ(cTypDescriptor((folder + "/a.GSD").c_str(), 1, (output + "/x").c_str()).getStatus(), kOk);
}

TEST(Compile, Refusals)
{
    std::vector<char> image(308);
    const std::string path = putFile("a.GSD", GsdText::of("compact").str());
    for (const auto& [capacity, result] : {std::pair{307U, kErrGsdMemory}, std::pair{308U, kErrGsdImageFull}}) {
        cGsdCompiler compiler(image.data(), capacity);
        EXPECT_EQ(compiler.compile(path.c_str(), 0, nullptr), result);
        EXPECT_EQ(compiler.compile(path.c_str(), 0, nullptr), kErrGsdSecondCompile);
        GSD_WARNING_ITEM none{-1, 0};
        compiler.copySpareItems(&none);
        EXPECT_EQ(compiler.spareCount(), 0U);
        EXPECT_EQ(none.code, -1) << "there are no spare items to copy";
    }
    const std::string folder = fs::path(path).parent_path().string();
    fs::create_directory(folder + "/folder.GSD");
    for (const char* name : {"/none.GSD", "/folder.GSD"}) {
        const cTypDescriptor device((folder + name).c_str(), 0, nullptr);
        EXPECT_EQ(device.getStatus(), kErrGsdOpen) << name;
        EXPECT_EQ(device.getGsdErrLineNr(), 0);
        EXPECT_EQ(device.getGsdRevision(), 0);
    }
    // What was read before a failure stays.
    const std::string broken = "#Profibus_DP\nGSD_Revision = 4\nRevision = \"x\"\nModule = \"A\"\n";
    const cTypDescriptor device(putFile("FGSD", broken).c_str(), 0, nullptr);
    std::array<std::uint8_t, 18> found{};
    device.getGsdFoundMandatories(found.data());
    EXPECT_EQ(found, (std::array<std::uint8_t, 18>{0, 0, 1, 0, 0, 0, 0, 0, 1}));
    EXPECT_EQ(device.getStatus(), kErrGsdNumber);
    EXPECT_EQ(device.getGsdErrLineNr(), 4);
    EXPECT_EQ(device.getGsdRevision(), 4);
}

TEST(Compile, LineEndsAndLimits)
{
    const auto outcome = [](const std::string& text) { return compileGsd(text).outcome(); };
    const std::string head = "#Profibus_DP\n";
    const std::string line = "Fail_Safe = 2"; // refused at its line when it is read as it stands
    const std::string blanks(499 - line.size(), ' ');
    const std::string megabyte(1 << 20, 'x');
    EXPECT_EQ(outcome(""), "-207 1");
    EXPECT_EQ(outcome("#Profibus_DP"), "-204 1");
    EXPECT_EQ(outcome(head), "-204 2");
    EXPECT_EQ(outcome(head + line), "-208 2");
    EXPECT_EQ(outcome("\t#Profibus_DP\r\n\n \v\f\r\n" + line), "-208 4");
    EXPECT_EQ(outcome(head + "Periphery = \"x\"" + '\0' + "y\n" + line), "-208 3");
    EXPECT_EQ(outcome(head + "Fail_Safe" + '\0' + " = 2\n" + line), "-201 2");
    EXPECT_EQ(outcome(head + '\0' + "x\n" + line), "-208 3");

    // A line has at most 499 characters; behind them it may have nothing but comment.
    EXPECT_EQ(outcome(head + line + blanks), "-208 2");
    EXPECT_EQ(outcome(head + line + blanks + ' '), "-201 2");
    EXPECT_EQ(outcome(head + line + blanks + '\0' + megabyte), "-208 2");
    EXPECT_EQ(outcome(head + line + blanks.substr(1) + ";" + megabyte), "-208 2");
    EXPECT_EQ(outcome(head + line + blanks + ";" + megabyte), "-201 2");
    EXPECT_EQ(outcome(head + "Periphery = \";" + megabyte), "-201 2");
    EXPECT_EQ(outcome(head + megabyte + '\n' + line), "-201 2");
    EXPECT_EQ(outcome(head + "x\\\n" + blanks + line + '\n' + line), "-208 4");
    EXPECT_EQ(outcome(head + "x\\\n" + blanks + line + " \n" + line), "-201 3");
    // Before the section nothing can be lost.
    EXPECT_EQ(outcome(megabyte + '\n' + head + line), "-208 3");
    EXPECT_EQ(outcome(std::string("#Profibus_DP").append(488, ' ') + '\n' + line), "-207 2");
    // The buffer that two long lines need is there for the lines behind them.
    const std::string joined = 'y' + std::string(299, 'x') + "\\\n" + std::string(300, 'x') + '\n';
    EXPECT_EQ(outcome(head + joined + line + std::string(602 - line.size(), ' ')), "-208 4");
    EXPECT_EQ(outcome(head + joined + line + std::string(603 - line.size(), ' ')), "-201 4");
}

TEST(Construction, FromTypeFiles)
{
    struct Case {
        const char* name;
        std::size_t size;
        int status;
        std::size_t capacity;
    };
    const Case cases[] = {{"a.410", 0, kErrFile, 219},
                          {"a.410", 10, kOk, 219},
                          {"a.GS", 219, kOk, 220},
                          {"GS", 65534, kOk, 65535},
                          {"a.410", 65535, kErrFile, 0}};
    for (const Case& c : cases) {
        const std::string contents(c.size, 'x');
        const cTypDescriptor device(putFile(c.name, contents).c_str(), 1, nullptr);
        EXPECT_EQ(device.getStatus(), c.status) << c.size;
        Image image;
        EXPECT_EQ(readTypeFile(putFile(c.name, contents).c_str(), image), c.status) << c.size;
        EXPECT_EQ(std::string(image.characters.get(), image.capacity),
                  c.capacity == 0 ? "" : contents + std::string(c.capacity - c.size, '\0'))
            << c.size;
        std::uint8_t found = 77;
        device.getGsdFoundMandatories(&found);
        EXPECT_EQ(found, 77);
        EXPECT_EQ(device.getGsdErrLineNr(), -1);
        EXPECT_EQ(device.getGsdRevision(), -1);
        EXPECT_EQ(device.getGsdCntOfWarnings(), 0);
    }
    const std::string folder = fs::path(putFile("x", "")).parent_path().string();
    for (const std::string& path : {folder, folder + "/none.410", std::string()})
        EXPECT_EQ(cTypDescriptor(path.c_str(), 0, nullptr).getStatus(), kErrFile) << path;
    EXPECT_EQ(cTypDescriptor(static_cast<const char*>(nullptr), 0, nullptr).getStatus(), kErrFile);
}

} // namespace
