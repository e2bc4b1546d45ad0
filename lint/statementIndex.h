#pragma once

// Where the statements of a keyword are. Statements and blocks are numbered as in the document.

#include "gsdfile/document.h"
#include "gsdfile/keywords.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace typdescriptor::lint {

class StatementIndex {
public:
    explicit StatementIndex(const gsdfile::Document& document);

    /// The first statement of a keyword outside of blocks; null when there is none.
    const gsdfile::Statement* outside(const gsdfile::Keyword& keyword) const;
    /// The number that is its first value; nothing when it is not there or its value is none.
    std::optional<std::int64_t> number(const gsdfile::Keyword& keyword) const;
    /// The first statement of a keyword in a block, blocks inside of it apart; null when there is none.
    const gsdfile::Statement* inside(std::uint32_t block, const gsdfile::Keyword& keyword) const;
    /// A statement of the same keyword that stands before in the same block, or outside as this one; null when there is none.
    const gsdfile::Statement* earlier(std::size_t statement) const;
    /// Whether no other statement of the file has its keyword before.
    bool isFirst(std::size_t statement) const { return _earlier[statement] == kNoStatement; }
    /// The keyword that an unknown one most likely stands for, and one that is as near.
    gsdfile::Nearest nearest(const gsdfile::Statement& statement) const;

    /// The statements with an unknown keyword.
    const std::vector<const gsdfile::Statement*>& unknown() const { return _unknown; }

private:
    static constexpr std::uint32_t kNoStatement = 0xFFFFFFFFU;

    void addUnknown(const gsdfile::Statement& statement);

    const gsdfile::Document& _document;
    std::vector<std::uint32_t> _outside; // for each keyword
    std::vector<const gsdfile::Statement*> _unknown;
    std::unordered_map<std::string_view, gsdfile::Nearest> _nearest; // for the name of each unknown keyword
    std::vector<std::uint32_t> _earlier; // for each statement: the one of the same keyword before, in whatever block
};

} // namespace typdescriptor::lint
