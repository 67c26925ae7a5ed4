// A scene that is one colour and says what happens to it, in the place of the real one.
#include <GL/gl.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDialog>
#include <cstdio>
#include <cstdlib>
#include <optional>

#include "framework/KDEFrame.h"
#include "host/KDEScreensaverFrame.h"
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
        glClearColor(0.0F, 0.5F, 1.0F, 1.0F);
        return true;
    }
    bool initScene() override {
        std::printf("initScene %d x %d\n", resolution_x, resolution_y);
        std::fflush(stdout);
        glGenTextures(1, &texture);
        GLint samples = 0;
        glGetIntegerv(GL_SAMPLES, &samples);
        std::printf("samples %d\n", samples);
        std::fflush(stdout);
        return true;
    }
    void updateScene() override { ++frames; }
    void renderScene() override {
        glClear(GL_COLOR_BUFFER_BIT);
        if (frames == 3)
            say("drawing");
        if (std::getenv("STANDIN_COUNTS"))
            say("frame");
    }
    bool releaseGL() override {
        const bool current = QGLContext::currentContext() == context();
        say(current ? "releaseGL current" : "releaseGL without context");
        return true;
    }
    bool cleanup() override {
        glDeleteTextures(1, &texture);
        say("cleanup");
        if (std::getenv("STANDIN_HANGS"))
            pause();
        return true;
    }
    bool resetEvents() override { return true; }

private:
    int frames = 0;
    GLuint texture = 0;
};

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

void showFrameRate(KScreenSaver&) { say("frame rate"); }
