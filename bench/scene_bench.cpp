// What the scene costs, as a page of markdown: scene_bench TRACE [--quick], TRACE being what
// record_frame wrote; quick, it measures a twentieth of the frames. Times are processor time of all
// threads together, so that other work on the machine disturbs them as little as possible.
#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "Globals.h"
#include "bench_world.h"
#include "gl_trace.h"

namespace {

using bench::cpuTime;
using bench::TRACE;
using bench::World;

/// A value that a share p of all values does not exceed.
double quantile(std::vector<double> values, double p) {
    std::sort(values.begin(), values.end());
    const auto last = static_cast<double>(values.size() - 1);
    return values[static_cast<size_t>(std::ceil(p * last))];
}
double median(const std::vector<double>& values) { return quantile(values, 0.5); }

template <class Work>
double cost(Work work) {
    const double start = cpuTime();
    work();
    return cpuTime() - start;
}

/// Makes rasterising vanish: every triangle is still set up, and then lies outside.
void rasterise(bool on) {
    if (on) {
        glDisable(GL_SCISSOR_TEST);
    } else {
        glScissor(0, 0, 1, 1);
        glEnable(GL_SCISSOR_TEST);
    }
}

/// Frames before the driver has everything compiled that it needs.
constexpr int WARM_UP = 10;
/// What the numbers of measured frames are divided by.
int haste = 1;
/// The frames that are measured lie over a minute of scene time: the default camera's whole way.
constexpr int FRAMES_IN_A_MINUTE = 60000 / bench::FRAME_MS;

struct SERIES {
    std::vector<double> advance, draw;
};

/// Of so many frames out of a minute, what advancing and what drawing costs.
SERIES measureFrames(int school, int frames, bool rasterising, int camerapos = 0) {
    frames /= haste;
    World world(school, false, camerapos);
    const int stride = FRAMES_IN_A_MINUTE / frames;
    SERIES series;
    rasterise(rasterising);
    for (int i = -WARM_UP; i < frames; ++i) {
        world.advance(i < 0 ? 0 : stride - 1);
        world.setTime(world.time() + bench::FRAME_MS);
        const double advance = cost([&] { world.scene->updateScene(); });
        const double draw = cost([&] {
            world.scene->renderScene();
            glFinish();
        });
        if (i < 0)
            continue;
        series.advance.push_back(advance);
        series.draw.push_back(draw);
    }
    return series;
}

std::vector<double> sums(const SERIES& series) {
    std::vector<double> result;
    for (size_t i = 0; i < series.draw.size(); ++i)
        result.push_back(series.advance[i] + series.draw[i]);
    return result;
}

std::vector<double> measureAdvance(int school, int frames) {
    frames /= haste;
    World world(school);
    std::vector<double> times;
    for (int i = -WARM_UP; i < frames; ++i) {
        const double time = cost([&] { world.advance(1); });
        if (i >= 0)
            times.push_back(time);
    }
    return times;
}

/// What happened when a fresh process started the scene.
struct START {
    double wall = 0, cpu = 0;                  ///< from fork to the first picture, milliseconds
    double loading_wall = 0, loading_cpu = 0;  ///< the part of building the world
    double peak_mib = 0;
};

/// The part of a start that happens in the new process.
int startHere(double fork_time, bool sound) {
    mallopt(M_MMAP_THRESHOLD, 256 * 1024);  // as the program does
    World world(10, sound);
    if (!world.ok())
        return 1;
    world.advance(1);
    world.scene->renderScene();
    glFinish();
    const double wall = bench::wallTime() - fork_time, cpu = cpuTime();
    for (int i = 0; i < 10; ++i) {
        world.advance(1);
        world.scene->renderScene();
        glFinish();
    }
    std::printf("%f %f %f %f %f\n", wall, cpu, world.loading_ms, world.loading_cpu_ms,
                bench::peakMemoryMib());
    return 0;
}

bool measureStart(bool sound, START* start) {
    char command[128];
    std::snprintf(command, sizeof command, "exec /proc/%d/exe --start %f %d", int(getpid()),
                  bench::wallTime(), int(sound));
    FILE* child = popen(command, "r");
    if (!child)
        return false;
    const bool read = std::fscanf(child, "%lf %lf %lf %lf %lf", &start->wall, &start->cpu,
                                  &start->loading_wall, &start->loading_cpu, &start->peak_mib) == 5;
    return pclose(child) == 0 && read;
}

/// The quickest of five, which the machine's other work disturbed least.
bool bestStart(bool sound, START* best) {
    for (int i = 0; i < 5; ++i) {
        START start;
        if (!measureStart(sound, &start))
            return false;
        if (i == 0 || start.wall < best->wall)
            *best = start;
    }
    return true;
}

std::vector<TRACE> readTraces(const char* path) {
    std::ifstream file(path, std::ios::binary);
    std::vector<TRACE> traces;
    uint32_t header[3];
    while (file.read(reinterpret_cast<char*>(header), sizeof header)) {
        TRACE trace{header[0], header[1], std::vector<uint32_t>(header[2])};
        if (!file.read(reinterpret_cast<char*>(trace.words.data()), std::streamsize(header[2]) * 4))
            return {};
        traces.push_back(std::move(trace));
    }
    return traces;
}

struct REPLAYS {
    std::vector<double> scene, advance, replay;
};

/// The recorded frame by the scene and bare, in turns.
bool measureReplays(const TRACE& frame, REPLAYS* result) {
    World world;
    world.advanceToTracedFrame();
    world.scene->renderScene();
    const Picture drawn = world.context.read();
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    bench::play(frame);
    if (world.context.read().rgb != drawn.rgb) {
        std::fprintf(stderr, "scene_bench: the replayed frame is another picture\n");
        return false;
    }

    rasterise(false);
    for (int i = -WARM_UP; i < 300 / haste; ++i) {
        // Time goes on so little that the frame stays the same and every model still moves.
        world.setTime(world.time() + 1);
        const double advance = cost([&] { world.scene->updateScene(); });
        const double draw = cost([&] {
            world.scene->renderScene();
            glFinish();
        });
        const double replay = cost([&] {
            bench::play(frame);
            glFinish();
        });
        if (i < 0)
            continue;
        result->advance.push_back(advance);
        result->scene.push_back(advance + draw);
        result->replay.push_back(replay);
    }
    return true;
}

struct PART_FIGURES {
    std::string name;
    double time = 0;  ///< median of a frame, nothing rasterised
    double full = 0;  ///< the same with rasterising
    uint32_t calls = 0, vertices = 0;
};

/// Medians of what the parts of the recorded frame cost, by name.
std::map<std::string, double> timeParts(bool rasterising) {
    World world;
    world.advanceToTracedFrame();
    rasterise(rasterising);
    const std::vector<bench::PART> parts = world.parts();
    std::map<std::string, std::vector<double>> times;
    for (int i = -WARM_UP; i < (rasterising ? 100 : 300) / haste; ++i) {
        world.setTime(world.time() + 1);
        world.scene->updateScene();
        std::map<std::string, double> frame;
        for (const bench::PART& part : parts)
            frame[part.name] += cost([&] {
                part.draw();
                // Pixels are filled when somebody waits for them.
                if (rasterising)
                    glFinish();
            });
        glFinish();
        for (const auto& [name, time] : frame)
            if (i >= 0)
                times[name].push_back(time);
    }
    std::map<std::string, double> medians;
    for (const auto& [name, values] : times)
        medians[name] = median(values);
    return medians;
}

/// The parts of the recorded frame, most expensive first.
std::vector<PART_FIGURES> measureParts(const std::vector<TRACE>& traces) {
    const std::map<std::string, double> times = timeParts(false);
    const std::map<std::string, double> full = timeParts(true);
    std::vector<PART_FIGURES> figures;
    figures.reserve(times.size());
    for (const auto& [name, time] : times)
        figures.push_back({name, time, full.at(name)});
    size_t trace = 0;
    for (const bench::PART& part : World().parts()) {
        const TRACE& calls = traces[++trace];
        for (PART_FIGURES& figure : figures)
            if (figure.name == part.name) {
                figure.calls += calls.calls;
                figure.vertices += calls.vertices;
            }
    }
    std::sort(figures.begin(), figures.end(),
              [](const auto& a, const auto& b) { return a.full > b.full; });
    return figures;
}

double dataMib() {
    uintmax_t bytes = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(dataFile("")))
        if (entry.is_regular_file())
            bytes += entry.file_size();
    return static_cast<double>(bytes) / 1048576;
}

