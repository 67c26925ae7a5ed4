// What the hours of the day cost: hours_bench [--quick], two tables of markdown. What is compared
// is drawn in turns, the same frames with and without; times are processor time of all threads
// together. The other hours are compared with noon, for which the first row speaks.
#include <malloc.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include "bench_world.h"

namespace {

using bench::cpuTime;
using bench::World;

using HOUR = std::optional<double>;

constexpr int TOP = 1;
constexpr std::array<double, 8> hours = {
    12, 7 + 10 / 60.0, 16 + 55 / 60.0, 17.5, 18.25, 19, 19 + 40 / 60.0, 22};

int rounds = 12;
constexpr int WARM_UP = 2, FRAMES = 5;

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

/// Milliseconds, frame by frame.
struct COSTS {
    std::vector<double> without, with;

    double more() const {
        std::vector<double> ratios;
        for (size_t i = 0; i < with.size(); ++i)
            ratios.push_back(with[i] / without[i]);
        return median(ratios) - 1;
    }
};

double costOfPicture(World& world) {
    glFinish();
    const double start = cpuTime();
    world.scene->renderScene();
    glFinish();
    return cpuTime() - start;
}

/// Frames of a scene without hours, and the same ones of one at noon, a few of each in turns.
COSTS noonAndOff(int camerapos) {
    COSTS costs;
    for (int i = 0; i < rounds; ++i)
        for (const bool on : {i % 2 == 0, i % 2 != 0}) {
            World world(10, false, camerapos, bench::WIDTH, bench::HEIGHT, on ? HOUR(12) : HOUR());
            for (int frame = -WARM_UP; frame < FRAMES; ++frame) {
                world.advance(1);
                const double cost = costOfPicture(world);
                if (frame >= 0)
                    (on ? costs.with : costs.without).push_back(cost);
            }
        }
    return costs;
}

/// Every frame at noon and at the hour, one at once after the other.
COSTS hourAndNoon(int camerapos, double hour) {
    World world(10, false, camerapos, bench::WIDTH, bench::HEIGHT, 12);
    double now = 12;
    world.scene->localTime = [&now] { return LOCAL_TIME{now * 60, 0}; };
    COSTS costs;
    for (int i = -WARM_UP; i < rounds * FRAMES; ++i) {
        world.advance(1);
        for (const bool with : {i % 2 == 0, i % 2 != 0}) {
            now = with ? hour : 12;
            world.scene->skipUnseenTime();
            world.scene->updateScene();
            const double cost = costOfPicture(world);
            if (i >= 0)
                (with ? costs.with : costs.without).push_back(cost);
        }
    }
    return costs;
}

std::string clockText(double hour) {
    char text[16];
    const int minutes = static_cast<int>(std::lround(hour * 60));
    std::snprintf(text, sizeof text, "%d:%02d", minutes / 60, minutes % 60);
    return text;
}

void printFrames() {
    std::printf("| hour | top: without | with | more | bottom: without | with | more |\n");
    std::printf("|---|---|---|---|---|---|---|\n");
    for (const double hour : hours) {
        std::printf("| %s |", clockText(hour).c_str());
        for (const int camerapos : {TOP, World::LEVEL}) {
            const COSTS costs = hour == 12 ? noonAndOff(camerapos) : hourAndNoon(camerapos, hour);
            std::printf(" %.1f ms | %.1f ms | %+.0f %% |", median(costs.without),
                        median(costs.with), 100 * costs.more());
        }
        std::printf("\n");
        std::fflush(stdout);
    }
}

/// The peak memory of a process that drew some frames; 0 if there was none.
double peakOfProcess(const char* hour) {
    char command[64];
    std::snprintf(command, sizeof command, "exec /proc/%d/exe --peak %s", int(getpid()), hour);
    FILE* child = popen(command, "r");
    double peak = 0;
    if (!child || std::fscanf(child, "%lf", &peak) != 1)
        peak = 0;
    if (child)
        pclose(child);
    return peak;
}

void printMemory() {
    std::printf("\n| peak memory | |\n|---|---|\n");
    for (const char* hour : {"off", "12", "18.25", "19.5", "22"})
        std::printf("| %s | %.1f MiB |\n", *hour == 'o' ? hour : clockText(std::atof(hour)).c_str(),
                    peakOfProcess(hour));
}

}  // namespace

int main(int count, char** arguments) {
    const std::string word = count > 1 ? arguments[1] : "";
    if (count == 3 && word == "--peak") {
        mallopt(M_MMAP_THRESHOLD, 256 * 1024);  // as the program does
        const std::string hour = arguments[2];
        World world(10, false, World::LEVEL, bench::WIDTH, bench::HEIGHT,
                    hour == "off" ? HOUR() : HOUR(std::stod(hour)));
        for (int i = 0; i < WARM_UP + FRAMES; ++i) {
            world.advance(1);
            costOfPicture(world);
        }
        std::printf("%f\n", bench::peakMemoryMib());
        return 0;
    }
    if (count > 2 || (count == 2 && word != "--quick")) {
        std::fprintf(stderr, "usage: hours_bench [--quick]\n");
        return 2;
    }
    if (count == 2)
        rounds = 1;
    printFrames();
    printMemory();
    return 0;
}
