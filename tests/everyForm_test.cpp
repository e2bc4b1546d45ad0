// One device type in all its forms gives the same answers: compiled from GSD, read back from the written type file, and
// taken back from its object image; on one thread, and on two threads at once with different descriptors.

#include "descriptor/cTypDescriptor.h"
#include "fuzz/answers.h"
#include "tests/testFiles.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace {

/// What a device says when it is compiled; empty when another form of it says something else.
std::string answersOfEveryForm(const std::string& source, const std::string& output)
{
    cTypDescriptor compiled(source.c_str(), 1, output.c_str());
    cTypDescriptor read(output.c_str(), 0, nullptr);
    if (compiled.checkTypeFileContents() != kOk || read.checkTypeFileContents() != kOk)
        return {};
    std::string object(compiled.getDataSize(), '?');
    std::string again = object;
    compiled.writeObject(object.data());
    cTypDescriptor restored(compiled.getDataSize(), object.data());
    const bool isRestored = restored.checkTypeFileContents() == kOk && restored.writeObject(again.data()) == 1;
    const std::string answers = answersOf(compiled);
    const bool isSame = isRestored && again == object && restored.getGsdRevision() == compiled.getGsdRevision() &&
                        answersOf(read) == answers && answersOf(restored) == answers;
    return isSame ? answers : "";
}

TEST(EveryForm, GivesTheSameAnswersOnEachThread)
{
    const std::vector<std::string> sources = exampleFiles();
    std::vector<std::string> expected;
    for (const std::string& source : sources) {
        expected.push_back(answersOfEveryForm(source, newFile("alone.410")));
        EXPECT_GT(expected.back().size(), 37000U) << source; // every diagnostic bit alone gives that much
    }
    const std::string outputs[] = {newFile("first.410"), newFile("second.410")};
    std::atomic<int> ready = 0;
    std::atomic<int> same = 0;
    constexpr int kRounds = 10;
    const auto work = [&](std::size_t self) {
        ++ready;
        while (ready < 2)
            std::this_thread::yield();
        for (std::size_t i = 0; i < kRounds * sources.size(); ++i) {
            const std::size_t device = (i + self) % sources.size(); // the same one, or its neighbour
            same += answersOfEveryForm(sources[device], outputs[self]) == expected[device] ? 1 : 0;
        }
    };
    std::thread first(work, 0);
    std::thread second(work, 1);
    first.join();
    second.join();
    EXPECT_EQ(same, static_cast<int>(std::size_t{2} * kRounds * sources.size()));
}

} // namespace
