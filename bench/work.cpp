// Does one piece of work a number of times, for tools that count instructions, and tells the page faults: work NAME COUNT, or work for the
// names of what is measured; NAME/floor and, of compilations, NAME/parser are their floors.

#include "bench/workloads.h"

#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include <sys/resource.h>

namespace {

/// Pages that the kernel has handed out to this process.
long pageFaults()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_minflt;
}

/// Does the work of that name, if it is this workload or a floor of it. Only then is anything set up.
bool run(const Workload& workload, std::vector<Work> (*worksOf)(const Workload&), const std::string& name, int count)
{
    if (!(name + '/').starts_with(workload.name + std::string("/")))
        return false;
    for (const Work& work : worksOf(workload)) {
        if (work.name != name)
            continue;
        work.run();
        const long before = pageFaults();
        for (int i = 1; i < count; ++i)
            work.run();
        std::printf("%ld page faults after the first of %d runs\n", pageFaults() - before, count);
    }
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    for (const auto& [workloads, worksOf] : {std::pair{&kCompilations, &compilationOf}, {&kChecks, &checkOf}}) {
        for (const Workload& workload : *workloads) {
            if (argc != 3)
                std::printf("%s\n", workload.name);
            else if (run(workload, worksOf, argv[1], std::stoi(argv[2])))
                return 0;
        }
    }
    if (argc != 3)
        return 0;
    std::fprintf(stderr, "there is no %s\n", argv[1]);
    return 1;
}
