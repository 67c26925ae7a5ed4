// The frame of the scene in a page of Qt Quick. It knows no toolkit: the item gives it settings,
// context and time to draw.
#pragma once

#include <SDL_events.h>

#include "framework/BaseFramework.h"

/// Has no settings store; whoever owns the scene writes its settings before start(). All of it runs
/// on the thread of the GL context.
class QuickFrame : public BaseFramework {
public:
    QuickFrame(void*, const char*) {}

    /// Loads and builds everything for an area of so many pixels, with a context current.
    void start(int width, int height) {
        resolution_x = width;
        resolution_y = height;
        initGL();
        initScene();
    }

    bool processSDLEvents(SDL_Event* event) override { return event->type == SDL_QUIT; }
    virtual bool doConfig() = 0;
    virtual bool readSettings() = 0;
    virtual bool writeSettings() = 0;
};

#define BASECLASS QuickFrame