std::string processor() {
    std::ifstream info("/proc/cpuinfo");
    for (std::string line; std::getline(info, line);)
        if (line.rfind("model name", 0) == 0)
            return line.substr(line.find(':') + 2);
    return "unknown processor";
}

const char* verdict(double value, double reach) { return value <= reach ? "yes" : "**no**"; }

int report(const char* trace_file) {
    const std::vector<TRACE> traces = readTraces(trace_file);
    std::vector<uint32_t> parts;
    for (size_t i = 1; i < traces.size(); ++i)
        parts.insert(parts.end(), traces[i].words.begin(), traces[i].words.end());
    if (traces.empty() || parts != traces[0].words) {
        std::fprintf(stderr, "scene_bench: the parts are not the frame\n");
        return 1;
    }

    START silent, sounding;
    REPLAYS replays;
    if (!bestStart(false, &silent) || !bestStart(true, &sounding) ||
        !measureReplays(traces[0], &replays))
        return 1;
    const std::vector<double> advance = measureAdvance(10, 5000);
    const SERIES submitted = measureFrames(10, 600, false);
    const SERIES full = measureFrames(10, 200, true);
    const struct {
        const char* name;
        SERIES frames;
    } views[] = {{"- camera at the top", measureFrames(10, 60, true, 1)},
                 {"- camera in the middle", measureFrames(10, 60, true, 2)},
                 {"- camera at the bottom", measureFrames(10, 60, true, World::LEVEL)}};
    const std::vector<PART_FIGURES> figures = measureParts(traces);

    double load = 0;
    getloadavg(&load, 1);
    {
        OffscreenContext context(16, 16);
        std::printf("%s, %u cores, load %.1f; %s.\n\n", processor().c_str(),
                    std::thread::hardware_concurrency(), load,
                    reinterpret_cast<const char*>(glGetString(GL_RENDERER)));
    }
    std::printf("| default settings, %d x %d | median | 99 %% | reach | met |\n", bench::WIDTH,
                bench::HEIGHT);
    std::printf("|---|---|---|---|---|\n");
    const auto row = [](const char* name, const std::vector<double>& values, double reach) {
        std::printf("| %s | %.3f ms | %.3f ms | %g ms | %s |\n", name, median(values),
                    quantile(values, 0.99), reach, verdict(median(values), reach));
    };
    row("advancing", advance, 0.1);
    row("advancing and submitting, nothing rasterised", sums(submitted), 5);
    row("advancing, submitting and rasterising", sums(full), 50);
    for (const auto& view : views)
        row(view.name, sums(view.frames), 50);
    const double ratio = median(replays.scene) / median(replays.replay);
    std::printf(
        "| advancing and submitting, by the bare replay (%.3f ms by %.3f ms) | %.2f | | "
        "1.25 | %s |\n",
        median(replays.scene), median(replays.replay), ratio, verdict(ratio, 1.25));
    const auto single = [](const char* name, double value, const char* unit, double reach) {
        std::printf("| %s | %.*f %s | | %g %s | %s |\n", name, value < 10 ? 2 : 0, value, unit,
                    reach, unit, verdict(value, reach));
    };
    single("start to first picture, silent", silent.wall, "ms", 600);
    single("- of it building the world", silent.loading_wall, "ms", 250);
    single("start to first picture, with sound", sounding.wall, "ms", 600);
    single("- of it building the world", sounding.loading_wall, "ms", 250);
    single("peak memory, silent", silent.peak_mib, "MiB", 170);
    single("peak memory, with sound", sounding.peak_mib, "MiB", 170);
    std::printf(
        "\nProcessor time of the start: %.0f ms, %.0f ms of it building the world; with "
        "sound %.0f ms and %.0f ms. Data folder: %.1f MiB. A frame makes %u GL calls with "
        "%u vertices.\n",
        silent.cpu, silent.loading_cpu, sounding.cpu, sounding.loading_cpu, dataMib(),
        traces[0].calls, traces[0].vertices);

    std::printf(
        "\n| school fish | advancing, median | 99 %% | with submitting, median | 99 %% |\n"
        "|---|---|---|---|---|\n");
    for (const int school : {10, 100, 1000}) {
        const std::vector<double> moved = measureAdvance(school, 2000);
        const std::vector<double> drawn = sums(measureFrames(school, 60, false));
        std::printf("| %d | %.3f ms | %.3f ms | %.2f ms | %.2f ms |\n", school, median(moved),
                    quantile(moved, 0.99), median(drawn), quantile(drawn, 0.99));
    }

    double all = 0, all_full = 0;
    for (const PART_FIGURES& part : figures) {
        all += part.time;
        all_full += part.full;
    }
    std::printf(
        "\n| part of the frame | submitting | share | rasterised too | share | GL calls | "
        "vertices |\n|---|---|---|---|---|---|---|\n");
    for (const PART_FIGURES& part : figures)
        std::printf("| %s | %.3f ms | %.0f %% | %.2f ms | %.0f %% | %u | %u |\n", part.name.c_str(),
                    part.time, 100 * part.time / all, part.full, 100 * part.full / all_full,
                    part.calls, part.vertices);
    return 0;
}

}  // namespace

int main(int count, char** arguments) {
    if (count == 4 && std::string(arguments[1]) == "--start")
        return startHere(std::atof(arguments[2]), std::atoi(arguments[3]) != 0);
    if (count == 3 && std::string(arguments[2]) == "--quick")
        haste = 20;
    else if (count != 2) {
        std::fprintf(stderr, "usage: scene_bench TRACE [--quick]\n");
        return 2;
    }
    return report(arguments[1]);
}
