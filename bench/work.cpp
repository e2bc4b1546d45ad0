// Does one piece of work a number of times, for tools that count instructions: work NAME COUNT, or work for the names.

#include "bench/workloads.h"

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

namespace {

constexpr std::size_t kKilobyte = 1024;

std::vector<Work> compilation(const std::string& name, const std::string& gsd)
{
    const auto file = std::make_shared<TemporaryFile>("work-" + name + ".GSE", gsd);
    return {{"compile/" + name, [file] { const cTypDescriptor descriptor(file->path(), 0, nullptr); }},
            {"compile/" + name + "/floor", [file] { readLinesAndFillImage(file->path()); }}};
}

std::vector<Work> check(const std::string& name, const std::string& gsd)
{
    const auto device = std::make_shared<Device>(gsd);
    return {{"check/" + name, [device] { device->descriptor.checkTypeFileContents(); }},
            {"check/" + name + "/floor", [device] { countTerminators(device->image); }}};
}

/// Made one by one, so that only the work asked for is set up.
std::vector<Work> find(std::string_view name)
{
    if (name.starts_with("compile/2K"))
        return compilation("2K", exampleGsd("CRLFBOX2.GSS"));
    if (name.starts_with("compile/20K"))
        return compilation("20K", gsdWithModules(20 * kKilobyte));
    if (name.starts_with("compile/60K"))
        return compilation("60K", gsdWithModules(60 * kKilobyte));
    if (name.starts_with("compile/1M"))
        return compilation("1M", gsdWithDefinitions(kKilobyte * kKilobyte));
    if (name.starts_with("check/1K"))
        return check("1K", exampleGsd("CRLFBOX2.GSS"));
    if (name.starts_with("check/10K"))
        return check("10K", gsdWithModules(17 * kKilobyte));
    if (name.starts_with("check/60K"))
        return check("60K", gsdWithModules(78 * kKilobyte));
    return {};
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3) {
        for (const char* name :
             {"compile/2K", "compile/20K", "compile/60K", "compile/1M", "check/1K", "check/10K", "check/60K"})
            std::printf("%s\n%s/floor\n", name, name);
        return 0;
    }
    const std::string_view name = argv[1];
    for (const Work& work : find(name)) {
        if (work.name != name)
            continue;
        for (int i = std::stoi(argv[2]); i > 0; --i)
            work.run();
        return 0;
    }
    std::fprintf(stderr, "there is no %s\n", argv[1]);
    return 1;
}
