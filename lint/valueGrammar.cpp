#include "lint/valueGrammar.h"

namespace typdescriptor::lint {

using gsdfile::Value;
using gsdfile::ValueType;

namespace {

constexpr std::size_t kMany = static_cast<std::size_t>(-1);

constexpr Item kNumber[] = {{Want::number, 1, 1, ""}};
constexpr Item kRange[] = {{Want::range, 1, 1, ""}};
constexpr Item kText[] = {{Want::text, 1, 1, ""}};
constexpr Item kBytes[] = {{Want::number, 1, kMany, "byte"}};
constexpr Item kFamily[] = {{Want::number, 1, 1, "main family"}, {Want::family, 0, 3, "sub-family"}};
constexpr Item kModule[] = {{Want::text, 1, 1, "name"}, {Want::number, 1, 244, "identifier byte"}};
constexpr Item kKgpModule[] = {{Want::text, 1, 1, "name"}, {Want::number, 5, 5, "byte"}};
constexpr Item kKgpGui[] = {{Want::text, 1, 1, "text"}, {Want::number, 3, 3, "byte"}};
constexpr Item kDefinition[] = {{Want::number, 1, 1, "reference"}, {Want::text, 1, 1, "name"}};
constexpr Item kSlot[] = {
    {Want::text, 1, 1, "name"}, {Want::number, 1, 1, "default module"}, {Want::limits, 1, kMany, "allowed module"}};
constexpr Item kLimits[] = {{Want::number, 1, 1, "default"}, {Want::limits, 0, kMany, "limit"}};

} // namespace

std::span<const Item> itemsOf(ValueType type)
{
    switch (type) {
    case ValueType::boolean:
    case ValueType::number:
    case ValueType::numberSet:
        return kNumber;
    case ValueType::range:
        return kRange;
    case ValueType::string:
        return kText;
    case ValueType::byteList:
        return kBytes;
    case ValueType::family:
        return kFamily;
    case ValueType::module:
        return kModule;
    case ValueType::kgpModule:
        return kKgpModule;
    case ValueType::kgpGui:
        return kKgpGui;
    case ValueType::definition:
        return kDefinition;
    case ValueType::slot:
        return kSlot;
    case ValueType::limits:
        return kLimits;
    case ValueType::none:
        break;
    }
    return {};
}

bool isOfKind(const Value& value, Want want)
{
    switch (want) {
    case Want::number:
        return value.kind == Value::number;
    case Want::range:
        return value.kind == Value::range;
    case Want::text:
        return value.kind == Value::string;
    case Want::family:
        return value.isBehindAt;
    case Want::limits:
        return value.kind == Value::number || value.kind == Value::range;
    }
    return false;
}

} // namespace typdescriptor::lint
