// The difference of two texts as a unified diff, which patch(1) takes.

#pragma once

#include <string>
#include <string_view>

/// A unified diff with three lines of context; empty when the texts are the same. The lines are the bytes of the texts.
/// @param name  the file, for the two lines at the head
std::string unifiedDiff(const std::string& name, std::string_view before, std::string_view after);

/// A diff as a terminal can show it: UTF-8, without controls, its lines coloured.
std::string shownDiff(const std::string& diff, bool inColour);
