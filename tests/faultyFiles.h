// Files that fail: what the library opens while a FaultyFiles lives breaks off where it says.

#pragma once

#include <cstddef>
#include <cstdint>

/// At most one at a time. Positions are in bytes from the start of each file.
class FaultyFiles {
public:
    struct Faults {
        std::size_t longestRead = SIZE_MAX; // a single read gives no more
        std::size_t readable = SIZE_MAX;    // the file ends here, although its length says otherwise,
        bool breaksOff = false;             // or is here where it cannot be read
        std::size_t writable = SIZE_MAX;    // the disk is full
        bool failsToSeek = false;
        bool failsToClose = false;
        bool isNumber0 = false; // of the descriptor, where the host has closed its standard input
    };

    explicit FaultyFiles(const Faults& which);
    ~FaultyFiles();
    FaultyFiles(const FaultyFiles&) = delete;
    FaultyFiles& operator=(const FaultyFiles&) = delete;
    /// Files that are opened and not closed yet.
    int openFiles() const;

private:
    const Faults chosen;
};
