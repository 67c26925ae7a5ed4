#include "system/RowClip.h"

#include <GL/gl.h>

#include <algorithm>
#include <cmath>

void drawInRows(double low, double high, const std::function<void()>& draw) {
    if (low <= 0 && high >= 1) {
        draw();
        return;
    }
    GLint view[4], before[4];
    glGetIntegerv(GL_VIEWPORT, view);
    glGetIntegerv(GL_SCISSOR_BOX, before);
    const bool cut = glIsEnabled(GL_SCISSOR_TEST);
    int left = view[0], right = view[0] + view[2];
    const auto edge = [&view](double row) { return row * view[3]; };
    int bottom = view[1] + static_cast<int>(std::floor(edge(std::clamp(low, 0.0, 1.0))));
    int top = view[1] + static_cast<int>(std::ceil(edge(std::clamp(high, 0.0, 1.0))));
    if (cut) {
        left = std::max(left, before[0]);
        right = std::min(right, before[0] + before[2]);
        bottom = std::max(bottom, before[1]);
        top = std::min(top, before[1] + before[3]);
    }
    glScissor(left, bottom, std::max(0, right - left), std::max(0, top - bottom));
    glEnable(GL_SCISSOR_TEST);
    draw();
    if (!cut)
        glDisable(GL_SCISSOR_TEST);
    glScissor(before[0], before[1], before[2], before[3]);
}
