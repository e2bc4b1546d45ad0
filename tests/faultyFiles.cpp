#include "tests/faultyFiles.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

// The linker sends every fopen() and fileno() of the test program and of the library here (--wrap).
extern "C" std::FILE* __real_fopen(const char* name, const char* mode);
extern "C" std::FILE* __wrap_fopen(const char* name, const char* mode);
extern "C" int __wrap_fileno(std::FILE* stream);
extern "C" int __real_fileno(std::FILE* stream);

namespace {

struct Stream {
    std::string contents; // of a file to be read
    std::FILE* target;    // a file to be written
    std::size_t position;
};

const FaultyFiles::Faults* faults = nullptr;
int openCount = 0;
int lastNumber = 0; // of the file that was opened last

ssize_t readFrom(void* cookie, char* buffer, std::size_t size)
{
    Stream& stream = *static_cast<Stream*>(cookie);
    const std::size_t end = std::min(faults->readable, stream.contents.size());
    if (stream.position >= end && faults->breaksOff) {
        errno = EIO;
        return -1;
    }
    const std::string_view rest = std::string_view(stream.contents).substr(0, end).substr(stream.position);
    const std::size_t count = rest.copy(buffer, std::min(size, faults->longestRead));
    stream.position += count;
    return static_cast<ssize_t>(count);
}

ssize_t writeTo(void* cookie, const char* buffer, std::size_t size)
{
    Stream& stream = *static_cast<Stream*>(cookie);
    const std::size_t count = std::fwrite(buffer, 1, std::min(size, faults->writable - stream.position), stream.target);
    stream.position += count;
    errno = ENOSPC;
    return static_cast<ssize_t>(count);
}

int seekIn(void* cookie, off64_t* offset, int from)
{
    Stream& stream = *static_cast<Stream*>(cookie);
    if (faults->failsToSeek)
        return -1;
    const std::size_t base = from == SEEK_SET ? 0 : from == SEEK_CUR ? stream.position : stream.contents.size();
    stream.position = base + static_cast<std::size_t>(*offset);
    *offset = static_cast<off64_t>(stream.position);
    return 0;
}

int closeStream(void* cookie)
{
    const Stream* stream = static_cast<Stream*>(cookie);
    if (stream->target != nullptr)
        static_cast<void>(std::fclose(stream->target));
    delete stream;
    --openCount;
    return faults->failsToClose ? -1 : 0;
}

} // namespace

std::FILE* __wrap_fopen(const char* name, const char* mode)
{
    std::FILE* const real = __real_fopen(name, mode);
    if (faults == nullptr || real == nullptr)
        return real;
    lastNumber = __real_fileno(real);
    auto* const stream = new Stream{{}, real, 0};
    if (*mode == 'r') {
        static_cast<void>(std::fclose(real));
        std::ifstream file(name, std::ios::binary);
        *stream = {{std::istreambuf_iterator<char>(file), {}}, nullptr, 0};
    }
    ++openCount;
    return fopencookie(stream, mode, {readFrom, writeTo, seekIn, closeStream});
}

int __wrap_fileno(std::FILE* stream)
{
    if (faults == nullptr)
        return __real_fileno(stream);
    return faults->isNumber0 ? 0 : lastNumber;
}

FaultyFiles::FaultyFiles(const Faults& which) : chosen(which)
{
    faults = &chosen;
    openCount = 0;
}

FaultyFiles::~FaultyFiles()
{
    faults = nullptr;
}

int FaultyFiles::openFiles() const
{
    return openCount;
}
