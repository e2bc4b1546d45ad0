// Files for tests: the examples, and a folder of the test process.

#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The GSD files under examples/, in alphabetical order.
std::vector<std::string> exampleFiles();

/// Writes a file into a folder of the test process, which is gone when the process ends. Returns its path.
std::string putFile(const std::string& name, std::string_view contents);
/// The path of a file there that does not exist yet.
std::string newFile(const std::string& name);
/// The contents of a file; empty when there is none.
std::string fileContents(const std::string& path);
