// The code of the page "Building the telegrams" against the host library, which works the same out another way.

#include "host/configuration.h"
#include "host/loadDevice.h"
#include "testFiles.h"

#include <gtest/gtest.h>

#include <cstring>

using namespace typdescriptor;

// Taken out of the header by the build, and compiled as C++11.
using Bytes = std::vector<unsigned char>;
void appendIdentifier(const CSLAVE_SLOT_PRESET_TYPE& preset, Bytes& configuration);
Bytes stationParameters(const cTypDescriptor& device);
Bytes moduleParameters(cTypDescriptor& device, const MLFB_ITEM& module, int slot);
long defaultOf(const _parastruct& parameter);
bool putValue(const _parastruct& parameter, int standardBytes, long value, Bytes& bytes);

namespace {

/// What of the page the examples gave reason to use: a page that nothing tries may say anything.
struct Tried {
    int bothLengths = 0;
    int slotNumbers = 0;
    int binaryDefaults = 0; // that would be another number in decimal
    int words = 0;          // whose two bytes differ
    int commonLengths = 0;
};

struct Telegrams {
    Bytes parameters; // behind the standard ones
    Bytes configuration;
};

struct OpenDevice {
    std::string typeFile;
    cTypDescriptor descriptor;
    Device device; // as the type file has it, which is what the class knows

