// How often the saver draws in a window of the display's size, from each of the camera's places at
// rest and on its way between them, as it is shipped: window_bench [SECONDS], a table of markdown.
// Wants a display, and a machine that does nothing else. A virtual machine does not always have its
// processors: what its host took is told, and which second was the slowest of those that were
// whole.
#include <GL/gl.h>
#include <unistd.h>

#include <QApplication>
#include <QScreen>
#include <QTimer>
#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "Marivista.h"
#include "framework/KDEFrame.h"
#include "host/FramePacer.h"
#include "host/KDEScreensaverFrame.h"
#include "host/ScreenPainter.h"
#include "main.h"
#include "system/RowClip.h"

namespace {

constexpr int SETTLING = 8;         // seconds
constexpr double DISTURBED = 0.05;  // of all processors' time taken by the machine's host

double read(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return 1e3 * static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_nsec);
}

/// What the host of a virtual machine took of its processors, seconds of one.
double stolen() {
    std::ifstream file("/proc/stat");
    std::string name;
    double user = 0, nice = 0, system = 0, idle = 0, waiting = 0, irq = 0, softirq = 0, steal = 0;
    file >> name >> user >> nice >> system >> idle >> waiting >> irq >> softirq >> steal;
    return steal / static_cast<double>(sysconf(_SC_CLK_TCK));
}

struct SECOND {
    int frames;
    double stolen;  ///< of all processors' time
};

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
    std::vector<SECOND> passed;
    frames = 0;
    const double processors = std::max(1U, std::thread::hardware_concurrency());
    const double wall = read(CLOCK_MONOTONIC), cpu = read(CLOCK_PROCESS_CPUTIME_ID);
    for (int i = 0; i < seconds; ++i) {
        const int before = frames;
        const double stolen_before = stolen();
        wait(1);
        passed.push_back({frames - before, (stolen() - stolen_before) / processors});
    }
    const double took = read(CLOCK_MONOTONIC) - wall;
    int fewest = INT_MAX, fewest_whole = INT_MAX, whole = 0;
    double taken = 0;
    for (const SECOND& second : passed) {
        fewest = std::min(fewest, second.frames);
        taken += second.stolen / seconds;
        if (second.stolen > DISTURBED)
            continue;
        fewest_whole = std::min(fewest_whole, second.frames);
        ++whole;
    }
    std::printf("| %s | %.2f | %.1f | %d | %s of %d | %.0f %% | %.0f ms |\n", view.name, fraction,
                1000 * frames / took, fewest, whole ? std::to_string(fewest_whole).c_str() : "-",
                whole, 100 * taken, (read(CLOCK_PROCESS_CPUTIME_ID) - cpu) / frames);
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
        "| %d x %d | fraction | pictures a second | fewest in one | in a whole one | stolen | "
        "processor |\n"
        "|---|---|---|---|---|---|---|\n",
        size.width(), size.height());
    for (const VIEW& view : views)
        measure(view, seconds);
}
