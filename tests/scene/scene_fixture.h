// A scene on the hand-set clock, drawing into the recorder.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "Marivista.h"
#include "fake_sound.h"
#include "support/chance.h"
#include "support/clock.h"
#include "support/gl_recorder.h"
#include "test_data.h"

class SceneTest : public testing::Test {
protected:
    SceneTest() {
        test::setTicks(1000);
        test::seedRandom(1);
        test::setKeepImages(false);
        test::sounds.clear();
    }
    ~SceneTest() override {
        end();
        test::seedRandom(1);
        test::setDataDirectory("");
    }

    /// Constructed but not yet built, so that settings can still be changed; without sound.
    /// Replaces an earlier scene.
    CMarivistaScreensaver& make() {
        end();
        scene_ = std::make_unique<CMarivistaScreensaver>();
        scene_->resolution_x = 1280;
        scene_->resolution_y = 948;
        scene_->wantedwssettings.soundOn = false;
        test::seedRandom(1);
        return *scene_;
    }
    CMarivistaScreensaver& scene() { return *scene_; }
    SaverSettings& settings() { return scene_->wantedwssettings; }
    void noFish() {
        settings().fishcount = 0;
        settings().boidcount = 0;
    }
    void build() { scene_->buildWorld(); }
    void update(Uint32 milliseconds) {
        test::advanceTicks(milliseconds);
        scene_->updateScene();
    }
    void tick(Uint32 milliseconds) {
        update(milliseconds);
        scene_->renderScene();
    }

private:
    void end() {
        if (scene_)
            scene_->cleanup();
        scene_ = nullptr;
    }

    std::unique_ptr<CMarivistaScreensaver> scene_;
};

/// One glBegin to glEnd: what was bound and whether there was fog.
struct Draw {
    GLenum primitive;
    GLuint texture[2];
    bool fog;
    int first;  ///< Position of its first vertex in test::vertices().
};

/// What has been drawn since test::clear(), given that fog was off then.
inline std::vector<Draw> draws() {
    std::vector<Draw> result;
    const std::vector<test::GL_VERTEX>& vertices = test::vertices();
    int begin = 0;
    size_t vertex = 0;
    bool fog = false;
    for (const test::GL_CALL& call : test::calls()) {
        if (call.name == "glEnable" && call.args[0] == GL_FOG)
            fog = true;
        else if (call.name == "glDisable" && call.args[0] == GL_FOG)
            fog = false;
        else if (call.name == "glBegin") {
            while (vertex < vertices.size() && vertices[vertex].begin < begin)
                ++vertex;
            if (vertex < vertices.size() && vertices[vertex].begin == begin) {
                const test::GL_VERTEX& v = vertices[vertex];
                result.push_back({v.primitive, {v.texture[0], v.texture[1]}, fog, int(vertex)});
            }
            ++begin;
        }
    }
    return result;
}
