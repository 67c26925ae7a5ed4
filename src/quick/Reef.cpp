#include "quick/Reef.h"

#include <QDir>
#include <QGuiApplication>
#include <QOpenGLContext>
#include <QQuickWindow>
#include <QSGImageNode>
#include <QSGRendererInterface>
#include <QScreen>
#include <QtMath>
#include <algorithm>
#include <cmath>
#include <cstdio>

#include "DayLight.h"
#include "Globals.h"
#include "LocalTime.h"
#include "Proportions.h"
#include "framework/FrameRate.h"
#include "quick/ReefRenderer.h"
#include "quick/ReefSounds.h"
#include "quick/WindowCover.h"

// Outside every namespace, as the macro demands.
static void loadStill() { Q_INIT_RESOURCE(still); }

namespace {

constexpr double SECOND = 1000;  // milliseconds

/// How many pictures of the scene come through the still one, more and more, before it is gone.
constexpr int FADING = 8;

/// The still picture for a place of the camera and an hour of the day.
QImage stillImage(int camera, const EXTRA_SETTINGS& extras) {
    const char* hour = "noon";
    if (extras.daytime) {
        const LOCAL_TIME now = readLocalTime();
        const double sun = sunHour(now.minute, extras.latitude, now.day);
        const DAY_LIGHT light = lightAt(sun);
        if (light.night >= 0.5f)
            hour = "night";
        else if (light.evening >= 0.5f)
            hour = sun < NOON ? "morning" : "evening";
    }
    return QImage(QStringLiteral(":/org/atollia/reef/still%1-%2.jpg").arg(camera).arg(hour));
}

/// The part of a still picture, which has the design's view, that the scene would show in an item
/// of this size; where that shows more to the sides, as much as there is.
QRectF shownPart(const QSizeF& picture, const QSizeF& item, int camera, bool true_proportions) {
    constexpr float pitches[] = {0, CAMERA_TOP_PITCH, CAMERA_MIDDLE_PITCH, CAMERA_LOW_PITCH};
    const double horizon =
        std::tan(std::atan(CAMERA_FALL) + qDegreesToRadians(1.0 * pitches[camera]));
    const double aspect = item.width() / item.height();
    const VIEW_WINDOW whole = trueView(MAX_ASPECT, horizon);
    const VIEW_WINDOW seen =
        trueView(true_proportions ? aspect : std::min(aspect, MAX_ASPECT), horizon);
    const double part = std::min(1.0, whole.right / seen.right);
    const double across = picture.width() / whole.width();
    const double down = picture.height() / whole.height();
    return {(part * seen.left - whole.left) * across, (whole.top - part * seen.top) * down,
            part * seen.width() * across, part * seen.height() * down};
}

}  // namespace

Reef::Reef(QQuickItem* parent) : QQuickFramebufferObject(parent) {
    loadStill();
    setMirrorVertically(true);
    // The renderer decides how large the picture is that the page enlarges to the item.
    setTextureFollowsItemSize(false);
    connect(this, &QQuickItem::widthChanged, this, &QQuickItem::update);
    connect(this, &QQuickItem::heightChanged, this, &QQuickItem::update);
    clock.start();
    due.setSingleShot(true);
    due.setTimerType(Qt::PreciseTimer);
    connect(&due, &QTimer::timeout, this, &Reef::drawWhenDue);
    stalled.setSingleShot(true);
    stalled.setInterval(2 * static_cast<int>(SECOND));
    connect(&stalled, &QTimer::timeout, this, [this] {
        frame_rate = 0;
        counted = 0;
        emit frameRateChanged();
    });
    const QString data = QFile::decodeName(dataFile("").c_str());
    if (QDir(data).isEmpty())
        standStill(QStringLiteral("the reef's data is missing: there is nothing in %1").arg(data));
}

Reef::~Reef() = default;

QQuickFramebufferObject::Renderer* Reef::createRenderer() const { return new ReefRenderer; }

void Reef::change(bool& field, bool value) {
    if (field == value)
        return;
    field = value;
    emit settingsChanged();
    update();
}

void Reef::change(int& field, int value, int low, int high) {
    const int kept = std::clamp(value, low, high);
    if (field == kept)
        return;
    field = kept;
    emit settingsChanged();
    update();
}

