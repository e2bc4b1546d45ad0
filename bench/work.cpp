// Does one piece of work a number of times, for tools that count instructions: work NAME COUNT, or work for the names.

#include "bench/workloads.h"

#include <cstdio>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

/// Does the work of that name, if it is this workload or its floor. Only then is anything set up.
bool run(const Workload& workload, std::vector<Work> (*worksOf)(const Workload&), std::string_view name, int count)
{
    if (name != workload.name && name != workload.name + std::string("/floor"))
        return false;
    for (const Work& work : worksOf(workload)) {
        for (int i = 0; i < count && work.name == name; ++i)
            work.run();
    }
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    for (const auto& [workloads, worksOf] : {std::pair{&kCompilations, &compilationOf}, {&kChecks, &checkOf}}) {
        for (const Workload& workload : *workloads) {
            if (argc != 3)
                std::printf("%s\n%s/floor\n", workload.name, workload.name);
            else if (run(workload, worksOf, argv[1], std::stoi(argv[2])))
                return 0;
        }
    }
    if (argc != 3)
        return 0;
    std::fprintf(stderr, "there is no %s\n", argv[1]);
    return 1;
}
