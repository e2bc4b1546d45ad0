#include "tests/gsdText.h"

#include "gsd/cGsdCompiler.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace typdescriptor::internal;

namespace {

/// Takes the first line.
std::string_view takeLine(std::string_view& lines)
{
    const std::size_t end = std::min(lines.find(" // "), lines.size());
    const std::string_view line = lines.substr(0, end);
    lines.remove_prefix(std::min(end + 4, lines.size()));
    return line;
}

} // namespace

GsdText GsdText::of(const std::string& device)
{
    std::string changes = device;
    std::replace(changes.begin(), changes.end(), '\'', '"');
    std::string_view rest = changes;
    const std::string_view name = takeLine(rest);
    GsdText text;
    if (name != "nothing")
        text.add("#Profibus_DP // GSD_Revision = 3 // Vendor_Name = \"Kessel\" // Model_Name = \"Valve 8\" // Revision "
                 "= \"V1\" // Ident_Number = 0x80A1 // Protocol_Ident = 0 // Station_Type = 0 // "
                 "Hardware_Release = \"H1\" // Software_Release = \"S1\" // 9.6_supp = 1 // MaxTsdr_9.6 = 60 // "
                 "Min_Slave_Intervall = 20");
    if (name == "modular")
        text.add(
            "Modular_Station = 1 // Max_Module = 8 // Max_Input_Len = 32 // Max_Output_Len = 16 // Max_Data_Len = 48");
    return text.change(rest);
}

GsdText& GsdText::change(std::string_view lines)
{
    if (lines.starts_with('-')) {
        const std::string keyword(takeLine(lines).substr(1));
        const std::size_t start = text.find('\n' + keyword + ' ') + 1;
        EXPECT_NE(start, 0U) << keyword;
        text.erase(start, text.find('\n', start) + 1 - start);
    }
    return add(lines);
}

GsdText& GsdText::add(std::string_view lines)
{
    while (!lines.empty())
        text.append(takeLine(lines)) += '\n';
    return *this;
}

unsigned GsdText::lineCount() const
{
    return static_cast<unsigned>(std::count(text.begin(), text.end(), '\n'));
}

std::string Compiled::outcome() const
{
    return std::to_string(result) + (result < 0 ? ' ' + std::to_string(errorLine) : "");
}

std::string Compiled::records() const
{
    return inShort(std::string_view(image).substr(image.find("\r\n") + 195));
}

Compiled compileGsd(const std::string& text, const std::string& extension, std::uint32_t capacity, unsigned linesBefore)
{
    std::vector<char> image(capacity);
    cGsdCompiler compiler(image.data(), capacity);
    Compiled compiled;
    compiled.result = compiler.compile(putFile("device." + extension, text).c_str(), 0, nullptr);
    compiled.errorLine = compiler.errorLine();
    compiler.copyFoundMandatories(compiled.found.data());
    compiled.image.assign(image.data(), compiler.imageLength());
    std::vector<GSD_WARNING_ITEM> warnings(compiler.warningCount());
    compiler.copyWarnings(warnings.data());
    for (const GSD_WARNING_ITEM& item : warnings)
        compiled.warnings += ", " + std::to_string(item.lineNumber - linesBefore) + ' ' + std::to_string(item.code);
    return compiled;
}

std::string inShort(std::string_view text)
{
    std::string result;
    while (!text.empty()) {
        const std::size_t blanks = std::min(text.find_first_not_of(' '), text.size());
        std::size_t taken = 1;
        if (blanks > 2) {
            result += '{' + std::to_string(blanks) + '}';
            taken = blanks;
        } else if (text.starts_with(";\r\n")) {
            result += '|';
            taken = 3;
        } else {
            result += text.front() == '\0' ? "{NUL}" : std::string(1, text.front());
        }
        text.remove_prefix(taken);
    }
    return result;
}
