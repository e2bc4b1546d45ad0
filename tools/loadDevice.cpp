#include "tools/loadDevice.h"

#include "host/gsdFacts.h"
#include "tools/fileBytes.h"
#include "tools/reportText.h"
#include "tools/terminal.h"

#include <iostream>

using namespace typdescriptor;

FileReport refusalReport(const std::string& file, int code)
{
    FileReport report;
    report.file = file;
    checkFile(report, {{}, true, false});
    if (!isFailed(report)) // no rule knows why
        report.problem = std::string(resultText(code)) + " (" + std::to_string(code) + ')';
    return report;
}

ExitStatus loadDevice(const std::string& file, Device& device)
{
    if (const std::string problem = whyUnreadable(file); !problem.empty()) {
        reportProblem(file, problem);
        return kExitUnusable;
    }
    cTypDescriptor descriptor(file.c_str(), 0, nullptr);
    const int code = descriptor.getStatus() != kOk ? descriptor.getStatus() : descriptor.checkTypeFileContents();
    if (code < 0) {
        const FileReport report = refusalReport(file, code);
        std::cerr << reportText(report, false);
        if (!report.problem.empty())
            reportProblem(file, report.problem);
        return kExitFindings;
    }
    device = readDevice(descriptor);
    if (device.isFromGsd) {
        std::string problem;
        addGsdFacts(device, readFile(file, problem));
        if (!problem.empty()) {
            reportProblem(file, problem);
            return kExitUnusable;
        }
    }
    return kExitGood;
}
