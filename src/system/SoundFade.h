// Silence that comes without a click, whatever plays.
#pragma once

#include <atomic>
#include <cstdint>

/// Fades what the mixer plays in and out, over 60 milliseconds. Begins in silence. Its calls may
/// come from any thread.
class SoundFade {
public:
    /// From now on all that the mixer mixes passes here; one at a time, which must outlive the
    /// mixing.
    void attach();
    static void detach();

    void open(bool wanted) { target = wanted; }
    /// Nothing is let through any more.
    bool closed() const { return !target && level == 0; }
    /// What was let through last has left the mixer, too: its next turn has come.
    bool delivered() const { return gone; }

    /// For the mixer's thread: `stream` is what it has mixed.
    void apply(std::uint8_t* stream, int bytes);

private:
    std::atomic<bool> target{false};
    std::atomic<int> level{0};  ///< in sample frames of the fade that have passed
    std::atomic<bool> gone{false};
};
