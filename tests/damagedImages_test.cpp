// Images that nobody wrote: cut short anywhere, with other characters in them. The answer is a code of the checks, every
// query is safe to ask, and no character outside of what is owned is looked at.

#include "descriptor/cTypDescriptor.h"
#include "fuzz/answers.h"
#include "fuzz/roundTrips.h"
#include "tests/gsdText.h"
#include "tests/testHeap.h"
#include "tests/typeFileBuilder.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace {

/// A copy that ends where unreadable memory begins.
std::unique_ptr<char[]> guardedCopy(std::string_view text)
{
    std::unique_ptr<char[]> copy(new char[text.size()]);
    text.copy(copy.get(), text.size());
    return copy;
}

TEST(DamagedImages, EveryTerminatorMustStand)
{
    for (const std::string& image : imagesOfEachKind()) {
        for (std::size_t p = image.find(";\r\n"); p != std::string::npos; p = image.find(";\r\n", p + 1)) {
            for (const std::size_t position : {p, p + 1, p + 2}) {
                std::string broken = image;
                broken[position] = '0';
                const int code = checkResult(broken);
                EXPECT_TRUE(code != kOk && isCheckCode(code)) << code << " at " << position << " of\n" << image;
                EXPECT_TRUE(code == kErrHeader || position >= 100 || image[1] == '3') << position; // in the header
            }
        }
    }
}

TEST(DamagedImages, CutAnywhere)
{
    const GuardedArrays guarded;
    std::vector<std::string> objects;
    for (const std::string& image : imagesOfEachKind())
        objects.push_back(image + std::string(8, '\0'));
    const std::vector<std::string> sources = exampleFiles();
    for (std::size_t i = 1; i < sources.size(); i += 2) { // half of them, for the sake of time
        cTypDescriptor device(sources[i].c_str(), 0, nullptr);
        EXPECT_EQ(device.checkTypeFileContents(), kOk);
        const std::vector<char> object = objectOf(device);
        objects.emplace_back(object.begin(), object.end());
    }
    std::string answers;
    for (const std::string& object : objects) {
        const long before = guarded.count();
        for (std::size_t length = 0; length <= object.size(); ++length) {
            const auto data = guardedCopy(object.substr(0, length));
            cTypDescriptor device(static_cast<unsigned short>(length), data.get());
            const int code = device.checkTypeFileContents();
            EXPECT_TRUE(isCheckCode(code)) << code << " at " << length << " of\n" << object;
            EXPECT_EQ(code == kOk, length == object.size()) << length << " of\n" << object;
            answers.clear();
            askAnything(device, answers);
        }
        EXPECT_GE(guarded.count() - before, static_cast<long>(2 * object.size())); // the host's object and the image
    }
}

} // namespace
