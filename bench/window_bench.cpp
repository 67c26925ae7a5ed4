// How often the saver draws in a window of the display's size, from each of the camera's places at
// rest and on its way between them, as it is shipped: window_bench [SECONDS], a table of markdown.
// Wants a display, and a machine that does nothing else.
#include <GL/gl.h>

#include <QApplication>
#include <QScreen>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <vector>

#include "Marivista.h"
#include "framework/KDEFrame.h"
#include "host/FramePacer.h"
#include "host/KDEScreensaverFrame.h"
#include "host/ScreenPainter.h"
#include "main.h"
#include "system/RowClip.h"

namespace {

constexpr int SETTLING = 8;  // seconds

double read(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return 1e3 * static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_nsec);
}

struct VIEW {
    const char* name;
    int camerapos;
};
constexpr VIEW views[] = {{"top", 1}, {"middle", 2}, {"bottom", 3}, {"on its way", 0}};

void wait(int seconds) {
    QTimer::singleShot(seconds * 1000, [] { QCoreApplication::quit(); });
    QCoreApplication::exec();
}

/// The scene looking from one place, or with its camera on its way.
class Scene : public CMarivistaScreensaver {
public:
    explicit Scene(int camerapos) : place(camerapos) {}
    bool readSettings() override {
        const bool read = CMarivistaScreensaver::readSettings();
        wantedwssettings.camerapos = place;
        wantedwssettings.soundOn = false;
        // On its way it hardly rests.
        wantedwssettings.camerafix_top = wantedwssettings.camerafix_bottom = 5;
        return read;
    }

private:
    int place;
};

void measure(const VIEW& view, int seconds) {
    Scene scene(view.camerapos);
    scene.draw_in_rows = drawInRows;
    KDEScreensaverFrame saver(0);
    saver.setWindowFlag(Qt::BypassWindowManagerHint);
    saver.setGeometry(saver.screen()->geometry());
    saver.init(&scene);
    saver.show();

    int frames = 0;
    double fraction = 0;
    SCENE_PICTURE picture = pictureOf(saver);
    const auto draw = std::move(picture.draw);
    picture.draw = [&] {
        GLint area[4];
        glGetIntegerv(GL_VIEWPORT, area);
        fraction = static_cast<double>(area[3]) / saver.height();
        ++frames;
        draw();
    };
    const ScreenPainter painter(scene, picture, std::nullopt, 0);
    const FramePacer pacer(scene, 0, {[](int, int) {}, [] {}, [](bool) {}});
    wait(SETTLING);
    std::vector<int> seconds_frames;
    frames = 0;
    const double wall = read(CLOCK_MONOTONIC), cpu = read(CLOCK_PROCESS_CPUTIME_ID);
    for (int i = 0; i < seconds; ++i) {
        const int before = frames;
        wait(1);
        seconds_frames.push_back(frames - before);
    }
    const double took = read(CLOCK_MONOTONIC) - wall;
    std::printf("| %s | %.2f | %.1f | %d | %.0f ms |\n", view.name, fraction, 1000 * frames / took,
                *std::min_element(seconds_frames.begin(), seconds_frames.end()),
                (read(CLOCK_PROCESS_CPUTIME_ID) - cpu) / frames);
    std::fflush(stdout);
    scene.makeCurrent();
    scene.cleanup();
}

}  // namespace

int main(int count, char** arguments) {
    setenv("SDL_AUDIODRIVER", "dummy", 1);
    QApplication application(count, arguments);
    const int seconds = count > 1 ? std::max(1, std::atoi(arguments[1])) : 20;
    const QSize size = application.primaryScreen()->size();
    std::printf(
        "| %d x %d | fraction | pictures a second | fewest in one | processor |\n"
        "|---|---|---|---|---|\n",
        size.width(), size.height());
    for (const VIEW& view : views)
        measure(view, seconds);
}
