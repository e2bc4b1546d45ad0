#include "host/parameterValue.h"

#include "host/configurationParts.h"
#include "host/text.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <optional>

namespace typdescriptor {

namespace {

constexpr std::size_t kNameWidth = 30;

/// A name as the library cuts it.
std::string cut(const std::string& name)
{
    return fromField(toLatin1(name).c_str(), std::min(toLatin1(name).size(), kNameWidth));
}

std::string quoted(const std::string& text)
{
    return '"' + text + '"';
}

/// A whole number, decimal or with 0x.
std::optional<std::int64_t> wholeNumber(const std::string& text)
{
    constexpr const char* kDigits = "0123456789";
    const std::size_t sign = text.starts_with('-') || text.starts_with('+') ? 1 : 0;
    const bool isHex = text.compare(sign, 2, "0x") == 0 || text.compare(sign, 2, "0X") == 0;
    if (!isHex && (sign == text.size() || text.find_first_not_of(kDigits, sign) != std::string::npos))
        return std::nullopt;
    char* end = nullptr;
    errno = 0;
    const std::int64_t value = std::strtoll(text.c_str(), &end, isHex ? 16 : 10);
    if (errno != 0 || *end != '\0')
        return std::nullopt;
    return value;
}

template <class Matches>
std::vector<std::size_t> indexesOf(const std::vector<std::string>& names, Matches matches)
{
    std::vector<std::size_t> indexes;
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (matches(names[i]))
            indexes.push_back(i);
    }
    return indexes;
}

std::string withoutBlanks(std::string text)
{
    std::erase(text, ' ');
    return text;
}

/// The names that are a text as it is typed; else those that are it without blanks, some of which the library drops so
/// that a name fits. The typed text may then go on behind the last character that is kept.
std::vector<std::size_t> indexesOfWhole(const std::vector<std::string>& names, const std::string& wanted)
{
    const std::string known = cut(wanted);
    std::vector<std::size_t> found =
        indexesOf(names, [&](const std::string& name) { return isSameText(name, wanted); });
    if (found.empty())
        found = indexesOf(names, [&](const std::string& name) { return isSameText(name, known); });
    const std::string dense = withoutBlanks(wanted);
    if (!found.empty() || dense.empty())
        return found;
    return indexesOf(names, [&](const std::string& name) {
        const std::string denseName = withoutBlanks(name);
        return isSameText(denseName, mayBeCut(name) ? dense.substr(0, denseName.size()) : dense);
    });
}

/// The names that begin with a text, with its blanks or without.
std::vector<std::size_t> indexesOfBeginning(const std::vector<std::string>& names, const std::string& wanted)
{
    const std::string known = cut(wanted);
    const std::string dense = withoutBlanks(known);
    if (dense.empty())
        return {};
    std::vector<std::size_t> found =
        indexesOf(names, [&](const std::string& name) { return isSameText(name.substr(0, known.size()), known); });
    if (!found.empty())
        return found;
    return indexesOf(
        names, [&](const std::string& name) { return isSameText(withoutBlanks(name).substr(0, dense.size()), dense); });
}

std::string candidates(const std::vector<std::string>& names, const std::vector<std::size_t>& indexes)
{
    constexpr std::size_t kMost = 8;
    std::string text;
    for (std::size_t i = 0; i < std::min(indexes.size(), kMost); ++i)
        text += (i == 0 ? "#" : ", #") + std::to_string(indexes[i] + 1) + ' ' + names[indexes[i]];
    return text + (indexes.size() > kMost ? ", ..." : "");
}

std::int64_t largestOfType(const Parameter& parameter)
{
    const bool isAlwaysSigned =
        parameter.isSigned() && parameter.type != Parameter::kByte && parameter.type != Parameter::kUint;
    return (std::int64_t{1} << (parameter.bitCount - (isAlwaysSigned ? 1 : 0))) - 1;
}

std::int64_t smallestOfType(const Parameter& parameter)
{
    return parameter.isSigned() ? -(std::int64_t{1} << (parameter.bitCount - 1)) : 0;
}

/// What a person may set, values with their texts first.
std::string allowedWithTexts(const Parameter& parameter)
{
    std::string words = parameter.allowedInWords();
    std::string texts;
    for (const ValueText& entry : parameter.texts) {
        if (!entry.text.empty())
            texts += (texts.empty() ? "" : ", ") + std::to_string(entry.value) + ' ' + entry.text;
    }
    return texts.empty() ? words : words + " (" + texts + ')';
}

/// The value that a text stands for.
std::optional<std::int64_t> valueOfText(const Parameter& parameter, const std::string& text)
{
    std::vector<std::string> texts;
    for (const ValueText& entry : parameter.texts)
        texts.push_back(entry.text);
    const std::vector<std::size_t> found = indexesOfWhole(texts, text);
    if (found.empty())
        return std::nullopt;
    std::int64_t value = parameter.texts[found.front()].value;
    if (parameter.type == Parameter::kInt && value > largestOfType(parameter))
        value -= std::int64_t{1} << parameter.bitCount; // texts of negative values are kept in 16 bits
    return value;
}

} // namespace

std::vector<std::size_t> namesFor(const std::vector<std::string>& names, const std::string& wanted)
{
    if (const auto number = wanted.rfind('#', 0) == 0 ? wholeNumber(wanted.substr(1)) : std::nullopt) {
        if (*number < 1 || *number > static_cast<std::int64_t>(names.size()))
            return {};
        return {static_cast<std::size_t>(*number - 1)};
    }
    std::vector<std::size_t> found = indexesOfWhole(names, wanted);
    return found.empty() ? indexesOfBeginning(names, wanted) : found;
}

