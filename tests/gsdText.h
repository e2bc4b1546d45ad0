// GSD texts for tests, and what compiling them gives.

#pragma once

#include "tests/testFiles.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

/// Lines of a GSD file. Where lines are given as one text, " // " separates them.
class GsdText {
public:
    /// "compact", the shortest device that compiles, "modular", the same as a modular station, or "nothing"; with
    /// changes behind it.
    static GsdText of(const std::string& device);

    /// Appends lines; "-KEYWORD" as the first of them removes the line of that keyword.
    GsdText& change(std::string_view lines);

    const std::string& str() const { return text; }
    unsigned lineCount() const;

private:
    GsdText& add(std::string_view lines);

    std::string text;
};

struct Compiled {
    int result = 0;
    unsigned errorLine = 0;
    std::array<std::uint8_t, 18> found{};
    std::string warnings; // ", LINE CODE" each
    std::string image;    // up to the length that the compiler says

    /// "RESULT LINE", or "0".
    std::string outcome() const;
    /// What follows the fixed block, in the notation of inShort().
    std::string records() const;
};

/// Compiles a text as "device.<extension>" over a buffer of exactly `capacity` characters. Warnings count their lines
/// from behind `linesBefore`.
Compiled compileGsd(const std::string& text, const std::string& extension = "GSD", std::uint32_t capacity = 65000,
                    unsigned linesBefore = 0);

/// Type-file text made readable: "|" for the terminator, "{n}" for a run of three or more blanks, "{NUL}".
std::string inShort(std::string_view text);
