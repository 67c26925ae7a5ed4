// The real scene on a context without a window, its clock and chance set by the benchmark.
#pragma once

#include <SDL.h>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "Marivista.h"
#include "offscreen.h"

namespace bench {

constexpr int WIDTH = 1280, HEIGHT = 720;
/// Scene time from one frame to the next, milliseconds.
constexpr Uint32 FRAME_MS = 33;
/// The moment of the recorded frame, and of the pictures compared with it, in frames: the camera
/// looks down a little, so that everything there is stands in the picture.
constexpr int TRACED_FRAME = 360;

/// A part of the picture, in drawing order. Some names come more than once.
struct PART {
    const char* name;
    std::function<void()> draw;
};

/// One scene at a time: the clock is everybody's. Time and chance start anew with each.
class World {
public:
    /// The camera as the setting CameraPos has it; LEVEL is none of its values: the lower end of
    /// the automatic camera's way, at rest. With an hour, 0 to 24, the scene keeps the hours of the
    /// day, and it is always that one.
    explicit World(int school = 10, bool sound = false, int camerapos = 0, int width = WIDTH,
                   int height = HEIGHT, std::optional<double> hour = {});
    static constexpr int LEVEL = 4;
    ~World();
    World(const World&) = delete;
    World& operator=(const World&) = delete;

    bool ok() const { return context.ok(); }
    void setTime(Uint32 ms);
    Uint32 time() const;
    /// Advances clock and scene so many frames.
    void advance(int frames);
    /// Advances to the traced frame, which is not drawn yet, while those before it are.
    void advanceToTracedFrame();
    /// What renderScene does, in parts.
    std::vector<PART> parts();

    OffscreenContext context;
    std::unique_ptr<CMarivistaScreensaver> scene;
    double loading_ms = 0;      ///< how long building the world took
    double loading_cpu_ms = 0;  ///< processor time of that
};

/// Milliseconds of processor time that this process has used so far, all threads together.
double cpuTime();
/// Milliseconds since some moment, the same for all processes.
double wallTime();
/// The most memory that this process has had so far.
double peakMemoryMib();

}  // namespace bench
