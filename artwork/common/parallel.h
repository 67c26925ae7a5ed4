// Rows of a picture painted by all cores.
#pragma once

#include <atomic>
#include <functional>
#include <thread>
#include <vector>

namespace art {

/// Calls work(i) once for every i in [0, count), from several threads; returns when all are done.
/// What work(i) writes may depend on i only, so that the result is the same on every machine.
inline void parallelFor(int count, const std::function<void(int)>& work) {
    std::atomic<int> next{0};
    const auto run = [&] {
        for (int i = next++; i < count; i = next++)
            work(i);
    };
    std::vector<std::thread> threads;
    for (unsigned i = 1; i < std::thread::hardware_concurrency(); ++i)
        threads.emplace_back(run);
    run();
    for (std::thread& thread : threads)
        thread.join();
}

}  // namespace art
