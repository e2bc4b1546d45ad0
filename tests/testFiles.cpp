#include "tests/testFiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

namespace {

class TestFolder {
public:
    TestFolder()
    {
        std::random_device random;
        do
            path = std::filesystem::temp_directory_path() / ("typdescriptor_" + std::to_string(random()));
        while (!std::filesystem::create_directory(path));
    }
    ~TestFolder() { std::filesystem::remove_all(path); }

    std::filesystem::path path;
};

} // namespace

std::vector<std::string> exampleFiles()
{
    std::vector<std::string> paths;
    for (const auto& entry : std::filesystem::directory_iterator(TYPDESCRIPTOR_SOURCE_DIR "/examples/gsd"))
        paths.push_back(entry.path().string());
    std::sort(paths.begin(), paths.end());
    EXPECT_GE(paths.size(), 9U);
    return paths;
}

std::string putFile(const std::string& name, std::string_view contents)
{
    static const TestFolder folder;
    std::string path = (folder.path / name).string();
    std::ofstream(path, std::ios::binary) << contents;
    return path;
}

std::string newFile(const std::string& name)
{
    std::string path = putFile(name, "");
    std::filesystem::remove(path);
    return path;
}

std::string fileContents(const std::string& path)
{
    if (!std::filesystem::is_regular_file(path))
        return {};
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}
