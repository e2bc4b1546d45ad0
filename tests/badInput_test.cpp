// GSD files that nobody wrote: whatever the bytes, a compilation ends with a stated code and touches no memory but its
// own.

#include "descriptor/resultCodes.h"
#include "tests/gsdText.h"

#include <gtest/gtest.h>

namespace {

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

} // namespace
