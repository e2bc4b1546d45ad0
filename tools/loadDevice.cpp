#include "tools/loadDevice.h"

#include "tools/finding.h"
#include "tools/findingText.h"
#include "tools/terminal.h"

#include <iostream>

ExitStatus loadDevice(const std::string& file, Device& device)
{
    if (const std::string problem = whyUnreadable(file); !problem.empty()) {
        reportProblem(file, problem);
        return kExitUnusable;
    }
    cTypDescriptor descriptor(file.c_str(), 0, nullptr);
    FileReport report;
    report.file = file;
    report.findings = findingsOf(descriptor, file);
    if (report.isFailed()) {
        std::cerr << findingsText(report, false);
        return kExitFindings;
    }
    device = readDevice(descriptor);
    return kExitGood;
}
