// A lossless document of any GSD file, revisions 1 to 5.
//
// In: any bytes. Out: every physical line, every token with its place, the statements with their values, the blocks.
// Every byte stands in exactly one token, so that the tokens written one behind the other are the file. No fault stops the
// reader: what is malformed becomes a statement with faults, what is unknown a statement without keyword, and a block
// that nothing closes stays open. The time it takes is linear in the file.
//
// UTF-16 is read as if each of its units were one byte (units above 255 as "?"); places are those of the file's bytes.
// Carriage returns end lines only in a file that has no line feed.

#pragma once

#include "gsdfile/lists.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace typdescriptor::gsdfile {

struct Keyword;
enum class BlockKind : std::uint8_t;

/// A token, statement or block that is not there.
inline constexpr std::uint32_t kNone = 0xFFFFFFFFU;

enum class Encoding : std::uint8_t { ascii, latin1, utf8, utf16Little, utf16Big };
enum class LineEnd : std::uint8_t { none, lineFeed, carriageReturnLineFeed, carriageReturn };

enum class TokenKind : std::uint8_t {
    mark,     // the byte order mark
    freeText, // a line outside of the section
    blank,
    lineEnd,
    comment,      // from the semicolon on
    continuation, // the backslash at the end of a line
    keyword,      // the first word of a statement
    open,         // "("
    close,        // ")"
    equals,
    comma,
    hyphen, // between two numbers
    at,     // "@"
    number, // with its sign
    string, // with its quotes; a piece of it where it goes on in the next line
    word,
    other, // a byte that has no place in a statement
};

/// A run of bytes of the file.
struct Token {
    TokenKind kind = TokenKind::other;
    std::uint32_t begin = 0; // offset in the file
    std::uint32_t end = 0;
    std::uint32_t line = 0; // of the physical line, from 1
};

/// A physical line.
struct Line {
    std::uint32_t begin = 0;
    std::uint32_t end = 0; // without its line end
    LineEnd lineEnd = LineEnd::none;
};

struct Place {
    std::uint32_t line = 0;      // from 1
    std::uint32_t column = 0;    // in bytes, from 1
    std::uint32_t character = 0; // in characters of the file's encoding, from 1
};

/// A number as it stands there.
struct Number {
    std::int64_t value = 0;
    std::uint32_t token = 0;
    bool isHex = false;
    bool isTooLarge = false; // above 63 bits: the value is the largest
};

struct Value {
    enum Kind : std::uint8_t { number, range, string, word };

    Kind kind = word;
    bool isBehindComma = false;
    bool isBehindAt = false; // text of a sub-family
    Number first;            // number and range
    Number last;             // range
    std::string_view text;   // word: as written; string: without quotes, its pieces joined
    std::uint32_t firstToken = 0;
    std::uint32_t lastToken = 0;
};

struct Argument {
    Number first;
    std::optional<Number> last; // "first-last"
    std::uint32_t openToken = kNone;
    std::uint32_t closeToken = kNone; // kNone where nothing closes it
};

enum class FaultKind : std::uint8_t {
    openQuote,    // a string that nothing closes on its line
    openArgument, // "(" without ")"
    badArgument,  // what stands in the parentheses is neither a number nor a range
    secondEquals,
    missingValue,   // nothing behind the equals sign
    missingItem,    // nothing between two commas or behind the last
    badNumber,      // begins with a digit and is no number
    strayCharacter, // a character that has no place there
    strayBackslash, // a backslash other than at the end of a line
    continuedAtEnd, // the file ends behind a continued line
};

struct Fault {
    FaultKind kind = FaultKind::strayCharacter;
    std::uint32_t token = kNone; // where it is
};

/// One logical line: a physical one, or several that backslashes join.
struct Statement {
    std::string_view name;              // the keyword as written; empty for a line that begins with something else
    const Keyword* keyword = nullptr;   // its row; null when it is unknown or there is none
    const Argument* argument = nullptr; // null when there is none that can be read
    std::span<const Value> values;
    std::span<const Fault> faults;
    std::uint32_t keywordToken = kNone;
    std::uint32_t equalsToken = kNone;
    std::uint32_t commentToken = kNone; // of the last of its lines that has one
    std::uint32_t firstToken = kNone;   // of its own, blanks and line ends among them
    std::uint32_t endToken = kNone;     // behind its last
    std::uint32_t firstLine = 0;        // from 1
    std::uint32_t lastLine = 0;
    std::uint32_t block =
        kNone;                // the innermost block that it stands in; an opening statement stands outside of its own
    bool isReference = false; // a number alone on its line, inside a module
};

struct Block {
    BlockKind kind{};
    std::uint32_t opening = kNone; // statement
    std::uint32_t closing = kNone; // statement; kNone where nothing closes it
    std::uint32_t end = kNone;     // the first statement behind it
    std::uint32_t parent = kNone;
};

class Document {
public:
    /// The largest file that is read; of a longer one only so many bytes.
    static constexpr std::size_t kMostBytes = 0xFFFFFFF0U;

    explicit Document(std::string bytes);
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;

    std::string_view bytes() const { return _bytes; }
    Encoding encoding() const { return _encoding; }
    bool hasMark() const { return _markSize != 0; }
    /// Bytes of one character at least: 2 for UTF-16, else 1.
    unsigned unit() const { return _unit; }

    const std::vector<Line>& lines() const { return _lines; }
    const std::vector<Token>& tokens() const { return _tokens; }
    const std::vector<Statement>& statements() const { return _statements; }
    const std::vector<Block>& blocks() const { return _blocks; }
    /// The statement "#Profibus_DP" that opens the section; kNone where there is none.
    std::uint32_t section() const { return _section; }

    /// The text of a token, as the statements see it.
    std::string_view text(const Token& token) const { return text(token.begin, token.end); }
    std::string_view text(std::uint32_t begin, std::uint32_t end) const;
    /// The token that a byte stands in; the last one for an offset behind the file. The file must not be empty.
    std::size_t tokenAt(std::uint32_t offset) const;
    bool isInString(std::uint32_t offset) const;
    /// Line and column of a byte; of the end for an offset behind the file.
    Place place(std::uint32_t offset) const;
    /// From the first to the last token of a value, whole.
    Token span(const Value& value) const;

private:
    friend class Reader;

    void countContinuing();
    std::uint32_t continuingBefore(std::uint32_t offset) const;

    std::string _bytes;
    std::string _narrow; // UTF-16 with one byte for each unit; else empty
    Encoding _encoding = Encoding::ascii;
    unsigned _unit = 1;
    std::uint32_t _markSize = 0;
    std::vector<Line> _lines;
    std::vector<Token> _tokens;
    std::vector<Statement> _statements;
    std::vector<Block> _blocks;
    Lists<Value> _values;
    Lists<Fault> _faults;
    std::deque<Argument> _arguments;
    std::vector<std::uint32_t> _continuing; // UTF-8: bytes ahead of each stretch that continue a character
    std::deque<std::string> _joined;        // contents of strings that continuations part
    std::uint32_t _section = kNone;
};

} // namespace typdescriptor::gsdfile
