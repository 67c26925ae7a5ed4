// Shows a model from eight sides and through its animation on one picture.
//
//     turntable MODEL OUT.png [TEXTURE [CELL]]
//
// Without TEXTURE the file beside the model with the ending ".nlt" is used. CELL is the size of one
// of the sixteen views in pixels.
#include <GL/gl.h>
#include <GL/glu.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "frame_boxes.h"
#include "offscreen.h"
#include "system/ModelCore.h"
#include "system/QModel.h"
#include "system/Texture.h"

namespace {

constexpr int kColumns = 4, kRows = 4;

/// Draws into one cell, numbered row by row from the top left.
void drawCell(ModelCore& object, int cell, int size, float reach, float heading, float height) {
    glViewport(cell % kColumns * size, (kRows - 1 - cell / kColumns) * size, size, size);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glTranslatef(0, 0, -reach * 2.6f);
    glRotatef(height, 1, 0, 0);
    glRotatef(heading, 0, 1, 0);
    object.render();
}

}  // namespace

int main(int count, char** arguments) {
    if (count < 3) {
        std::fprintf(stderr, "usage: turntable MODEL OUT.png [TEXTURE [CELL]]\n");
        return 2;
    }
    const std::string path = arguments[1];
    const std::string skin =
        count > 3 ? arguments[3] : path.substr(0, path.find_last_of('.')) + ".nlt";
    const int size = count > 4 ? std::atoi(arguments[4]) : 320;
    if (size < 16 || size > 2048) {
        std::fprintf(stderr, "CELL must lie between 16 and 2048\n");
        return 2;
    }

    OffscreenContext context(kColumns * size, kRows * size, 4);
    if (!context.ok()) {
        std::fprintf(stderr, "no GL context\n");
        return 1;
    }
    const std::vector<FrameBox> frames = readFrameBoxes(path.c_str());
    QModel model;
    Texture texture;
    if (frames.empty()) {
        std::fprintf(stderr, "%s is no model\n", path.c_str());
        return 1;
    }
    if (!model.loadMD3(path.c_str()) ||
        !texture.loadBMP(skin.c_str(), static_cast<TEXTURE_FLAG>(QUALITY_NORMAL | WRAP_REPEAT)))
        return 1;
    float reach = 0;
    for (const FrameBox& box : frames)
        reach = std::max(reach, box.reach());
    // An animation of one frame holds that frame still.
    const int count_of_frames = static_cast<int>(frames.size());
    for (int frame = 0; frame < count_of_frames; ++frame)
        model.addAnimation(frame, frame, std::to_string(frame).c_str());

    ModelCore object;
    object.setModel(&model);
    object.addTexture(&texture);
    object.enableAlphaBlending(true);

    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LEQUAL);
    glClearColor(0.16f, 0.60f, 0.72f, 1);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    gluPerspective(38, 1, reach * 0.1, reach * 10);

    constexpr int kViews = 8;
    model.setAnimation("0");
    for (int view = 0; view < kViews; ++view)
        drawCell(object, view, size, reach, 90.0f + 45.0f * static_cast<float>(view),
                 view % 2 == 0 ? 8.0f : 30.0f);
    for (int step = 0; step < kViews; ++step) {
        model.setAnimation(std::to_string(step * count_of_frames / kViews).c_str());
        drawCell(object, kViews + step, size, reach, 55, 40);
    }
    const bool saved = context.read().savePng(arguments[2]);
    model.cleanup();
    texture.cleanup();
    if (!saved)
        std::fprintf(stderr, "cannot write %s\n", arguments[2]);
    return saved ? 0 : 1;
}
