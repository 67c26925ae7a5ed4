#include "host/Renderer.h"

#include <QX11Info>
#include <cstring>

// After the toolkit's headers: it defines words that they use.
#include <GL/glx.h>
#include <GL/glxext.h>

namespace {

bool contains(const char* text, const char* part) { return text && std::strstr(text, part); }

}  // namespace

bool isAccelerated() {
    Display* display = QX11Info::display();
    const int screen = DefaultScreen(display);
    if (contains(glXQueryExtensionsString(display, screen), "GLX_MESA_query_renderer")) {
        const auto query = reinterpret_cast<PFNGLXQUERYRENDERERINTEGERMESAPROC>(
            glXGetProcAddress(reinterpret_cast<const GLubyte*>("glXQueryRendererIntegerMESA")));
        unsigned accelerated = 0;
        return query && query(display, screen, 0, GLX_RENDERER_ACCELERATED_MESA, &accelerated) &&
               accelerated;
    }
    // A driver of its own that does not answer the question.
    return contains(glXQueryServerString(display, screen, GLX_VENDOR), "NVIDIA");
}

int samplesPerPixel(std::optional<int> wanted, bool accelerated) {
    constexpr int smooth = 4;
    return wanted.value_or(accelerated ? smooth : 0);
}
