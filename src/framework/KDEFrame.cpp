#include "framework/KDEFrame.h"

#include <KConfig>
#include <KConfigGroup>
#include <QCloseEvent>
#include <QPointer>

#include <SDL_events.h>

#include "framework/SettingsFile.h"

namespace {

/// The file's default group: its keys stand at the top, without a header.
KConfigGroup defaultGroup(KConfig* config) { return config->group(QString()); }

}  // namespace

KDEFrame::KDEFrame(QWidget* parent, const char* name)
    : QGLWidget(parent), initdone(false), loopready(true), config(nullptr), scene_released(false) {
    setObjectName(QString::fromLatin1(name));
    startTimer(MSECPERIOD);
}

KDEFrame::~KDEFrame() { delete config; }

bool KDEFrame::close(bool alsoDelete) {
    releaseScene();
    scene_released = true;
    const QPointer<KDEFrame> self(this);
    const bool closed = QWidget::close();
    if (self) {
        scene_released = false;
        if (closed && alsoDelete)
            delete this;
    }
    return closed;
}

void KDEFrame::closeEvent(QCloseEvent* event) {
    if (!scene_released)
        releaseScene();
    QGLWidget::closeEvent(event);
}

void KDEFrame::releaseScene() {
    // A context that is current already must stay as it is: when the host's window is gone, it
    // could not be made current again.
    if (isValid() && QGLContext::currentContext() != context())
        makeCurrent();
    releaseGL();
    cleanup();
}

void KDEFrame::initializeGL() {}

void KDEFrame::resizeGL(int width, int height) {
    // One shot: the scene sets viewport and projection once and keeps them for its life.
    if (initdone)
        return;
    resolution_x = width;
    resolution_y = height;
    readSettings();
    initGL();
    initScene();
    initdone = true;
}

void KDEFrame::paintGL() {
    if (!loopready)
        return;
    loopready = false;
    updateScene();
    if (painter)
        painter();
    else
        renderScene();
    loopready = true;
}

void KDEFrame::timerEvent(QTimerEvent*) { updateGL(); }

void KDEFrame::resetSDLEvents() {}

bool KDEFrame::processSDLEvents(SDL_Event* event) { return event->type == SDL_QUIT; }

bool KDEFrame::doConfig() { return true; }

bool KDEFrame::readSettings() { return true; }

bool KDEFrame::writeSettings() { return true; }

bool KDEFrame::openSettingsFile(const char*, const char* name) {
    config = openSettings(QString::fromLatin1(name)).release();
    return true;
}

bool KDEFrame::closeSettingsFile() {
    delete config;
    config = nullptr;
    return true;
}

int KDEFrame::readInt(const char* key, int def) {
    return config ? defaultGroup(config).readEntry(key, def) : 0;
}

bool KDEFrame::readBool(const char* key, bool def) {
    return config ? defaultGroup(config).readEntry(key, def) : false;
}

const char* KDEFrame::readString(const char* key, const char* def) {
    if (!config)
        return nullptr;
    text_read = defaultGroup(config).readEntry(key, QString::fromLatin1(def)).toLatin1();
    return text_read.constData();
}
