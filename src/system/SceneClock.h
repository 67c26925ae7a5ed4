// The time that passes in a scene.
#pragma once

#include <SDL_timer.h>

/// SDL's tick count less what was left out, milliseconds, modulo 2^32. Whatever moves asks
/// sceneTicks(), and so is not late by the time that its scene has left out.
class SceneClock {
public:
    /// While it lives, sceneTicks() tells this clock's time in the thread that made it; then the
    /// time that it told before. The clock must outlive it.
    class Running {
    public:
        explicit Running(const SceneClock& clock) : before(current) { current = &clock; }
        ~Running() { current = before; }
        Running(const Running&) = delete;
        Running& operator=(const Running&) = delete;

    private:
        const SceneClock* before;
    };

    /// So much of the time until now did not pass.
    void leaveOut(Uint32 milliseconds) { left_out += milliseconds; }

private:
    friend Uint32 sceneTicks();

    Uint32 left_out = 0;
    static inline thread_local const SceneClock* current = nullptr;
};

/// Now, by the clock that runs in this thread; with none, and so for what stands alone, SDL's own
/// tick count.
inline Uint32 sceneTicks() {
    return SDL_GetTicks() - (SceneClock::current ? SceneClock::current->left_out : 0);
}
