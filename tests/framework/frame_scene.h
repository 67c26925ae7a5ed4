#pragma once

#include <GL/gl.h>

#include <functional>
#include <string>
#include <vector>

#include "framework/KDEFrame.h"

namespace test {

/// A scene that writes down what its frame asks of it.
class FrameScene : public KDEFrame {
public:
    explicit FrameScene(QWidget* parent = nullptr, const char* name = nullptr)
        : KDEFrame(parent, name) {}
    ~FrameScene() override {
        if (destroyed)
            ++*destroyed;
    }

    bool readSettings() override {
        calls.push_back("readSettings " + std::to_string(resolution_x) + " x " +
                        std::to_string(resolution_y));
        return succeed;
    }
    bool initGL() override {
        calls.push_back("initGL");
        glViewport(0, 0, resolution_x, resolution_y);
        return succeed;
    }
    bool initScene() override {
        calls.push_back("initScene");
        return succeed;
    }
    void updateScene() override {
        calls.push_back("updateScene");
        if (during_update)
            during_update();
    }
    void renderScene() override {
        calls.push_back("renderScene");
        glGetIntegerv(GL_VIEWPORT, viewport);
        if (during_render)
            during_render();
    }
    bool releaseGL() override {
        calls.push_back(QGLContext::currentContext() == context() ? "releaseGL current"
                                                                  : "releaseGL");
        return succeed;
    }
    bool cleanup() override {
        calls.push_back("cleanup");
        return succeed;
    }
    bool resetEvents() override { return true; }

    using KDEFrame::initializeGL;
    using KDEFrame::paintGL;
    using KDEFrame::resizeGL;
    using KDEFrame::timerEvent;

    std::vector<std::string> calls;
    std::function<void()> during_update;
    std::function<void()> during_render;
    GLint viewport[4] = {};
    bool succeed = true;
    int* destroyed = nullptr;
};

}  // namespace test
