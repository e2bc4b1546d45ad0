#include "tools/progress.h"

#include "tools/terminal.h"

#include <iostream>

namespace {

constexpr std::chrono::milliseconds kPatience{500};
constexpr std::chrono::milliseconds kPause{100};

} // namespace

Progress::Progress(std::size_t count) : total(count), isWanted(isErrorTerminal()), start(Clock::now()), last(start) {}

void Progress::show(std::size_t done)
{
    const Clock::time_point now = Clock::now();
    if (!isWanted || now - start < kPatience || now - last < kPause)
        return;
    last = now;
    isShown = true;
    const std::chrono::duration<double> seconds = now - start;
    const auto rate = static_cast<unsigned>(static_cast<double>(done) / seconds.count());
    std::cerr << "\rchecking " << done << '/' << total << ", " << rate << " files/s\x1b[K" << std::flush;
}

void Progress::hide()
{
    if (isShown)
        std::cerr << "\r\x1b[K" << std::flush;
    isShown = false;
}
