// Plays and draws a model after its file was decoded.
#pragma once

#include "fuzz.h"
#include "system/ModelCore.h"

namespace fuzz {

inline void drawModel(QModel& model, bool decoded, int lines) {
    require(lines == (decoded ? 0 : 1), "a bad model gets one line, a good one none");
    require(decoded == model.loaded, "only a file that is sound leaves a model");
    ModelCore object;
    object.setModel(&model);
    object.render();
    if (model.m_anim.size() < 100)
        model.addAnimation(0, 1000, "all");
    for (const SAnimation& animation : model.m_anim) {
        model.setAnimation(animation.name.c_str());
        for (int frame = 0; frame < 3; ++frame)
            object.render();
    }
    object.removeFlags(INTERPOLATION);
    object.render();
    object.cleanup();
    object.render();
}

}  // namespace fuzz
