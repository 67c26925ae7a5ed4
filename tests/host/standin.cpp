// A scene that is one colour and says what happens to it, in the place of the real one.
#include <GL/gl.h>
#include <SDL_mixer.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDialog>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <optional>

#include "framework/KDEFrame.h"
#include "host/Arguments.h"
#include "host/KDEScreensaverFrame.h"
#include "host/ScreenPainter.h"
#include "main.h"

namespace {

/// One line per event, at once, so that a test reads it while the program runs.
void say(const char* line) {
    std::printf("%s\n", line);
    std::fflush(stdout);
}

class Standin : public KDEFrame {
public:
    Standin() { say("constructed"); }
    ~Standin() override { say("destroyed"); }

    bool initGL() override {
        glViewport(0, 0, resolution_x, resolution_y);
        return true;
    }
    /// What the real scene does when its window has another size.
    void setViewSize(int width, int height) {
        const bool current = QGLContext::currentContext() == context();
        std::printf("setViewSize %d x %d%s\n", width, height, current ? "" : " without context");
        std::fflush(stdout);
        setArea(width, height);
    }
    /// The same, of a part of the window.
    void setArea(int width, int height) {
        resolution_x = width;
        resolution_y = height;
        initGL();
    }
    bool initScene() override {
        std::printf("initScene %d x %d\n", resolution_x, resolution_y);
        std::fflush(stdout);
        makeSound();
        glGenTextures(1, &texture);
        return true;
    }
    void updateScene() override { ++frames; }
    void renderScene() override {
        // Only the viewport has the colour.
        glClear(GL_COLOR_BUFFER_BIT);
        glColor3f(0.0F, 0.5F, 1.0F);
        glRectf(-1, -1, 1, 1);
        if (frames == 3) {
            GLint samples = 0;
            glGetIntegerv(GL_SAMPLES, &samples);
            std::printf("samples %d\n", samples);
            say("drawing");
        }
        if (std::getenv("STANDIN_TOILS"))
            usleep(300'000);  // as on a busy machine
        if (std::getenv("STANDIN_COUNTS"))
            say("frame");
    }
    bool releaseGL() override {
        const bool current = QGLContext::currentContext() == context();
        say(current ? "releaseGL current" : "releaseGL without context");
        return true;
    }
    bool cleanup() override {
        Mix_CloseAudio();
        glDeleteTextures(1, &texture);
        say("cleanup");
        if (std::getenv("STANDIN_HANGS"))
            pause();
        return true;
    }
    bool resetEvents() override { return true; }

private:
    /// As loud as can be, for ever, where STANDIN_SOUNDS is in the environment; with the real
    /// scene's device.
    void makeSound() {
        static std::int16_t wave[4096];
        std::fill(std::begin(wave), std::end(wave), 32000);
        if (!std::getenv("STANDIN_SOUNDS") || Mix_OpenAudio(22050, AUDIO_S16LSB, 2, 4096) != 0)
            return;
        static Mix_Chunk chunk = {};
        chunk.abuf = reinterpret_cast<Uint8*>(wave);
        chunk.alen = sizeof wave;
        chunk.volume = MIX_MAX_VOLUME;
        Mix_PlayChannel(-1, &chunk, -1);
    }

    int frames = 0;
    GLuint texture = 0;
};

Standin& standin(KScreenSaver& saver) {
    return static_cast<Standin&>(*static_cast<KDEScreensaverFrame&>(saver).saver);
}

}  // namespace

extern "C" {

const char* kss_applicationName = "standin";
const char* kss_description = "Stand-in";
const char* kss_version = "1";

KScreenSaver* kss_create(WId id) {
    static std::optional<Standin> scene;
    if (!scene) {
        scene.emplace();
        qAddPostRoutine([] { scene.reset(); });
    }
    auto* frame = new KDEScreensaverFrame(id);
    frame->init(&*scene);
    return frame;
}

QDialog* kss_setup() { return nullptr; }
}

QDialog* createSetup(const std::string&) { return nullptr; }

SCENE_PICTURE pictureOf(KScreenSaver& saver) {
    Standin& scene = standin(saver);
    return {[&scene] { scene.renderScene(); },
            [] {},
            [] { return 0; },
            [] { return false; },
            [&scene](int width, int height) { scene.setArea(width, height); },
            [] {}};
}

void showFrameRate(KScreenSaver&) { say("frame rate"); }

void presetSetting(const EXTRA_VALUE& wanted) {
    for (const EXTRA_SETTING& setting : extra_settings)
        if (setting.field == wanted.field)
            std::printf("setting %s %d\n", setting.key, wanted.value);
    std::fflush(stdout);
}

void setViewSize(KScreenSaver& saver, int width, int height) {
    standin(saver).setViewSize(width, height);
}

void skipUnseenTime(KScreenSaver&) { say("unseen time"); }

void setDayTime(KScreenSaver&, int minute) {
    std::printf("minute %d\n", minute);
    std::fflush(stdout);
}
