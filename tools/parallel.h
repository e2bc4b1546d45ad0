// Work on many things at once whose results are wanted in their order.

#pragma once

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <exception>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

/// Calls `make` for 0 to count - 1 on several threads, and `take` with each result on this one, in the order of the
/// numbers and as soon as it is its turn. What either throws ends the work and is thrown here.
/// @param jobs  threads; 0: as many as the machine has processors
template <class Make, class Take>
void inOrder(std::size_t count, unsigned jobs, Make make, Take take)
{
    using Result = decltype(make(std::size_t{0}));
    if (jobs == 0)
        jobs = std::max(1U, std::thread::hardware_concurrency());
    if (jobs == 1 || count < 2) {
        for (std::size_t i = 0; i < count; ++i)
            take(make(i));
        return;
    }

    std::atomic<std::size_t> next{0};
    std::mutex mutex;
    std::condition_variable isReady;
    std::vector<std::optional<Result>> results(count);
    std::exception_ptr failure;
    const auto fail = [&] {
        const std::scoped_lock lock(mutex);
        if (!failure)
            failure = std::current_exception();
        next = count;
    };
    const auto work = [&] {
        for (std::size_t i = next++; i < count; i = next++) {
            try {
                Result result = make(i);
                const std::scoped_lock lock(mutex);
                results[i] = std::move(result);
            } catch (...) {
                fail();
            }
            isReady.notify_one();
        }
    };
    {
        std::vector<std::jthread> threads;
        for (std::size_t i = 0; i < std::min<std::size_t>(jobs, count); ++i)
            threads.emplace_back(work);
        for (std::size_t i = 0; i < count; ++i) {
            std::unique_lock lock(mutex);
            isReady.wait(lock, [&] { return results[i] || failure; });
            if (failure)
                break;
            Result result = std::move(*results[i]);
            results[i].reset();
            lock.unlock();
            try {
                take(std::move(result));
            } catch (...) {
                fail();
            }
        }
    }
    if (failure)
        std::rethrow_exception(failure);
}
