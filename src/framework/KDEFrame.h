#pragma once

#include <QByteArray>
#include <QGLWidget>
#include <functional>

#include "framework/BaseFramework.h"

class KConfig;

/// Period of the timer that ticks the scene, milliseconds.
constexpr int MSECPERIOD = 10;

/// The GL widget a scene sits in: owns the timer and the GL context, drives the scene through its
/// virtual operations and keeps the settings in a KDE configuration file. Draws nothing itself.
/// All of it runs on the toolkit's GUI thread.
class KDEFrame : public QGLWidget, public BaseFramework {
public:
    explicit KDEFrame(QWidget* parent = nullptr, const char* name = nullptr);
    ~KDEFrame() override;

    /// Releases the scene's GL objects, then closes the widget and, if asked to, deletes it.
    virtual bool close(bool alsoDelete);
    using QGLWidget::close;

    /// Has the scene release its GL objects and everything else that must not outlive the window.
    void releaseScene();

    virtual void resetSDLEvents();
    bool processSDLEvents(SDL_Event* event) override;
    bool initGL() override = 0;
    bool initScene() override = 0;
    void updateScene() override = 0;
    void renderScene() override = 0;
    bool releaseGL() override = 0;
    bool cleanup() override = 0;
    virtual bool doConfig();
    virtual bool readSettings();
    virtual bool writeSettings();
    /// Opens the configuration file `name` as openSettings does. `regPath` is for
    /// frames of other platforms. A file that is still open is not closed.
    bool openSettingsFile(const char* regPath, const char* name) override;
    bool closeSettingsFile() override;
    /// 0 when no file is open, whatever the default.
    int readInt(const char* key, int def) override;
    /// False when no file is open, whatever the default.
    bool readBool(const char* key, bool def) override;

    /// The entry in Latin-1, valid until the next call; null when no file is open.
    const char* readString(const char* key, const char* def);
    using BaseFramework::readString;

    bool initdone;    ///< the first resize has started the scene
    bool loopready;   ///< no frame is being produced: guards against a nested paint
    KConfig* config;  ///< the open settings file, owned; null when none is open

    /// Draws every frame in the place of renderScene, when there is one.
    std::function<void()> painter;
    /// A painter that shows its frames otherwise leaves the buffers as they are.
    using QGLWidget::autoBufferSwap;
    using QGLWidget::setAutoBufferSwap;

protected:
    void timerEvent(QTimerEvent* event) override;
    void initializeGL() override;
    void resizeGL(int width, int height) override;
    void paintGL() override;
    void closeEvent(QCloseEvent* event) override;

private:
    QByteArray text_read;
    bool scene_released;  ///< this close has released the scene already
};
