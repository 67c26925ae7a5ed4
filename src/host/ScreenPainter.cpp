#include "host/ScreenPainter.h"

#include <GL/gl.h>

#include <QX11Info>
#include <chrono>
#include <utility>

#include "framework/KDEFrame.h"
#include "host/Renderer.h"

namespace {

/// Monitors and windows that move are noticed so late, milliseconds.
constexpr std::int64_t QUESTION_PERIOD = 1000;

double now() {
    using namespace std::chrono;
    return duration<double, std::milli>(steady_clock::now().time_since_epoch()).count();
}

}  // namespace

ScreenPainter::ScreenPainter(KDEFrame& frame, SCENE_PICTURE picture, std::optional<double> fraction,
                             int samples)
    : painted(frame), scene(std::move(picture)), wanted_fraction(fraction), drawing(samples) {
    painted.painter = [this] { paint(); };
}

ScreenPainter::~ScreenPainter() { painted.painter = nullptr; }

void ScreenPainter::paint() {
    if (!std::exchange(begun, true) &&
        !isSoftwareRenderer(reinterpret_cast<const char*>(glGetString(GL_RENDERER))))
        scene.sharpen();
    const double start = now();
    if (start >= static_cast<double>(next_question)) {
        monitors = monitorsUnder(QX11Info::connection(),
                                 static_cast<std::uint32_t>(painted.internalWinId()));
        next_question = static_cast<std::int64_t>(start) + QUESTION_PERIOD;
    }
    const double fraction = wanted_fraction.value_or(scale.fraction());
    if (monitors.empty())
        paintArea(fraction);
    else
        paintMonitors(fraction);
    if (wanted_fraction)
        return;
    glFinish();
    const double end = now();
    scale.drawn(end, end - start, scene.travelling());
}

void ScreenPainter::paintArea(double fraction) {
    drawing.draw(fraction, scene.draw);
    scene.draw_text();
}

void ScreenPainter::paintMonitors(double fraction) {
    const int width = painted.resolution_x, height = painted.resolution_y;
    glClear(GL_COLOR_BUFFER_BIT);
    for (const AREA& area : monitors) {
        scene.set_view_size(area.width, area.height);
        const int bottom = height - area.y - area.height;
        glViewport(area.x, bottom, area.width, area.height);
        glScissor(area.x, bottom, area.width, area.height);
        glEnable(GL_SCISSOR_TEST);
        paintArea(fraction);
        glDisable(GL_SCISSOR_TEST);
    }
    scene.set_view_size(width, height);
}
