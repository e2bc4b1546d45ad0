// Every allocation on the way from a GSD file to a written type file fails once: the stated code, no leak, no crash.

#include "descriptor/cTypDescriptor.h"
#include "tests/failingNew.h"
#include "tests/gsdText.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>

namespace {

TEST(Allocation, EachMayFail)
{
    const std::filesystem::path examples = std::filesystem::path(TYPDESCRIPTOR_SOURCE_DIR) / "examples/gsd";
    for (const char* name : {"SLOTPARM.GSE", "KGPUNIT7.GSD"}) {
        const std::string source = (examples / name).string();
        const std::string output = putFile("allocated.410", "");
        std::set<int> outcomes;
        bool hasFailed = true;
        for (long successes = 0; hasFailed; ++successes) {
            int checked = kOk;
            int readChecked = kOk;
            {
                const FailingNew failing(successes);
                cTypDescriptor compiled(source.c_str(), 1, output.c_str());
                checked = compiled.checkTypeFileContents();
                cTypDescriptor read(output.c_str(), 0, nullptr);
                readChecked = read.checkTypeFileContents();
                hasFailed = failing.hasFailed();
            }
            EXPECT_EQ(checked == kOk && readChecked == kOk, !hasFailed) << successes;
            outcomes.insert(checked);
        }
        EXPECT_EQ(outcomes, (std::set<int>{kErrGsdMemory, kErrMemory, kErrFile, kOk})) << name;
    }
}

} // namespace
