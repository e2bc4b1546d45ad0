#include "tools/loadDevice.h"

#include "host/loadDevice.h"
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
    try {
        device = typdescriptor::loadDevice(file);
        return kExitGood;
    } catch (const LoadError& error) {
        if (error.code == kOk) {
            std::cerr << "typdesc: " << error.what() << '\n';
            return kExitUnusable;
        }
        const FileReport report = refusalReport(file, error.code);
        std::cerr << reportText(report, false);
        if (!report.problem.empty())
            reportProblem(file, report.problem);
        return kExitFindings;
    }
}
