// Playing and drawing keyframe models.
#include <gmock/gmock.h>

#include <cmath>
#include <limits>

#include "models/allocations.h"
#include "models/model_bytes.h"
#include "support/clock.h"
#include "support/gl_recorder.h"
#include "system/ModelCore.h"

using namespace test;

namespace {

void load(QModel& model, const Md3File& file) {
    const Bytes bytes = file.bytes();
    ASSERT_TRUE(model.decodeMD3(bytes.data(), bytes.size(), "fish.nlm"));
}

/// One triangle; its corner i lies at x = 100 i + frame in frame f.
Md3File ruler(int frames) {
    Md3File file;
    for (int f = 0; f < frames; ++f) {
        std::vector<Md3File::Position> positions;
        for (int corner = 0; corner < 3; ++corner)
            positions.push_back({static_cast<int16_t>(64 * (100 * corner + f)), 0, 0});
        file.frames.push_back(positions);
    }
    file.tex = {{0.0f, 0.5f}, {0.25f, 0.5f}, {0.5f, 0.5f}};
    file.triangles = {{2, 0, 1}};
    return file;
}

struct Animated : testing::Test {
    Animated() {
        setTicks(1000);
        model = std::make_unique<QModel>();
        load(*model, ruler(20));
        model->addAnimation(0, 9, "swim");
        model->addAnimation(10, 19, "turn");
        core.setModel(model.get());
    }

    SAnimation& current() { return model->m_anim[model->curAni]; }
    void step(Uint32 ms) {
        advanceTicks(ms);
        core.render();
    }
    int frameOf(const MDX_FRAMEDATA* frame) { return int(frame - model->framedata.get()); }
    /// The x of the corners drawn last.
    std::vector<float> drawn() {
        clear();
        core.render();
        std::vector<float> x;
        for (const GL_VERTEX& vertex : vertices())
            x.push_back(vertex.x);
        return x;
    }

    std::unique_ptr<QModel> model;
    ModelCore core;
};

}  // namespace

TEST(QModelDefaults, AreThoseOfAnEmptyModel) {
    setTicks(1234);
    const QModel model;
    EXPECT_FALSE(model.loaded);
    EXPECT_FALSE(model.test);
    EXPECT_TRUE(model.m_anim.empty());
    EXPECT_EQ(model.fps, 15);
    EXPECT_FLOAT_EQ(model.timePerFrame, 66.666667f);
    EXPECT_EQ(model.CurFrame, 0);
    EXPECT_EQ(model.NumFrames, 0);
    EXPECT_EQ(model.NumVerts, 0);
    EXPECT_EQ(model.NumTris, 0);
    EXPECT_EQ(model.time, 1234u);
    EXPECT_EQ(model.curAni, 0);
    EXPECT_TRUE(model.playing);
    EXPECT_EQ(model.framedata, nullptr);
    EXPECT_EQ(model.actframe, nullptr);
    EXPECT_EQ(model.nextframe, nullptr);
}

TEST_F(Animated, AdvancesByTimeAndRate) {
    current().cur = 2.0f;
    step(200);
    EXPECT_NEAR(current().cur, 5.0f, 1e-5f);
    EXPECT_NEAR(std::remainder(model->interpolation_val, 1.0f), 0.0f, 1e-5f);
    EXPECT_EQ(model->getActFrame(), 5);
    EXPECT_EQ(frameOf(model->actframe), 5);
    EXPECT_EQ(frameOf(model->nextframe), 6);
}

TEST_F(Animated, WrapsIntoItsRange) {
    model->setFPS(10);
    current().cur = 9.5f;
    step(100);
    EXPECT_EQ(current().cur, 0.5f);
    EXPECT_EQ(model->interpolation_val, 0.5f);
    EXPECT_EQ(frameOf(model->actframe), 0);
    EXPECT_EQ(frameOf(model->nextframe), 1);

    model->setAnimation("turn");
    current().cur = 19.25f;
    step(100);
    EXPECT_EQ(current().cur, 10.25f);
    EXPECT_EQ(frameOf(model->nextframe), 11);
}

