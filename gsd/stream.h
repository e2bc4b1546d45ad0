// A C stream that closes itself.

#pragma once

#include <cstdio>
#include <memory>

namespace typdescriptor::internal {

struct FileCloser {
    void operator()(std::FILE* file) const { static_cast<void>(std::fclose(file)); }
};

using File = std::unique_ptr<std::FILE, FileCloser>;

} // namespace typdescriptor::internal
