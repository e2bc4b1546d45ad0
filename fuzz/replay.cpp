// Runs a fuzz target without a fuzzer: over the files of the folders given, and over as many of them changed by the
// target's own mutator (by bytes where it has none), the same ones every time.
//
// replay_TARGET COUNT FOLDER...

#include "fuzz/mutation.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <exception>
#include <filesystem>
#include <fstream>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
extern "C" __attribute__((weak)) std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                                                     std::size_t maxSize, unsigned seed);

namespace {

constexpr std::size_t kMaxSize = 65000;
constexpr std::size_t kLargestToMutate = 20000; // the few larger ones take long
constexpr unsigned kMostMutations = 3;

Random& bytesAtRandom()
{
    static Random random(1);
    return random;
}

/// Runs one input out of a buffer that ends where it ends.
bool passes(const std::string& input, const std::string& name)
{
    const std::vector<std::uint8_t> exact(input.begin(), input.end());
    try {
        LLVMFuzzerTestOneInput(exact.data(), exact.size());
        return true;
    } catch (const std::exception& error) {
        std::ofstream("failed-input", std::ios::binary) << input;
        std::fprintf(stderr, "%s: %s; the input: failed-input\n", name.c_str(), error.what());
        return false;
    }
}

std::string mutated(const std::string& input, unsigned seed)
{
    std::vector<std::uint8_t> data(input.begin(), input.end());
    std::size_t size = data.size();
    data.resize(kMaxSize);
    const auto mutate = LLVMFuzzerCustomMutator;
    for (unsigned i = 0; i <= seed % kMostMutations; ++i)
        size = mutate != nullptr ? mutate(data.data(), size, kMaxSize, seed + i * 65536)
                                 : LLVMFuzzerMutate(data.data(), size, kMaxSize);
    return {data.begin(), data.begin() + static_cast<std::ptrdiff_t>(size)};
}

} // namespace

/// In place of the fuzzer's own: a run of bytes dropped, repeated or set.
extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize)
{
    constexpr std::string_view kBytes = "0123456789\"\n,-;[<>^ JN\\\r()=@#\xFE\0";
    Random& random = bytesAtRandom();
    std::vector<std::uint8_t> bytes(data, data + size);
    const std::size_t at = random.below(size);
    const std::vector<std::uint8_t> run(bytes.begin() + static_cast<std::ptrdiff_t>(at),
                                        bytes.begin() +
                                            static_cast<std::ptrdiff_t>(std::min(size, at + random.below(30))));
    if (random.oneIn(4))
        bytes.erase(bytes.begin() + static_cast<std::ptrdiff_t>(at),
                    bytes.begin() + static_cast<std::ptrdiff_t>(at + run.size()));
    else if (random.oneIn(3))
        bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(random.below(size)), run.begin(), run.end());
    else if (size > 0)
        bytes[at] = static_cast<std::uint8_t>(random.oneIn(2) ? random.below(256)
                                                              : static_cast<unsigned char>(random.of(kBytes)));
    const std::size_t length = std::min(bytes.size(), maxSize);
    std::copy(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(length), data);
    return length;
}

namespace {

/// Runs every input of the folders, and then so many mutations of them, up to the first that fails.
bool replay(unsigned mutations, const std::vector<std::string>& folders)
{
    std::vector<std::filesystem::path> files;
    for (const std::string& folder : folders)
        for (const auto& file : std::filesystem::directory_iterator(folder))
            files.push_back(file.path());
    std::sort(files.begin(), files.end());
    std::vector<std::string> seeds;
    bool allPass = !files.empty();
    for (const std::filesystem::path& file : files) {
        std::ifstream stream(file, std::ios::binary);
        const std::string input{std::istreambuf_iterator<char>(stream), {}};
        allPass = passes(input, file.string()) && allPass;
        if (input.size() <= kLargestToMutate)
            seeds.push_back(input);
    }
    for (unsigned i = 0; i < mutations && allPass; ++i)
        allPass = passes(mutated(seeds[i % seeds.size()], i), "mutation " + std::to_string(i));
    return allPass;
}

} // namespace

int main(int argc, char** argv)
{
    try {
        if (argc > 2 && replay(static_cast<unsigned>(std::stoul(argv[1])), {argv + 2, argv + argc}))
            return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "replay: %s\n", error.what());
    }
    return 1;
}
