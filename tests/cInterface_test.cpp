// The C interface against the class that it stands for.

#include "c/typdescriptor.h"
#include "descriptor/cTypDescriptor.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

namespace {

using Handle = std::unique_ptr<typdescriptor_device, decltype(&typdescriptor_close)>;

Handle owned(typdescriptor_device* device)
{
    return {device, typdescriptor_close};
}

std::string example(const char* name)
{
    return std::string(TYPDESCRIPTOR_SOURCE_DIR "/examples/gsd/") + name;
}

std::vector<char> objectOf(const Handle& device)
{
    std::vector<char> object(typdescriptor_getDataSize(device.get()));
    EXPECT_EQ(typdescriptor_writeObject(device.get(), object.data()), 1);
    return object;
}

/// Both kinds of an identifier query, by every index.
std::string presetsOf(const Handle& device)
{
    std::string answers;
    int count = 0;
    typdescriptor_isKonfigFixed(device.get(), &count);
    for (int i = 0; i < count; ++i) {
        CSLAVE_SLOT_PRESET_TYPE preset = {};
        MLFB_ITEM item = {};
        EXPECT_EQ(typdescriptor_getFixedSlotId(device.get(), i, &preset), 0);
        EXPECT_EQ(typdescriptor_getFixedSlotItem(device.get(), i, &item), 0);
        EXPECT_EQ(preset.identifier, item.preset.identifier);
        answers += std::to_string(preset.identifier) + item.mlfb + ' ';
    }
    return answers;
}

TEST(CInterface, TakesADeviceThroughItsForms)
{
    const Handle compiled = owned(typdescriptor_open(example("RIO40A17.GSE").c_str(), 0, nullptr));
    ASSERT_EQ(typdescriptor_checkTypeFileContents(compiled.get()), 0);
    std::vector<char> object = objectOf(compiled);

    const Handle restored = owned(typdescriptor_openObject(static_cast<unsigned short>(object.size()), object.data()));
    ASSERT_EQ(typdescriptor_checkTypeFileContents(restored.get()), 0);
    EXPECT_EQ(objectOf(restored), object);
    EXPECT_EQ(presetsOf(restored), presetsOf(compiled));
    EXPECT_EQ(typdescriptor_getGsdRevision(restored.get()), typdescriptor_getGsdRevision(compiled.get()));

    TYPEFILE_COM_QX410 record = {};
    typdescriptor_getCOMTypeData(compiled.get(), &record);
    const Handle built = owned(typdescriptor_openRecord(&record));
    cTypDescriptor same(&record);
    EXPECT_EQ(typdescriptor_getStatus(built.get()), 0);
    EXPECT_EQ(typdescriptor_checkTypeFileContents(built.get()), same.checkTypeFileContents());
}

TEST(CInterface, AnswersForANullHandleAsWhereNothingIsLoaded)
{
    cTypDescriptor nothing(static_cast<const TYPEFILE_COM_QX410*>(nullptr));
    std::array<char, 31> text{};
    int length = 77;
    std::array<unsigned char, 8> bytes{};
    KEYWORD_TYPE keyword = {};
    EXPECT_EQ(typdescriptor_getStatus(nullptr), nothing.getStatus());
    EXPECT_EQ(typdescriptor_checkTypeFileContents(nullptr), nothing.checkTypeFileContents());
    EXPECT_EQ(typdescriptor_getMLFBstring(nullptr, text.data()), nothing.getMLFBstring(text.data()));
    EXPECT_EQ(typdescriptor_getSlotParameters(nullptr, 0, bytes.data(), &length), kErrSlotPrm);
    EXPECT_EQ(length, 0);
    EXPECT_EQ(typdescriptor_hasSPBlockThisKeyWord(nullptr, &keyword, 0, 0), 0);
    EXPECT_EQ(typdescriptor_getDKMPos(nullptr), nullptr);
    EXPECT_EQ(typdescriptor_writeTypeFile(nullptr, "unused.410"), nothing.writeTypeFile("unused.410"));
    EXPECT_STREQ(typdescriptor_resultText(kErrSlotPrm), resultText(kErrSlotPrm));
    typdescriptor_close(nullptr);
}

} // namespace
