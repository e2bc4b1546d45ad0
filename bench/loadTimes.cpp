// How long files take in C++: the median over some rounds, in microseconds, for each file a line.
//     typdescriptor_load_times ROUNDS FILE...

#include "descriptor/cTypDescriptor.h"
#include "host/loadDevice.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <vector>

namespace {

template <class Work>
double medianMicroseconds(int rounds, Work work)
{
    std::vector<double> times;
    for (int round = 0; round < rounds; ++round) {
        const auto start = std::chrono::steady_clock::now();
        work();
        times.push_back(std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count());
    }
    const auto middle = times.begin() + rounds / 2;
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
}

void compile(const char* file)
{
    cTypDescriptor descriptor(file, 0, nullptr);
    if (descriptor.getStatus() != kOk || descriptor.checkTypeFileContents() < 0)
        throw typdescriptor::LoadError(file, descriptor.getStatus(), descriptor.getGsdErrLineNr());
}

} // namespace

int main(int argc, char** argv)
{
    const int rounds = argc > 1 ? std::max(std::atoi(argv[1]), 1) : 1;
    try {
        for (int i = 2; i < argc; ++i) {
            const char* const file = argv[i];
            std::printf("%.2f %.2f\n", medianMicroseconds(rounds, [file] { compile(file); }),
                        medianMicroseconds(rounds, [file] { typdescriptor::loadDevice(file); }));
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