TEST_F(Animated, BlendsTheLastFrameIntoTheFirst) {
    model->setFPS(10);
    current().cur = 9.0f;
    step(25);
    EXPECT_EQ(current().cur, 9.25f);
    EXPECT_EQ(frameOf(model->actframe), 9);
    EXPECT_EQ(frameOf(model->nextframe), 0);
    EXPECT_THAT(drawn(), testing::ElementsAre(206.75f, 6.75f, 106.75f));
}

TEST_F(Animated, WrapsAsTakingOffRoundsOneByOneWould) {
    model->setFPS(16);  // a step of a sixteenth of a second is a whole number of frames
    for (const char* name : {"swim", "turn"}) {
        model->setAnimation(name);
        for (Uint32 elapsed : {0u, 10u, 63u, 1000u, 60000u, 3600000u, 20u * 3600000u}) {
            current().cur = current().start + 3.25f;
            float expected = current().cur + elapsed / model->timePerFrame;
            while (expected >= current().end + 1)
                expected -= current().end + 1 - current().start;
            step(elapsed);
            EXPECT_EQ(current().cur, expected) << name << " after " << elapsed;
        }
    }
}

TEST_F(Animated, SurvivesAnyPauseAndRate) {
    for (float fps : {15.0f, 1e6f, 1e30f, std::numeric_limits<float>::infinity(), 0.0f, -0.0f,
                      -15.0f, -std::numeric_limits<float>::infinity(),
                      std::numeric_limits<float>::quiet_NaN(), 1e-40f}) {
        model->setFPS(fps);
        for (Uint32 elapsed : {0u, 1u, 3600000u, 0xffffffffu}) {
            step(elapsed);
            EXPECT_GE(current().cur, 0) << fps;
            EXPECT_LT(current().cur, 10) << fps;
            EXPECT_GE(model->interpolation_val, 0) << fps;
            EXPECT_LT(model->interpolation_val, 1) << fps;
        }
    }
}

TEST_F(Animated, StandsStillWithoutARate) {
    current().cur = 4.5f;
    for (float fps : {0.0f, -20.0f}) {
        model->setFPS(fps);
        EXPECT_EQ(model->fps, fps);
        step(60000);
        EXPECT_EQ(current().cur, 4.5f);
    }
    model->setFPS(10);
    step(100);
    EXPECT_EQ(current().cur, 5.5f);
}

TEST_F(Animated, GoesOnAcrossTheWrapOfTheClock) {
    setTicks(0xffffffe0u);
    core.render();
    current().cur = 1.0f;
    model->setFPS(10);
    step(100);
    EXPECT_EQ(current().cur, 2.0f);
}

TEST_F(Animated, ManySmallStepsEqualOneLargeOne) {
    model->setFPS(12.5f);
    for (int i = 0; i < 100; ++i)
        step(10);
    const float small = current().cur;
    model->setAnimation("swim");
    step(1000);
    EXPECT_NEAR(current().cur, small, 1e-4f);
}

TEST_F(Animated, BlendsTowardsTheFilesFirstFrameWhileStopped) {
    model->setAnimation("turn");
    model->setFPS(10);
    step(125);
    model->playing = false;
    step(5000);
    EXPECT_EQ(current().cur, 11.25f);
    EXPECT_EQ(model->interpolation_val, 0.25f);
    EXPECT_EQ(frameOf(model->actframe), 11);
    EXPECT_EQ(frameOf(model->nextframe), 0);
}

