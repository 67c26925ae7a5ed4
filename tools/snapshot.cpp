// Takes pictures of the running scene with a clock that it sets itself, so that the same arguments
// always give the same picture.

#include <GL/glu.h>
#include <SDL.h>
#include <stdlib.h>

#include <QFileInfo>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <optional>
#include <string>

#include "Marivista.h"
#include "offscreen.h"
#include "system/RowClip.h"

namespace {

Uint32 ticks = 0;
uint64_t random_state = 1;

}  // namespace

// The scene's clock and chance; see the --wrap options of this program.
extern "C" Uint32 __wrap_SDL_GetTicks() { return ticks; }
extern "C" void __wrap_srand(unsigned seed) {
    // Spread out, or neighbouring seeds would start with the same choices.
    random_state = (seed + 1) * 0x9E3779B97F4A7C15u;
    random_state = (random_state ^ (random_state >> 29)) * 0xBF58476D1CE4E5B9u;
}
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
    int samples = 0;
    unsigned seed = 1;
    std::string config;
    int frames = 1;
    double fps = 20;
    bool show_fps = false;
    bool where = false;
    std::optional<bool> proportions;    ///< else the settings' own
    std::optional<DAY_CHOICE> daytime;  ///< else the settings' own
    bool day = false;
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
        if (name == "--show-fps" || name == "--where" || name == "--day") {
            (name == "--where" ? options->where
             : name == "--day" ? options->day
                               : options->show_fps) = true;
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
        } else if (name == "--samples") {
            options->samples = std::atoi(value);
        } else if (name == "--seed") {
            options->seed = static_cast<unsigned>(std::strtoul(value, nullptr, 10));
        } else if (name == "--proportions") {
            if (std::strcmp(value, "true") != 0 && std::strcmp(value, "stretched") != 0)
                return false;
            options->proportions = *value == 't';
        } else if (name == "--config") {
            options->config = value;
        } else if (name == "--frames") {
            options->frames = std::atoi(value);
        } else if (name == "--daytime") {
            const auto choice = parseDayChoice(value);
            if (!choice)
                return false;
            options->daytime = *choice;
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

/// Prints where an animal is in the picture: its name, x, y from the left and upper edge, its
/// distance from the eye in world units and whether it shows its side (1) or its nose or tail (0).
void printPlace(const char* name, ModelCore& animal, const Options& options, const Camera& camera) {
    if (!animal.model || !animal.model->loaded)
        return;
    GLdouble view[16], projection[16], x, y, z;
    GLint viewport[4];
    glGetDoublev(GL_MODELVIEW_MATRIX, view);
    glGetDoublev(GL_PROJECTION_MATRIX, projection);
    glGetIntegerv(GL_VIEWPORT, viewport);
    GLVector3 away = animal.vPos - camera.vEye;
    GLVector3 forward = animal.vAt - animal.vPos;
    gluProject(animal.vPos.x, animal.vPos.y, animal.vPos.z, view, projection, viewport, &x, &y, &z);
    const float distance = vectorLength(&away);
    const float side = vectorLength(&forward) > 0
                           ? 1 - std::fabs(dot(&away, &forward)) / distance / vectorLength(&forward)
                           : 0;
    const bool seen = z < 1 && x >= 0 && y >= 0 && x < options.width && y < options.height;
    if (seen)
        std::printf("%s %.0f %.0f %.1f %.2f\n", name, x, options.height - y,
                    static_cast<double>(distance), static_cast<double>(side));
}

void printPlaces(CMarivistaScreensaver& scene, const Options& options) {
    glLoadIdentity();
    scene.camera.setViewMatrix();
    if (scene.boidcount > 0)
        printPlace("school", scene.fishcrowd[0], options, scene.camera);
    printPlace("hunter", scene.hunter1, options, scene.camera);
    if (scene.bigfishmove.actmodel && scene.bigfishmove.state == 0)
        printPlace("big", *scene.bigfishmove.actmodel, options, scene.camera);
    printPlace("manta", scene.manta, options, scene.camera);
    if (scene.bird_gull)
        printPlace("gull", scene.gull, options, scene.camera);
    for (int i = 0; i < scene.numFish; ++i)
        printPlace("reef", scene.fish[i], options, scene.camera);
}

}  // namespace

int main(int argc, char** argv) {
    Options options;
    if (!parse(argc, argv, &options)) {
        std::fprintf(stderr,
                     "usage: snapshot OUT.png [--view bottom|middle|top|low|automatic]\n"
                     "       [--seconds S] [--size WxH] [--proportions stretched|true]\n"
                     "       [--samples N] [--seed N]\n"
                     "       [--config FILE] [--frames N --fps F] [--show-fps] [--where]\n"
                     "       [--daytime noon|clock|HH:MM] [--day]\n");
        return 2;
    }
    // Settings are looked up by absolute paths.
    QString settings;
    if (!options.config.empty()) {
        settings = QFileInfo(QString::fromLocal8Bit(options.config.c_str())).canonicalFilePath();
        if (settings.isEmpty()) {
            std::fprintf(stderr, "snapshot: no file %s\n", options.config.c_str());
            return 1;
        }
    }
    OffscreenContext context(options.width, options.height, options.samples);
    if (!context.ok()) {
        std::fprintf(stderr, "snapshot: no OpenGL context\n");
        return 1;
    }

    auto scene = std::make_unique<CMarivistaScreensaver>();
    scene->settings_file = settings;
    scene->draw_in_rows = drawInRows;
    scene->loadSettings(options.width, options.height);
    if (!settings.isEmpty())
        scene->readExtraSettings();
    scene->wantedwssettings.soundOn = false;
    scene->extras.proportions = options.proportions.value_or(scene->extras.proportions != 0);
    scene->wantedwssettings.camerapos = options.camerapos;
    scene->fpsOn = options.show_fps;
    // A whole day passes while the pictures are taken, or none.
    Uint32 day_begins = 0, day_length = 1;
    const DAY_CHOICE chosen =
        options.daytime.value_or(DAY_CHOICE{scene->extras.daytime != 0, std::nullopt});
    scene->extras.daytime = options.day || chosen.hours;
    if (options.day || chosen.minute) {
        const double standing = chosen.minute.value_or(12 * 60);
        scene->localTime = [&, standing]() -> LOCAL_TIME {
            if (!options.day || ticks < day_begins)
                return {standing, 0};
            const double passed = 1440.0 * (ticks - day_begins) / day_length;
            return {std::fmod(standing + passed, 1440), 0};
        };
    }
    srand(options.seed);
    scene->buildWorld();

    // Between pictures everything runs as ever, only the filling of pixels is left out.
    const auto first = static_cast<Uint32>(options.seconds * 1000);
    day_begins = first;
    day_length = static_cast<Uint32>(options.frames * 1000 / options.fps);
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
        if (options.where)
            printPlaces(*scene, options);
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
