// The generator beyond what a few lines show: counts for which the layout has no room, shared parameter blocks
// against the rule pair by pair, and the end of the image.

#include "descriptor/resultCodes.h"
#include "generator/sharePrmBlocks.h"
#include "generator/typeFileGenerator.h"
#include "tests/gsdText.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

using namespace typdescriptor::internal;

namespace {

// Counts of four digits in a layout made for three: heads of lists end where they always end, other numbers take what they
// need, and what follows stands where it always stands.
TEST(Generator, CountsAbove999)
{
    std::string presets;
    std::string modules;
    std::string diagnoses;
    std::string prms = "Max_User_Prm_Data_Len = 1\n";
    for (int i = 1; i <= 1000; ++i) {
        const std::string number = std::to_string(i);
        modules += "Module = \"M\" 0\nEndModule\n";
        presets += "Module = \"M\" 0\nPreset = 1\nEndModule\n";
        diagnoses += "Unit_Diag_Bit(0) = \"d\"\nChannel_Diag(16) = \"c\"\n";
        prms += "PrmText = " + number + "\nText(0) = \"t\"\nEndPrmText\nExtUserPrmData = " + number +
                " \"p\"\nUnsigned8 0\nPrm_Text_Ref = " + number +
                "\nEndExtUserPrmData\nExt_User_Prm_Data_Ref(0) = " + number + '\n';
    }
    struct Case {
        const char* device;
        const std::string& lines;
        std::vector<const char*> records;
    };
    const Case cases[] = {
        {"compact",
         presets,
         {"|KX1000;\r000|000|", "|LSK100|SK001\"M{29}\"|", "|SK999\"M{29}\"|", "|SK1000M{NUL}{28}\"|KX001|"}},
        {"modular", modules, {"|MLFB100|\"M{29}\"000\"SP000\"|"}},
        {"compact", diagnoses, {"|DKM100|DBO001\"0\"d", "|DKK1000;\rKFC16\"c"}},
        {"compact",
         prms,
         {"|PSL1000;\rPS007\"p", "HI999\"|PS007\"p", "HI1000\";\rHTT1000|I001|L1|", "|HI999|L1|", "|HI1000;\rL1|"}},
    };
    for (const Case& c : cases) {
        const Compiled compiled = compileGsd(GsdText::of(c.device).str() + c.lines, "GSD", 1000000);
        EXPECT_EQ(compiled.outcome(), "0");
        for (const char* record : c.records)
            EXPECT_NE(compiled.records().find(record), std::string::npos) << record;
    }
}

// The stated rule, pair by pair.
void sharePairByPair(GSD_LIST<GSD_MODULE_PRM>& modules, GSD_LIST<GSD_MODULE_PRM>& list)
{
    for (GSD_MODULE_PRM& m : list) {
        if (m.blockNumber < 1)
            continue;
        for (GSD_MODULE_PRM& n : modules) {
            if (n.blockNumber >= m.blockNumber)
                break;
            if (n.blockNumber < 1 || !samePrmBlock(m, n))
                continue;
            const std::int32_t old = m.blockNumber;
            m.blockNumber = n.blockNumber;
            m.ownsBlock = false;
            for (GSD_MODULE_PRM& other : modules)
                other.blockNumber -= other.blockNumber > old ? 1 : 0;
            break;
        }
    }
}

TEST(SharedBlocks, AsPairByPair)
{
    for (unsigned seed = 0; seed < 2000; ++seed) {
        GsdModel fast;
        GsdModel slow;
        for (GsdModel* model : {&fast, &slow}) {
            std::mt19937 random(seed);
            const std::size_t kinds = 1 + random() % 3;
            for (std::size_t count = random() % 25; count > 0; --count) {
                GSD_MODULE_PRM prm;
                prm.data = model->arena.bytes(random() % kinds);
                if (!prm.data.empty())
                    prm.data[0] = static_cast<std::uint8_t>(random() % kinds);
                prm.dataEnd = static_cast<std::int32_t>(random() % 2);
                for (std::size_t refs = random() % kinds; refs > 0; --refs)
                    prm.refs.append(model->arena, {static_cast<std::uint32_t>(random() % kinds),
                                                   static_cast<std::uint32_t>(random() % 2)});
                if (!prm.data.empty() || !prm.refs.empty())
                    prm.blockNumber = model->nextParamModuleNumber++;
                (random() % 3 == 0 ? model->kgpModulePrms : model->modulePrms).append(model->arena, prm);
            }
        }
        sharePrmBlocks(fast);
        sharePairByPair(slow.modulePrms, slow.modulePrms);
        sharePairByPair(slow.modulePrms, slow.kgpModulePrms);
        for (const auto list : {&GsdModel::modulePrms, &GsdModel::kgpModulePrms}) {
            auto expected = (slow.*list).begin();
            for (const GSD_MODULE_PRM& prm : fast.*list) {
                ASSERT_EQ(prm.blockNumber, (*expected).blockNumber) << seed;
                ASSERT_EQ(prm.ownsBlock, (*expected).ownsBlock) << seed;
                ++expected;
            }
        }
    }
}

TEST(ImageEnd, Headroom)
{
    std::vector<char> buffer(65000);
    OutputImage image(buffer.data(), 65000);
    EXPECT_EQ(image.imageAt(64919), buffer.data() + 64919);
    EXPECT_THROW(image.imageAt(64920), ImageFull);

    // The last record may begin where 80 characters are left behind it and one more.
    const std::string text = GsdText::of("compact").str();
    const auto length = static_cast<std::uint32_t>(compileGsd(text).image.size());
    const std::uint32_t needed = length - 9 + 81;
    EXPECT_EQ(compileGsd(text, "GSD", needed).image.size(), length);
    for (std::uint32_t capacity = 308; capacity < needed; ++capacity)
        EXPECT_EQ(compileGsd(text, "GSD", capacity).result, kErrGsdImageFull) << capacity;
    GsdModel model;
    OutputImage tooSmall(buffer.data(), 200);
    EXPECT_EQ(TypeFileGenerator(model, tooSmall).generateTypeFile(), kErrGsdImageFull);
}

TEST(Generator, UndefinedReference)
{
    std::vector<char> buffer(65000);
    OutputImage image(buffer.data(), 65000);
    GsdModel model;
    model.extUserPrmRefs.append(model.arena, {5, 3});
    EXPECT_EQ(TypeFileGenerator(model, image).generateTypeFile(), kErrGsdReference);
    EXPECT_EQ(inShort({buffer.data() + 78 + 100 + 93, 30}), "007|PV000|PSL001|PS010\"{NUL}");

    OutputImage other(buffer.data(), 65000);
    GsdModel ofModule;
    ofModule.extPrmUsed = true;
    GSD_MODULE_PRM prm;
    prm.blockNumber = 1;
    ofModule.modulePrms.append(ofModule.arena, prm).refs.append(ofModule.arena, {5, 0});
    EXPECT_EQ(TypeFileGenerator(ofModule, other).generateTypeFile(), kErrGsdReference);
}

} // namespace
