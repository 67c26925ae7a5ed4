// A scene on the hand-set clock, drawing into the recorder.
#pragma once

#include <gtest/gtest.h>

#include <memory>

#include "Marivista.h"
#include "support/chance.h"
#include "support/clock.h"
#include "support/gl_recorder.h"
#include "test_data.h"

class SceneTest : public testing::Test {
protected:
    SceneTest() {
        test::setTicks(1000);
        test::seedRandom(1);
    }
    ~SceneTest() override { test::setDataDirectory(""); }

    /// Constructed but not yet built, so that settings can still be changed. Silent.
    CMarivistaScreensaver& make() {
        scene_ = std::make_unique<CMarivistaScreensaver>();
        scene_->resolution_x = 1280;
        scene_->resolution_y = 948;
        scene_->wantedwssettings.soundOn = false;
        return *scene_;
    }
    CMarivistaScreensaver& scene() { return *scene_; }
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
    std::unique_ptr<CMarivistaScreensaver> scene_;
};
