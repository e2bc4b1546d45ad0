#pragma once

// What a file allows itself: `; typdesc: allow NAME, NAME` in the comment of a line keeps quiet what these rules find in the
// statement there, continued lines included. Alone on its line it speaks for the next statement.

#include "lint/finding.h"

#include <string_view>
#include <vector>

namespace typdescriptor::gsdfile {
class Document;
}

namespace typdescriptor::lint {

struct Allowance {
    std::string_view ruleName;
    Span place;     // of the name
    Span statement; // from its first line's beginning to its last line's end
};

/// In the order of the file.
std::vector<Allowance> allowances(const gsdfile::Document& document);

void dropAllowed(const gsdfile::Document& document, std::vector<Finding>& findings);

} // namespace typdescriptor::lint
