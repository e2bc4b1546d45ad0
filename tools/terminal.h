// Where the output goes: colour, progress and encoding are for terminals only.

#pragma once

#include <ostream>
#include <string>
#include <string_view>

/// Whether text for standard output may be coloured: a terminal, and no NO_COLOR in the environment.
bool isColourWanted();
/// Whether standard output is a terminal.
bool isTerminal();
/// The columns of that terminal; 0 when there is none or it does not tell.
std::size_t terminalColumns();
/// Whether messages on standard error are read as they come.
bool isErrorTerminal();

enum class Colour { kRed, kYellow, kGreen, kCyan, kBold };

/// Colours a text, or leaves it as it is.
std::string coloured(std::string_view text, Colour colour, bool isWanted);

/// Prints UTF-8 text; a terminal of an ISO 8859-1 locale gets it in that encoding.
/// @return whether all of it could be written
bool print(const std::string& utf8);
/// Prints bytes of a file as they are.
void printBytes(const std::string& bytes);

/// Says what is wrong with a thing that has no line: `typdesc: name: text`.
void reportProblem(const std::string& name, const std::string& text);
