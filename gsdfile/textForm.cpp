#include "gsdfile/textForm.h"

#include <algorithm>
#include <cstring>

namespace typdescriptor::gsdfile {

namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kLittleMark = "\xFF\xFE";
constexpr std::string_view kBigMark = "\xFE\xFF";

unsigned char byteAt(std::string_view text, std::size_t i)
{
    return static_cast<unsigned char>(text[i]);
}

/// UTF-16 without a mark: nearly every other byte of the beginning is 0, and the rest is not.
Encoding guessWide(std::string_view bytes)
{
    constexpr std::size_t kLooked = 512;
    const std::size_t pairs = std::min(bytes.size(), kLooked) / 2;
    std::size_t zeroFirst = 0;
    std::size_t zeroSecond = 0;
    for (std::size_t i = 0; i < pairs; ++i) {
        zeroFirst += bytes[2 * i] == '\0' ? 1U : 0U;
        zeroSecond += bytes[2 * i + 1] == '\0' ? 1U : 0U;
    }
    constexpr std::size_t kFewest = 4;
    if (pairs >= kFewest && zeroSecond * 10 >= pairs * 9 && zeroFirst * 10 <= pairs)
        return Encoding::utf16Little;
    if (pairs >= kFewest && zeroFirst * 10 >= pairs * 9 && zeroSecond * 10 <= pairs)
        return Encoding::utf16Big;
    return Encoding::ascii;
}

/// The first byte from a position on that is no ASCII; the end when all are.
std::size_t behindAscii(std::string_view bytes, std::size_t position)
{
    constexpr std::uint64_t kHighBits = 0x8080808080808080U;
    std::uint64_t eight = 0;
    for (; position + sizeof eight <= bytes.size(); position += sizeof eight) {
        std::memcpy(&eight, bytes.data() + position, sizeof eight);
        if ((eight & kHighBits) != 0)
            break;
    }
    while (position < bytes.size() && byteAt(bytes, position) < 0x80U)
        ++position;
    return position;
}

/// ASCII, UTF-8 where every character above it is, else Latin-1.
Encoding narrowEncoding(std::string_view bytes)
{
    std::size_t i = behindAscii(bytes, 0);
    if (i == bytes.size())
        return Encoding::ascii;
    while (i < bytes.size()) {
        const std::size_t length = utf8Length(bytes, i);
        if (length == 0)
            return Encoding::latin1;
        i = behindAscii(bytes, i + length);
    }
    return Encoding::utf8;
}

} // namespace

std::size_t utf8Length(std::string_view text, std::size_t position)
{
    const unsigned char first = byteAt(text, position);
    if (first < 0x80U)
        return 1;
    const std::size_t length = first >= 0xC2U && first < 0xE0U   ? 2
                               : first >= 0xE0U && first < 0xF0U ? 3
                               : first >= 0xF0U && first < 0xF5U ? 4
                                                                 : 0;
    if (length == 0 || text.size() - position < length)
        return 0;
    const unsigned char second = byteAt(text, position + 1);
    const bool isOverlong = (first == 0xE0U && second < 0xA0U) || (first == 0xF0U && second < 0x90U);
    const bool isSurrogate = first == 0xEDU && second >= 0xA0U;
    const bool isTooLarge = first == 0xF4U && second >= 0x90U;
    if (isOverlong || isSurrogate || isTooLarge)
        return 0;
    for (std::size_t i = 1; i < length; ++i) {
        if ((byteAt(text, position + i) & 0xC0U) != 0x80U)
            return 0;
    }
    return length;
}

TextForm textForm(std::string_view bytes)
{
    TextForm form;
    if (bytes.starts_with(kUtf8Mark)) {
        form.encoding = Encoding::utf8;
        form.markSize = static_cast<std::uint32_t>(kUtf8Mark.size());
    } else if (bytes.starts_with(kLittleMark) || bytes.starts_with(kBigMark)) {
        form.encoding = bytes.starts_with(kLittleMark) ? Encoding::utf16Little : Encoding::utf16Big;
        form.markSize = static_cast<std::uint32_t>(kLittleMark.size());
    } else {
        form.encoding = guessWide(bytes);
        if (form.encoding == Encoding::ascii)
            form.encoding = narrowEncoding(bytes);
    }
    form.endsLinesWithReturn = bytes.find('\n') == std::string_view::npos;
    return form;
}

std::string narrowed(std::string_view bytes, const TextForm& form)
{
    constexpr std::size_t kUnit = 2;
    const std::size_t highByte = form.encoding == Encoding::utf16Little ? 1 : 0;
    std::string text;
    text.reserve((bytes.size() - form.markSize) / kUnit);
    for (std::size_t i = form.markSize; i + 1 < bytes.size(); i += kUnit)
        text += bytes[i + highByte] == '\0' ? bytes[i + 1 - highByte] : '?';
    return text;
}

} // namespace typdescriptor::gsdfile
