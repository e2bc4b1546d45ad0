#include "lint/statementIndex.h"

#include "lint/rule.h"

namespace typdescriptor::lint {

using gsdfile::Keyword;
using gsdfile::Statement;

namespace {

// A file with more unknown keywords is no GSD file; looking for what each was meant to be would take long.
constexpr std::size_t kMostNames = 1000;

std::size_t rowOf(const Keyword& keyword)
{
    return static_cast<std::size_t>(&keyword - gsdfile::keywords().data());
}

} // namespace

StatementIndex::StatementIndex(const gsdfile::Document& document)
    : _document(document), _outside(gsdfile::keywords().size(), kNoStatement),
      _earlier(document.statements().size(), kNoStatement)
{
    std::vector<std::uint32_t> latest(gsdfile::keywords().size(), kNoStatement);
    for (std::uint32_t i = 0; i < _earlier.size(); ++i) {
        const Statement& statement = document.statements()[i];
        if (!statement.keyword) {
            addUnknown(statement);
            continue;
        }
        const std::size_t row = rowOf(*statement.keyword);
        _earlier[i] = latest[row];
        latest[row] = i;
        if (statement.block == gsdfile::kNone && _outside[row] == kNoStatement)
            _outside[row] = i;
    }
}

void StatementIndex::addUnknown(const Statement& statement)
{
    if (statement.name.empty())
        return;
    _unknown.push_back(&statement);
    const bool isOneTooMany = _nearest.size() >= kMostNames;
    const auto [entry, isNew] = _nearest.try_emplace(statement.name);
    if (isNew && !isOneTooMany && !gsdfile::isMasterKeyword(statement.name))
        entry->second = gsdfile::nearestKeyword(statement.name);
}

gsdfile::Nearest StatementIndex::nearest(const Statement& statement) const
{
    const auto entry = _nearest.find(statement.name);
    return entry == _nearest.end() ? gsdfile::Nearest{} : entry->second;
}

const Statement* StatementIndex::outside(const Keyword& keyword) const
{
    const std::uint32_t first = _outside[rowOf(keyword)];
    return first == kNoStatement ? nullptr : &_document.statements()[first];
}

std::optional<std::int64_t> StatementIndex::number(const Keyword& keyword) const
{
    const Statement* statement = outside(keyword);
    if (!statement || statement->values.empty() || statement->values.front().kind != gsdfile::Value::number)
        return std::nullopt;
    return statement->values.front().first.value;
}

const Statement* StatementIndex::inside(std::uint32_t block, const Keyword& keyword) const
{
    const gsdfile::Block& within = _document.blocks()[block];
    for (std::size_t i = within.opening + 1; i < within.end; ++i) {
        const Statement& statement = _document.statements()[i];
        if (statement.keyword == &keyword && statement.block == block)
            return &statement;
    }
    return nullptr;
}

const Statement* StatementIndex::earlier(std::size_t statement) const
{
    const Statement& self = _document.statements()[statement];
    if (self.block == gsdfile::kNone) {
        const Statement* first = outside(*self.keyword);
        return first == &self ? nullptr : first;
    }
    const std::size_t begin = _document.blocks()[self.block].opening;
    for (std::uint32_t i = _earlier[statement]; i != kNoStatement && i >= begin; i = _earlier[i])
        if (_document.statements()[i].block == self.block)
            return &_document.statements()[i];
    return nullptr;
}

const StatementIndex& Context::statements() const
{
    if (!statementIndex)
        statementIndex = std::make_shared<StatementIndex>(document);
    return *statementIndex;
}

} // namespace typdescriptor::lint
