#include "tools/baseline.h"

#include "tools/displayText.h"
#include "tools/fileBytes.h"

#include <algorithm>
#include <fstream>
#include <sstream>
#include <system_error>

namespace fs = std::filesystem;

namespace {

constexpr const char* kHead =
    "# Findings that typdesc check --baseline leaves out; --write-baseline makes this file.\n";

/// The message without the numbers of lines and of what else there is ("and 7 more"), in one line.
std::string steadyMessage(const std::string& message)
{
    constexpr std::string_view kLine = "line ";
    constexpr std::string_view kMore = " more";
    std::string text;
    for (std::size_t i = 0; i < message.size();) {
        const std::size_t end = std::min(message.find_first_not_of("0123456789", i), message.size());
        if (end == i) {
            text += message[i] == '\t' ? ' ' : message[i];
            ++i;
            continue;
        }
        const bool isCount = message.compare(end, kMore.size(), kMore) == 0;
        if (!text.ends_with(kLine) && !isCount)
            text.append(message, i, end - i);
        i = end;
    }
    return readable(text);
}

std::string keyOf(const std::string& path, const lint::Finding& finding)
{
    return path + ": " + finding.rule->name + ": " + steadyMessage(finding.message);
}

} // namespace

Baseline::Baseline(const std::string& file) : place(file) {}

std::string Baseline::load()
{
    std::string problem;
    std::istringstream text(readFile(place.string(), problem));
    for (std::string line; std::getline(text, line);) {
        if (line.ends_with('\r'))
            line.pop_back();
        if (!line.empty() && line.front() != '#')
            ++counts[line];
    }
    return problem;
}

std::string Baseline::save() const
{
    std::ofstream sink(place, std::ios::binary);
    sink << kHead;
    for (const auto& [key, count] : counts) {
        for (unsigned i = 0; i < count; ++i)
            sink << key << '\n';
    }
    sink.close();
    return sink ? std::string() : "cannot be written";
}

std::string Baseline::pathOf(const FileReport& report) const
{
    if (report.isStandardInput)
        return readable(report.file);
    std::error_code error;
    const fs::path folder = fs::absolute(place, error).parent_path();
    const fs::path file = fs::absolute(report.file, error).lexically_normal();
    return readable(file.lexically_proximate(folder.lexically_normal()).generic_string());
}

void Baseline::add(const FileReport& report)
{
    const std::string path = pathOf(report);
    for (const lint::Finding& finding : report.findings)
        ++counts[keyOf(path, finding)];
}

void Baseline::leaveOutKnown(FileReport& report) const
{
    if (report.findings.empty())
        return;
    const std::string path = pathOf(report);
    std::map<std::string, unsigned> used;
    std::erase_if(report.findings, [&](const lint::Finding& finding) {
        const auto known = counts.find(keyOf(path, finding));
        return known != counts.end() && used[known->first]++ < known->second;
    });
}
