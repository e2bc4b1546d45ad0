#pragma once

// What a rule found in a GSD file: the place that is wrong, a sentence for whoever wrote the file, the other places that
// belong to it, and, where nothing can be lost by it, the change that mends it.

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace typdescriptor::lint {

struct Rule;

// How sure the rule is that a device or a configuration tool will stumble: errors are certain, warnings likely, hints worth
// knowing.
enum class Severity { error, warning, hint };

// Bytes of the file, the last one exclusive. 0 to 0 is the file as a whole.
struct Span {
    std::uint32_t begin = 0;
    std::uint32_t end = 0;

    friend bool operator==(const Span&, const Span&) = default;
};

// Another place that explains the finding: the first definition, the start of the block.
struct Note {
    Span place;
    std::string text;
};

// Replaces the bytes of `place` by `text`; an empty place inserts.
struct Edit {
    Span place;
    std::string text;
};

struct Finding {
    const Rule* rule = nullptr;
    Severity severity = Severity::error;
    Span place;
    std::string message;
    std::vector<Note> notes;
    std::vector<Edit> mend; // empty: nothing that a program may safely do
    int code = 0;           // the library's result or warning code, 0 for none

    // Without a place there is nothing to note.
    Finding& note(std::optional<Span> where, std::string text)
    {
        if (where)
            notes.push_back({*where, std::move(text)});
        return *this;
    }
};

} // namespace typdescriptor::lint
