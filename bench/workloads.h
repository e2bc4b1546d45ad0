// What the benchmarks work on: GSD files of every size, and the pieces of work that are timed and counted.

#pragma once

#include "descriptor/cTypDescriptor.h"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

/// A file that lasts as long as the object.
class TemporaryFile {
public:
    /// @param name  ends in "GS" and a letter for a GSD file
    TemporaryFile(std::string_view name, std::string_view contents);
    ~TemporaryFile() { std::filesystem::remove(file); }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    const char* path() const { return file.c_str(); }

private:
    std::filesystem::path file;
};

/// The example as it is.
std::string exampleGsd(std::string_view name);

/// A file of 20 KB as device makers write them: half of it blanks and comments, every keyword in its usual share.
std::string makersGsd();

/// An example device with as many more modules and diagnostic texts as make up the wanted size. Up to 78 KB its image
/// holds them.
std::string gsdWithModules(std::size_t size);

/// The same with definitions and texts of parameters that no module uses: the image stays small whatever the size.
std::string gsdWithDefinitions(std::size_t size);

/// Kinds of elements of which a file may have any number.
struct Element {
    std::string_view name;
    int result; // of a compilation of very many
    std::string (*text)(int number);
};
extern const std::vector<Element> kElements;
std::string gsdWithElements(const Element& element, int count);

/// A station of which each module has a parameter block of `parameters` parameters of its own.
std::string gsdWithBlocks(int blocks, int parameters);

/// A piece of work that can be done any number of times.
struct Work {
    std::string name;
    std::function<void()> run;
};

/// The sizes that are compiled and checked, by the name of their benchmark; a check is named after its image.
struct Workload {
    const char* name;
    std::string (*gsd)();
    std::vector<double> aims; // times each floor that it should take at most
};
extern const std::vector<Workload> kCompilations;
extern const std::vector<Workload> kChecks;

/// What a workload is measured by, and then its floors, which are named after it.
std::vector<Work> compilationOf(const Workload& workload);
std::vector<Work> checkOf(const Workload& workload);

/// The least that a compiler of this file can do: open and read it, find every line feed and every comment, and fill an
/// image with blanks.
void readLinesAndFillImage(const char* path);

/// What a parser of such lines cannot do without: find where each keyword ends and look it up, read one number and copy
/// one text of each line; at the end copy the texts into an image. Checks nothing.
void parseAndCopyTexts(const char* path);

/// The least that a check can do: find every terminator. Returns their number.
std::size_t countTerminators(const std::vector<char>& image);

/// A checked device and its image.
struct Device {
    explicit Device(const std::string& gsd);

    cTypDescriptor descriptor;
    std::vector<char> image;

private:
    explicit Device(const TemporaryFile& file);
};

/// One call of every query whose cost does not depend on what is asked for.
std::vector<Work> constantQueries(cTypDescriptor& device);
