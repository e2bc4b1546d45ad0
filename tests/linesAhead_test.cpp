// A line is read where it stands in its file, and only when that fails it is cut out and read as a whole. Both have to
// come to the same: every file is compiled as it is, and once more with a continuation mark behind the first character
// of each line, which none can be read with where it stands.

#include "tests/gsdText.h"
#include "tests/testFiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace {

std::vector<std::string> linesOf(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

std::string joined(const std::vector<std::string>& lines)
{
    std::string text;
    for (const std::string& line : lines)
        text += line + '\n';
    return text;
}

/// Two lines for each: the line behind an empty one where there is nothing to continue, else its first character and a
/// continuation mark, and what follows it.
std::string withContinuations(const std::vector<std::string>& lines)
{
    constexpr std::string_view kNotFirst(" \t\v\f\r;\"\\\0", 9);
    std::string text;
    bool inSection = false;
    bool isContinued = false;
    for (const std::string& line : lines) {
        const bool hasTwo = line.size() > 1 && kNotFirst.find(line[0]) == std::string_view::npos &&
                            kNotFirst.find(line[1]) == std::string_view::npos;
        text += inSection && hasTwo && !isContinued ? line.substr(0, 1) + "\\\n" + line.substr(1) : '\n' + line;
        text += '\n';
        inSection = inSection || line.starts_with("#Profibus_DP");
        isContinued = line.find('\\') != std::string::npos;
    }
    return text;
}

/// ", LINE CODE" each, with twice the line.
std::string withTwiceTheLines(std::string warnings)
{
    std::replace(warnings.begin(), warnings.end(), ',', ' ');
    std::istringstream stream(warnings);
    std::string text;
    unsigned line = 0;
    for (std::string code; stream >> line >> code;)
        text += ", " + std::to_string(2 * line) + ' ' + code;
    return text;
}

/// Whether both ways give the same; the file compiles.
bool expectSame(const std::vector<std::string>& lines, const std::string& extension)
{
    const Compiled ahead = compileGsd(joined(lines), extension);
    const Compiled whole = compileGsd(withContinuations(lines), extension);
    EXPECT_EQ(whole.result, ahead.result);
    // What is found at the end of a file is found behind its last line.
    const auto end = static_cast<unsigned>(lines.size()) + 1;
    EXPECT_EQ(whole.errorLine, ahead.errorLine == end ? 2 * end - 1 : 2 * ahead.errorLine);
    EXPECT_EQ(whole.found, ahead.found);
    EXPECT_EQ(whole.warnings, withTwiceTheLines(ahead.warnings));
    if (ahead.result == 0) {
        EXPECT_EQ(whole.image.substr(whole.image.find('\n')), ahead.image.substr(ahead.image.find('\n')));
    }
    return ahead.result == 0;
}

TEST(LinesAhead, AreReadLikeWholeLines)
{
    constexpr std::string_view kCharacters("\"\"\"  ;=,()-0159xA\\\t\r\0@[", 23);
    std::mt19937 random(7);
    unsigned good = 0;
    unsigned bad = 0;
    for (const std::string& path : exampleFiles()) {
        const std::string extension = path.substr(path.size() - 3);
        const std::vector<std::string> original = linesOf(fileContents(path));
        EXPECT_TRUE(expectSame(original, extension)) << path;
        for (unsigned seed = 0; seed < 150; ++seed) {
            std::vector<std::string> lines = original;
            for (unsigned changes = 1 + seed % 4; changes > 0; --changes) {
                std::string& line = lines[random() % lines.size()];
                const std::size_t at = random() % (line.size() + 1);
                if (random() % 8 == 0)
                    line = original[random() % original.size()];
                else if (random() % 3 == 0)
                    line.erase(at, 1 + random() % 3);
                else
                    line.insert(at, 1 + random() % 2, kCharacters[random() % kCharacters.size()]);
            }
            (expectSame(lines, extension) ? good : bad) += 1;
            ASSERT_FALSE(testing::Test::HasFailure()) << joined(lines);
        }
    }
    EXPECT_GT(good, 300U);
    EXPECT_GT(bad, 300U);
}

} // namespace
