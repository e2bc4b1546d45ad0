#include "gsdfile/reader.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

namespace typdescriptor::gsdfile {

namespace {

constexpr std::string_view kSectionStart = "#profibus_dp";

char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// What a character is to the reader, as bits.
constexpr std::uint8_t kBlank = 1;
constexpr std::uint8_t kDigit = 2;
constexpr std::uint8_t kSeparator = 4; // ends a word

constexpr std::array<std::uint8_t, 256> kClasses = [] {
    std::array<std::uint8_t, 256> classes{};
    const auto add = [&classes](std::string_view characters, unsigned bits) {
        for (const char c : characters)
            classes[static_cast<unsigned char>(c)] = static_cast<std::uint8_t>(bits);
    };
    add(" \t\v\f\r", kBlank | kSeparator);
    add("0123456789", kDigit);
    add(std::string_view("()=,;\"@\\\n\0", 10), kSeparator);
    return classes;
}();

bool isOf(char c, std::uint8_t bit)
{
    return (kClasses[static_cast<unsigned char>(c)] & bit) != 0;
}

bool isDigit(char c)
{
    return isOf(c, kDigit);
}

bool isBlank(char c)
{
    return isOf(c, kBlank);
}

bool isSeparator(char c)
{
    return isOf(c, kSeparator);
}

/// The kind of a character that is a token of its own; other for the rest.
TokenKind markOf(char c)
{
    switch (c) {
    case '(':
        return TokenKind::open;
    case ')':
        return TokenKind::close;
    case '=':
        return TokenKind::equals;
    case ',':
        return TokenKind::comma;
    case '@':
        return TokenKind::at;
    default:
        return TokenKind::other;
    }
}

bool startsWith(std::string_view text, std::string_view wantedInSmallLetters)
{
    return text.size() >= wantedInSmallLetters.size() &&
           std::equal(wantedInSmallLetters.begin(), wantedInSmallLetters.end(), text.begin(),
                      [](char wanted, char c) { return wanted == lower(c); });
}

/// Blocks that may stand inside of another.
bool mayStandIn(BlockKind kind, BlockKind outer)
{
    return (kind == BlockKind::dataArea && outer == BlockKind::module) ||
           (kind == BlockKind::xUnitDiagArea && outer == BlockKind::unitDiagType) ||
           (kind == BlockKind::unitDiagType && outer == BlockKind::module);
}

bool isClosedBy(BlockKind kind, BlockKind closing)
{
    return kind == closing || (kind == BlockKind::kgpModule && closing == BlockKind::module);
}

} // namespace

void Reader::read()
{
    const auto size = static_cast<std::uint32_t>(_document._bytes.size());
    _document._tokens.reserve(size / 4);
    _text = _document._unit == 1 ? std::string_view(_document._bytes).substr(_document._markSize) : _document._narrow;
    const auto lineEnds = std::count(_text.begin(), _text.end(), _returnEndsLines ? '\r' : '\n');
    _document._lines.reserve(static_cast<std::size_t>(lineEnds) + 1);
    _document._statements.reserve(static_cast<std::size_t>(lineEnds) + 1);
    if (_document._markSize != 0)
        _document._tokens.push_back({TokenKind::mark, 0, _document._markSize, 1});
    if (size != 0)
        _document._lines.push_back({_document._markSize, 0, LineEnd::none});
    while (!isAtEnd()) {
        if (isSectionLine(_position)) {
            _isInSection = true;
            readLogicalLine();
        } else if (!_isInSection || at(_position) == '#') {
            _isInSection = false;
            readFreeLine();
        } else {
            readLogicalLine();
        }
    }
    pushRest();
    closeInner(kNone, statementCount());
    if (size != 0)
        _document._lines.back().end = size;
}

/// A byte too many at the end of a UTF-16 text.
void Reader::pushRest()
{
    const std::uint32_t end = offsetOf(_text.size());
    const auto size = static_cast<std::uint32_t>(_document._bytes.size());
    if (end < size)
        _document._tokens.push_back({TokenKind::other, end, size, static_cast<std::uint32_t>(_document._lines.size())});
}

bool Reader::isLineEnd(std::size_t position) const
{
    const char c = at(position);
    if (position >= _text.size())
        return false;
    return c == '\n' || (c == '\r' && (_returnEndsLines || at(position + 1) == '\n'));
}

std::size_t Reader::endOfLine(std::size_t position)
{
    if (position >= _knownEnd || position < _knownBegin) {
        _knownBegin = position;
        _knownEnd = std::min(_text.find(_returnEndsLines ? '\r' : '\n', position), _text.size());
    }
    const std::size_t end = _knownEnd;
    const bool hasReturn = !_returnEndsLines && end < _text.size() && end > position && _text[end - 1] == '\r';
    return hasReturn ? end - 1 : end;
}

std::uint32_t Reader::offsetOf(std::size_t position) const
{
    return _document._markSize + static_cast<std::uint32_t>(position) * _document._unit;
}

/// The token from the position to an end; nothing when there is none.
void Reader::push(TokenKind kind, std::size_t end)
{
    if (end == _position)
        return;
    _document._tokens.push_back(
        {kind, offsetOf(_position), offsetOf(end), static_cast<std::uint32_t>(_document._lines.size())});
    _position = end;
}

void Reader::pushLineEnd()
{
    if (isAtEnd())
        return;
    Line& line = _document._lines.back();
    const bool isPair = at(_position) == '\r' && at(_position + 1) == '\n';
    line.end = offsetOf(_position);
    line.lineEnd = isPair                  ? LineEnd::carriageReturnLineFeed
                   : at(_position) == '\n' ? LineEnd::lineFeed
                                           : LineEnd::carriageReturn;
    push(TokenKind::lineEnd, _position + (isPair ? 2 : 1));
    _document._lines.push_back({offsetOf(_position), 0, LineEnd::none});
}

void Reader::readFreeLine()
{
    push(TokenKind::freeText, endOfLine(_position));
    pushLineEnd();
}

/// "#Profibus_DP" alone on its line, but for blanks and a comment.
bool Reader::isSectionLine(std::size_t position) const
{
    while (isBlank(at(position)) && !isLineEnd(position))
        ++position;
    if (!startsWith(_text.substr(std::min(position, _text.size())), kSectionStart))
        return false;
    position += kSectionStart.size();
    while (isBlank(at(position)) && !isLineEnd(position))
        ++position;
    return position >= _text.size() || isLineEnd(position) || at(position) == ';';
}

void Reader::readLogicalLine()
{
    const std::uint32_t firstToken = tokenCount();
    const auto firstLine = static_cast<std::uint32_t>(_document._lines.size());
    _hasKeyword = false;
    _keyword = nullptr;
    _isInString = false;
    _isContinuedAtEnd = false;
    readTokens();
    parseStatement(firstToken, firstLine);
}

/// Every token up to the line end that no backslash goes before, that one included. Empty lines and lines with nothing but
/// a comment do not end what is continued.
void Reader::readTokens()
{
    bool isContinued = false; // and nothing has followed yet
    while (!isAtEnd()) {
        if (isLineEnd(_position)) {
            _isInString = false;
            pushLineEnd();
            if (!isContinued)
                return;
        } else if (readContinuation()) {
            pushLineEnd();
            isContinued = true;
        } else {
            readLexeme();
            const TokenKind kind = _document._tokens.back().kind;
            isContinued = isContinued && (kind == TokenKind::blank || kind == TokenKind::comment);
        }
    }
    _isContinuedAtEnd = isContinued;
}

/// A backslash with nothing behind it on its line but blanks and a comment, and what stands behind it.
bool Reader::readContinuation()
{
    if (at(_position) != '\\')
        return false;
    std::size_t end = _position + 1;
    while (isBlank(at(end)) && !isLineEnd(end))
        ++end;
    const bool isComment = at(end) == ';' && !_isInString;
    if (end < _text.size() && !isLineEnd(end) && !isComment)
        return false;
    push(TokenKind::continuation, _position + 1);
    push(TokenKind::blank, end);
    if (isComment)
        push(TokenKind::comment, endOfLine(_position));
    return true;
}

/// Whether texts stand behind "@" without quotes in the line being read.
bool Reader::isFamily() const
{
    return _keyword != nullptr && _keyword->type == ValueType::family;
}

void Reader::readLexeme()
{
    const char c = at(_position);
    if (_isInString) {
        readString();
    } else if (isBlank(c)) {
        std::size_t end = _position + 1;
        while (isBlank(at(end)) && !isLineEnd(end))
            ++end;
        push(TokenKind::blank, end);
    } else if (c == ';') {
        push(TokenKind::comment, endOfLine(_position));
    } else if (c == '"') {
        _hasKeyword = true;
        readString();
    } else if (isFamily() && c != '@' && c != '\\' && _document._tokens.back().kind == TokenKind::at) {
        readFamilyText();
    } else if (const TokenKind mark = markOf(c); mark != TokenKind::other) {
        _hasKeyword = true;
        push(mark, _position + 1);
    } else if (c == '\0' || c == '\\') {
        push(TokenKind::other, _position + 1);
    } else {
        readNumberOrWord();
    }
}

/// A string, or a piece of it up to the end of the line. A backslash at the end of the line continues it in the next.
void Reader::readString()
{
    const std::size_t lineEnd = endOfLine(_position);
    const std::size_t from = _isInString ? _position : _position + 1;
    const std::size_t quote = _text.substr(0, lineEnd).find('"', from);
    _isInString = false;
    if (quote != std::string_view::npos) {
        push(TokenKind::string, quote + 1);
        return;
    }
    std::size_t end = lineEnd;
    while (end > from && isBlank(at(end - 1)))
        --end;
    const bool isContinued = end > from && at(end - 1) == '\\';
    if (!isContinued) {
        push(TokenKind::string, lineEnd);
        return;
    }
    if (end - 1 > _position)
        push(TokenKind::string, end - 1);
    _isInString = true;
}

void Reader::readNumberOrWord()
{
    const auto& tokens = _document._tokens;
    if (!_hasKeyword) {
        const std::size_t end = wordEnd(_position);
        const std::string_view name = _text.substr(_position, end - _position);
        const bool isNumber = std::all_of(name.begin(), name.end(), isDigit);
        _hasKeyword = true;
        if (!isNumber)
            _keyword = findKeyword(name);
        push(isNumber ? TokenKind::number : TokenKind::keyword, end);
        return;
    }
    const bool isSign = at(_position) == '-';
    const bool isBehindNumber = !tokens.empty() && tokens.back().kind == TokenKind::number;
    if (isSign && (isBehindNumber || !isDigit(at(_position + 1)))) {
        push(TokenKind::hyphen, _position + 1);
        return;
    }
    std::size_t end = isSign ? _position + 1 : _position;
    if (!isDigit(at(end))) {
        push(TokenKind::word, wordEnd(_position));
        return;
    }
    // The hyphen of a range ends a number.
    while (end < _text.size() && !isSeparator(at(end)) && at(end) != '-')
        ++end;
    push(TokenKind::number, end);
}

/// Without quotes, up to the next "@", comment or line end.
void Reader::readFamilyText()
{
    std::size_t end = _position;
    while (end < _text.size() && !isLineEnd(end) && at(end) != '@' && at(end) != ';' && at(end) != '\\' &&
           at(end) != '"')
        ++end;
    while (end > _position + 1 && isBlank(at(end - 1)))
        --end;
    push(TokenKind::word, end);
}

std::size_t Reader::wordEnd(std::size_t position) const
{
    std::size_t end = position + 1;
    while (end < _text.size() && !isSeparator(at(end)))
        ++end;
    return end;
}

TokenKind Reader::kindOf(std::uint32_t token) const
{
    return token < _document._tokens.size() ? _document._tokens[token].kind : TokenKind::lineEnd;
}

/// The next token that says something; kNone behind the last.
std::uint32_t Reader::nextToken(std::uint32_t token) const
{
    for (; token < _document._tokens.size(); ++token) {
        switch (_document._tokens[token].kind) {
        case TokenKind::blank:
        case TokenKind::lineEnd:
        case TokenKind::comment:
        case TokenKind::continuation:
        case TokenKind::mark:
            break;
        default:
            return token;
        }
    }
    return kNone;
}

void Reader::parseStatement(std::uint32_t firstToken, std::uint32_t firstLine)
{
    std::uint32_t token = nextToken(firstToken);
    if (token == kNone)
        return;
    Statement statement;
    statement.firstToken = firstToken;
    statement.endToken = tokenCount();
    statement.firstLine = firstLine;
    for (std::uint32_t i = firstToken; i < statement.endToken; ++i) {
        statement.lastLine = _document._tokens[i].line;
        if (_document._tokens[i].kind == TokenKind::comment)
            statement.commentToken = i;
    }
    if (_isContinuedAtEnd)
        _faults.push_back({FaultKind::continuedAtEnd, statement.endToken - 1});
    if (kindOf(token) == TokenKind::keyword) {
        statement.keywordToken = token;
        statement.name = _document.text(_document._tokens[token]);
        statement.keyword = _keyword;
        token = nextToken(token + 1);
    }
    if (token != kNone && kindOf(token) == TokenKind::open && statement.keywordToken != kNone)
        parseArgument(statement, token);
    if (token != kNone && kindOf(token) == TokenKind::equals) {
        statement.equalsToken = token;
        token = nextToken(token + 1);
        if (token == kNone)
            _faults.push_back({FaultKind::missingValue, statement.equalsToken});
    }
    if (token != kNone)
        parseValues(token);
    statement.values = _document._values.keep(_values);
    statement.faults = _document._faults.keep(_faults);
    placeInBlocks(statement);
    const bool isSection = _document._section == kNone && statement.keyword != nullptr &&
                           startsWith(statement.keyword->name, kSectionStart);
    if (isSection)
        _document._section = statementCount();
    _document._statements.push_back(statement);
}

/// "(number)" or "(first-last)".
void Reader::parseArgument(Statement& statement, std::uint32_t& token)
{
    Argument argument;
    argument.openToken = token;
    token = nextToken(token + 1);
    bool isGood = token != kNone && takeNumber(token, argument.first);
    if (isGood) {
        token = nextToken(token + 1);
        if (token != kNone && kindOf(token) == TokenKind::hyphen) {
            Number last;
            token = nextToken(token + 1);
            isGood = token != kNone && takeNumber(token, last);
            if (isGood) {
                argument.last = last;
                token = nextToken(token + 1);
            }
        }
    }
    std::uint32_t close = token;
    while (close != kNone && kindOf(close) != TokenKind::close && kindOf(close) != TokenKind::equals)
        close = nextToken(close + 1);
    if (!isGood || (close != token && close != kNone && kindOf(close) == TokenKind::close))
        _faults.push_back({FaultKind::badArgument, argument.openToken});
    if (close == kNone || kindOf(close) != TokenKind::close) {
        _faults.push_back({FaultKind::openArgument, argument.openToken});
        token = close == kNone ? token : close;
    } else {
        argument.closeToken = close;
        token = nextToken(close + 1);
    }
    if (isGood)
        statement.argument = &_document._arguments.emplace_back(argument);
}

void Reader::parseValues(std::uint32_t token)
{
    std::uint32_t comma = kNone; // the one that a value must follow
    bool isBehindAt = false;
    const auto missing = [this](std::uint32_t place) { _faults.push_back({FaultKind::missingItem, place}); };
    while (token != kNone) {
        const std::size_t before = _values.size();
        switch (kindOf(token)) {
        case TokenKind::comma:
            if (comma != kNone || _values.empty())
                missing(token);
            comma = token;
            token = nextToken(token + 1);
            continue;
        case TokenKind::at:
            isBehindAt = true;
            token = nextToken(token + 1);
            continue;
        case TokenKind::string:
            parseString(token);
            break;
        case TokenKind::number:
            parseNumber(token, comma != kNone);
            break;
        case TokenKind::word: {
            Value value;
            value.kind = Value::word;
            value.text = _document.text(_document._tokens[token]);
            value.firstToken = value.lastToken = token;
            _values.push_back(value);
            token = nextToken(token + 1);
            break;
        }
        case TokenKind::equals:
            _faults.push_back({FaultKind::secondEquals, token});
            token = nextToken(token + 1);
            break;
        default: {
            const bool isBackslash = _document.text(_document._tokens[token]) == "\\";
            _faults.push_back({isBackslash ? FaultKind::strayBackslash : FaultKind::strayCharacter, token});
            token = nextToken(token + 1);
        }
        }
        if (_values.size() > before) {
            _values.back().isBehindComma = comma != kNone;
            _values.back().isBehindAt = isBehindAt;
            comma = kNone;
            isBehindAt = false;
        }
    }
    if (comma != kNone)
        missing(comma);
}

/// The pieces of a string, which continuations may part.
void Reader::parseString(std::uint32_t& token)
{
    Value value;
    value.kind = Value::string;
    value.firstToken = token;
    bool isClosed = false;
    std::size_t pieces = 0; // behind the first
    while (token != kNone && kindOf(token) == TokenKind::string && !isClosed) {
        std::string_view piece = _document.text(_document._tokens[token]);
        if (token == value.firstToken)
            piece.remove_prefix(1);
        if (!piece.empty() && piece.back() == '"') {
            isClosed = true;
            piece.remove_suffix(1);
        }
        if (token == value.firstToken) {
            value.text = piece;
        } else {
            if (pieces++ == 0)
                _document._joined.emplace_back(value.text);
            _document._joined.back() += piece;
            value.text = _document._joined.back();
        }
        value.lastToken = token;
        token = nextToken(token + 1);
    }
    if (!isClosed)
        _faults.push_back({FaultKind::openQuote, value.firstToken});
    _values.push_back(value);
}

void Reader::parseNumber(std::uint32_t& token, bool isBehindComma)
{
    Value value;
    value.kind = Value::number;
    value.firstToken = value.lastToken = token;
    value.isBehindComma = isBehindComma;
    const bool isGood = takeNumber(token, value.first);
    if (isGood)
        takeRest(token, value.first);
    value.lastToken = token;
    token = nextToken(token + 1);
    if (!isGood) {
        value.kind = Value::word;
        value.text = _document.text(_document._tokens[value.firstToken]);
    } else if (token != kNone && kindOf(token) == TokenKind::hyphen) {
        const std::uint32_t hyphen = token;
        token = nextToken(token + 1);
        if (token != kNone && kindOf(token) == TokenKind::number && takeNumber(token, value.last)) {
            takeRest(token, value.last);
            value.kind = Value::range;
            value.lastToken = token;
            token = nextToken(token + 1);
        } else {
            _faults.push_back({FaultKind::strayCharacter, hyphen});
        }
    }
    _values.push_back(value);
}

/// The digits that a number goes on with in the next line, where a backslash parts it.
void Reader::takeRest(std::uint32_t& token, Number& number)
{
    constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max() / 100;
    const std::vector<Token>& tokens = _document._tokens;
    while (token + 1 < tokens.size() && tokens[token + 1].kind == TokenKind::continuation && !number.isHex) {
        const std::uint32_t next = nextToken(token + 1);
        if (next == kNone || kindOf(next) != TokenKind::number)
            return;
        const std::string_view digits = _document.text(tokens[next]);
        if (digits.find_first_not_of("0123456789") != std::string_view::npos)
            return;
        for (const char digit : digits) {
            number.isTooLarge = number.isTooLarge || number.value > kMost || number.value < -kMost;
            if (!number.isTooLarge)
                number.value = number.value * 10 + (number.value < 0 ? '0' - digit : digit - '0');
        }
        token = next;
    }
}

/// Decimal with a sign, or 0x and hexadecimal digits.
bool Reader::takeNumber(std::uint32_t token, Number& number)
{
    if (kindOf(token) != TokenKind::number)
        return false;
    std::string_view digits = _document.text(_document._tokens[token]);
    number.token = token;
    const bool isNegative = digits.front() == '-';
    if (isNegative)
        digits.remove_prefix(1);
    number.isHex = digits.size() > 2 && digits[0] == '0' && lower(digits[1]) == 'x';
    if (number.isHex)
        digits.remove_prefix(2);
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, number.value, number.isHex ? 16 : 10);
    if (stop != end || error == std::errc::invalid_argument || (isNegative && number.isHex)) {
        _faults.push_back({FaultKind::badNumber, token});
        return false;
    }
    number.isTooLarge = error == std::errc::result_out_of_range;
    if (number.isTooLarge)
        number.value = std::numeric_limits<std::int64_t>::max();
    if (isNegative)
        number.value = -number.value;
    return true;
}

