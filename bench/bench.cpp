// How fast files are compiled, images are checked and queries are answered, each beside the least that could be done
// with the same bytes in the same run; README.md says how to read it.

#include "bench/heapCount.h"
#include "bench/workloads.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr std::size_t kKilobyte = 1024;

/// A result, what it is measured against, and how many times that it should be at most.
struct Ratio {
    std::string name;
    std::string floor;
    double aim;
};

std::vector<Ratio> ratios;

/// Prints the results as they come, and keeps their times for the table of ratios.
class Reporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& run : runs)
            times[run.benchmark_name()] = run.GetAdjustedCPUTime();
        ConsoleReporter::ReportRuns(runs);
    }

    void printRatios() const
    {
        std::printf("\n%-40s %12s %12s %8s %6s\n", "", "time", "floor", "ratio", "aim");
        for (const Ratio& ratio : ratios) {
            const auto time = times.find(ratio.name);
            const auto floor = times.find(ratio.floor);
            if (time != times.end() && floor != times.end())
                std::printf("%-40s %9.2f us %9.2f us %8.2f %6.1f\n", ratio.floor.c_str(), time->second / 1000,
                            floor->second / 1000, time->second / floor->second, ratio.aim);
        }
    }

private:
    std::map<std::string, double> times;
};

template <class Function>
void add(const std::string& name, Function function)
{
    benchmark::RegisterBenchmark(name.c_str(), [function](benchmark::State& state) {
        for (auto _ : state)
            function();
    });
}

/// What is measured, beside its floors.
void addBesideFloors(const Workload& workload, const std::vector<Work>& workAndFloors)
{
    for (const Work& work : workAndFloors)
        add(work.name, work.run);
    for (std::size_t i = 1; i < workAndFloors.size(); ++i)
        ratios.push_back({workload.name, workAndFloors[i].name, workload.aims[i - 1]});
}

void addQueries()
{
    const auto device = std::make_shared<Device>(gsdWithModules(60 * kKilobyte));
    for (const Work& query : constantQueries(device->descriptor))
        add("query/" + query.name, [device, query] {
            query.run();
            benchmark::ClobberMemory();
        });

    // A text of the last of very many diagnostic bits: the entries of the group are looked through.
    const auto manyTexts = std::make_shared<Device>(gsdWithModules(78 * kKilobyte));
    add("query/getSlaveDiagMsg, of " + std::to_string(manyTexts->descriptor.getSlaveDiagMsgCnt()) + " texts",
        [manyTexts] {
            SLAVE_DIAG_TYPE message;
            benchmark::DoNotOptimize(manyTexts->descriptor.getSlaveDiagMsg(0, 62, 7, &message));
        });
    constexpr int kBlocks = 5;
    for (const int parameters : {1, 10, 100}) {
        const auto station = std::make_shared<Device>(gsdWithBlocks(kBlocks, parameters));
        const int blocks = station->descriptor.getSPBlockAnz();
        for (const int block : {blocks - kBlocks, blocks - 1})
            add("query/getSlotParameters, block " + std::to_string(block) + " of " + std::to_string(parameters) +
                    " parameters",
                [station, block] {
                    unsigned char bytes[237];
                    int length = 0;
                    station->descriptor.getSlotParameters(block, bytes, &length);
                    benchmark::DoNotOptimize(bytes);
                });
    }
}

/// From the file to the end of the descriptor: allocations, and bytes at the peak beside those of the image.
void addHeap(const std::string& name, const std::string& gsd)
{
    benchmark::RegisterBenchmark(("heap/" + name).c_str(), [name, gsd](benchmark::State& state) {
        const TemporaryFile file("heap-" + name + ".GSE", gsd);
        for (auto _ : state) {
            resetHeapCount();
            const std::size_t before = heapCount().live;
            cTypDescriptor descriptor(file.path(), 0, nullptr);
            const std::size_t image = heapCount().live - before;
            const std::size_t compilePeak = heapCount().peak - before;
            descriptor.checkTypeFileContents();
            const std::size_t queries = heapCount().live - before - image;
            state.counters["allocations"] = static_cast<double>(heapCount().allocations);
            state.counters["image"] = static_cast<double>(image);
            state.counters["queries"] = static_cast<double>(queries);
            state.counters["compile peak"] = static_cast<double>(compilePeak);
            state.counters["peak"] = static_cast<double>(heapCount().peak - before);
            state.counters["(peak-queries)/image"] =
                static_cast<double>(heapCount().peak - before - queries) / static_cast<double>(image);
        }
    })->Iterations(1);
}

/// Time per element; the file is read up to its end whether its image holds the elements or not.
void addGrowth(const Element& element)
{
    for (const int count : {1000, 10000, 100000}) {
        const std::string name = "growth/" + std::string(element.name) + "/" + std::to_string(count);
        benchmark::RegisterBenchmark(name.c_str(), [element, count](benchmark::State& state) {
            const TemporaryFile file("growth.GSE", gsdWithElements(element, count));
            for (auto _ : state) {
                const cTypDescriptor descriptor(file.path(), 0, nullptr);
                if (descriptor.getStatus() != kOk && descriptor.getStatus() != element.result)
                    state.SkipWithError(resultText(descriptor.getStatus()));
            }
            state.counters["per element"] =
                benchmark::Counter(static_cast<double>(count) * static_cast<double>(state.iterations()),
                                   benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
        });
    }
}

} // namespace

int main(int argc, char** argv)
{
    for (const Workload& workload : kCompilations)
        addBesideFloors(workload, compilationOf(workload));
    for (const Workload& workload : kChecks)
        addBesideFloors(workload, checkOf(workload));
    addQueries();
    for (const char* name : {"CRLFBOX2.GSS", "SLOTPARM.GSE", "MDRV0C21.GSE"})
        addHeap(name, exampleGsd(name));
    addHeap("makers20K", makersGsd());
    addHeap("20K", gsdWithModules(20 * kKilobyte));
    addHeap("60K", gsdWithModules(60 * kKilobyte));
    for (const Element& element : kElements)
        addGrowth(element);

    benchmark::Initialize(&argc, argv);
    Reporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.printRatios();
}
