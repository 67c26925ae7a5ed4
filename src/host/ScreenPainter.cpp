#include "host/ScreenPainter.h"

#include <GL/gl.h>

#include <QX11Info>
#include <chrono>
#include <utility>

#include "framework/KDEFrame.h"
#include "host/Renderer.h"
#include "host/Viewable.h"

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

ScreenPainter::~ScreenPainter() {
    painted.painter = nullptr;
    painted.setAutoBufferSwap(true);
}

std::uint32_t ScreenPainter::window() const {
    return static_cast<std::uint32_t>(painted.internalWinId());
}

void ScreenPainter::begin() {
    if (isSoftwareRenderer(reinterpret_cast<const char*>(glGetString(GL_RENDERER))))
        server.emplace(QX11Info::connection(), window());
    else
        scene.sharpen();
}

void ScreenPainter::paint() {
    if (!std::exchange(begun, true))
        begin();
    const double start = now();
    bool rearranged = false;
    if (start >= static_cast<double>(next_question)) {
        auto found = monitorsUnder(QX11Info::connection(), window());
        rearranged = found != monitors;
        monitors = std::move(found);
        next_question = static_cast<std::int64_t>(start) + QUESTION_PERIOD;
    }
    const double fraction = wanted_fraction.value_or(scale.fraction());
    by_server = fraction < 1 && server && server->possible();
    // Behind the server's pictures stands what was swapped last, as large as it was then.
    const bool behind = !painted.autoBufferSwap();
    if (behind && (rearranged || !by_server) && !isViewable(QX11Info::connection(), window()))
        return;  // the renderer would crash drawing into a window that has gone
    if (rearranged || (behind && !by_server && painted.size() != buffer_size)) {
        glClear(GL_COLOR_BUFFER_BIT);
        painted.swapBuffers();
        buffer_size = painted.size();
    }
    shown = false;
    if (monitors.empty())
        paintArea(fraction, {0, 0, painted.resolution_x, painted.resolution_y});
    else
        paintMonitors(fraction);
    setShownByServer(shown);
    if (wanted_fraction)
        return;
    glFinish();
    const double end = now();
    scale.drawn(end, end - start, scene.travelling());
}

void ScreenPainter::paintArea(double fraction, const AREA& area) {
    const int text = scene.text_height();
    const auto show = [&](int width, int height) {
        return by_server && (shown || server->begin()) && server->show(width, height, area, text);
    };
    bool done = false;
    drawing.draw(fraction, scene.draw,
                 [&](int width, int height) { return done = show(width, height); });
    if (!done) {
        scene.draw_text();
        return;
    }
    shown = true;
    if (text > 0)
        drawing.drawTop(text, scene.draw_text, [&] {
            server->show(area.width, text, {area.x, area.y, area.width, text});
        });
}

void ScreenPainter::setShownByServer(bool is) {
    if (painted.autoBufferSwap() != is)
        return;
    painted.setAutoBufferSwap(!is);
    if (is)
        buffer_size = painted.size();
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
        paintArea(fraction, area);
        glDisable(GL_SCISSOR_TEST);
    }
    scene.set_view_size(width, height);
}
