#pragma once

// The values of a statement held against what its keyword takes: one after the other, in the order of the format.

#include "gsdfile/document.h"
#include "gsdfile/keywords.h"

#include <cstddef>
#include <span>

namespace typdescriptor::lint {

enum class Want { number, range, text, family, limits };

/// Some values of one kind. Limits are one range, or numbers.
struct Item {
    Want want;
    std::size_t least;
    std::size_t most;
    const char* name; // "identifier byte"; empty where it is the only value of the keyword
};

std::span<const Item> itemsOf(gsdfile::ValueType type);

bool isOfKind(const gsdfile::Value& value, Want want);

/// Calls visit(item, values) for each item of a type, `values` being the ones that fall to it whatever their kind, and at
/// last surplus(values) with those that nothing takes.
template <typename Visit, typename Surplus>
void forEachItem(std::span<const gsdfile::Value> left, gsdfile::ValueType type, Visit visit, Surplus surplus)
{
    for (const Item& item : itemsOf(type)) {
        std::size_t count = 0;
        while (count < left.size() && count < item.most && (count < item.least || isOfKind(left[count], item.want)))
            ++count;
        visit(item, left.first(count));
        left = left.subspan(count);
    }
    if (!left.empty())
        surplus(left);
}

/// The same for a statement with a keyword that is known.
template <typename Visit, typename Surplus>
void forEachItem(const gsdfile::Statement& statement, Visit visit, Surplus surplus)
{
    forEachItem(statement.values, statement.keyword->type, visit, surplus);
}

} // namespace typdescriptor::lint
