// What the hours of the day cost: hours_bench [--quick], two tables of markdown. Scenes with and
// without them draw the same frames in turns; times are processor time of all threads together.
#include <malloc.h>
#include <unistd.h>

#include <algorithm>
#include <array>
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

/// Appends what each of some frames costs, milliseconds.
void measure(int camerapos, HOUR hour, std::vector<double>& costs) {
    World world(10, false, camerapos, bench::WIDTH, bench::HEIGHT, hour);
    for (int i = -WARM_UP; i < FRAMES; ++i) {
        const double start = cpuTime();
        world.advance(1);
        world.scene->renderScene();
        glFinish();
        if (i >= 0)
            costs.push_back(cpuTime() - start);
    }
}

/// Other work on the machine only ever adds to a frame's cost, so a low quantile is the steadiest.
double typical(std::vector<double> costs) {
    std::sort(costs.begin(), costs.end());
    return costs[costs.size() / 10];
}

std::string clockText(double hour) {
    char text[16];
    const int minutes = static_cast<int>(hour * 60 + 0.5);
    std::snprintf(text, sizeof text, "%d:%02d", minutes / 60, minutes % 60);
    return text;
}

void printFrames() {
    std::printf("| hour | top: off | on | more | bottom: off | on | more |\n");
    std::printf("|---|---|---|---|---|---|---|\n");
    for (const double hour : hours) {
        std::printf("| %s |", clockText(hour).c_str());
        for (const int camerapos : {TOP, World::LEVEL}) {
            std::vector<double> off, on;
            for (int i = 0; i < rounds; ++i) {
                measure(camerapos, {}, off);
                measure(camerapos, hour, on);
            }
            const double without = typical(off), with = typical(on);
            std::printf(" %.1f ms | %.1f ms | %+.0f %% |", without, with,
                        100 * (with / without - 1));
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
    for (const char* hour : {"off", "12", "18.25", "22"})
        std::printf("| %s | %.0f MiB |\n", *hour == 'o' ? hour : clockText(std::atof(hour)).c_str(),
                    peakOfProcess(hour));
}

}  // namespace

int main(int count, char** arguments) {
    const std::string word = count > 1 ? arguments[1] : "";
    if (count == 3 && word == "--peak") {
        mallopt(M_MMAP_THRESHOLD, 256 * 1024);  // as the program does
        const std::string hour = arguments[2];
        std::vector<double> costs;
        measure(World::LEVEL, hour == "off" ? HOUR() : HOUR(std::stod(hour)), costs);
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
