// Tables of small changes to a good type file and what the check then says; written as in caseTable.h, with "^" for
// the terminator.

#pragma once

#include "tests/caseTable.h"
#include "tests/typeFileBuilder.h"

#include <string>
#include <string_view>

inline std::string withTerminators(std::string text)
{
    for (std::size_t p = text.find('^'); p != std::string::npos; p = text.find('^'))
        text.replace(p, 1, ";\r\n");
    return text;
}

/// An image with a change "text=replacement".
inline std::string edited(const std::string& image, const std::string& change)
{
    const std::size_t middle = change.find('=');
    return replaced(image, withTerminators(change.substr(0, middle)), withTerminators(change.substr(middle + 1)));
}

/// Cases "changes > code", with the changes of TypeFileBuilder::with().
inline void expectChecks(const TypeFileBuilder& good, std::string_view cases)
{
    EXPECT_EQ(checkResult(good.build()), 0);
    forEachCase(cases, [&good](const std::string& changes, const std::string& code) {
        EXPECT_EQ(checkResult(good.with(withTerminators(changes)).build()), std::stoi(code)) << changes;
    });
}

/// Cases "text=replacement > code".
inline void expectEdits(const std::string& image, std::string_view cases)
{
    EXPECT_EQ(checkResult(image), 0);
    forEachCase(cases, [&image](const std::string& edit, const std::string& code) {
        EXPECT_EQ(checkResult(edited(image, edit)), std::stoi(code)) << edit;
    });
}