/// Opens and closes blocks. A block that may not stand in the one that is open ends that: it was never closed.
void Reader::placeInBlocks(Statement& statement)
{
    auto& blocks = _document._blocks;
    const std::uint32_t index = statementCount();
    const BlockKind opens = statement.keyword == nullptr ? BlockKind::none : statement.keyword->opens;
    const BlockKind closes = statement.keyword == nullptr ? BlockKind::none : statement.keyword->closes;
    if (opens != BlockKind::none) {
        while (_innermost != kNone && !mayStandIn(opens, blocks[_innermost].kind))
            closeInner(blocks[_innermost].parent, index);
        statement.block = _innermost;
        blocks.push_back({opens, index, kNone, kNone, _innermost});
        _innermost = static_cast<std::uint32_t>(blocks.size() - 1);
        return;
    }
    if (closes != BlockKind::none) {
        std::uint32_t closed = _innermost;
        while (closed != kNone && !isClosedBy(blocks[closed].kind, closes))
            closed = blocks[closed].parent;
        if (closed != kNone) {
            closeInner(closed, index);
            statement.block = closed;
            blocks[closed].closing = index;
            closeInner(blocks[closed].parent, index + 1);
            return;
        }
    }
    statement.block = _innermost;
    statement.isReference = statement.keywordToken == kNone && _innermost != kNone &&
                            blocks[_innermost].kind == BlockKind::module && statement.values.size() == 1 &&
                            statement.values.front().kind == Value::number && statement.equalsToken == kNone;
}

/// Ends the blocks inside of one (or all): nothing behind belongs to them.
void Reader::closeInner(std::uint32_t until, std::uint32_t statement)
{
    for (; _innermost != until && _innermost != kNone; _innermost = _document._blocks[_innermost].parent)
        _document._blocks[_innermost].end = statement;
}

} // namespace typdescriptor::gsdfile