TEST_F(Animated, ClampsRangesToTheFrames) {
    model->addAnimation(-5, 1000, "x");
    EXPECT_EQ(model->m_anim[2].start, 0);
    EXPECT_EQ(model->m_anim[2].end, 19);
    EXPECT_EQ(model->m_anim[2].cur, 0);
    model->addAnimation(1000, -5, "backward");
    EXPECT_EQ(model->m_anim[3].start, 19);
    EXPECT_EQ(model->m_anim[3].end, 0);
    model->setAnimation("backward");
    for (int i = 0; i < 10; ++i) {
        step(1000);
        EXPECT_EQ(model->getActFrame(), 19);
    }
}

TEST_F(Animated, FindsAnimationsByTheirExactName) {
    model->addAnimation(5, 6, "turn");
    model->setAnimation("turn");
    EXPECT_EQ(model->curAni, 1);
    EXPECT_EQ(model->getStartFrame(), 10);
    EXPECT_EQ(model->getEndFrame(), 19);
    step(200);
    const float playing = current().cur;
    EXPECT_GT(playing, 10);
    for (const char* unknown : {"Turn", "tur", "turning", "", "glide"}) {
        model->setAnimation(unknown);
        EXPECT_EQ(model->curAni, 1);
        EXPECT_EQ(current().cur, playing);
    }
    model->setAnimation("turn");
    EXPECT_EQ(current().cur, 10);
}

TEST_F(Animated, DrawsCornersInTheirOrder) {
    model->setFPS(10);
    step(50);
    clear();
    core.render();
    std::vector<std::string> names;
    for (int i = indexOf("glBegin"); i <= indexOf("glEnd"); ++i)
        names.push_back(calls()[i].name);
    EXPECT_THAT(names, testing::ElementsAre("glBegin", "glNormal3f", "glVertex3f", "glNormal3f",
                                            "glVertex3f", "glNormal3f", "glVertex3f", "glEnd"));
    EXPECT_EQ(count("glBegin"), 1);
    EXPECT_EQ(vertices().front().primitive, GLenum(GL_TRIANGLES));
    EXPECT_THAT(drawn(), testing::ElementsAre(200.5f, 0.5f, 100.5f));
    EXPECT_EQ(imbalance(), "");
}

TEST_F(Animated, IssuesOneTextureCoordinatePerCorner) {
    Texture texture;
    core.addTexture(&texture);
    core.scaleTextureInLayer(0, 2.0f);
    clear();
    core.render();
    ASSERT_EQ(vertices().size(), 3u);
    const int first = indexOf("glBegin");
    EXPECT_EQ(calls()[first + 1].name, "glNormal3f");
    EXPECT_THAT(calls()[first + 2].name, testing::StartsWith("glTexCoord2f"));
    EXPECT_EQ(calls()[first + 3].name, "glVertex3f");
    EXPECT_EQ(vertices()[0].u[0], 1.0f);
    EXPECT_EQ(vertices()[1].u[0], 0.0f);
    EXPECT_EQ(vertices()[2].u[0], 0.5f);
    EXPECT_EQ(vertices()[2].v[0], 1.0f);
}

TEST_F(Animated, JumpsFromFrameToFrameWithoutInterpolation) {
    model->setFPS(10);
    step(175);
    EXPECT_THAT(drawn(), testing::ElementsAre(201.75f, 1.75f, 101.75f));
    core.removeFlags(INTERPOLATION);
    EXPECT_THAT(drawn(), testing::ElementsAre(201.0f, 1.0f, 101.0f));
    core.addFlags(INTERPOLATION);
    EXPECT_THAT(drawn(), testing::ElementsAre(201.75f, 1.75f, 101.75f));
    step(50);
    EXPECT_THAT(drawn(), testing::ElementsAre(202.25f, 2.25f, 102.25f));
}

TEST_F(Animated, BlendsPositionsButNotNormals) {
    for (int i = 0; i < 3; ++i) {
        model->framedata[0].vertices[i].normal.set(1, 0, 0);
        model->framedata[1].vertices[i].normal.set(0, 1, 0);
    }
    model->setFPS(10);
    step(90);
    clear();
    core.render();
    for (const GL_VERTEX& vertex : vertices())
        EXPECT_EQ(vertex.normal, (std::array<float, 3>{1, 0, 0}));
}

