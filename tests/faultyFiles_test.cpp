// Files that fail while they are read or written: the stated code, and every file is closed.

#include "descriptor/cTypDescriptor.h"
#include "fuzz/answers.h"
#include "tests/faultyFiles.h"
#include "tests/gsdText.h"
#include "tests/typeFileBuilder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include <unistd.h>

namespace {

struct Outcome {
    int status;
    int checked;
    int errorLine;
    std::string answers;
};

/// What a file gives when it is read with those faults.
Outcome readWith(const std::string& path, const FaultyFiles::Faults& faults)
{
    const FaultyFiles faulty(faults);
    cTypDescriptor device(path.c_str(), 0, nullptr);
    EXPECT_EQ(faulty.openFiles(), 0);
    const int status = device.getStatus();
    const int checked = device.checkTypeFileContents();
    std::string answers;
    askAnything(device, answers);
    return {status, checked, device.getGsdErrLineNr(), answers};
}

int lineAt(const std::string& text, std::size_t position)
{
    return 1 + static_cast<int>(std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(position), '\n'));
}

/// A GSD file of more than two blocks, and the type file that comes from it.
class FaultyFilesTest : public testing::Test {
protected:
    FaultyFilesTest()
    {
        for (int i = 0; i < 500; ++i)
            text += "Module = \"M" + std::to_string(i) + "\" 0x10 ; a module of which there are many\nEndModule\n";
        EXPECT_GT(text.size(), 33000U);
        gsd = putFile("faulty.GSD", text);
        typeFile = putFile("faulty.410", "");
        cTypDescriptor device(gsd.c_str(), 1, typeFile.c_str());
        EXPECT_EQ(device.checkTypeFileContents(), kOk);
        answers = answersOf(device);
    }

    std::string text = GsdText::of("modular").str();
    std::string gsd;
    std::string typeFile;
    std::string answers;
};

TEST_F(FaultyFilesTest, ShortReadsAreNoFault)
{
    for (const std::size_t longest : {1U, 7U, 4096U, 16383U}) {
        for (const std::string& path : {gsd, typeFile}) {
            const Outcome outcome = readWith(path, {.longestRead = longest});
            EXPECT_EQ(outcome.checked, kOk) << longest;
            EXPECT_TRUE(outcome.answers == answers) << longest << ' ' << path;
        }
    }
}

TEST_F(FaultyFilesTest, GsdFileThatCannotBeReadToItsEnd)
{
    for (std::size_t position = 0; position < text.size(); position += 211) {
        const Outcome broken = readWith(gsd, {.readable = position, .breaksOff = true});
        EXPECT_EQ(broken.status, kErrGsdOpen) << position;
        EXPECT_EQ(broken.checked, kErrGsdOpen) << position;
        EXPECT_EQ(broken.errorLine, position == 0 ? 0 : lineAt(text, position)) << position;
        // A file that ends early is like one that never was longer.
        const Compiled cut = compileGsd(text.substr(0, position));
        const Outcome ended = readWith(gsd, {.readable = position});
        EXPECT_EQ(ended.status, cut.result) << position;
        EXPECT_EQ(ended.errorLine, cut.result < 0 ? static_cast<int>(cut.errorLine) : -1) << position;
    }
}

TEST_F(FaultyFilesTest, TypeFileThatCannotBeReadToItsEnd)
{
    const std::size_t size = fileContents(typeFile).size();
    for (std::size_t position = 0; position < size; position += 61) {
        EXPECT_EQ(readWith(typeFile, {.readable = position, .breaksOff = true}).status, kErrFile) << position;
        const Outcome shrunk = readWith(typeFile, {.readable = position});
        EXPECT_EQ(shrunk.status, position == 0 ? kErrFile : kOk) << position;
        EXPECT_LT(shrunk.checked, kOk) << position;
    }
    EXPECT_EQ(readWith(typeFile, {.failsToSeek = true}).status, kErrFile);
    EXPECT_EQ(readWith(typeFile, {.isNumber0 = true}).status, kErrFile); // hosts take 0 for no file
}

TEST_F(FaultyFilesTest, FullDisk)
{
    TypeFileBuilder file = TypeFileBuilder().with("version=V5.0+maxModule=244");
    file.presetSlots.assign(244, record::presetSlot("193\"000\"000\"170\""));
    const std::string image = file.build();
    const auto device = descriptorOf(image);
    ASSERT_EQ(device->checkTypeFileContents(), kOk);
    const std::string target = putFile("target.410", "");
    const auto write = [&](const FaultyFiles::Faults& faults) {
        const FaultyFiles faulty(faults);
        const int code = static_cast<short>(device->writeTypeFile(target.c_str()));
        EXPECT_EQ(faulty.openFiles(), 0);
        return code;
    };
    for (std::size_t position = 0; position < image.size(); position += 7) {
        EXPECT_EQ(write({.writable = position}), kErrWrite) << position;
        EXPECT_EQ(fileContents(target), image.substr(0, position));
    }
    EXPECT_EQ(write({.failsToClose = true}), kErrWrite);

    EXPECT_EQ(write({}), kOk); // nothing of that stays
    EXPECT_EQ(fileContents(target), image);
    // A compilation does not report it.
    for (const std::size_t position : {0U, 100U}) {
        const FaultyFiles faulty({.writable = position, .failsToClose = position == 0});
        cTypDescriptor compiled(gsd.c_str(), 1, target.c_str());
        EXPECT_EQ(compiled.checkTypeFileContents(), kOk);
        EXPECT_EQ(faulty.openFiles(), 0);
    }
}

TEST_F(FaultyFilesTest, NothingIsTruncatedThroughDescriptor0)
{
    TypeFileBuilder file = TypeFileBuilder().with("version=V5.0");
    const auto device = descriptorOf(file.build());
    ASSERT_EQ(device->checkTypeFileContents(), kOk);
    const std::string target = putFile("target.410", file.with("changeable=N").build());
    const std::string before = fileContents(target);
    const int input = dup(STDIN_FILENO);
    close(STDIN_FILENO); // the next file that is opened gets the number 0
    const unsigned short result = device->writeTypeFile(target.c_str());
    dup2(input, STDIN_FILENO);
    close(input);
    EXPECT_EQ(static_cast<short>(result), kErrWriteOpen);
    EXPECT_EQ(fileContents(target), before);
}

} // namespace