void Reef::setRunning(bool running) {
    if (running == wishes.running)
        return;
    wishes.running = running;
    emit runningChanged();
    movingChanged();
    update();
}

void Reef::setMuted(bool muted) {
    if (muted == wishes.muted)
        return;
    wishes.muted = muted;
    emit mutedChanged();
    update();
}

void Reef::setMaximumFrameRate(qreal rate) {
    const double kept = std::isfinite(rate) ? std::clamp<double>(rate, 0, 1000) : 0;
    if (kept == wishes.maximum_frame_rate)
        return;
    wishes.maximum_frame_rate = kept;
    emit maximumFrameRateChanged();
    next_frame = 0;
    update();
}

void Reef::setSamples(int samples) {
    const int kept = std::clamp(samples, -1, 16);
    if (kept == wishes.samples)
        return;
    wishes.samples = kept;
    emit samplesChanged();
    update();
}

void Reef::setRenderScale(qreal scale) {
    const double kept = scale > 0 ? std::clamp<double>(scale, 0.4, 1) : 0;
    if (kept == wishes.render_scale)
        return;
    wishes.render_scale = kept;
    emit renderScaleChanged();
    update();
}

bool Reef::moving() const {
    return wishes.running && !hopeless && isVisible() && window() && window()->isExposed() &&
           !(cover && cover->covered());
}

void Reef::watchCover() {
    // The server may not know one that has never been exposed; one that just was is not covered.
    if (!window() || !window()->isExposed() ||
        QGuiApplication::platformName() != QLatin1String("xcb"))
        return;
    const auto id = static_cast<std::uint32_t>(window()->winId());
    if (cover && cover->window() == id)
        return;
    cover = std::make_unique<WindowCover>(id);
    connect(cover.get(), &WindowCover::coveredChanged, this, &Reef::movingChanged);
}

void Reef::movingChanged() {
    watchCover();
    const bool moves = moving();
    if (moves == was_moving)
        return;
    was_moving = moves;
    // Nothing is drawn in a hidden window, so its scene cannot fall silent by itself.
    if (sounds)
        holdSounds(!moves);
    if (moves)
        update();
    else
        interrupted = true;
}

void Reef::itemChange(ItemChange change, const ItemChangeData& data) {
    QQuickFramebufferObject::itemChange(change, data);
    if (change == ItemSceneChange) {
        cover.reset();
        // One window at a time has the filter, whichever it was before.
        if (data.window) {
            data.window->installEventFilter(this);
            connect(
                data.window, &QQuickWindow::sceneGraphInvalidated, this,
                [this] { still_shown = false; }, Qt::DirectConnection);
        }
    }
    if (change == ItemSceneChange || change == ItemVisibleHasChanged)
        movingChanged();
    if (change == ItemDevicePixelRatioHasChanged)
        update();
}

bool Reef::eventFilter(QObject* watched, QEvent* event) {
    if (watched == window() && event->type() == QEvent::Expose)
        QMetaObject::invokeMethod(
            this, [this] { movingChanged(); }, Qt::QueuedConnection);
    return false;
}

// --- pictures follow each other ---

void Reef::drawWhenDue() {
    if (!moving() || due.isActive())
        return;
    const double refresh = window()->screen() ? window()->screen()->refreshRate() : 0;
    const double period = SECOND / frameLimit(wishes.maximum_frame_rate, refresh, software);
    const auto now = static_cast<double>(clock.nsecsElapsed()) / 1e6;
    // The display's own refresh decides when; a clock that asks for the last millisecond as well
    // would miss every other one.
    if (now < next_frame - period / 4) {
        due.start(std::max(1, static_cast<int>(next_frame - now)));
        return;
    }
    next_frame = std::max(next_frame + period, now);
    update();
}

