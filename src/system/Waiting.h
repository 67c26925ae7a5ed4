// Waiting for what another thread does.
#pragma once

#include <chrono>
#include <functional>
#include <thread>

/// Looks every two milliseconds; false when the condition does not hold so many milliseconds later.
inline bool waitUntil(const std::function<bool()>& condition, int milliseconds) {
    using namespace std::chrono;
    const auto end = steady_clock::now() + std::chrono::milliseconds(milliseconds);
    while (!condition()) {
        if (steady_clock::now() >= end)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}
