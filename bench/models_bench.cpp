// One frame of the creatures' movement and of their models.
#include <benchmark/benchmark.h>

#include <vector>

#include "FishSteering.h"
#include "models/model_bytes.h"
#include "support/chance.h"
#include "support/clock.h"
#include "support/gl_recorder.h"
#include "system/AnimationTrack.h"
#include "system/ModelCore.h"

namespace {

/// A waving sheet of 1000 triangles in 20 keyframes, 546 vertices.
void loadSheet(QModel& model) {
    constexpr int COLUMNS = 20, ROWS = 25;
    test::Md3File file;
    for (int f = 0; f < 20; ++f) {
        std::vector<test::Md3File::Position> positions;
        for (int row = 0; row <= ROWS; ++row)
            for (int column = 0; column <= COLUMNS; ++column)
                positions.push_back({static_cast<int16_t>(64 * column),
                                     static_cast<int16_t>(64 * row),
                                     static_cast<int16_t>((row * f) % 20 * 10)});
        file.frames.push_back(positions);
    }
    file.tex.resize(file.frames[0].size(), {0.25f, 0.5f});
    for (int row = 0; row < ROWS; ++row) {
        for (int column = 0; column < COLUMNS; ++column) {
            const int corner = row * (COLUMNS + 1) + column, above = corner + COLUMNS + 1;
            file.triangles.push_back({corner, corner + 1, above});
            file.triangles.push_back({corner + 1, above + 1, above});
        }
    }
    const test::Bytes bytes = file.bytes();
    model.decodeMD3(bytes.data(), bytes.size(), "sheet");
    model.addAnimation(0, 19, "swim");
}

void schoolMove(benchmark::State& state) {
    test::seedRandom(1);
    QModel model;
    std::vector<ModelCore> fish(state.range(0));
    FishSteering school;
    for (ModelCore& core : fish) {
        core.setModel(&model);
        school.addFish(&core);
    }
    school.setTargetPoint(0, -3.5f, 10);
    school.init();
    for (auto _ : state) {
        test::advanceTicks(10);
        school.move();
    }
    state.SetComplexityN(state.range(0));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(schoolMove)->Arg(10)->Arg(100)->Arg(1000)->Complexity(benchmark::oN);

void trackMove(benchmark::State& state) {
    RenderObject object;
    AnimationTrack track;
    track.setRenderObject(&object);
    for (int i = 0; i < 12; ++i)
        track.addPoint(static_cast<float>(i % 4), static_cast<float>(i % 3), static_cast<float>(i),
                       0);
    for (auto _ : state) {
        test::advanceTicks(10);
        track.move();
    }
}
BENCHMARK(trackMove);

void modelStep(benchmark::State& state) {
    test::setCountingOnly(true);
    QModel model;
    loadSheet(model);
    for (auto _ : state) {
        test::advanceTicks(10);
        model.preRender();
        model.postRender();
    }
}
BENCHMARK(modelStep);

/// The model once per frame, then a number of times at one moment: those share the blended
/// vertices.
void modelSubmission(benchmark::State& state) {
    test::setCountingOnly(true);
    QModel model;
    loadSheet(model);
    Texture texture;
    ModelCore core;
    core.setModel(&model);
    core.addTexture(&texture);
    for (auto _ : state) {
        test::advanceTicks(10);
        for (int i = 0; i < state.range(0); ++i)
            core.render();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0) * model.NumTris);
}
BENCHMARK(modelSubmission)->ArgName("objects")->Arg(1)->Arg(10);

}  // namespace
