// Takes pictures of the running scene with a clock that it sets itself, so that the same arguments
// always give the same picture.

#include <SDL.h>
#include <stdlib.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

#include "Marivista.h"
#include "offscreen.h"

namespace {

Uint32 ticks = 0;
uint64_t random_state = 1;

}  // namespace

// The scene's clock and chance; see the --wrap options of this program.
extern "C" Uint32 __wrap_SDL_GetTicks() { return ticks; }
extern "C" void __wrap_srand(unsigned seed) { random_state = seed; }
extern "C" int __wrap_rand() {
    random_state = random_state * 6364136223846793005u + 1442695040888963407u;
    return static_cast<int>(random_state >> 33);
}

namespace {

constexpr Uint32 TICK_MS = 10;

struct Options {
    std::string out;
    int camerapos = 4;  // Not a position that the scene knows: level, at rest.
    double seconds = 12;
    int width = 1280, height = 948;
    unsigned seed = 1;
    std::string config;
    int frames = 1;
    double fps = 20;
    bool show_fps = false;
};

bool parseView(const std::string& name, int* camerapos) {
    const struct {
        const char* name;
        int camerapos;
    } views[] = {{"bottom", 4}, {"middle", 2}, {"top", 1}, {"low", 3}, {"automatic", 0}};
    for (const auto& view : views)
        if (name == view.name) {
            *camerapos = view.camerapos;
            return true;
        }
    return false;
}

bool parse(int argc, char** argv, Options* options) {
    for (int i = 1; i < argc; ++i) {
        const std::string name = argv[i];
        if (name == "--show-fps") {
            options->show_fps = true;
            continue;
        }
        if (name.compare(0, 2, "--") != 0) {
            if (!options->out.empty())
                return false;
            options->out = name;
            continue;
        }
        if (++i == argc)
            return false;
        const char* value = argv[i];
        if (name == "--view") {
            if (!parseView(value, &options->camerapos))
                return false;
        } else if (name == "--seconds") {
            options->seconds = std::atof(value);
        } else if (name == "--size") {
            if (std::sscanf(value, "%dx%d", &options->width, &options->height) != 2)
                return false;
        } else if (name == "--seed") {
            options->seed = static_cast<unsigned>(std::strtoul(value, nullptr, 10));
        } else if (name == "--config") {
            options->config = value;
        } else if (name == "--frames") {
            options->frames = std::atoi(value);
        } else if (name == "--fps") {
            options->fps = std::atof(value);
        } else {
            return false;
        }
    }
    return !options->out.empty() && options->width > 0 && options->height > 0 &&
           options->frames > 0 && options->fps > 0 && options->seconds >= 0;
}

/// "lagoon.png" becomes "lagoon-0007.png" for a numbered picture.
std::string numbered(const std::string& path, int number) {
    const size_t dot = path.rfind('.');
    char text[16];
    std::snprintf(text, sizeof text, "-%04d", number);
    return path.substr(0, dot) + text + (dot == std::string::npos ? "" : path.substr(dot));
}

}  // namespace

int main(int argc, char** argv) {
    Options options;
    if (!parse(argc, argv, &options)) {
        std::fprintf(stderr,
                     "usage: snapshot OUT.png [--view bottom|middle|top|low|automatic]\n"
                     "       [--seconds S] [--size WxH] [--seed N] [--config FILE]\n"
                     "       [--frames N --fps F] [--show-fps]\n");
        return 2;
    }
    OffscreenContext context(options.width, options.height);
    if (!context.ok()) {
        std::fprintf(stderr, "snapshot: no OpenGL context\n");
        return 1;
    }

    auto scene = std::make_unique<CMarivistaScreensaver>();
    scene->settings_file = QString::fromLocal8Bit(options.config.c_str());
    scene->loadSettings(options.width, options.height);
    scene->wantedwssettings.soundOn = false;
    scene->wantedwssettings.camerapos = options.camerapos;
    scene->fpsOn = options.show_fps;
    srand(options.seed);
    scene->buildWorld();

    // Between pictures everything runs as ever, only the filling of pixels is left out.
    const auto first = static_cast<Uint32>(options.seconds * 1000);
    bool saved = true;
    for (int picture = 0; picture < options.frames; ++picture) {
        const Uint32 due = first + static_cast<Uint32>(picture * 1000 / options.fps);
        glEnable(GL_RASTERIZER_DISCARD);
        while (ticks + TICK_MS <= due) {
            ticks += TICK_MS;
            if (ticks + TICK_MS > due)
                glDisable(GL_RASTERIZER_DISCARD);
            scene->tick();
        }
        if (due < TICK_MS) {
            glDisable(GL_RASTERIZER_DISCARD);
            scene->tick();
        }
        saved = context.read().savePng(options.frames > 1 ? numbered(options.out, picture)
                                                          : options.out) &&
                saved;
    }
    scene->cleanup();
    scene.reset();
    if (!saved)
        std::fprintf(stderr, "snapshot: cannot write %s\n", options.out.c_str());
    return saved ? 0 : 1;
}
