// What pictures of several sizes cost on the software renderer, at full resolution and at the
// fraction that the adaptive one arrives at: sizes_bench [--quick] [--edges], two tables of
// markdown. With --edges also what smooth edges cost at every fraction. The camera rests at its
// lower end, where a frame costs most.
#include <cstdio>
#include <string>

#include "bench_world.h"
#include "host/AdaptiveScale.h"
#include "host/ScaledDrawing.h"

namespace {

using bench::cpuTime;
using bench::wallTime;
using bench::World;

int frames = 60;

struct COST {
    double cpu = 0, wall = 0;  ///< milliseconds a frame
    double fraction = 1;
};

struct SIZE {
    int width, height;
};
constexpr SIZE sizes[] = {{1280, 720}, {1920, 1080}, {3840, 2160}};

void drawFrame(World& world, ScaledDrawing& drawing, double fraction) {
    world.advance(1);
    drawing.draw(fraction, [&] { world.scene->renderScene(); });
    glFinish();
}

COST measure(World& world, ScaledDrawing& drawing, double fraction) {
    COST cost;
    cost.fraction = fraction;
    for (int i = 0; i < 5; ++i)
        drawFrame(world, drawing, fraction);
    const double cpu = cpuTime(), wall = wallTime();
    for (int i = 0; i < frames; ++i)
        drawFrame(world, drawing, fraction);
    cost.cpu = (cpuTime() - cpu) / frames;
    cost.wall = (wallTime() - wall) / frames;
    return cost;
}

/// The fraction at which nothing changes any more; within some seconds, as a program that starts.
double settle(World& world, ScaledDrawing& drawing) {
    AdaptiveScale scale;
    const double start = wallTime();
    double last = start;
    while (last - start < 8000) {
        drawFrame(world, drawing, scale.fraction());
        const double now = wallTime();
        scale.drawn(now, now - last, false);
        last = now;
    }
    return scale.fraction();
}

void printSizes() {
    std::printf(
        "| window | whole: processor | pictures a second | adaptive: fraction | processor |"
        " pictures a second |\n|---|---|---|---|---|---|\n");
    for (const SIZE& size : sizes) {
        World world(10, false, World::LEVEL, size.width, size.height);
        ScaledDrawing drawing;
        const COST whole = measure(world, drawing, 1);
        const COST adapted = measure(world, drawing, settle(world, drawing));
        drawing.release();
        std::printf("| %d x %d | %.0f ms | %.0f | %.2f | %.0f ms | %.0f |\n", size.width,
                    size.height, whole.cpu, 1000 / whole.wall, adapted.fraction, adapted.cpu,
                    1000 / adapted.wall);
        std::fflush(stdout);
    }
}

void printEdges() {
    std::printf("\n| fraction of 1920 x 1080 | 1 sample | 4 samples |\n|---|---|---|\n");
    World world(10, false, World::LEVEL, 1920, 1080);
    ScaledDrawing plain, smooth(4);
    for (const double fraction : {1.0, 0.85, 0.7, 0.6, 0.5, 0.4}) {
        const double one = measure(world, plain, fraction).cpu;
        const double four = measure(world, smooth, fraction).cpu;
        std::printf("| %.2f | %.0f ms | %.0f ms |\n", fraction, one, four);
        std::fflush(stdout);
    }
    plain.release();
    smooth.release();
}

}  // namespace

int main(int count, char** arguments) {
    bool edges = false;
    for (int i = 1; i < count; ++i) {
        const std::string word = arguments[i];
        if (word == "--quick")
            frames = 10;
        else if (word == "--edges")
            edges = true;
        else
            return std::fprintf(stderr, "usage: sizes_bench [--quick] [--edges]\n"), 2;
    }
    printSizes();
    if (edges)
        printEdges();
}
