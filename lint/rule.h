#pragma once

// A rule is one small function and one row. The row holds all that is said about the rule anywhere: its documentation, the
// command's explanation and the reports of other formats are made from it.

#include "lint/finding.h"

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace typdescriptor::gsdfile {
class Document;
}

namespace typdescriptor::lint {

class DeviceIndex;
class StatementIndex;
struct LibraryVerdict;
class Report;
struct Context;

enum class Group { form, encoding, consistency, library };

const char* severityName(Severity severity); // "error"
const char* groupName(Group group);          // "form"

struct Rule {
    const char* name; // "value-out-of-range": stable, part of the interface
    Severity severity;
    Group group;
    const char* sentence;    // what the rule demands, one sentence
    const char* explanation; // why, and what to do about it
    const char* wrong;       // a line or a few that break the rule
    const char* right;       // the same lines as they should be
    void (*run)(const Context&, Report&);
};

// What a rule may look at. The indexes are built once for all rules, when the first one asks for them.
struct Context {
    const gsdfile::Document& document;
    std::string_view fileName; // without folders; empty when it has none
    std::string_view path;     // where the library can read the same bytes; empty when nowhere

    const DeviceIndex& device() const;        // the facts about the device; defined in deviceIndex.cpp
    const StatementIndex& statements() const; // statements by keyword, and blocks; defined in statementIndex.cpp

    const LibraryVerdict* verdict() const; // what the library says, null when it cannot be asked; in libraryVerdict.cpp

    mutable std::shared_ptr<const DeviceIndex> deviceIndex = {};
    mutable std::shared_ptr<const StatementIndex> statementIndex = {};
    mutable std::shared_ptr<const LibraryVerdict> libraryVerdict = {};
};

// Takes the findings of one rule after the other.
class Report {
public:
    // Of one rule a file has so many findings at most; the last one tells how many more there are.
    static constexpr std::size_t kMostOfRule = 1000;

    void begin(const Rule& rule);

    // The reference holds until the next call; notes, mends and a code are added to it.
    Finding& add(Span place, std::string message) { return add(_rule->severity, place, std::move(message)); }
    Finding& add(Severity severity, Span place, std::string message);

    // What the rules before this one found, for a rule that has more to say about the same fault.
    std::vector<Finding>& findings() { return _findings; }

    std::vector<Finding> take();

private:
    void endRule();

    const Rule* _rule = nullptr;
    std::size_t _count = 0; // findings of the rule
    std::vector<Finding> _findings;
    Finding _leftOut; // the last one beyond the limit
};

// Every rule there is: form, encoding, consistency, library.
std::span<const Rule> allRules();

// Null when no rule has that name.
const Rule* findRule(std::string_view name);

struct Options {
    std::string_view fileName;             // as in Context
    std::string_view path;                 // as in Context
    std::vector<const Rule*> leftOut = {}; // rules that do not run
};

// All findings in the order of their places, the same for the same file every time. Findings that the file itself allows in a
// comment (`; typdesc: allow NAME, NAME`, for the statement on that line, or the next one) are not among them.
std::vector<Finding> check(const gsdfile::Document& document, const Options& options = {});

// `bytes` after the mends of the findings; of mends that overlap the first is made. Checking the result again shows what is left.
std::string mended(std::string_view bytes, std::span<const Finding> findings);

} // namespace typdescriptor::lint
