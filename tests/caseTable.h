// Tables of cases, written as text: "input > expectation", where an apostrophe stands for a double quote.

#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <string>
#include <string_view>

/// Calls `check(input, expectation)` for one case.
template <class Check>
void checkCase(std::string line, Check check)
{
    std::replace(line.begin(), line.end(), '\'', '"');
    const std::size_t arrow = line.find(" > ");
    ASSERT_NE(arrow, std::string::npos) << line;
    check(line.substr(0, arrow), line.substr(arrow + 3));
}

/// The same for every case of "input > expectation | input > expectation".
template <class Check>
void forEachCase(std::string_view cases, Check check)
{
    while (!cases.empty()) {
        const std::size_t end = std::min(cases.find(" | "), cases.size());
        checkCase(std::string(cases.substr(0, end)), check);
        cases.remove_prefix(std::min(end + 3, cases.size()));
    }
}

/// Calls `check(section, input, expectation)` for every line of a file that is a case: not empty, no comment ("# ") and
/// no head of a section ("== name").
template <class Check>
void forEachCaseIn(const char* file, Check check)
{
    std::ifstream stream(std::string(TYPDESCRIPTOR_SOURCE_DIR "/tests/data/cases/") + file);
    std::string section;
    std::size_t count = 0;
    for (std::string line; std::getline(stream, line);) {
        if (line.starts_with("== ")) {
            section = line.substr(3);
        } else if (!line.empty() && !line.starts_with("# ")) {
            checkCase(line,
                      [&](const std::string& input, const std::string& expected) { check(section, input, expected); });
            ++count;
        }
    }
    EXPECT_GT(count, 0U) << file;
}
