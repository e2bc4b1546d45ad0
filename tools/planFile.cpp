#include "tools/planFile.h"

#include "tools/fileBytes.h"

using namespace typdescriptor;

Plan loadPlan(const std::string& file, const Device& device)
{
    std::string problem;
    const std::string json = readFile(file, problem);
    if (!problem.empty())
        throw ChoiceError({"unreadablePlan", "the plan " + file + ' ' + problem});
    return planFromJson(json, device);
}
