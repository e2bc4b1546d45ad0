// What leaves a descriptor: the object image, the written type file and the order number.

#include "descriptor/cTypDescriptor.h"
#include "tests/gsdText.h"
#include "tests/testHeap.h"
#include "tests/typeFileBuilder.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <memory>
#include <new>
#include <string>

namespace {

constexpr unsigned short in16Bits(int code)
{
    return static_cast<unsigned short>(code);
}

using Device = std::unique_ptr<cTypDescriptor>;

/// A file that may be changed.
TypeFileBuilder changeableFile()
{
    TypeFileBuilder file;
    file.version = "V5.0";
    file.headLine = "Left <DX-7/40   > right";
    return file;
}

/// A valid file of exactly `size` characters: diagnostic texts, and a head line for the rest.
std::string fileOfSize(std::size_t size)
{
    constexpr std::size_t kMaxTexts = 999;
    const std::string deviceText = record::deviceBit(1, '0', '1', "Supply missing");
    const std::string channelText = record::channelError(16, "Wire broken");
    TypeFileBuilder file;
    file.headLine = "h";
    std::size_t room = size - file.build().size();
    for (; file.deviceDiag.size() < kMaxTexts && room >= deviceText.size(); room -= deviceText.size())
        file.deviceDiag.push_back(deviceText);
    for (; room >= channelText.size(); room -= channelText.size())
        file.channelDiag.push_back(channelText);
    file.headLine.append(room, 'h');
    return file.build();
}

TEST(Output, ObjectImageComesBackAsItWas)
{
    std::string fileWithoutEnd = changeableFile().build() + "behind the end";
    fileWithoutEnd.replace(fileWithoutEnd.find("right"), 5, "now\0n", 5);
    const struct {
        const char* name;
        std::string image;
        std::size_t size;
    } cases[] = {
        {"full", TypeFileBuilder::fullFile().build(), TypeFileBuilder::fullFile().build().size()},
        {"ended by the check", fileWithoutEnd, changeableFile().build().size()},
    };
    const std::string trailer("\1\0\0\0\5\0\0\0", 8);
    for (const auto& row : cases) {
        std::string object = row.image + trailer;
        cTypDescriptor device(static_cast<unsigned short>(object.size()), object.data());
        std::string written(row.size + trailer.size(), '?');
        EXPECT_EQ(device.getDataSize(), 0) << row.name;
        EXPECT_EQ(device.writeObject(written.data()), 0) << row.name;
        ASSERT_EQ(device.checkTypeFileContents(), kOk) << row.name;
        EXPECT_EQ(device.getGsdRevision(), 5);
        ASSERT_EQ(device.getDataSize(), written.size()) << row.name;
        for (int round = 0; round < 2; ++round) {
            EXPECT_EQ(device.writeObject(written.data()), 1);
            EXPECT_EQ(written, row.image.substr(0, row.size) + trailer) << row.name;
        }
    }
}

TEST(Output, ObjectImageWithoutRoomForItsTrailerIsEmpty)
{
    for (unsigned short size = 0; size < 8; ++size) {
        cTypDescriptor device(size, nullptr);
        EXPECT_EQ(device.getStatus(), kOk) << size;
        EXPECT_EQ(device.getGsdRevision(), -1) << size;
        EXPECT_EQ(device.checkTypeFileContents(), kErrHeader) << size;
    }
    std::string trailer(8, '\0');
    EXPECT_EQ(cTypDescriptor(8, trailer.data()).checkTypeFileContents(), kErrHeader);
    EXPECT_EQ(cTypDescriptor(8, nullptr).getStatus(), kErrFile);
}

TEST(Output, ObjectSizeWrapsAround)
{
    for (const std::size_t size : {65527U, 65528U, 65534U}) {
        const std::string image = fileOfSize(size);
        ASSERT_EQ(image.size(), size);
        cTypDescriptor device(putFile("large.410", image).c_str(), 0, nullptr);
        ASSERT_EQ(device.checkTypeFileContents(), kOk);
        EXPECT_EQ(device.getDataSize(), (size + 8) % 65536);
        std::string object(size + 8, '?');
        EXPECT_EQ(device.writeObject(object.data()), 1);
        EXPECT_EQ(object.substr(0, size), image);
        EXPECT_EQ(object.substr(size), std::string(4, '\0') + std::string(4, '\xff'));
    }
}

TEST(Output, CategoryIIIsNeitherStoredNorWritten)
{
    const Device device = checked(TypeFileBuilder::categoryIIFile());
    char untouched = '?';
    EXPECT_EQ(device->getDataSize(), 0);
    EXPECT_EQ(device->writeObject(&untouched), 0);
    EXPECT_EQ(untouched, '?');
    EXPECT_EQ(device->changeTypeFilePossible(), 0);
    const std::string target = newFile("new.410");
    EXPECT_EQ(device->writeTypeFile(target.c_str()), in16Bits(kErrNotChangeable));
    EXPECT_FALSE(std::filesystem::exists(target));
}

/// Writes a changeable type file to where it may or may not go.
void expectWritten(const std::string& target, int expected)
{
    SCOPED_TRACE(target);
    const std::string image = changeableFile().build();
    const std::string before = fileContents(target);
    cTypDescriptor device(putFile("source.410", image).c_str(), 0, nullptr);
    EXPECT_EQ(device.writeTypeFile(target.c_str()), in16Bits(kErrMemory)) << "not loaded";
    ASSERT_EQ(device.checkTypeFileContents(), kOk);
    EXPECT_EQ(device.writeTypeFile(target.c_str()), in16Bits(expected));
    EXPECT_EQ(fileContents(target), expected == kOk ? image : before);
    // The order number is open from the moment on at which the target was.
    const bool isOpened = expected == kOk || expected == kErrWrite;
    char text[31];
    EXPECT_EQ(device.getMLFBstring(text), kOk);
    EXPECT_STREQ(text, isOpened ? "DX-7/40   > right\r\nV5.0;\r\nValv" : "DX-7/40");
}

TEST(Output, TypeFileIsWrittenOnlyWhereItMayBe)
{
    TypeFileBuilder fixed = changeableFile();
    fixed.changeable = "N";
    TypeFileBuilder other = changeableFile();
    other.modelName = "Other device";

    expectWritten(newFile("new.410"), kOk);
    expectWritten(putFile("invalid.410", "not a type file;\r\n" + std::string(70000, 'x')), kOk);
    expectWritten(putFile("empty.410", ""), kOk);
    expectWritten(putFile("itself.410", changeableFile().build() + "behind the end"), kOk);
    expectWritten(putFile("changeable.410", other.build()), kOk);
    expectWritten(putFile("protected.410", fixed.build()), kErrTargetProtected);
    expectWritten(std::filesystem::path(putFile("x", "")).parent_path().string(), kErrWriteOpen);
    expectWritten(putFile("x", "") + "/new.410", kErrWriteOpen);
    EXPECT_EQ(checked(changeableFile())->writeTypeFile(nullptr), in16Bits(kErrWriteOpen));
    EXPECT_EQ(checked(fixed)->writeTypeFile(newFile("new.410").c_str()), in16Bits(kErrNotChangeable));
}

TEST(Output, FullDeviceIsNoticed)
{
    if (!std::filesystem::exists("/dev/full"))
        GTEST_SKIP() << "this system has no device that is always full";
    expectWritten("/dev/full", kErrWrite);
    TypeFileBuilder large = changeableFile(); // larger than what a stream holds back until it is closed
    large.maxModule = "244";
    large.presetSlots.assign(244, record::presetSlot("193\"000\"000\"170\""));
    EXPECT_EQ(checked(large)->writeTypeFile("/dev/full"), in16Bits(kErrWrite));
}

TEST(Output, GsdFilesThatCompileAreProtected)
{
    const std::string gsd = GsdText::of("compact // Module = 'In' 0x10 // EndModule").str();
    const std::string target = putFile("drive.gsd", gsd);
    const std::string broken = putFile("broken.gsd", gsd + "Vendor_Name=\"twice\"\n");
    const Device device = checked(changeableFile());
    EXPECT_EQ(device->writeTypeFile(target.c_str()), in16Bits(kErrTargetProtected));
    EXPECT_EQ(fileContents(target), gsd);
    EXPECT_EQ(device->writeTypeFile(broken.c_str()), kOk);
    EXPECT_EQ(fileContents(broken), changeableFile().build());
}

TEST(Output, OrderNumberIsTrimmedAndClosedAgain)
{
    const struct {
        const char* name;
        std::string headLine;
        int expected;
        const char* text;
        std::string written; // the head line in the file and in the object image
    } cases[] = {
        {"no head line", "", kErrNoOrderNumber, "", ""},
        {"no brackets", "Left DX-7 right", kErrNoOrderNumber, "", "Left DX-7 right"},
        {"no end in 31 characters", "<" + std::string(31, 'o') + ">", kErrNoOrderNumber, "",
         "<" + std::string(31, 'o') + ">"},
        {"blank", "<" + std::string(30, ' ') + ">", kErrNoOrderNumber, "", "<>" + std::string(30, ' ')},
        {"empty", "<>", kErrNoOrderNumber, "", "<>"},
        {"one blank cut", "<DX-7 > right", kOk, "DX-7", "<DX-7>  right"},
        {"white space cut", "<DX 7 \t\v > <right>", kOk, "DX 7", "<DX 7>\t\v   <right>"},
        {"nothing to cut", "<DX-7>   ", kOk, "DX-7", "<DX-7>   "},
        {"thirty characters", "<" + std::string(30, 'o') + ">", kOk, "oooooooooooooooooooooooooooooo",
         "<" + std::string(30, 'o') + ">"},
    };
    for (const auto& row : cases) {
        TypeFileBuilder file = changeableFile();
        file.headLine = row.headLine;
        const Device device = checked(file);
        for (int round = 0; round < 2; ++round) {
            char text[31] = "untouched";
            EXPECT_EQ(device->getMLFBstring(text), in16Bits(row.expected)) << row.name;
            EXPECT_STREQ(text, row.text) << row.name;
        }
        TYPEFILE_COM_QX410 record{};
        device->getCOMTypeData(&record);
        EXPECT_STREQ(record.orderNumber, row.text) << row.name;

        file.headLine = row.written;
        const std::string expected = file.build();
        std::string object(device->getDataSize(), '?');
        EXPECT_EQ(device->writeObject(object.data()), 1);
        EXPECT_EQ(object.substr(0, object.size() - 8), expected) << row.name;
        for (int round = 0; round < 2; ++round) {
            const std::string target = newFile("new.410");
            EXPECT_EQ(device->writeTypeFile(target.c_str()), kOk) << row.name;
            EXPECT_EQ(fileContents(target), expected) << row.name;
        }
    }
    char text[31] = "untouched";
    EXPECT_EQ(descriptorOf(changeableFile().build())->getMLFBstring(text), in16Bits(kErrMemory));
    EXPECT_STREQ(text, "untouched");
}

TEST(Output, HeadLineIsReadAroundTheOrderNumberInEveryState)
{
    const Device device = checked(changeableFile());
    const auto record = [&device] {
        TYPEFILE_COM_QX410 fields{};
        device->getCOMTypeData(&fields);
        return std::string(fields.headLine) + "|" + fields.orderNumber;
    };
    char text[31];
    EXPECT_EQ(record(), "Left  right|DX-7/40   ");
    EXPECT_EQ(device->getMLFBstring(text), kOk);
    EXPECT_EQ(record(), "Left  right|DX-7/40");
    EXPECT_EQ(device->writeTypeFile(newFile("new.410").c_str()), kOk);
    EXPECT_EQ(record(), "Left     right|DX-7/40>    right\r\nV5.0;\r\nValv");
}

TEST(Output, WrittenOrderNumberIsHandedOutToItsThirtiethCharacter)
{
    TypeFileBuilder file = changeableFile();
    file.headLine = "<DX-7>" + std::string(40, ' ');
    const Device device = checked(file);
    EXPECT_EQ(device->writeTypeFile(newFile("new.410").c_str()), kOk);
    char text[31];
    EXPECT_EQ(device->getMLFBstring(text), kOk);
    EXPECT_EQ(text, "DX-7>" + std::string(25, ' '));
}

TEST(Output, TrimmingStaysInTheHeadLine)
{
    TypeFileBuilder file = changeableFile();
    file.headLine = "short";
    file.modelName = "<DX-7    >";
    const Device device = checked(file);
    char text[31];
    EXPECT_EQ(device->getMLFBstring(text), kOk);
    EXPECT_STREQ(text, "DX-7");
    std::string object(device->getDataSize(), '?');
    EXPECT_EQ(device->writeObject(object.data()), 1);
    EXPECT_EQ(object.substr(0, object.size() - 8), file.build());
}

/// A second object that shares everything with another and is never destroyed.
class Sharer {
public:
    explicit Sharer(const cTypDescriptor& other) : device(new (room) cTypDescriptor(nullptr, 0, nullptr))
    {
        *device = other;
    }
    cTypDescriptor* get() const { return device; }
    cTypDescriptor* operator->() const { return device; }

private:
    alignas(cTypDescriptor) unsigned char room[sizeof(cTypDescriptor)] = {};
    cTypDescriptor* device;
};

TEST(Output, NoNulReachesTheFileThroughASecondBracket)
{
    TypeFileBuilder file = changeableFile();
    file.headLine = "Left <A>B> right";
    const Device device = checked(file);
    EXPECT_EQ(device->checkTypeFileContents(), kOk);
    const std::string target = newFile("new.410");
    EXPECT_EQ(device->writeTypeFile(target.c_str()), kOk);
    EXPECT_EQ(fileContents(target), file.build());
}

TEST(Output, AssignedObjectsWriteWhatTheOtherHasCut)
{
    const Device device = checked(changeableFile());
    const Sharer other(*device);
    char text[31];
    EXPECT_EQ(device->getMLFBstring(text), kOk);
    TypeFileBuilder cut = changeableFile();
    cut.headLine = "Left <DX-7/40>    right";
    std::string object(other->getDataSize(), '?');
    EXPECT_EQ(other->writeObject(object.data()), 1);
    EXPECT_EQ(object.substr(0, object.size() - 8), cut.build());
    const std::string target = newFile("new.410");
    EXPECT_EQ(other->writeTypeFile(target.c_str()), kOk);
    EXPECT_EQ(fileContents(target), cut.build());
}

TEST(Output, AssignedObjectsShareWhatTheirChecksFind)
{
    const std::string image = TypeFileBuilder::fullFile().build();
    for (const bool isCheckedBefore : {false, true}) {
        const long live = liveAllocations();
        {
            const Device device = descriptorOf(image);
            if (isCheckedBefore) {
                EXPECT_EQ(device->checkTypeFileContents(), kOk);
            }
            const Sharer other(*device);
            bool isOtherChecked = isCheckedBefore;
            for (cTypDescriptor* checkedNow : {&*device, other.get(), &*device}) {
                EXPECT_EQ(checkedNow->checkTypeFileContents(), kOk);
                isOtherChecked = isOtherChecked || checkedNow == other.get();
                MLFB_ITEM item;
                SLAVE_TYPE_HEADER_INFO header;
                EXPECT_EQ(device->getMLFBListItem(0, &item), kOk);
                EXPECT_EQ(other->getMLFBListItem(0, &item), isOtherChecked ? kOk : kErrOrderList);
                EXPECT_EQ(other->getSlaveTypeHeader(&header), in16Bits(isOtherChecked ? kOk : kErrHeader));
                EXPECT_EQ(other->getDKMPos(), isOtherChecked ? device->getDKMPos() : nullptr);
                EXPECT_EQ(other->isModular(), isOtherChecked ? device->isModular() : 1);
            }
        }
        EXPECT_EQ(liveAllocations(), live); // one of the two was destroyed, and with it all that they share
    }
}

} // namespace
