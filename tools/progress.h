// A line on a terminal that says how far the work has come, once it takes longer than half a second.

#pragma once

#include <chrono>
#include <cstddef>

class Progress {
public:
    explicit Progress(std::size_t count);

    void show(std::size_t done);
    /// Makes room for other output.
    void hide();

private:
    using Clock = std::chrono::steady_clock;

    std::size_t total;
    bool isWanted;
    bool isShown = false;
    Clock::time_point start;
    Clock::time_point last;
};
