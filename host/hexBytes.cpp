#include "host/hexBytes.h"

#include <string_view>

namespace typdescriptor {

namespace {

using Bytes = std::vector<std::uint8_t>;

/// Takes the bytes of one word, which a mark ahead of it or behind it may call hexadecimal.
bool takeHexWord(std::string word, Bytes& bytes)
{
    for (const std::string_view mark : {"0x", "0X", "x", "X", "$"}) {
        if (word.starts_with(mark)) {
            word.erase(0, mark.size());
            break;
        }
    }
    if (word.size() > 1 && (word.back() == 'h' || word.back() == 'H'))
        word.pop_back();
    if (word.size() == 1)
        word.insert(0, 1, '0');
    if (word.empty() || word.size() % 2 != 0 || word.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos)
        return false;
    for (std::size_t i = 0; i < word.size(); i += 2)
        bytes.push_back(static_cast<std::uint8_t>(std::stoul(word.substr(i, 2), nullptr, 16)));
    return true;
}

} // namespace

std::string asHex(const std::vector<std::uint8_t>& bytes)
{
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string text;
    for (const std::uint8_t byte : bytes) {
        if (!text.empty())
            text += ' ';
        text += kDigits[byte >> 4U];
        text += kDigits[byte & 0x0FU];
    }
    return text;
}

std::string hexWord(unsigned value)
{
    std::string digits = asHex({static_cast<std::uint8_t>(value >> 8U), static_cast<std::uint8_t>(value & 0xFFU)});
    std::erase(digits, ' ');
    return "0x" + digits;
}

std::optional<Bytes> parseHexBytes(const std::vector<std::string>& arguments, std::string& wrong)
{
    constexpr const char* kSeparators = " \t\r\n,;:-._|\\\"'[](){}";
    Bytes bytes;
    for (const std::string& argument : arguments) {
        for (std::size_t start = argument.find_first_not_of(kSeparators); start != std::string::npos;) {
            const std::size_t end = argument.find_first_of(kSeparators, start);
            const std::string word = argument.substr(start, end == std::string::npos ? end : end - start);
            if (!takeHexWord(word, bytes)) {
                wrong = word;
                return std::nullopt;
            }
            start = argument.find_first_not_of(kSeparators, end);
        }
    }
    return bytes;
}

} // namespace typdescriptor
