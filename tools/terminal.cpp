#include "tools/terminal.h"

#include "host/text.h"

#include <array>
#include <cstdlib>
#include <iostream>
#include <langinfo.h>
#include <locale.h>
#include <sys/ioctl.h>
#include <unistd.h>

using namespace typdescriptor;

namespace {

/// Whether the user's locale, not the process's, which is always "C", has the encoding of the devices' texts.
bool isLatin1Locale()
{
    const locale_t locale = newlocale(LC_CTYPE_MASK, "", nullptr);
    if (locale == nullptr)
        return false;
    const std::string_view name = nl_langinfo_l(CODESET, locale);
    const bool isLatin1 = name == "ISO-8859-1" || name == "ISO-8859-15";
    freelocale(locale);
    return isLatin1;
}

} // namespace

bool isColourWanted()
{
    const char* const noColour = std::getenv("NO_COLOR");
    const char* const terminal = std::getenv("TERM");
    if (noColour != nullptr && *noColour != '\0')
        return false;
    return isTerminal() && (terminal == nullptr || std::string_view(terminal) != "dumb");
}

bool isTerminal()
{
    return isatty(STDOUT_FILENO) == 1;
}

std::size_t terminalColumns()
{
    winsize size{};
    return isTerminal() && ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

bool isErrorTerminal()
{
    return isatty(STDERR_FILENO) == 1;
}

std::string coloured(std::string_view text, Colour colour, bool isWanted)
{
    constexpr std::array<std::string_view, 5> kCodes = {"\x1b[1;31m", "\x1b[1;33m", "\x1b[32m", "\x1b[36m", "\x1b[1m"};
    if (!isWanted)
        return std::string(text);
    return std::string(kCodes[static_cast<std::size_t>(colour)]).append(text).append("\x1b[0m");
}

bool print(const std::string& utf8)
{
    static const bool isLatin1 = isTerminal() && isLatin1Locale();
    std::cout << (isLatin1 ? toLatin1(utf8) : utf8) << std::flush;
    return static_cast<bool>(std::cout);
}

void printBytes(const std::string& bytes)
{
    std::cout << bytes << std::flush;
}

void reportProblem(const std::string& name, const std::string& text)
{
    std::cerr << "typdesc: " << name << ": " << text << '\n';
}
