// How fast files are compiled and images are checked, each beside the least that could be done with the same bytes.
// Run by hand: cmake --preset bench && cmake --build --preset bench && build/bench/bench/typdescriptor_bench

#include "descriptor/cTypDescriptor.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr std::size_t kGsdSize = 20 * 1024;
constexpr std::size_t kImageCapacity = 65000;

std::string contentsOf(const std::filesystem::path& path)
{
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// A modular station with as many modules as make up the wanted size.
std::string makeGsd(std::size_t size)
{
    std::string text = contentsOf(std::filesystem::path(TYPDESCRIPTOR_EXAMPLES) / "RIO40A17.GSE");
    for (int i = 0; text.size() < size; ++i)
        text += "Module = \"Digital module " + std::to_string(i) + "\" 0x11   ; two bytes\r\nEndModule\r\n";
    return text;
}

class TemporaryFile {
public:
    TemporaryFile(const char* name, const std::string& contents) : path(std::filesystem::temp_directory_path() / name)
    {
        std::ofstream(path, std::ios::binary) << contents;
    }
    ~TemporaryFile() { std::filesystem::remove(path); }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    std::string name() const { return path.string(); }

private:
    std::filesystem::path path;
};

/// Everything that no reader of such a file can leave out: open, read, find every line and its comment, and fill the
/// image with blanks.
void readingFloor(benchmark::State& state)
{
    const TemporaryFile file("typdescriptor-bench-floor.gse", makeGsd(kGsdSize));
    std::size_t bytes = 0;
    for (auto _ : state) {
        std::FILE* stream = std::fopen(file.name().c_str(), "rb");
        std::vector<char> text(2 * kGsdSize);
        const std::size_t size = std::fread(text.data(), 1, text.size(), stream);
        std::fclose(stream);
        std::size_t found = 0;
        for (const char* line = text.data(); line < text.data() + size;) {
            const auto left = static_cast<std::size_t>(text.data() + size - line);
            const auto* end = static_cast<const char*>(std::memchr(line, '\n', left));
            const std::size_t length = end != nullptr ? static_cast<std::size_t>(end - line) : left;
            found += std::memchr(line, ';', length) != nullptr ? 1 : 0;
            line += length + 1;
        }
        const auto image = std::make_unique<char[]>(kImageCapacity);
        std::memset(image.get(), ' ', kImageCapacity);
        benchmark::DoNotOptimize(image.get());
        benchmark::DoNotOptimize(found);
        bytes += size;
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(bytes));
}
BENCHMARK(readingFloor);

void compileGsd(benchmark::State& state)
{
    const std::string text = makeGsd(kGsdSize);
    const TemporaryFile file("typdescriptor-bench.gse", text);
    for (auto _ : state) {
        const cTypDescriptor descriptor(file.name().c_str(), 0, nullptr);
        if (descriptor.getStatus() != kOk)
            state.SkipWithError(resultText(descriptor.getStatus()));
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(text.size()) * state.iterations());
}
BENCHMARK(compileGsd);

/// A device whose type file comes near the largest that there is.
std::string makeLargeGsd()
{
    std::string text = contentsOf(std::filesystem::path(TYPDESCRIPTOR_EXAMPLES) / "RIO40A17.GSE");
    for (int i = 0; i < 900; ++i)
        text += "Module = \"Digital module " + std::to_string(i) + "\" 0x11\nEndModule\n";
    for (int bit = 0; bit < 380; ++bit)
        text += "Unit_Diag_Bit(" + std::to_string(bit) + ") = \"Fault " + std::to_string(bit) + "\"\n";
    return text;
}

class LargeImage {
public:
    LargeImage()
        : file("typdescriptor-bench-large.gse", makeLargeGsd()), device(file.name().c_str(), 0, nullptr),
          isChecked(device.checkTypeFileContents() == kOk), object(device.getDataSize())
    {
        device.writeObject(object.data());
    }

    TemporaryFile file;
    cTypDescriptor device;
    bool isChecked;
    std::vector<char> object;
};

/// A second check of a descriptor does all of the work again.
void checkImage(benchmark::State& state)
{
    LargeImage image;
    if (!image.isChecked)
        state.SkipWithError("the image is refused");
    for (auto _ : state)
        benchmark::DoNotOptimize(image.device.checkTypeFileContents());
    state.SetBytesProcessed(static_cast<std::int64_t>(image.object.size()) * state.iterations());
}
BENCHMARK(checkImage);

/// The same image, each character looked at once by the fastest that there is.
void searchImage(benchmark::State& state)
{
    const LargeImage image;
    for (auto _ : state)
        benchmark::DoNotOptimize(std::memchr(image.object.data(), '\x01', image.object.size() - 8));
    state.SetBytesProcessed(static_cast<std::int64_t>(image.object.size()) * state.iterations());
}
BENCHMARK(searchImage);

} // namespace

BENCHMARK_MAIN();
