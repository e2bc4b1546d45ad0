// A file with what the rules found in it.
//
// In: a GSD file or a type file, by its name or from standard input. Out: a report with the document that was checked and
// the findings in the order of their places. A GSD file goes through every rule; a type file is checked by the library
// alone. Nothing here prints.

#pragma once

#include "tools/exitStatus.h"

#include "gsdfile/document.h"
#include "host/inputFile.h"
#include "lint/rule.h"

#include <memory>
#include <string>
#include <vector>

namespace lint = typdescriptor::lint;

struct FileReport {
    std::string file;             // as it is called to people
    bool isStandardInput = false; // then no path leads to the bytes
    std::string problem;          // why the file cannot be read or mended; often empty
    std::unique_ptr<const typdescriptor::gsdfile::Document> document; // what was checked; null when there is nothing
    std::vector<lint::Finding> findings;                              // places in the document
    std::string before; // what stood there before it was mended; empty when it was not
};

struct Totals {
    unsigned files = 0;
    unsigned ok = 0;
    unsigned withWarnings = 0; // and without an error
    unsigned failed = 0;
    unsigned unreadable = 0;
    unsigned mended = 0;
    unsigned findings[3] = {}; // errors, warnings, hints
    unsigned mendable = 0;     // findings that --fix would mend

    void add(const FileReport& report);
    Totals& operator+=(const Totals& more);
    ExitStatus exitStatus() const;
};

struct CheckOptions {
    std::vector<const lint::Rule*> leftOut; // rules that do not run
    bool areErrorsOnly = false;             // neither warnings nor hints
    bool areWarningsErrors = false;
};

using typdescriptor::isDeviceFileName;
using typdescriptor::isGsdFileName;

/// Reads the file of a report, or standard input, and fills the report.
void checkFile(FileReport& report, const CheckOptions& options);

/// Mends what is safe in the document of a report, which the options say how to check, until nothing is left to mend. The
/// findings are then those of the mended text; the file itself stays as it is.
void mend(FileReport& report, const CheckOptions& options);

/// Whether one of the findings is an error.
bool isFailed(const FileReport& report);
