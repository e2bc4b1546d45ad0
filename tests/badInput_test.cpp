// GSD files that nobody wrote: whatever the bytes, a compilation ends with a stated code and touches no memory but its
// own.

#include "descriptor/resultCodes.h"
#include "gsd/keywordTable.h"
#include "tests/gsdText.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

using namespace typdescriptor::internal;

namespace {

/// Compiles texts and keeps their results, which are 0 or what the contents of a file can give.
struct Results {
    void add(const std::string& text)
    {
        static const std::set<int> notOfContents{kErrGsdKeyword, kErrGsdMemory, kErrGsdOpen, kErrGsdSecondCompile};
        const int result = compileGsd(text, "GSD", 20000).result;
        EXPECT_TRUE(result == kOk || (result <= kErrGsdSyntax && result >= kErrGsdStringLen)) << result;
        EXPECT_FALSE(notOfContents.contains(result)) << result;
        seen.insert(result);
    }

    std::set<int> seen;
};

TEST(BadInput, BytesAbove127AreOrdinaryCharacters)
{
    std::string all;
    for (int c = 128; c < 256; ++c)
        all += static_cast<char>(c);
    const Compiled compiled =
        compileGsd(GsdText::of("compact")
                       .change("-Vendor_Name // Vendor_Name = \"" + all.substr(80, 10) + "\" // " + all +
                               " = 1 // Unit_Diag_Bit(0) = \"" + all.substr(0, 32) + '"')
                       .str());
    EXPECT_EQ(compiled.outcome(), "0");
    EXPECT_EQ(compiled.image.substr(78 + 27, 10), all.substr(80, 10));
    EXPECT_NE(compiled.image.find("\"0\"" + all.substr(0, 30) + "\"1\""), std::string::npos);
    for (const char c : all)
        EXPECT_EQ(compileGsd("#Profibus_DP\nFail_Safe = 1" + std::string(1, c)).outcome(), "-208 2");
}

TEST(BadInput, MoreThanAnImageHolds)
{
    for (const char* block :
         {"Module = \"M\" 0x11\nExt_Module_Prm_Data_Len = 1\nEndModule\n", "Module = \"M\" 0x11,0x21\nEndModule\n",
          "ExtUserPrmData = 1 \"A\"\nUnsigned8 0\nEndExtUserPrmData\nExt_User_Prm_Data_Ref(0) = 1\n"}) {
        std::string text = GsdText::of("modular // Max_User_Prm_Data_Len = 237").str();
        for (int i = 0; i < 100000; ++i)
            text += block;
        EXPECT_EQ(compileGsd(text).result, kErrGsdImageFull) << block;
    }
}

TEST(BadInput, DamagedDevices)
{
    const std::string pieces[] = {
        " = ", "(", ")",    "\"", "\"x\"", " 1",           "0x",   "-",    "1,2",
        "3-5", "@", "\\\n", "\n", ";",     "[Slotnumber]", "\xFF", {'\0'}, std::string(300, ' ')};
    std::mt19937 random(11);
    const auto piece = [&](const std::string& whole) -> std::string {
        switch (random() % 4) {
        case 0:
            return pieces[random() % std::size(pieces)];
        case 1:
            return '\n' + std::string(GsdKeywordTable::kRows[random() % GsdKeywordTable::kCount].spelling);
        case 2:
            return {static_cast<char>(random())};
        default:
            return whole.substr(random() % whole.size(), random() % 60);
        }
    };
    Results results;
    for (const std::string& source : exampleFiles()) {
        const std::string whole = fileContents(source);
        for (int round = 0; round < 200; ++round) {
            std::string text = whole;
            for (std::size_t count = 1 + random() % 4; count > 0; --count) {
                const std::size_t at = random() % text.size();
                if (random() % 3 == 0)
                    text[at] = "0123456789\"\n,-\xFE"[random() % 15];
                else if (random() % 2 == 0)
                    text.erase(at, 1 + random() % 30);
                else
                    text.insert(at, piece(whole));
            }
            results.add(text);
        }
    }
    EXPECT_GE(results.seen.size(), 12U); // they come further than the first line
}

} // namespace