TEST_F(Animated, IsSharedByManyObjects) {
    ModelCore other;
    other.setModel(model.get());
    other.removeFlags(INTERPOLATION);
    model->setFPS(10);
    step(150);
    clear();
    core.render();
    other.render();
    core.render();
    ASSERT_EQ(vertices().size(), 9u);
    // The clock is the model's: objects drawn at one moment show one moment, each in its own way.
    EXPECT_EQ(vertices()[1].x, 1.5f);
    EXPECT_EQ(vertices()[4].x, 1.0f);
    EXPECT_EQ(vertices()[7].x, 1.5f);
    EXPECT_EQ(model->renderobj, &core);

    advanceTicks(50);
    other.render();
    advanceTicks(50);
    core.render();
    EXPECT_EQ(current().cur, 2.5f);
}

TEST_F(Animated, KeepsTheMatrixStackAndPlacesItself) {
    core.setPosition(1, 2, 3);
    clear();
    core.render();
    EXPECT_LT(indexOf("glPushMatrix"), indexOf("glTranslatef"));
    EXPECT_LT(indexOf("glTranslatef"), indexOf("glBegin"));
    EXPECT_LT(indexOf("glEnd"), indexOf("glPopMatrix"));
    core.enableAlphaBlending(true);
    clear();
    core.render();
    // Popped first, restored then.
    EXPECT_LT(indexOf("glPopMatrix"), indexOf(GL_CALL{"glDisable", {GL_BLEND}}));
    EXPECT_EQ(imbalance(), "");
}

TEST_F(Animated, DrawsOneFrameWithoutAnimations) {
    model->m_anim.clear();
    step(500);
    EXPECT_THAT(drawn(), testing::ElementsAre(200, 0, 100));
    EXPECT_EQ(frameOf(model->actframe), 0);
    clear();
    model->renderSingleFrame(7);
    EXPECT_EQ(vertices()[1].x, 7);
    EXPECT_EQ(frameOf(model->actframe), 7);
}

TEST_F(Animated, SaysWhenASingleFrameIsNotThere) {
    step(100);
    clear();
    testing::internal::CaptureStdout();
    model->renderSingleFrame(19);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(vertices().size(), 3u);
    clear();
    testing::internal::CaptureStdout();
    model->renderSingleFrame(20);
    model->renderSingleFrame(1000);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "frame >= NumFrames\nframe >= NumFrames\n");
    EXPECT_TRUE(calls().empty());
}

TEST_F(Animated, DrawsItsKeyframeWhenThereIsNothingToBlendTowards) {
    std::vector<SAnimation> none;
    std::swap(model->m_anim, none);
    core.render();
    std::swap(model->m_anim, none);
    ASSERT_EQ(model->nextframe, nullptr);
    clear();
    model->renderMesh(&core);
    ASSERT_EQ(vertices().size(), 3u);
    EXPECT_EQ(vertices()[0].x, 200);
}

TEST(ModelAlone, DrawsWithoutTextureForNoObject) {
    setTicks(0);
    QModel model;
    load(model, ruler(2));
    clear();
    model.renderSingleFrame(1);
    model.addAnimation(0, 1, "swim");
    model.preRender();
    model.renderAnimation();
    model.postRender();
    EXPECT_EQ(vertices().size(), 6u);
    EXPECT_FALSE(wasCalled("glTexCoord2f"));
    EXPECT_EQ(imbalance(), "");
}

