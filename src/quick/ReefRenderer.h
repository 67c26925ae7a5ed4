// The scene behind an item, on the thread that renders its window.
#pragma once

#include <QQuickFramebufferObject>
#include <memory>

#include "host/AdaptiveScale.h"
#include "quick/ReefWishes.h"

class CMarivistaScreensaver;
class Reef;

/// Made and destroyed by the scene graph with its context current, as is the scene.
class ReefRenderer : public QQuickFramebufferObject::Renderer {
public:
    ReefRenderer();
    ~ReefRenderer() override;

    void synchronize(QQuickFramebufferObject* item) override;
    QOpenGLFramebufferObject* createFramebufferObject(const QSize& size) override;
    void render() override;

private:
    std::unique_ptr<CMarivistaScreensaver> build(const CMarivistaScreensaver* before) const;
    /// Whether another scene had to be built.
    bool followWishes();
    void followSound();

    std::unique_ptr<CMarivistaScreensaver> scene;
    REEF_WISHES wishes;
    AdaptiveScale scale;
    bool adapts;         ///< the scale is what the renderer can afford
    QSize area;          ///< of the framebuffer, pixels
    int sample_count;    ///< of the framebuffer; -1 before there is one
    bool software;       ///< drawn on the processor
    bool unseen;         ///< the time since the last tick was seen by nobody
    bool redraw;         ///< the framebuffer has no picture yet
    unsigned last_tick;  ///< milliseconds
};
