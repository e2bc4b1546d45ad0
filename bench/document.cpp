// How long it takes to read a GSD file into a document: files of a device maker, and shapes that a reader must not take
// more than linear time for. Each in two sizes: the bytes per second should stay the same.

#include "gsdfile/document.h"
#include "bench/workloads.h"
#include "gsdfile/keywords.h"

#include <benchmark/benchmark.h>

#include <string>
#include <string_view>

using namespace typdescriptor::gsdfile;

namespace {

constexpr std::size_t kMegabyte = 1024UL * 1024;

/// A beginning, and a piece that is repeated up to the wanted size.
struct Shape {
    const char* name;
    std::string_view beginning;
    std::string_view piece;
};

constexpr Shape kShapes[] = {
    {"statements", "", "a=1\n"},
    {"empty lines", "", "\n"},
    {"blocks", "", "Module=\"m\" 1\nEndModule\n"},
    {"open blocks", "", "Module=\"m\" 1\n"},
    {"one list", "User_Prm_Data=", "1,"},
    {"one string", "Vendor_Name=\"", "a"},
    {"strings", "Vendor_Name=", "\"a\" "},
    {"open strings", "", "\"\n"},
    {"continued list", "User_Prm_Data=", "1,\\\n"},
    {"continued number", "Max_Module=", "1\\\n"},
    {"continued string", "Vendor_Name=\"", "a\\\n"},
    {"backslashes", "Vendor_Name=", "\\ "},
    {"blanks", "", " "},
    {"open arguments", "", "Text(\n"},
    {"parentheses", "Text", "("},
    {"family texts", "Slave_Family=3", "@ "},
    {"two-byte characters", "Vendor_Name=\"", "\xC3\xA4"},
    {"sections", "", "#Profibus_DP\n#\n"},
};

std::string fileOf(const Shape& shape, std::size_t size)
{
    std::string text = "#Profibus_DP\n" + std::string(shape.beginning);
    while (text.size() < size)
        text += shape.piece;
    return text;
}

void addReading(const std::string& name, const std::string& bytes)
{
    benchmark::RegisterBenchmark(("read/" + name).c_str(), [bytes](benchmark::State& state) {
        for (auto _ : state) {
            const Document document(bytes);
            benchmark::DoNotOptimize(document.statements().data());
        }
        state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes.size()));
    })->Unit(benchmark::kMillisecond);
}

/// Places all over one long line.
void addPlaces(const std::string& name, const std::string& bytes)
{
    benchmark::RegisterBenchmark(("place/" + name).c_str(), [bytes](benchmark::State& state) {
        const Document document(bytes);
        std::uint32_t offset = 0;
        for (auto _ : state) {
            offset = static_cast<std::uint32_t>((offset + 999983U) % bytes.size());
            benchmark::DoNotOptimize(document.place(offset));
        }
    });
}

} // namespace

int main(int argc, char** argv)
{
    for (const std::size_t megabytes : {1U, 10U}) {
        const std::string size = '/' + std::to_string(megabytes) + 'M';
        addReading("definitions" + size, gsdWithDefinitions(megabytes * kMegabyte));
        for (const Shape& shape : kShapes)
            addReading(shape.name + size, fileOf(shape, megabytes * kMegabyte));
        addPlaces("one line of UTF-8" + size, fileOf({"", "Vendor_Name=\"", "\xC3\xA4"}, megabytes * kMegabyte));
    }
    for (const char* name : {"Min_Slave_Interval", "Wholly_Unknown_Keyword_Of_Mine", "a"})
        benchmark::RegisterBenchmark((std::string("nearestKeyword/") + name).c_str(), [name](benchmark::State& state) {
            for (auto _ : state)
                benchmark::DoNotOptimize(nearestKeyword(name));
        });
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
