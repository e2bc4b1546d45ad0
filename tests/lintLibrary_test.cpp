// The checker beside the library: what the library says about a file is told, every code of it, and no other.

#include "tests/testFiles.h"

#include "descriptor/cTypDescriptor.h"
#include "gsdfile/document.h"
#include "lint/rule.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <set>

using namespace typdescriptor;

namespace {

std::vector<std::string> files()
{
    std::vector<std::string> paths;
    for (const char* folder : {"/tests/lint", "/examples/gsd"})
        for (const auto& entry : std::filesystem::directory_iterator(TYPDESCRIPTOR_SOURCE_DIR + std::string(folder)))
            if (entry.path().extension() != ".expected" && entry.path().extension() != ".410")
                paths.push_back(entry.path().string());
    return paths;
}

// Each code with how often it is said.
using Codes = std::map<int, int>;

Codes codesOfLibrary(const std::string& path)
{
    cTypDescriptor descriptor(path.c_str(), 0, nullptr);
    std::vector<GSD_WARNING_ITEM> warnings(static_cast<std::size_t>(descriptor.getGsdCntOfWarnings()));
    if (!warnings.empty())
        descriptor.getGsdWarnings(reinterpret_cast<char*>(warnings.data()));
    Codes codes;
    for (const GSD_WARNING_ITEM& warning : warnings)
        ++codes[warning.code];
    const int result = descriptor.getStatus() == kOk ? descriptor.checkTypeFileContents() : descriptor.getStatus();
    if (result < 0)
        ++codes[result];
    return codes;
}

Codes codesOfFindings(const std::vector<lint::Finding>& findings)
{
    Codes codes;
    for (const lint::Finding& finding : findings)
        if (finding.code != 0)
            ++codes[finding.code];
    if (codes.contains(kErrGsdMandatory))
        codes[kErrGsdMandatory] = 1; // told at each keyword that is missing
    return codes;
}

TEST(LintLibrary, TellsEveryCodeOfTheLibraryOnce)
{
    std::set<int> seen;
    for (const std::string& path : files()) {
        const Codes codes = codesOfLibrary(path);
        const gsdfile::Document document(fileContents(path));
        EXPECT_EQ(codesOfFindings(lint::check(document, {.fileName = "CASE.GSD", .path = path})), codes) << path;
        EXPECT_EQ(codesOfFindings(lint::check(document, {.fileName = "CASE.GSD", .path = ""})), codes)
            << path << ", by its bytes";
        for (const auto& [code, count] : codes)
            seen.insert(code);
    }
    EXPECT_GT(seen.size(), 20U) << "the files show too few of the codes";
}

} // namespace
