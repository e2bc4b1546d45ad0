#include "tools/findingText.h"

#include "tools/terminal.h"

namespace {

std::string excerptText(const Excerpt& excerpt, bool inColour)
{
    const std::string number = std::to_string(excerpt.line);
    std::string text = "  " + number + " | " + excerpt.text + '\n';
    if (excerpt.length == 0)
        return text;
    text += "  " + std::string(number.size(), ' ') + " | ";
    for (std::size_t i = 0; i < excerpt.column; ++i)
        text += excerpt.text[i] == '\t' ? '\t' : ' '; // ahead of the keyword stand blanks and tabs only
    const std::string underline = '^' + std::string(excerpt.length - 1, '~');
    return text + coloured(underline, Colour::kGreen, inColour) + '\n';
}

} // namespace

std::string sentenceOf(const Finding& finding)
{
    const std::string sentence = resultText(finding.code);
    return finding.detail.empty() ? sentence : sentence + " [" + finding.detail + ']';
}

std::string findingText(const std::string& file, const Finding& finding, bool inColour)
{
    std::string place = file;
    if (finding.line > 0)
        place += ':' + std::to_string(finding.line);
    const std::string severity =
        finding.isError ? coloured("error:", Colour::kRed, inColour) : coloured("warning:", Colour::kYellow, inColour);
    std::string detail = finding.detail.empty() ? "" : " [" + finding.detail + ']';
    return coloured(place + ':', Colour::kBold, inColour) + ' ' + severity + ' ' + resultText(finding.code) + " (" +
           std::to_string(finding.code) + ')' + detail + '\n';
}

std::string findingsText(const FileReport& report, bool inColour)
{
    std::string text;
    for (const Finding& finding : report.findings) {
        text += findingText(report.file, finding, inColour);
        if (finding.excerpt)
            text += excerptText(*finding.excerpt, inColour);
    }
    return text;
}

std::string totalsText(const Totals& totals)
{
    std::string text = std::to_string(totals.files) + (totals.files == 1 ? " file: " : " files: ") +
                       std::to_string(totals.ok) + " ok, " + std::to_string(totals.withWarnings) + " with warnings, " +
                       std::to_string(totals.failed) + " failed";
    if (totals.unreadable > 0)
        text += ", " + std::to_string(totals.unreadable) + " unreadable";
    return text + '\n';
}
