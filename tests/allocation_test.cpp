// Every allocation of the library fails once, alone and together with all behind it: the stated code, no leak, no crash,
// no wrong success, and afterwards the same descriptor or a fresh one works.

#include "descriptor/cTypDescriptor.h"
#include "fuzz/answers.h"
#include "tests/gsdText.h"
#include "tests/hostRecord.h"
#include "tests/testHeap.h"
#include "tests/typeFileBuilder.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace {

/// Makes a descriptor, checks it and asks everything, with one failing allocation after the other. `codes` are the codes
/// of the check in the order in which they come, `codesForGood` those when every later allocation fails as well.
template <class Make>
void expectCodes(Make make, const std::string& codes, const std::string& codesForGood)
{
    std::string complete;
    {
        cTypDescriptor device = make();
        EXPECT_EQ(device.checkTypeFileContents(), kOk);
        askAnything(device, complete);
    }
    std::string answers = complete; // with room, so that only the library allocates
    for (const bool forGood : {false, true}) {
        std::string seen;
        int before = 1;
        bool hasFailed = true;
        for (long successes = 0; hasFailed; ++successes) {
            const long live = liveAllocations();
            int code = kOk;
            int again = kOk;
            bool isUnharmed = false;
            {
                std::optional<FailingNew> failing(std::in_place, successes, forGood);
                cTypDescriptor device = make();
                code = device.checkTypeFileContents();
                isUnharmed = !failing->hasFailed();
                again = code == kOk ? kOk : device.checkTypeFileContents();
                answers.clear();
                askAnything(device, answers);
                hasFailed = failing->hasFailed();
                failing.reset();
                if (code == kOk) {
                    answers.clear();
                    askAnything(device, answers);
                    EXPECT_TRUE(answers == complete) << successes;
                }
            }
            EXPECT_EQ(code == kOk, isUnharmed) << successes;
            EXPECT_EQ(again, code) << "a failure is final";
            EXPECT_EQ(liveAllocations(), live) << successes;
            seen += code == before ? "" : std::to_string(code) + ' ';
            before = code;
        }
        EXPECT_EQ(seen, forGood ? codesForGood : codes);
    }
}

TEST(Allocation, OfEveryFormOfADevice)
{
    const std::string output = putFile("allocated.410", "");
    for (const std::string& source : exampleFiles()) {
        SCOPED_TRACE(source);
        expectCodes([&] { return cTypDescriptor(source.c_str(), 1, output.c_str()); }, "-1 -205 -1 -23 0 ",
                    "-1 -23 0 ");
        expectCodes([&] { return cTypDescriptor(output.c_str(), 0, nullptr); }, "-1 -23 0 ", "-1 -23 0 ");
    }
    for (const std::string& image : imagesOfEachKind()) {
        SCOPED_TRACE(image);
        std::string object = image + std::string(8, '\0');
        const auto make = [&] { return cTypDescriptor(static_cast<unsigned short>(object.size()), object.data()); };
        cTypDescriptor device = make();
        const long live = liveAllocations();
        EXPECT_EQ(device.checkTypeFileContents(), kOk);
        const char* codes = liveAllocations() > live ? "-1 -23 0 " : "-1 0 "; // nothing in it that takes memory
        expectCodes(make, codes, codes);
    }
    const auto plain = checked(TypeFileBuilder());
    HostRecord record(*plain);
    record.fields.baudRates[3] = 0x00010001; // what is handed out stands elsewhere than what is taken
    expectCodes([&] { return cTypDescriptor(&record.fields); }, "-1 -23 0 ", "-1 -23 0 ");
}

TEST(Allocation, OfQueriesThatParseABlockAgain)
{
    const auto device = checked(TypeFileBuilder::fullFile());
    unsigned char bytes[237];
    int length = 7;
    _parastruct prm;
    KEYWORD_TYPE keyword;
    for (const long successes : {0, 1}) {
        const auto failing = [successes](auto query) {
            const FailingNew heap(successes, false);
            const int result = query();
            return heap.hasFailed() ? result : 1;
        };
        EXPECT_EQ(device->hasSPBlockThisKeyWord(&keyword, 0, 0), 1);
        EXPECT_EQ(failing([&] { return device->hasSPBlockThisKeyWord(&keyword, 0, 0); }), 0);
        EXPECT_EQ(failing([&] { return device->getStructuredSlotParameter(0, 0, &prm); }), kErrSlotPrm);
        EXPECT_EQ(failing([&] { return device->getSlotParameters(0, bytes, &length); }), kErrSlotPrm);
        EXPECT_EQ(length, 0);
    }
}

/// A file that is there when the type file is to be written.
struct Target {
    std::string name;
    std::string contents;
    int code; // what writing over it gives
};

TEST(Allocation, OfWritingOverAFile)
{
    const TypeFileBuilder file = TypeFileBuilder().with("version=V5.0");
    const std::string gsd = GsdText::of("compact // Module = 'In' 0x10 // EndModule").str();
    const Target targets[] = {{"empty.410", "", kOk},
                              {"changeable.410", file.with("modelName=Other").build(), kOk},
                              {"protected.410", file.with("changeable=N").build(), kErrTargetProtected},
                              {"protected.gsd", gsd, kErrTargetProtected},
                              {"broken.gsd", gsd + "Vendor_Name = 1\n", kOk}};
    for (const Target& target : targets) {
        for (const bool forGood : {false, true}) {
            bool hasFailed = true;
            for (long successes = 0; hasFailed; ++successes) {
                const auto device = checked(file);
                const std::string path = putFile(target.name, target.contents);
                const long live = liveAllocations();
                int code = kOk;
                {
                    const FailingNew failing(successes, forGood);
                    code = static_cast<short>(device->writeTypeFile(path.c_str()));
                    hasFailed = failing.hasFailed();
                }
                EXPECT_EQ(liveAllocations(), live);
                // One failure may be made good by trying again; a target that must not be touched never is.
                EXPECT_TRUE(code == target.code ? !hasFailed || !forGood : hasFailed && code == kErrMemory)
                    << target.name << ' ' << successes << ": " << code;
                EXPECT_EQ(fileContents(path), code == kOk ? file.build() : target.contents);
                EXPECT_EQ(static_cast<short>(device->writeTypeFile(path.c_str())), target.code);
            }
        }
    }
}

} // namespace
