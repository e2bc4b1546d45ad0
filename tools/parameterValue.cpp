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

std::string ambiguity(const std::vector<std::string>& names, const std::vector<std::size_t>& indexes)
{
    constexpr std::size_t kMost = 8;
    std::string text = " may be ";
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
    return parameter.type == Parameter::kInt ? -32768 : 0;
}

} // namespace

std::size_t chooseName(const std::vector<std::string>& names, const std::string& wanted, const std::string& what)
{
    if (const auto number = wanted.starts_with('#') ? wholeNumber(wanted.substr(1)) : std::nullopt) {
        if (*number < 1 || *number > static_cast<long>(names.size()))
            throw ChoiceError(what + ' ' + wanted + " is not there: #1 to #" + std::to_string(names.size()) + " are");
        return static_cast<std::size_t>(*number - 1);
    }
    const std::string known = cut(wanted);
    std::vector<std::size_t> found = indexesOf(names, [&](const std::string& name) { return isSameText(name, known); });
    if (found.empty() && !known.empty())
        found =
            indexesOf(names, [&](const std::string& name) { return isSameText(name.substr(0, known.size()), known); });
    if (found.empty())
        throw ChoiceError(what + ' ' + quoted(wanted) + " is not there");
    if (found.size() > 1)
        throw ChoiceError(what + ' ' + quoted(wanted) + ambiguity(names, found));
    return found.front();
}

long parseValue(const Parameter& parameter, const std::string& text, const std::string& what)
{
    std::optional<long> value = wholeNumber(text);
    if (!value) {
        const std::string known = cut(text);
        const auto entry = std::find_if(parameter.texts.begin(), parameter.texts.end(),
                                        [&](const ValueText& row) { return isSameText(row.text, known); });
        if (entry == parameter.texts.end())
            throw ChoiceError(what + ": " + quoted(text) + " is neither a number nor one of its value texts");
        value = entry->value;
        if (parameter.type == Parameter::kInt && *value > largestOfType(parameter))
            *value -= 1L << parameter.bitCount; // texts of negative values are kept in 16 bits
    }
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
