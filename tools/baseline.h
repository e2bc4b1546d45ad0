// Findings that are known already, in a text file that stands in version control beside the files: a line for each,
// `path: rule: message`, sorted. Neither the number of its line nor that of another line it speaks of is in it, so that a
// finding stays known when lines above it come or go. A line that stands there twice covers two findings.

#pragma once

#include "tools/checkedFile.h"

#include <filesystem>
#include <map>
#include <string>

class Baseline {
public:
    /// @param file  a path of a finding is written as it leads from the folder of this file
    explicit Baseline(const std::string& file);

    /// Reads what is known.
    /// @return empty, or why it cannot be read
    std::string load();
    /// Writes what was added.
    /// @return empty, or why it cannot be written
    std::string save() const;

    void add(const FileReport& report);
    /// Takes the findings out of a report that are known.
    void leaveOutKnown(FileReport& report) const;

private:
    std::string pathOf(const FileReport& report) const;

    std::filesystem::path place;
    std::map<std::string, unsigned> counts;
};
