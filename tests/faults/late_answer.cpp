// An X server that takes its time: answers about sizes come as many milliseconds later as
// LATE_ANSWER says. To be loaded before the X library.
#include <X11/Xlib.h>
#include <dlfcn.h>
#include <unistd.h>

#include <cstdlib>

Status XGetGeometry(Display* display, Drawable drawable, Window* root, int* x, int* y,
                    unsigned* width, unsigned* height, unsigned* border, unsigned* depth) {
    static const auto answer =
        reinterpret_cast<decltype(&XGetGeometry)>(dlsym(RTLD_NEXT, "XGetGeometry"));
    if (const char* delay = std::getenv("LATE_ANSWER"))
        usleep(1000 * std::atoi(delay));
    return answer(display, drawable, root, x, y, width, height, border, depth);
}