std::size_t chooseName(const std::vector<std::string>& names, const std::string& wanted, const std::string& kind,
                       unsigned slot)
{
    const std::vector<std::size_t> found = namesFor(names, wanted);
    if (found.size() == 1)
        return found.front();
    Refusal why;
    const bool isNumber = wanted.rfind('#', 0) == 0 && wholeNumber(wanted.substr(1));
    const std::string what = ownerName(slot) + ": " + kind + ' ';
    why.name = (found.empty() ? "unknown" : "ambiguous") + std::string(kind == "module" ? "Module" : "Parameter");
    why.slot = slot;
    (kind == "module" ? why.value : why.parameter) = wanted;
    if (names.empty()) {
        why.name = kind == "module" ? "noModules" : "noParameters";
        why.text =
            ownerName(slot) + (kind == "module" ? ": the device has no modules to choose from" : " has no parameters");
    } else if (!found.empty()) {
        why.allowed = candidates(names, found);
        why.text = what + quoted(wanted) + " may be " + why.allowed;
    } else if (isNumber) {
        why.allowed = "#1 to #" + std::to_string(names.size());
        why.text = what + wanted + " is not there: " + why.allowed + " are";
    } else {
        why.allowed = candidates(names, indexesOf(names, [](const std::string&) { return true; }));
        why.text = what + quoted(wanted) + " is not there: there are " + why.allowed;
    }
    throw ChoiceError(std::move(why));
}

std::string unmistakable(const std::vector<std::string>& names, std::size_t index)
{
    const bool isClear = namesFor(names, names[index]) == std::vector<std::size_t>{index};
    return isClear ? names[index] : '#' + std::to_string(index + 1);
}

std::vector<std::string> moduleNames(const Device& device)
{
    std::vector<std::string> names;
    names.reserve(device.modules.size());
    for (const Module& module : device.modules)
        names.push_back(module.wholeName());
    return names;
}

std::int64_t parseValue(const Parameter& parameter, const std::string& text, unsigned slot)
{
    const auto refuse = [&](const char* name, const std::string& why, const std::string& allowed) {
        throw ChoiceError(
            {name, ownerName(slot) + ": " + parameter.name + ": " + why, slot, parameter.name, text, allowed});
    };
    const std::string allowed = allowedWithTexts(parameter);
    std::optional<std::int64_t> value = wholeNumber(text);
    if (!value)
        value = valueOfText(parameter, text);
    if (!value)
        refuse("notAValue", quoted(text) + " is neither a number nor one of its value texts, allowed are " + allowed,
               allowed);
    const std::int64_t modulus = std::int64_t{1} << parameter.bitCount;
    const bool isShortened = parameter.isSigned() && parameter.type != Parameter::kInt;
    if (isShortened && *value > parameter.maximum && *value < modulus)
        *value -= modulus; // typed as the byte in the telegram
    const bool isInType = *value >= smallestOfType(parameter) && *value <= largestOfType(parameter);
    if (!isInType || !parameter.allows(*value))
        refuse("outOfRange",
               text + " is out of its range, " + allowed +
                   (parameter.mayBeShortened ? "; a type file keeps 32 bits in 16, its GSD file may allow more" : ""),
               allowed);
    if (!parameter.isChangeable && *value != parameter.defaultValue)
        refuse("notChangeable",
               text + " cannot be set, the device fixes it at " + std::to_string(parameter.defaultValue),
               std::to_string(parameter.defaultValue));
    return *value;
}

bool putValue(const Parameter& parameter, std::int64_t value, std::vector<std::uint8_t>& bytes)
{
    const auto number = static_cast<std::uint32_t>(value);
    if (parameter.type != Parameter::kBit && parameter.type != Parameter::kBitGroup)
        return putNumber(number, parameter.byte, parameter.byteCount(), bytes);
    if (parameter.byte >= bytes.size())
        return false;
    const unsigned mask = ((1U << parameter.bitCount) - 1) << parameter.firstBit;
    std::uint8_t& byte = bytes[parameter.byte];
    byte = static_cast<std::uint8_t>((byte & ~mask) | (number << parameter.firstBit & mask));
    return true;
}

std::optional<std::int64_t> valueIn(const Parameter& parameter, const std::vector<std::uint8_t>& bytes)
{
    if (parameter.byte + parameter.byteCount() > bytes.size())
        return std::nullopt;
    std::int64_t value = 0;
    for (unsigned i = 0; i < parameter.byteCount(); ++i)
        value = value * 256 + bytes[parameter.byte + i];
    if (parameter.type == Parameter::kBit || parameter.type == Parameter::kBitGroup)
        return value >> parameter.firstBit & ((std::int64_t{1} << parameter.bitCount) - 1);
    if (parameter.isSigned() && value > std::max(parameter.maximum, (std::int64_t{1} << (parameter.bitCount - 1)) - 1))
        value -= std::int64_t{1} << parameter.bitCount;
    return value;
}

bool putNumber(std::uint32_t value, unsigned byte, unsigned byteCount, std::vector<std::uint8_t>& bytes)
{
    if (byte + byteCount > bytes.size())
        return false;
    for (unsigned i = 0; i < byteCount; ++i)
        bytes[byte + i] = static_cast<std::uint8_t>(value >> 8 * (byteCount - 1 - i) & 0xFFU);
    return true;
}

} // namespace typdescriptor
