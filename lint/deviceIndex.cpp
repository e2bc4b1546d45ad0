// Hands the statements of a document to the reader of the device, one after the other.

#include "lint/deviceIndex.h"

#include "lint/deviceReader.h"
#include "lint/rule.h"

#include "gsdfile/document.h"
#include "gsdfile/keywords.h"

namespace typdescriptor::lint {

namespace {

Span placeOf(const gsdfile::Token& token)
{
    return {token.begin, token.end};
}

// Takes statements of a document apart; the vectors are used again for each.
class StatementReader {
public:
    explicit StatementReader(const gsdfile::Document& document) : _document(document) {}

    const Statement& read(const gsdfile::Statement& from)
    {
        _statement.row = from.keyword;
        _statement.keyword = from.keyword != nullptr ? std::string_view(from.keyword->name) : from.name;
        _statement.place = placeOfToken(from.keywordToken != gsdfile::kNone ? from.keywordToken : from.firstToken);
        _statement.argument.clear();
        _statement.argumentPlace = {};
        _statement.text.reset();
        _statement.numbers.clear();
        _statement.isRange = false;
        _statement.isWhole = from.faults.empty();
        if (from.argument)
            takeArgument(*from.argument);
        for (const gsdfile::Value& value : from.values)
            takeValue(value);
        return _statement;
    }

private:
    Span placeOfToken(std::size_t token) const { return placeOf(_document.tokens()[token]); }

    Number numberOf(const gsdfile::Number& number) const { return {number.value, placeOfToken(number.token)}; }

    void takeArgument(const gsdfile::Argument& argument)
    {
        const std::size_t close = argument.closeToken != gsdfile::kNone ? argument.closeToken : argument.openToken;
        _statement.argumentPlace = {placeOfToken(argument.openToken).begin, placeOfToken(close).end};
        _statement.argument.push_back(numberOf(argument.first));
        if (argument.last)
            _statement.argument.push_back(numberOf(*argument.last));
    }

    void takeValue(const gsdfile::Value& value)
    {
        _statement.isRange = value.kind == gsdfile::Value::range;
        switch (value.kind) {
        case gsdfile::Value::number:
            _statement.numbers.push_back(numberOf(value.first));
            break;
        case gsdfile::Value::range:
            _statement.numbers.push_back(numberOf(value.first));
            _statement.numbers.push_back(numberOf(value.last));
            break;
        case gsdfile::Value::string:
            if (!_statement.text)
                _statement.text = Text{value.text, placeOf(_document.span(value))};
            break;
        default:
            _statement.isWhole = false;
            break;
        }
    }

    const gsdfile::Document& _document;
    Statement _statement;
};

} // namespace

DeviceIndex::DeviceIndex(const gsdfile::Document& document)
    : hasSection(document.section() != gsdfile::kNone), _station(gsdfile::keywords().size())
{
    DeviceReader reader(*this);
    StatementReader statements(document);
    for (const gsdfile::Statement& statement : document.statements())
        reader.take(statements.read(statement));
    reader.finish();
}

const Entry* DeviceIndex::entry(std::string_view keyword) const
{
    const gsdfile::Keyword* row = gsdfile::findKeyword(keyword);
    return row == nullptr ? nullptr : _station[static_cast<std::size_t>(row - gsdfile::keywords().data())];
}

std::optional<std::int64_t> DeviceIndex::number(std::string_view keyword) const
{
    const Entry* found = entry(keyword);
    return hasNumber(found) ? std::optional(found->number()) : std::nullopt;
}

bool DeviceIndex::isOn(std::string_view keyword) const
{
    return number(keyword).value_or(0) != 0;
}

const DeviceIndex& Context::device() const
{
    if (!deviceIndex)
        deviceIndex = std::make_shared<const DeviceIndex>(document);
    return *deviceIndex;
}

} // namespace typdescriptor::lint
