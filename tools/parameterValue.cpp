#include "tools/parameterValue.h"

#include "tools/latin1.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <optional>

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
std::optional<long> wholeNumber(const std::string& text)
{
    constexpr const char* kDigits = "0123456789";
    const std::size_t sign = text.starts_with('-') || text.starts_with('+') ? 1 : 0;
    const bool isHex = text.compare(sign, 2, "0x") == 0 || text.compare(sign, 2, "0X") == 0;
    if (!isHex && (sign == text.size() || text.find_first_not_of(kDigits, sign) != std::string::npos))
        return std::nullopt;
    char* end = nullptr;
    errno = 0;
    const long value = std::strtol(text.c_str(), &end, isHex ? 16 : 10);
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
    std::vector<std::size_t> found = indexesOf(names, [&](const std::string& name) { return isSameText(name, known); });
    const std::string dense = withoutBlanks(wanted);
    if (!found.empty() || dense.empty())
        return found;
    return indexesOf(names, [&](const std::string& name) {
        const std::string denseName = withoutBlanks(name);
        const bool isCut = characterCount(name) >= kNameWidth;
        return isSameText(denseName, isCut ? dense.substr(0, denseName.size()) : dense);
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

long largestOfType(const Parameter& parameter)
{
    return parameter.type == Parameter::kInt ? 32767 : (1L << parameter.bitCount) - 1;
}

long smallestOfType(const Parameter& parameter)
{
    return parameter.isSigned() ? -(1L << (parameter.bitCount - 1)) : 0;
}

} // namespace

std::size_t chooseName(const std::vector<std::string>& names, const std::string& wanted, const std::string& what)
{
    if (const auto number = wanted.starts_with('#') ? wholeNumber(wanted.substr(1)) : std::nullopt) {
        if (*number < 1 || *number > static_cast<long>(names.size()))
            throw ChoiceError(what + ' ' + wanted + " is not there: #1 to #" + std::to_string(names.size()) + " are");
        return static_cast<std::size_t>(*number - 1);
    }
    std::vector<std::size_t> found = indexesOfWhole(names, wanted);
    if (found.empty())
        found = indexesOfBeginning(names, wanted);
    if (found.empty())
        throw ChoiceError(what + ' ' + quoted(wanted) + " is not there: there are " +
                          candidates(names, indexesOf(names, [](const std::string&) { return true; })));
    if (found.size() > 1)
        throw ChoiceError(what + ' ' + quoted(wanted) + " may be " + candidates(names, found));
    return found.front();
}

long parseValue(const Parameter& parameter, const std::string& text, const std::string& what)
{
    std::optional<long> value = wholeNumber(text);
    if (!value) {
        std::vector<std::string> texts;
        for (const ValueText& entry : parameter.texts)
            texts.push_back(entry.text);
        const std::vector<std::size_t> found = indexesOfWhole(texts, text);
        if (found.empty())
            throw ChoiceError(what + ": " + quoted(text) + " is neither a number nor one of its value texts");
        value = parameter.texts[found.front()].value;
        if (parameter.type == Parameter::kInt && *value > largestOfType(parameter))
            *value -= 1L << parameter.bitCount; // texts of negative values are kept in 16 bits
    }
    const long modulus = 1L << parameter.bitCount;
    const bool isShortened = parameter.isSigned() && parameter.type != Parameter::kInt;
    if (isShortened && *value > parameter.maximum && *value < modulus)
        *value -= modulus; // typed as the byte in the telegram
    const long least = std::max(parameter.minimum, smallestOfType(parameter));
    const long most = std::min(parameter.maximum, largestOfType(parameter));
    if (*value < least || *value > most)
        throw ChoiceError(what + ": " + text + " is out of its range, " + std::to_string(least) + " to " +
                          std::to_string(most));
    return *value;
}

bool putValue(const Parameter& parameter, long value, std::vector<std::uint8_t>& bytes)
{
    const auto number = static_cast<unsigned>(value & 0xFFFF);
    if (parameter.type != Parameter::kBit && parameter.type != Parameter::kBitGroup)
        return putNumber(number, parameter.byte, parameter.byteCount(), bytes);
    if (parameter.byte >= bytes.size())
        return false;
    const unsigned mask = ((1U << parameter.bitCount) - 1) << parameter.firstBit;
    std::uint8_t& byte = bytes[parameter.byte];
    byte = static_cast<std::uint8_t>((byte & ~mask) | (number << parameter.firstBit & mask));
    return true;
}

bool putNumber(unsigned value, unsigned byte, unsigned byteCount, std::vector<std::uint8_t>& bytes)
{
    if (byte + byteCount > bytes.size())
        return false;
    for (unsigned i = 0; i < byteCount; ++i)
        bytes[byte + i] = static_cast<std::uint8_t>(value >> 8 * (byteCount - 1 - i) & 0xFFU);
    return true;
}
