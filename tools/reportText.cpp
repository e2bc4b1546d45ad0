#include "tools/reportText.h"

#include "tools/displayText.h"
#include "tools/sourceText.h"
#include "tools/terminal.h"

#include <algorithm>
#include <set>
#include <utility>

namespace {

constexpr Colour kSeverityColours[] = {Colour::kRed, Colour::kYellow, Colour::kCyan};

std::string codeText(int code)
{
    return code == 0 ? std::string() : " (" + std::to_string(code) + ')';
}

/// Writes the findings of one file.
class TextReport {
public:
    TextReport(const FileReport& checked, bool isColoured, std::size_t columns)
        : report(checked), source(*checked.document), inColour(isColoured), mostColumns(columns),
          name(readable(checked.file) + ':')
    {}

    std::string text()
    {
        for (const lint::Finding& finding : report.findings)
            add(finding);
        return std::move(written);
    }

private:
    void add(const lint::Finding& finding)
    {
        gutter = std::to_string(lastLine(finding)).size();
        const Colour colour = kSeverityColours[static_cast<std::size_t>(finding.severity)];
        addHead(finding.place, lint::severityName(finding.severity), colour,
                coloured(readable(finding.message), Colour::kBold, inColour) + " [" + finding.rule->name + ']' +
                    codeText(finding.code));
        addExcerpt(finding.place, Colour::kGreen);
        addMend(finding);
        for (const lint::Note& note : finding.notes) {
            addHead(note.place, "note", Colour::kCyan, readable(note.text));
            if (noted.emplace(note.place.begin, note.place.end).second)
                addExcerpt(note.place, Colour::kCyan);
        }
    }

    void addHead(lint::Span place, const std::string& kind, Colour colour, const std::string& message)
    {
        std::string where = name;
        if (!isWholeFile(place)) {
            const Position position = source.positionOf(place.begin);
            where += std::to_string(position.line) + ':' + std::to_string(position.column) + ':';
        }
        written += coloured(where, Colour::kBold, inColour) + ' ' + coloured(kind + ':', colour, inColour) + ' ' +
                   message + '\n';
    }

    void addExcerpt(lint::Span place, Colour colour)
    {
        if (isWholeFile(place) || place == shown) // the same place is shown once
            return;
        shown = place;
        const Excerpt excerpt = source.excerpt(place, excerptColumns());
        const std::string number = std::to_string(source.positionOf(place.begin).line);
        addBeside(number, excerpt.text);
        const std::string mark = '^' + std::string(excerpt.width - 1, '~');
        addBeside("", std::string(excerpt.begin, ' ') + coloured(mark, colour, inColour));
    }

    /// What a terminal has room for beside the line number.
    std::size_t excerptColumns() const
    {
        constexpr std::size_t kFewest = 40;
        const std::size_t beside = gutter + std::string_view("   | ").size();
        const std::size_t room = std::max(mostColumns, beside + kFewest) - beside;
        return mostColumns == 0 ? SourceText::kMostColumns : std::min(room, SourceText::kMostColumns);
    }

    /// A line behind the number of the line it belongs to.
    void addBeside(const std::string& number, const std::string& text)
    {
        written += "  " + std::string(gutter - number.size(), ' ') + number + " | " + text + '\n';
    }

    void addMend(const lint::Finding& finding)
    {
        if (finding.mend.empty())
            return;
        const lint::Edit& edit = finding.mend.front();
        const std::string old =
            source.utf8(report.document->bytes().substr(edit.place.begin, edit.place.end - edit.place.begin));
        const std::string fresh = source.utf8(edit.text);
        std::string text = "--fix makes " + std::to_string(finding.mend.size()) + " changes";
        if (finding.mend.size() == 1 && isShown(old) && isShown(fresh)) {
            text = old.empty()     ? "--fix inserts " + coloured(fresh, Colour::kGreen, inColour)
                   : fresh.empty() ? "--fix leaves out " + coloured(old, Colour::kRed, inColour)
                                   : "--fix writes " + coloured(fresh, Colour::kGreen, inColour);
        } else if (finding.mend.size() == 1) {
            text = "--fix mends it";
        }
        written += "  " + std::string(gutter, ' ') + " = " + text + '\n';
    }

