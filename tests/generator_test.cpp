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
void sharePairByPair(GSD_LIST<GSD_MODULE>& modules, GSD_LIST<GSD_MODULE>& list)
{
    for (GSD_MODULE& m : list) {
        if (m.paramModuleNumber < 1)
            continue;
        for (GSD_MODULE& n : modules) {
            if (n.paramModuleNumber >= m.paramModuleNumber)
                break;
            if (n.paramModuleNumber < 1 || !samePrmBlock(m, n))
                continue;
            const std::int32_t old = m.paramModuleNumber;
            m.paramModuleNumber = n.paramModuleNumber;
            m.ownsPrmBlock = false;
            for (GSD_MODULE& other : modules)
                other.paramModuleNumber -= other.paramModuleNumber > old ? 1 : 0;
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
                GSD_MODULE module;
                module.setExtModulePrmData(model->arena.bytes(random() % kinds));
                if (!module.extModulePrmData().empty())
                    module.extModulePrmData()[0] = static_cast<std::uint8_t>(random() % kinds);
                module.prmDataEnd = static_cast<std::int32_t>(random() % 2);
                for (std::size_t refs = random() % kinds; refs > 0; --refs)
                    module.refs.append(model->arena, {static_cast<std::uint32_t>(random() % kinds),
                                                      static_cast<std::uint32_t>(random() % 2)});
                if (!module.extModulePrmData().empty() || !module.refs.empty())
                    module.paramModuleNumber = model->nextParamModuleNumber++;
                (random() % 3 == 0 ? model->kgpModules : model->modules).append(model->arena, module);
            }
        }
        sharePrmBlocks(fast);
        sharePairByPair(slow.modules, slow.modules);
        sharePairByPair(slow.modules, slow.kgpModules);
        for (const auto list : {&GsdModel::modules, &GsdModel::kgpModules}) {
            auto expected = (slow.*list).begin();
            for (const GSD_MODULE& module : fast.*list) {
                ASSERT_EQ(module.paramModuleNumber, (*expected).paramModuleNumber) << seed;
                ASSERT_EQ(module.ownsPrmBlock, (*expected).ownsPrmBlock) << seed;
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
    GSD_MODULE module;
    module.paramModuleNumber = 1;
    ofModule.modules.append(ofModule.arena, module).refs.append(ofModule.arena, {5, 0});
    EXPECT_EQ(TypeFileGenerator(ofModule, other).generateTypeFile(), kErrGsdReference);
}

} // namespace
