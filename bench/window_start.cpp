// How long the program takes from its start to the first whole picture in a host's window of
// 1280 x 720, the quickest of five, and the most memory that it has used two seconds later:
// window_start ATOLLIA.KSS. Brings an X server of its own.
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include "host/virtual_display.h"

namespace {

constexpr int WIDTH = 1280, HEIGHT = 720, STARTS = 5;
constexpr double PATIENCE = 30000;  // milliseconds

double now() {
    using namespace std::chrono;
    return duration<double, std::milli>(steady_clock::now().time_since_epoch()).count();
}

double peakMib(pid_t process) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string line; std::getline(status, line);)
        if (line.rfind("VmHWM:", 0) == 0)
            return std::atof(line.c_str() + 6) / 1024;
    return 0;
}

struct START {
    double wall = 0;  ///< milliseconds; 0 when there was no picture
    double peak_mib = 0;
};

/// No corner is black any more.
bool isWhole(const test::PICTURE& picture) {
    for (const int y : {0, HEIGHT - 1})
        for (const int x : {0, WIDTH - 1})
            if (picture.at(x, y) == test::PIXEL{0, 0, 0})
                return false;
    return true;
}

START measure(const std::string& program, const test::VirtualDisplay& display,
              test::Client& client) {
    const xcb_window_t window = client.window(0, 0, WIDTH, HEIGHT);
    client.blacken(window);
    client.waitForPixel(WIDTH / 2, HEIGHT / 10, {0, 0, 0});
    const double begin = now();
    test::Process saver({program, "-window-id", std::to_string(window)},
                        {"DISPLAY=" + display.name(), "XSCREENSAVER_WINDOW"});
    START start;
    while (start.wall == 0 && now() - begin < PATIENCE) {
        usleep(1000);
        if (isWhole(client.picture(0, 0, WIDTH, HEIGHT)))
            start.wall = now() - begin;
    }
    saver.wait(2000);
    start.peak_mib = peakMib(saver.id());
    client.destroy(window);
    saver.wait();
    return start;
}

}  // namespace

int main(int count, char** arguments) {
    if (count != 2) {
        std::fprintf(stderr, "usage: window_start ATOLLIA.KSS\n");
        return 2;
    }
    const test::VirtualDisplay display({"-screen", "0", "1280x720x24"});
    test::Client client(display.name());
    START best;
    for (int i = 0; i < STARTS; ++i) {
        const START start = measure(arguments[1], display, client);
        if (start.wall == 0) {
            std::fprintf(stderr, "window_start: no picture\n");
            return 1;
        }
        best.wall = i == 0 ? start.wall : std::min(best.wall, start.wall);
        best.peak_mib = std::max(best.peak_mib, start.peak_mib);
    }
    std::printf("start to first picture %.0f ms, peak memory %.0f MiB\n", best.wall, best.peak_mib);
    return 0;
}
