#include "quick/ReefRenderer.h"

#include <SDL.h>

#include <QOpenGLFramebufferObject>
#include <QQuickWindow>
#include <algorithm>
#include <chrono>
#include <mutex>

#include "Marivista.h"
#include "framework/FrameRate.h"
#include "quick/LentContext.h"
#include "quick/Reef.h"
#include "quick/ReefSounds.h"
#include "system/RowClip.h"

namespace {

/// More milliseconds between two ticks are no frame but time that nobody saw.
constexpr unsigned LONGEST_FRAME = 1500;

/// Samples per pixel where they cost nearly nothing.
constexpr int SMOOTH = 4;

double milliseconds() {
    using namespace std::chrono;
    return duration<double, std::milli>(steady_clock::now().time_since_epoch()).count();
}

/// The clock counts from the first part of SDL that starts, so that must be before the first scene
/// reads it.
void startClock() {
    static std::once_flag started;
    std::call_once(started, [] { SDL_InitSubSystem(0); });
}

/// What a running scene follows; everything else it is built from.
bool isFollowed(const SETTING& setting) {
    for (const auto number : {&SaverSettings::camerapos, &SaverSettings::cameraspeed,
                              &SaverSettings::camerafix_top, &SaverSettings::camerafix_bottom})
        if (setting.number == number)
            return true;
    return setting.flag == &SaverSettings::soundOn;
}

bool needAnotherScene(const SaverSettings& a, const SaverSettings& b) {
    return std::any_of(settings_read.begin(), settings_read.end(), [&](const SETTING& setting) {
        if (isFollowed(setting))
            return false;
        return setting.number ? a.*setting.number != b.*setting.number
                              : a.*setting.flag != b.*setting.flag;
    });
}

/// Lets the new scene go on where the camera of the old one is.
void takeOverCamera(CMarivistaScreensaver& scene, const CMarivistaScreensaver& before) {
    scene.camera = before.camera;
    scene.autocameramove = before.autocameramove;
    scene.autoCameraDirection = before.autoCameraDirection;
    scene.camera_nextmove = before.camera_nextmove;
    scene.cameratimer = scene.timer - (before.timer - before.cameratimer);
}

/// Releases everything in the current context.
void cleanUp(CMarivistaScreensaver& scene) {
    // Texts keep the textures of their fonts, and a page's context lives longer than a scene.
    glDeleteTextures(1, &scene.fpstext.font.tex);
    scene.cleanup();
}

}  // namespace

ReefRenderer::ReefRenderer()
    : adapts(false),
      sample_count(-1),
      software(isSoftwareRenderer(reinterpret_cast<const char*>(glGetString(GL_RENDERER)))),
      unseen(false),
      redraw(true),
      last_tick(0) {
    startClock();
}

ReefRenderer::~ReefRenderer() {
    if (!scene)
        return;
    stopSounds(*scene);
    cleanUp(*scene);
}

void ReefRenderer::synchronize(QQuickFramebufferObject* item) {
    auto* reef = static_cast<Reef*>(item);
    wishes = reef->wishes;
    unseen = unseen || reef->interrupted;
    reef->interrupted = false;
    reef->sounds = scene && scene->sound;
    const int samples = wishes.samples >= 0 ? wishes.samples : software ? 0 : SMOOTH;
    // Who asks a software renderer for samples, and for no scale, wants to see them whole.
    adapts = wishes.render_scale == 0 && software && samples == 0;
    const double part = wishes.render_scale > 0 ? wishes.render_scale
                        : adapts                ? scale.fraction()
                                                : 1;
    const QSizeF pixels = reef->size() * reef->window()->effectiveDevicePixelRatio();
    const QSize wanted = (pixels * part).toSize().expandedTo({1, 1});
    if (sample_count >= 0 && (samples != sample_count || wanted != area))
        invalidateFramebufferObject();
    sample_count = samples;
    area = wanted;
    const QString lacking = scene ? QString::fromLocal8Bit(scene->lacking().c_str()) : QString();
    QMetaObject::invokeMethod(
        reef, [reef, frame = Reef::FRAME{software, part, lacking}] { reef->countFrame(frame); },
        Qt::QueuedConnection);
}

QOpenGLFramebufferObject* ReefRenderer::createFramebufferObject(const QSize&) {
    redraw = true;
    QOpenGLFramebufferObjectFormat format;
    format.setAttachment(QOpenGLFramebufferObject::Depth);
    // With alpha the water, which is blended, would let the page shine through.
    format.setInternalTextureFormat(GL_RGB8);
    format.setSamples(sample_count);
    return new QOpenGLFramebufferObject(area, format);
}

std::unique_ptr<CMarivistaScreensaver> ReefRenderer::build(
    const CMarivistaScreensaver* before) const {
    auto built = std::make_unique<CMarivistaScreensaver>();
    built->wantedwssettings = wishes.settings;
    built->wantedwssettings.soundOn = false;
    built->extras = wishes.extras;
    built->draw_in_rows = drawInRows;
    built->start(area.width(), area.height());
    if (!software)
        built->sharpenSlants();
    if (before && before->wantedwssettings.camerapos == wishes.settings.camerapos)
        takeOverCamera(*built, *before);
    built->skipUnseenTime();
    return built;
}

bool ReefRenderer::followWishes() {
    // The hours of the day are loaded with the scene, too.
    const bool another = needAnotherScene(scene->wantedwssettings, wishes.settings) ||
                         scene->extras.daytime != wishes.extras.daytime;
    if (another) {
        const auto before = std::move(scene);
        scene = build(before.get());
        // The mixer goes with the old scene; the new one opens it anew.
        stopSounds(*before);
        cleanUp(*before);
    }
    SaverSettings& settings = scene->wantedwssettings;
    const bool other_view = settings.camerapos != wishes.settings.camerapos;
    for (const SETTING& setting : settings_read)
        if (setting.number)
            settings.*setting.number = wishes.settings.*setting.number;
    scene->extras = wishes.extras;
    if (other_view && settings.camerapos != 0) {
        scene->autocameramove = false;
        scene->initCamera();
    } else if (other_view) {
        // From where it is.
        scene->autocameramove = true;
        scene->autoCameraDirection = 0;
    }
    return another;
}

void ReefRenderer::followSound() {
    if (!wishes.running || wishes.muted)
        stopSounds(*scene);
    else
        startSounds(*scene);
}

void ReefRenderer::render() {
    const double start = milliseconds();
    const LentContext lent;
    bool loaded = !scene;
    if (!scene)
        scene = build(nullptr);
    loaded = followWishes() || loaded;
    followSound();
    // The page has left another state since the last picture.
    scene->setViewSize(area.width(), area.height());
    if (wishes.running) {
        const unsigned now = SDL_GetTicks();
        const double longest = std::max<double>(
            LONGEST_FRAME, wishes.maximum_frame_rate > 0 ? 3000 / wishes.maximum_frame_rate : 0);
        if (unseen || now - last_tick > longest)
            scene->skipUnseenTime();
        unseen = false;
        last_tick = now;
        scene->updateScene();
    } else if (!redraw) {
        return;
    }
    redraw = false;
    scene->renderScene();
    if (!adapts)
        return;
    glFinish();
    const double end = milliseconds();
    // Pictures that come with a new scene say nothing about those that follow.
    if (!loaded)
        scale.drawn(end, end - start, scene->autoCameraDirection != 0);
}
