// Reads the bytes of a document into its tokens, statements and blocks. In two steps for each logical line: its tokens,
// then what they say.

#pragma once

#include "gsdfile/document.h"
#include "gsdfile/keywords.h"

namespace typdescriptor::gsdfile {

class Reader {
public:
    Reader(Document& target, bool returnEndsLines) : _document(target), _returnEndsLines(returnEndsLines) {}

    void read();

private:
    // Bytes, by positions in the text: what stands behind the mark, one byte for each unit.
    std::string_view _text;
    std::size_t _position = 0;
    std::size_t _knownBegin = 0; // positions whose line end is known: from here
    std::size_t _knownEnd = 0;   // to it, and this is it

    bool isAtEnd() const { return _position >= _text.size(); }
    char at(std::size_t position) const { return position < _text.size() ? _text[position] : '\0'; }
    bool isLineEnd(std::size_t position) const;
    std::size_t endOfLine(std::size_t position);
    std::uint32_t offsetOf(std::size_t position) const;
    std::uint32_t tokenCount() const { return static_cast<std::uint32_t>(_document._tokens.size()); }
    std::uint32_t statementCount() const { return static_cast<std::uint32_t>(_document._statements.size()); }
    bool isFamily() const;
    void push(TokenKind kind, std::size_t end);
    void pushLineEnd();
    void pushRest();

    // Lines.
    void readFreeLine();
    bool isSectionLine(std::size_t position) const;
    void readLogicalLine();

    // Tokens of a logical line.
    void readTokens();
    bool readContinuation();
    void readLexeme();
    void readString();
    void readNumberOrWord();
    void readFamilyText();
    std::size_t wordEnd(std::size_t position) const;

    // What the tokens say.
    void parseStatement(std::uint32_t firstToken, std::uint32_t firstLine);
    void parseArgument(Statement& statement, std::uint32_t& token);
    void parseValues(std::uint32_t token);
    void parseString(std::uint32_t& token);
    void parseNumber(std::uint32_t& token, bool isBehindComma);
    bool takeNumber(std::uint32_t token, Number& number);
    void takeRest(std::uint32_t& token, Number& number);
    std::uint32_t nextToken(std::uint32_t token) const;
    TokenKind kindOf(std::uint32_t token) const;
    void placeInBlocks(Statement& statement);
    void closeInner(std::uint32_t until, std::uint32_t statement);

    Document& _document;
    bool _returnEndsLines;
    bool _isInSection = false;
    bool _isInString = false;          // of the line being read, over a continuation
    bool _isContinuedAtEnd = false;    // the file ends behind a continuation
    bool _hasKeyword = false;          // of the line being read
    const Keyword* _keyword = nullptr; // of the line being read
    std::uint32_t _innermost = kNone;  // block
    std::vector<Value> _values;        // of the line being read
    std::vector<Fault> _faults;        // of the line being read
};

} // namespace typdescriptor::gsdfile
