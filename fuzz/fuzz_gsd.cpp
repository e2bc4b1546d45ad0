// Any bytes as a GSD file; what compiles is asked everything.

#include "fuzz/askEverything.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>

#include <unistd.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const std::string name =
        (std::filesystem::temp_directory_path() / ("fuzz" + std::to_string(getpid()) + ".GSE")).string();
    std::FILE* file = std::fopen(name.c_str(), "wb");
    if (file == nullptr)
        return 0;
    std::fwrite(data, 1, size, file);
    std::fclose(file);
    cTypDescriptor device(name.c_str(), 0, nullptr);
    askEverything(device);
    std::filesystem::remove(name);
    return 0;
}
