// Any bytes as the document of a GSD file: its tokens are the file, every place leads back to its byte, and statements,
// values, faults and blocks stand in order within it.

#include "fuzz/property.h"
#include "gsdfile/document.h"
#include "gsdfile/keywords.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

using namespace typdescriptor::gsdfile;

namespace {

void requireWholeFile(const Document& document, const std::string& bytes)
{
    require(document.bytes() == bytes, "a document keeps its file");
    std::string written;
    for (const Token& token : document.tokens()) {
        require(token.begin == written.size() && token.begin < token.end && token.end <= bytes.size(),
                "every byte stands in exactly one token");
        written += bytes.substr(token.begin, token.end - token.begin);
        require((token.end - token.begin) % document.unit() == 0 || token.end == bytes.size(),
                "no token parts a character of two bytes");
    }
    require(written == bytes, "the tokens are the file");
}

std::size_t charactersOf(const Document& document, const Token& token)
{
    const std::string_view bytes = document.bytes().substr(token.begin, token.end - token.begin);
    if (document.encoding() != Encoding::utf8)
        return bytes.size() / document.unit();
    return static_cast<std::size_t>(
        std::count_if(bytes.begin(), bytes.end(), [](char c) { return (c & '\xC0') != '\x80'; }));
}

/// A token stands on one line, which is the one that its place tells; columns lead back to the byte.
void requirePlaces(const Document& document)
{
    const std::vector<Line>& lines = document.lines();
    std::size_t characters = 0; // on the token's line, ahead of it
    for (std::size_t i = 0; i < document.tokens().size(); ++i) {
        const Token& token = document.tokens()[i];
        require(token.line >= 1 && token.line <= lines.size(), "a token has its line");
        const Line& line = lines[token.line - 1];
        const Place place = document.place(token.begin);
        require(place.line == token.line && document.tokenAt(token.begin) == i && document.tokenAt(token.end - 1) == i,
                "a byte's line and token are those that hold it");
        const std::string_view text = document.text(token);
        require(token.kind == TokenKind::lineEnd ? text == "\n" || text == "\r\n" || text == "\r"
                                                 : text.find('\n') == std::string_view::npos,
                "a line end is a token of its own");
        if (token.kind == TokenKind::mark)
            continue;
        require(line.begin + place.column - 1 == token.begin, "a column leads back to its byte");
        characters = token.begin == line.begin ? 0 : characters;
        require(place.character == characters + 1, "the character's column counts the characters ahead of it");
        characters += charactersOf(document, token);
        require(token.kind == TokenKind::lineEnd ? token.begin == line.end && line.lineEnd != LineEnd::none
                                                 : token.end <= line.end,
                "a line ends at its line end");
    }
}

void requireValues(const Document& document, const Statement& statement)
{
    std::size_t next = statement.firstToken;
    for (const Value& value : statement.values) {
        require(next <= value.firstToken && value.firstToken <= value.lastToken && value.lastToken < statement.endToken,
                "values follow one another within their statement");
        next = value.lastToken + 1;
        const Token whole = document.span(value);
        const bool isWhole = value.kind != Value::string || value.text.size() <= whole.end - whole.begin;
        require(isWhole && whole.end <= document.bytes().size(), "a text is no longer than what stands there");
    }
    for (const Fault& fault : statement.faults)
        require(fault.token >= statement.firstToken && fault.token < statement.endToken,
                "a fault lies within its statement");
}

void requireStatements(const Document& document)
{
    const std::vector<Block>& blocks = document.blocks();
    std::size_t next = 0;
    for (const Statement& statement : document.statements()) {
        require(next <= statement.firstToken && statement.firstToken < statement.endToken &&
                    statement.endToken <= document.tokens().size(),
                "statements follow one another");
        next = statement.endToken;
        require(document.tokens()[statement.firstToken].line <= statement.lastLine &&
                    statement.firstLine <= statement.lastLine,
                "a statement ends behind its beginning");
        require(statement.block == kNone || statement.block < blocks.size(),
                "a statement's block is one of the file's");
        require(statement.name.empty() == (statement.keywordToken == kNone), "a keyword has its token");
        require(statement.keyword == findKeyword(statement.name), "a keyword has its row");
        requireValues(document, statement);
    }
    for (const Block& block : blocks) {
        const auto index = static_cast<std::size_t>(&block - blocks.data());
        require(block.opening < block.end && block.end <= document.statements().size(), "a block has an end");
        if (block.parent != kNone) {
            const Block& outer = blocks[block.parent];
            require(block.parent < index && block.end <= std::min(outer.end, outer.closing),
                    "a block ends within the one around it");
        }
        require(block.closing == kNone || (block.closing > block.opening && block.closing < block.end),
                "what closes a block is its last statement");
        require(document.statements()[block.opening].keyword->opens == block.kind, "a block is what its keyword opens");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string bytes(data, data + size);
    const Document document(bytes);
    requireWholeFile(document, bytes);
    requirePlaces(document);
    requireStatements(document);
    for (const Statement& statement : document.statements()) {
        const Keyword* nearest = nearestKeyword(statement.name).keyword;
        const bool isVariant = statement.keyword != nullptr && statement.keyword->origin == Origin::fieldVariant;
        require(nearest != nullptr || statement.keyword == nullptr || isVariant, "a keyword is near to itself");
    }
    return 0;
}