    explicit OpenDevice(const std::string& gsd)
        : typeFile(newFile("manual.410")), descriptor(gsd.c_str(), 1, typeFile.c_str())
    {
        EXPECT_EQ(descriptor.checkTypeFileContents(), kOk) << gsd;
        device = loadDevice(typeFile);
    }
};

void plug(OpenDevice& open, const MLFB_ITEM& item, int slot, Telegrams& telegrams, Tried& tried)
{
    const CSLAVE_SLOT_PRESET_TYPE& preset = item.preset;
    tried.bothLengths += preset.kind == 5 && preset.identifier >> 6 == 3 && preset.lengthByte1 != preset.lengthByte2;
    tried.slotNumbers +=
        item.spIndex >= 0 && !open.device.blocks[static_cast<std::size_t>(item.spIndex)].slotNumbers.empty();
    appendIdentifier(preset, telegrams.configuration);
    const Bytes bytes = moduleParameters(open.descriptor, item, slot);
    telegrams.parameters.insert(telegrams.parameters.end(), bytes.begin(), bytes.end());
}

/// The telegrams with every preset slot, and one module behind them.
Telegrams byThePage(OpenDevice& open, std::size_t module, Tried& tried)
{
    Telegrams telegrams{stationParameters(open.descriptor), {}};
    int slots = 0;
    open.descriptor.isKonfigFixed(&slots);
    for (int i = 0; i < slots; ++i) {
        MLFB_ITEM item;
        open.descriptor.getFixedSlotId(i, &item);
        plug(open, item, i + 1, telegrams, tried);
    }
    if (module >= open.device.modules.size())
        return telegrams;
    const int ordered = open.descriptor.getMLFBListCnt();
    if (const int index = static_cast<int>(module); index < ordered) {
        MLFB_ITEM item;
        open.descriptor.getMLFBListItem(index, &item);
        plug(open, item, slots + 1, telegrams, tried);
        return telegrams;
    }
    const int list = static_cast<int>(module) - ordered;
    int isFixed = 0;
    const int parts = open.descriptor.getSKListCnt(list, &isFixed);
    for (int i = 0; i < parts; ++i) {
        LSK_ITEM part;
        open.descriptor.getSKListItem(list, i, &part);
        plug(open, part.item, slots + 1, telegrams, tried);
    }
    return telegrams;
}

/// Puts every value that the class and the host library know the parameter by, and compares the bytes.
void tryValues(const _parastruct& parameter, int standardBytes, const ParameterArea& area, std::size_t index,
               const Device& device, Tried& tried)
{
    const Parameter& known = area.parameters[index];
    Bytes bytes = area.bytes;
    ASSERT_TRUE(putValue(parameter, standardBytes, defaultOf(parameter), bytes));
    EXPECT_EQ(bytes, area.bytes) << known.name << ": its default is in the bytes already";
    tried.binaryDefaults += defaultOf(parameter) != std::strtol(parameter.defaultValue, nullptr, 10);
    if (standardBytes == 0)
        return;
    for (const std::int64_t value : {known.minimum, known.maximum}) {
        if (!known.allows(value))
            continue;
        Plan plan;
        plan.values = {{0, '#' + std::to_string(index + 1), std::to_string(value)}};
        const Bytes telegram = valuesOf(configure(device, plan).userParameters);
        bytes = area.bytes;
        EXPECT_TRUE(putValue(parameter, standardBytes, static_cast<long>(value), bytes));
        EXPECT_EQ(bytes, Bytes(telegram.begin(), telegram.begin() + static_cast<std::ptrdiff_t>(bytes.size())))
            << known.name << " = " << value;
        tried.words += known.bitCount == 16 && (value & 0xFF) != (value >> 8 & 0xFF);
    }
}

void tryParameters(OpenDevice& open, Tried& tried)
{
    const Device& device = open.device;
    _parastruct parameter;
    for (std::size_t i = 0; i < device.parameters.parameters.size(); ++i) {
        open.descriptor.getParaStruct(static_cast<int>(i), &parameter);
        tryValues(parameter, 7, device.parameters, i, device, tried);
    }
    for (std::size_t block = 0; block < device.blocks.size(); ++block) {
        for (std::size_t i = 0; i < device.blocks[block].parameters.size(); ++i) {
            open.descriptor.getStructuredSlotParameter(static_cast<int>(block), static_cast<int>(i), &parameter);
            tryValues(parameter, 0, device.blocks[block], i, device, tried);
        }
    }
}

/// The lengths, and that nothing compiled can be written again.
void tryRest(OpenDevice& open, Tried& tried)
{
    SLAVE_TYPEDATA_TYPE data;
    TYPEFILE_COM_QX410 record{};
    open.descriptor.getSlaveTypeData(&data);
    open.descriptor.getCOMTypeData(&record);
    char digits[5];
    std::snprintf(digits, sizeof digits, "%03d", data.userPrmDataLenRead);
    if (record.userPrmDataLen[0] == 'V') {
        ++tried.commonLengths;
        EXPECT_EQ(data.commonPrmDataLen + 7, data.userPrmDataLen);
        EXPECT_EQ(std::strncmp(record.userPrmDataLen + 1, digits, 2), 0) << record.userPrmDataLen;
    } else {
        EXPECT_EQ(data.commonPrmDataLen, 0);
        EXPECT_EQ(data.userPrmDataLen, data.userPrmDataLenRead);
        EXPECT_STREQ(record.userPrmDataLen, digits);
    }
    cTypDescriptor again(open.typeFile.c_str(), 0, nullptr);
    ASSERT_EQ(again.checkTypeFileContents(), kOk);
    for (cTypDescriptor* descriptor : {&open.descriptor, &again})
        EXPECT_EQ(static_cast<short>(descriptor->writeTypeFile(newFile("again.410").c_str())), kErrNotChangeable);
}

TEST(Manual, TelegramsOfThePageAreThoseOfTheHostLibrary)
{
    Tried tried;
    for (const std::string& file : exampleFiles()) {
        SCOPED_TRACE(file);
        OpenDevice open(file);
        tryRest(open, tried);
        if (open.device.isKgp())
            continue;
        tryParameters(open, tried);
        for (std::size_t module = 0; module < std::max<std::size_t>(open.device.modules.size(), 1); ++module) {
            const std::size_t slot = open.device.presetSlots.size() + 1;
            Plan plan;
            if (!open.device.modules.empty() && slot <= open.device.slotCount())
                plan.modules = {{static_cast<unsigned>(slot), '#' + std::to_string(module + 1)}};
            const Configuration expected = configure(open.device, plan);
            const Telegrams telegrams = byThePage(open, plan.modules.empty() ? std::size_t(-1) : module, tried);
            EXPECT_EQ(telegrams.parameters, valuesOf(expected.userParameters));
            EXPECT_EQ(telegrams.configuration, valuesOf(expected.configuration));
        }
    }
    EXPECT_GT(tried.bothLengths, 0);
    EXPECT_GT(tried.slotNumbers, 0);
    EXPECT_GT(tried.binaryDefaults, 0);
    EXPECT_GT(tried.words, 0);
    EXPECT_GT(tried.commonLengths, 0);
}

} // namespace
