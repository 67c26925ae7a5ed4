#include "bench_world.h"

#include <cstdlib>
#include <ctime>
#include <fstream>
#include <string>

#include "system/RowClip.h"

namespace {

Uint32 ticks = 0;
uint64_t random_state = 1;

double milliseconds(clockid_t clock) {
    timespec now;
    clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

}  // namespace

extern "C" {
Uint32 __wrap_SDL_GetTicks();
void __wrap_srand(unsigned);
int __wrap_rand();

Uint32 __wrap_SDL_GetTicks() { return ticks; }
void __wrap_srand(unsigned) {}
int __wrap_rand() {
    random_state = random_state * 6364136223846793005u + 1442695040888963407u;
    return static_cast<int>(random_state >> 33);
}
}

namespace bench {

double cpuTime() { return milliseconds(CLOCK_PROCESS_CPUTIME_ID); }
double wallTime() { return milliseconds(CLOCK_MONOTONIC); }

double peakMemoryMib() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.rfind("VmHWM:", 0) == 0)
            return std::atof(line.c_str() + 6) / 1024;
    return 0;
}

World::World(int school, bool sound, int camerapos, int width, int height,
             std::optional<double> hour)
    : context(width, height) {
    ticks = 0;
    random_state = 1;
    if (!context.ok())
        return;
    scene = std::make_unique<CMarivistaScreensaver>();
    scene->loadSettings(width, height);
    scene->wantedwssettings.boidcount = school;
    scene->wantedwssettings.soundOn = sound;
    scene->wantedwssettings.camerapos = camerapos;
    scene->extras.daytime = hour.has_value();
    if (hour)
        scene->localTime = [minute = *hour * 60] { return LOCAL_TIME{minute, 0}; };
    scene->draw_in_rows = drawInRows;
    const double cpu = cpuTime(), wall = wallTime();
    scene->buildWorld();
    loading_cpu_ms = cpuTime() - cpu;
    loading_ms = wallTime() - wall;
}

World::~World() {
    if (scene)
        scene->cleanup();
}

void World::setTime(Uint32 ms) { ticks = ms; }

Uint32 World::time() const { return ticks; }

void World::advance(int frames) {
    for (int i = 0; i < frames; ++i) {
        ticks += FRAME_MS;
        scene->updateScene();
    }
}

void World::advanceToTracedFrame() {
    // What moves when it is drawn takes some frames to catch up with its clock.
    constexpr int CATCHING_UP = 20;
    advance(TRACED_FRAME - CATCHING_UP);
    for (int i = 0; i < CATCHING_UP; ++i) {
        scene->renderScene();
        advance(1);
    }
}

std::vector<PART> World::parts() {
    CMarivistaScreensaver& s = *scene;
    const auto frame = [] { return ticks / 50 % 32; };
    const auto in_caustics = [&s, frame](ModelCore& fish) {
        fish.setTexture(&s.tex_caustics_fish[frame()], 1);
        fish.render();
    };
    return {
        {"clearing, camera",
         [&s] {
             glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
             glLoadIdentity();
             s.camera.setViewMatrix();
         }},
        {"gull", [&s] { s.gull.render(); }},
        {"sky", [&s] { s.sky.render(); }},
        {"sea floor",
         [&s, frame] {
             glEnable(GL_FOG);
             s.terrain.setTexture(&s.tex_caustics[frame()], 1);
             s.terrain.render();
             glDisable(GL_FOG);
         }},
        {"island, rock, fader, sparkle", [&s] { s.rock2.render(), s.gwfader.render(); }},
        {"school",
         [&s, in_caustics] {
             glEnable(GL_FOG);
             for (int i = 0; i < s.boidcount; ++i)
                 in_caustics(s.fishcrowd[i]);
         }},
        {"hunter", [&s, in_caustics] { in_caustics(s.hunter1); }},
        {"corals",
         [&s] {
             for (ModelCore* coral : {&s.coral_h, &s.coral_i, &s.coral_g, &s.coral_f, &s.coral_a})
                 coral->render();
         }},
        {"reef fish",
         [&s, in_caustics] {
             for (int i = 0; i < s.numFish; ++i)
                 in_caustics(s.fish[i]);
         }},
        {"big fish",
         [&s, frame] {
             s.yellowbigfish.setTexture(&s.tex_caustics_fish[frame()], 1);
             s.redbigfish.setTexture(&s.tex_caustics_fish[frame()], 1);
             s.bigfishmove.render();
         }},
        {"corals",
         [&s] {
             for (ModelCore* coral : {&s.coral_c, &s.coral_d[0], &s.coral_d[1], &s.coral_b[0],
                                      &s.coral_b[1], &s.coral_b[2]})
                 coral->render();
             glDisable(GL_FOG);
         }},
        {"island, rock, fader, sparkle", [&s] { s.island.render(); }},
        {"manta", [&s] { s.manta.render(); }},
        {"water surface", [&s] { s.water.render(); }},
        {"island, rock, fader, sparkle",
         [&s, frame] {
             if (!s.camerascrolling)
                 s.highlight.setTexture(&s.tex_highlight[frame()], 1);
             s.highlight.render();
         }},
    };
}

}  // namespace bench
