// What is wrong with a file, and where.
//
// In: a GSD file or a type file. Out: its findings: the warnings and the error of a compilation with their lines, and
// what the check says. A compiled image that the check refuses is a finding without a line.

#pragma once

#include "tools/exitStatus.h"
#include "tools/sourceText.h"

#include "descriptor/cTypDescriptor.h"

#include <optional>
#include <string>
#include <vector>

struct Finding {
    bool isError = true;
    int code = 0;
    long line = 0;      // from 1; 0 when it has none
    std::string detail; // more than the code's sentence says; often empty
    std::optional<Excerpt> excerpt;
};

struct FileReport {
    std::string file;
    std::vector<Finding> findings;
    std::string problem; // why the file cannot be read; then there are no findings

    bool isFailed() const;
    bool hasWarnings() const;
};

struct Totals {
    unsigned files = 0;
    unsigned ok = 0;
    unsigned withWarnings = 0; // and without an error
    unsigned failed = 0;
    unsigned unreadable = 0;

    void add(const FileReport& report);
    ExitStatus exitStatus() const;
};

/// Whether the library takes a file of that name for a GSD file.
bool isGsdFileName(const std::string& name);
/// Whether a file of that name is worth a look in a folder: a GSD file or a ".410".
bool isDeviceFileName(const std::string& name);

/// Why a file cannot be read; empty when it can.
std::string whyUnreadable(const std::string& file);

/// The findings of a descriptor that was built from a file; its check is run when the construction succeeded.
std::vector<Finding> findingsOf(cTypDescriptor& descriptor, const std::string& file);
/// The findings of a compilation alone.
std::vector<Finding> compilationFindings(const cTypDescriptor& descriptor, const std::string& file);
/// What the check of a descriptor finds.
std::vector<Finding> checkFindings(cTypDescriptor& descriptor, const std::string& file);

/// Builds and checks the device type in a file.
FileReport checkFile(const std::string& file);
