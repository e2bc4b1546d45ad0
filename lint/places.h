#pragma once

// Small helpers of the rules: from tokens and statements to places, and pieces of sentences.

#include "lint/finding.h"

#include "gsdfile/document.h"
#include "gsdfile/keywords.h"

#include <string>
#include <string_view>

namespace typdescriptor::lint {

inline Span spanOf(const gsdfile::Token& token)
{
    return {token.begin, token.end};
}

inline Span keywordPlace(const gsdfile::Document& document, const gsdfile::Statement& statement)
{
    return spanOf(document.tokens()[statement.keywordToken]);
}

inline Span valuePlace(const gsdfile::Document& document, const gsdfile::Value& value)
{
    return {document.tokens()[value.firstToken].begin, document.tokens()[value.lastToken].end};
}

inline std::string textAt(const gsdfile::Document& document, Span place)
{
    return std::string(document.text(place.begin, place.end));
}

/// The kind of the block that a statement stands in.
inline gsdfile::BlockKind blockKindOf(const gsdfile::Document& document, const gsdfile::Statement& statement)
{
    return statement.block == gsdfile::kNone ? gsdfile::BlockKind::none : document.blocks()[statement.block].kind;
}

} // namespace typdescriptor::lint