    /// Whether a text can be shown in a line.
    static bool isShown(const std::string& text)
    {
        constexpr std::size_t kMostColumns = 100;
        return columnsOf(text) <= kMostColumns && text.find("\xEF\xBF\xBD") == std::string::npos &&
               (text.empty() || text.find_first_not_of(" \t") != std::string::npos);
    }

    std::size_t lastLine(const lint::Finding& finding) const
    {
        std::size_t last = source.positionOf(finding.place.begin).line;
        for (const lint::Note& note : finding.notes)
            last = std::max(last, source.positionOf(note.place.begin).line);
        return last;
    }

    const FileReport& report;
    SourceText source;
    bool inColour;
    std::size_t mostColumns;                                 // of the terminal, 0 for none
    std::set<std::pair<std::uint32_t, std::uint32_t>> noted; // places of notes whose lines were shown
    std::string name;                                        // of the file, with a colon
    lint::Span shown;                                        // by the excerpt above
    std::size_t gutter = 1;                                  // digits of the highest line number of a finding
    std::string written;
};

std::string counted(unsigned count, const std::string& one)
{
    return std::to_string(count) + ' ' + one + (count == 1 ? "" : "s");
}

/// A text for GitHub: what would end it is written as its hexadecimal value.
std::string escaped(const std::string& text, std::string_view special)
{
    constexpr std::string_view kHex = "0123456789ABCDEF";
    std::string result;
    for (const char c : readable(text)) {
        const auto byte = static_cast<unsigned char>(c);
        if (special.find(c) == std::string_view::npos)
            result += c;
        else
            (result += '%') += {kHex[byte >> 4U], kHex[byte & 0x0FU]};
    }
    return result;
}

} // namespace

std::string reportText(const FileReport& report, bool inColour, std::size_t columns)
{
    return report.findings.empty() ? std::string() : TextReport(report, inColour, columns).text();
}

std::string totalsText(const Totals& totals)
{
    std::string text = counted(totals.files, "file") + ": " + std::to_string(totals.ok) + " ok, " +
                       std::to_string(totals.withWarnings) + " with warnings, " + std::to_string(totals.failed) +
                       " failed";
    if (totals.unreadable > 0)
        text += ", " + std::to_string(totals.unreadable) + " unreadable";
    if (totals.mended > 0)
        text += "; " + std::to_string(totals.mended) + " mended";
    constexpr const char* kKinds[] = {"error", "warning", "hint"};
    std::string separator = "; ";
    for (std::size_t i = 0; i < std::size(kKinds); ++i) {
        if (totals.findings[i] == 0)
            continue;
        text += separator + counted(totals.findings[i], kKinds[i]);
        separator = ", ";
    }
    if (totals.mendable > 0)
        text += "; --fix mends " + std::to_string(totals.mendable);
    return text + '\n';
}

std::string githubText(const FileReport& report)
{
    constexpr const char* kCommands[] = {"error", "warning", "notice"};
    constexpr std::string_view kInProperty = "%\r\n\t:,";
    constexpr std::string_view kInMessage = "%\r\n";
    if (report.findings.empty())
        return {};
    const SourceText source(*report.document);
    std::string text;
    for (const lint::Finding& finding : report.findings) {
        text += std::string("::") + kCommands[static_cast<std::size_t>(finding.severity)] +
                " file=" + escaped(report.file, kInProperty);
        if (!isWholeFile(finding.place)) {
            const Position from = source.positionOf(finding.place.begin);
            const Position to = source.positionOf(finding.place.end);
            text += ",line=" + std::to_string(from.line) + ",endLine=" + std::to_string(to.line);
            if (from.line == to.line) // GitHub takes columns of one line only
                text += ",col=" + std::to_string(from.column) + ",endColumn=" + std::to_string(to.column);
        }
        text += std::string(",title=") + finding.rule->name + "::" + escaped(finding.message, kInMessage) +
                codeText(finding.code) + '\n';
    }
    return text;
}
