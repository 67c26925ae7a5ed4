// What the reef costs in a page of Qt Quick beside the scene drawn bare into a window, both of
// 1280 x 720, in turns in one process: page_bench. With a time, the milliseconds of the monotonic
// clock when the process was started: how long until the page has shown its still picture and the
// reef, and the most memory used two seconds later. Wants a display.
#include <sys/resource.h>

#include <QGuiApplication>
#include <QOpenGLContext>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTimer>
#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <vector>

#include "Marivista.h"
#include "quick/Reef.h"
#include "quick/Types.h"
#include "system/RowClip.h"

namespace {

constexpr int WIDTH = 1280, HEIGHT = 720;
constexpr int ROUNDS = 12, FRAMES = 15, WARM_UP = 12;

double read(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return 1e3 * static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_nsec);
}

/// Milliseconds of processor time, of all threads and of the one that draws.
struct COST {
    double all, own;
};
COST spent() { return {read(CLOCK_PROCESS_CPUTIME_ID), read(CLOCK_THREAD_CPUTIME_ID)}; }

double median(std::vector<double> values) {
    std::nth_element(values.begin(), values.begin() + values.size() / 2, values.end());
    return values[values.size() / 2];
}

struct PAGE {
    QQmlEngine engine;
    QQuickWindow window;
    QQuickItem* root = nullptr;

    explicit PAGE(const char* properties) {
        QQmlComponent component(&engine);
        component.setData(QByteArray("import QtQuick 2.15; import org.atollia.reef 1.0;"
                                     "Item { Reef { anchors.fill: parent; ") +
                              properties + "} }",
                          QUrl());
        root = qobject_cast<QQuickItem*>(component.create());
        root->setParent(&engine);
        window.resize(WIDTH, HEIGHT);
        root->setSize({WIDTH, HEIGHT});
        root->setParentItem(window.contentItem());
    }
};

int showOnce(double started) {
    // Another scale than the first one is told when the reef's first picture begins.
    PAGE page("renderScale: 0.99");
    std::atomic<bool> reef_comes = false;
    QObject::connect(page.root->findChild<Reef*>(), &Reef::currentScaleChanged, &page.window,
                     [&] { reef_comes = true; });
    const double complete = read(CLOCK_MONOTONIC);
    int frames = 0;
    bool reef_shown = false;
    QObject::connect(
        &page.window, &QQuickWindow::frameSwapped, &page.window,
        [&] {
            const double now = read(CLOCK_MONOTONIC);
            if (++frames == 1)
                std::printf("%.0f ", now - complete);
            if (reef_comes && !reef_shown) {
                reef_shown = true;
                std::printf("%.0f ", now - started);
                QTimer::singleShot(2000, [] { QCoreApplication::quit(); });
            }
        },
        Qt::DirectConnection);
    page.window.show();
    QCoreApplication::exec();
    rusage used{};
    getrusage(RUSAGE_SELF, &used);
    std::printf("%.0f\n", static_cast<double>(used.ru_maxrss) / 1024);
    std::fflush(stdout);
    std::_Exit(0);
}

/// A page's frames, each from when its thread begins with it to when it has been shown.
class PageFrames {
public:
    PageFrames() : page("running: false; renderScale: 1; samples: 0; dayTime: 0; cameraPos: 3") {
        reef = page.root->findChild<Reef*>();
        QObject::connect(
            &page.window, &QQuickWindow::beforeSynchronizing, &page.window,
            [this] { begin = spent(); }, Qt::DirectConnection);
        QObject::connect(
            &page.window, &QQuickWindow::frameSwapped, &page.window,
            [this] {
                const COST end = spent();
                costs.push_back({end.all - begin.all, end.own - begin.own});
            },
            Qt::DirectConnection);
        QObject::connect(&page.window, &QQuickWindow::frameSwapped, &page.window,
                         [this] { ++seen; });
        page.window.show();
    }
    std::vector<COST> measure(int frames) {
        const auto first = static_cast<std::ptrdiff_t>(costs.size());
        const int last = seen + frames;
        reef->setRunning(true);
        while (seen < last)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        reef->setRunning(false);
        // What is on its way is let arrive.
        for (const int settled = seen + 2; seen < settled;) {
            page.window.update();
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        return {costs.begin() + first, costs.begin() + first + frames};
    }

private:
    PAGE page;
    Reef* reef;
    COST begin{};
    std::vector<COST> costs;
    int seen = 0;
};

/// The scene as the saver draws it, straight into a window.
class BareFrames {
public:
    BareFrames() {
        window.setSurfaceType(QSurface::OpenGLSurface);
        window.resize(WIDTH, HEIGHT);
        window.show();
        context.create();
        context.makeCurrent(&window);
        scene.extras.proportions = 1;
        scene.wantedwssettings.camerapos = 3;
        scene.wantedwssettings.soundOn = false;
        scene.draw_in_rows = drawInRows;
        scene.start(WIDTH, HEIGHT);
    }
    std::vector<COST> measure(int frames) {
        std::vector<COST> costs;
        context.makeCurrent(&window);
        scene.skipUnseenTime();
        while (frames--) {
            const COST begin = spent();
            scene.updateScene();
            scene.renderScene();
            context.swapBuffers(&window);
            const COST end = spent();
            costs.push_back({end.all - begin.all, end.own - begin.own});
        }
        return costs;
    }

private:
    QWindow window;
    QOpenGLContext context;
    CMarivistaScreensaver scene{};
};

int compare() {
    PageFrames page;
    BareFrames bare;
    page.measure(WARM_UP);
    bare.measure(WARM_UP);
    std::vector<double> ratios_all, ratios_own, page_all, page_own, bare_all, bare_own;
    const auto mean = [](const std::vector<COST>& costs, double COST::*kind) {
        double sum = 0;
        for (const COST& cost : costs)
            sum += cost.*kind;
        return sum / static_cast<double>(costs.size());
    };
    for (int round = 0; round < ROUNDS; ++round) {
        const auto in_page = page.measure(FRAMES), alone = bare.measure(FRAMES);
        page_all.push_back(mean(in_page, &COST::all));
        page_own.push_back(mean(in_page, &COST::own));
        bare_all.push_back(mean(alone, &COST::all));
        bare_own.push_back(mean(alone, &COST::own));
        ratios_all.push_back(page_all.back() / bare_all.back());
        ratios_own.push_back(page_own.back() / bare_own.back());
    }
    std::printf("| the thread that draws | %.1f ms | %.1f ms | %.2f |\n", median(page_own),
                median(bare_own), median(ratios_own));
    std::printf("| all threads | %.1f ms | %.1f ms | %.2f |\n", median(page_all), median(bare_all),
                median(ratios_all));
    std::fflush(stdout);
    std::_Exit(0);
}

}  // namespace

int main(int count, char** arguments) {
    setenv("QSG_RENDER_LOOP", "threaded", 1);
    QGuiApplication application(count, arguments);
    registerReefTypes("org.atollia.reef");
    return count > 1 ? showOnce(std::atof(arguments[1])) : compare();
}