void Reef::countFrame(const FRAME& frame) {
    software = frame.software;
    if (frame.scale != current_scale) {
        current_scale = frame.scale;
        emit currentScaleChanged();
    }
    tellProblem(
        frame.lacking.isEmpty()
            ? QString()
            : QStringLiteral("the reef's data is incomplete: cannot load %1").arg(frame.lacking));
    const auto now = static_cast<double>(clock.elapsed());
    if (counted++ == 0) {
        counting_since = now;
    } else if (now - counting_since >= SECOND) {
        frame_rate = (counted - 1) * SECOND / (now - counting_since);
        counted = 0;
        emit frameRateChanged();
    }
    stalled.start();
    drawWhenDue();
}

// --- what shows ---

void Reef::tellProblem(const QString& line) {
    if (line == problem_line)
        return;
    problem_line = line;
    emit problemChanged();
}

void Reef::standStill(const QString& reason) {
    if (reason == problem_line)
        return;
    hopeless = true;
    std::printf("Reef: %s\n", qPrintable(reason));
    std::fflush(stdout);
    tellProblem(reason);
    movingChanged();
}

QString Reef::whatIsWrongHere() const {
    const QSGRendererInterface* graphics = window()->rendererInterface();
    const auto api = graphics->graphicsApi();
    bool opengl = api == QSGRendererInterface::OpenGL;
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    opengl = opengl || api == QSGRendererInterface::OpenGLRhi;
#endif
    const QOpenGLContext* context = QOpenGLContext::currentContext();
    if (!opengl || !context)
        return QStringLiteral("Qt Quick draws without OpenGL here, the reef stands still");
    if (context->isOpenGLES())
        return QStringLiteral("Qt Quick draws with OpenGL ES here, the reef needs OpenGL");
    if (context->format().version() < qMakePair(3, 3))
        return QStringLiteral("the reef needs OpenGL 3.3, here is %1.%2")
            .arg(context->format().majorVersion())
            .arg(context->format().minorVersion());
    if (context->format().profile() == QSurfaceFormat::CoreProfile)
        return QStringLiteral(
            "Qt Quick draws with OpenGL's core profile here, the reef needs the compatibility "
            "profile");
    return {};
}

QSGNode* Reef::stillPicture(QSGNode* old) {
    const int camera = wishes.settings.camerapos;
    auto* node = static_cast<QSGImageNode*>(old);
    if (!node) {
        node = window()->createImageNode();
        node->setTexture(window()->createTextureFromImage(stillImage(camera, wishes.extras)));
        node->setOwnsTexture(true);
        node->setFiltering(QSGTexture::Linear);
    }
    node->setRect(boundingRect());
    node->setSourceRect(
        shownPart(node->texture()->textureSize(), size(), camera, wishes.extras.proportions != 0));
    return node;
}

void Reef::fadeStill(QSGNode* reef) {
    auto* still = static_cast<QSGOpacityNode*>(reef->firstChild());
    if (!still)
        return;
    if (--fading > 0 && wishes.running)
        still->setOpacity(static_cast<qreal>(fading) / FADING);
    else
        delete still;
}

QSGNode* Reef::updatePaintNode(QSGNode* old, UpdatePaintNodeData* data) {
    if (width() <= 0 || height() <= 0) {
        delete old;
        return nullptr;
    }
    if (!old)
        still_shown = false;
    const bool reef_shown = old && !still_shown;
    if (reef_shown) {
        QSGNode* reef = QQuickFramebufferObject::updatePaintNode(old, data);
        fadeStill(reef);
        return reef;
    }
    QSGNode* still = stillPicture(old);
    if (!hopeless) {
        const QString wrong = whatIsWrongHere();
        if (!wrong.isEmpty()) {
            // Not in this thread: pages are told on their own.
            QMetaObject::invokeMethod(
                this, [this, wrong] { standStill(wrong); }, Qt::QueuedConnection);
        } else if (seen_still && wishes.running) {
            QSGNode* reef = QQuickFramebufferObject::updatePaintNode(nullptr, data);
            if (still->parent())
                still->parent()->removeChildNode(still);
            auto* veil = new QSGOpacityNode;
            veil->appendChildNode(still);
            reef->appendChildNode(veil);
            still_shown = false;
            fading = FADING;
            return reef;
        }
    }
    if (!seen_still)
        QMetaObject::invokeMethod(
            this, [this] { drawWhenDue(); }, Qt::QueuedConnection);
    seen_still = true;
    still_shown = true;
    return still;
}