TEST(ModelAlone, BlendsAMeshThatNoLoaderMade) {
    setTicks(0);
    QModel model;
    model.NumFrames = 2;
    model.NumVerts = 3;
    model.NumTris = 1;
    model.framedata.reset(new MDX_FRAMEDATA[2]);
    for (int f = 0; f < 2; ++f) {
        model.framedata[f].vertices.reset(new GLVertex[3]);
        model.framedata[f].tex.reset(new GLVector2[3]);
        for (int v = 0; v < 3; ++v)
            model.framedata[f].vertices[v].pos.set(float(f), float(v), 0);
    }
    model.indices.reset(new GLIndex[3]{0, 1, 2});
    model.texindices.reset(new GLIndex[3]{0, 1, 2});
    model.addAnimation(0, 1, "swim");
    model.setFPS(10);
    ModelCore core;
    core.setModel(&model);
    advanceTicks(25);
    clear();
    core.render();
    ASSERT_EQ(vertices().size(), 3u);
    EXPECT_EQ(vertices()[2].x, 0.25f);
    EXPECT_EQ(vertices()[2].y, 2);
}

TEST_F(Animated, AllocatesNothingWhileDrawing) {
    setCountingOnly(true);
    core.render();
    watchAllocations();
    for (int i = 0; i < 100; ++i)
        step(10);
    EXPECT_EQ(allocationCount(), 0u);
    setCountingOnly(false);
}

TEST_F(Animated, LosesItsMeshForAllOnCleanup) {
    ModelCore other;
    other.setModel(model.get());
    step(100);
    other.cleanup();
    EXPECT_EQ(model->framedata, nullptr);
    EXPECT_EQ(model->indices, nullptr);
    EXPECT_EQ(model->texindices, nullptr);
    EXPECT_EQ(model->NumFrames, 20);
    EXPECT_EQ(model->getAnimationCount(), 2);
    clear();
    testing::internal::CaptureStdout();
    step(100);
    model->renderSingleFrame(0);
    core.cleanup();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_TRUE(vertices().empty());
    EXPECT_EQ(imbalance(), "");

    // Loaded again, but with fewer frames than the old ranges name.
    load(*model, ruler(3));
    model->setAnimation("turn");
    step(100);
    EXPECT_EQ(frameOf(model->actframe), 2);
    EXPECT_EQ(vertices().size(), 3u);
}

TEST(EmptyModel, IsHarmlessForHours) {
    setTicks(0);
    clear();
    QModel model;
    model.addAnimation(0, 19, "swim");
    model.addAnimation(20, 39, "turn");
    EXPECT_EQ(model.m_anim[1].start, 0);
    EXPECT_EQ(model.m_anim[1].end, 0);
    model.setFPS(12);
    ModelCore core;
    core.setModel(&model);
    testing::internal::CaptureStdout();
    setCountingOnly(true);
    for (int i = 0; i < 2 * 360000; ++i) {
        advanceTicks(10);
        core.render();
        if (i % 1000 == 0)
            model.setAnimation(i % 2000 ? "swim" : "turn");
        ASSERT_EQ(model.getActFrame(), 0);
    }
    setCountingOnly(false);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    core.render();
    EXPECT_TRUE(vertices().empty());
    EXPECT_EQ(count("glBegin"), 0);
    EXPECT_EQ(imbalance(), "");
    EXPECT_EQ(model.actframe, nullptr);
}

TEST(EmptyModel, SaysSoEveryTime) {
    QModel model;
    ModelCore core;
    core.setModel(&model);
    testing::internal::CaptureStdout();
    clear();
    for (int i = 0; i < 3; ++i)
        core.render();
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "frame >= NumFrames\nframe >= NumFrames\nframe >= NumFrames\n");
    EXPECT_TRUE(vertices().empty());
    EXPECT_EQ(imbalance(), "");
    EXPECT_EQ(model.getActFrame(), 0);
    EXPECT_EQ(model.getStartFrame(), 0);
    EXPECT_EQ(model.getEndFrame(), 0);
    model.cleanup();
}

TEST(ModelCoreAlone, DrawsNothing) {
    clear();
    ModelCore core;
    EXPECT_EQ(core.model, nullptr);
    core.enableAlphaBlending(true);
    core.removeFlags(DEPTH_TESTING);
    core.render();
    core.cleanup();
    EXPECT_TRUE(calls().empty());
}
