// An X server that takes its time: answers about sizes come as many milliseconds later as
// LATE_ANSWER says. And a busy machine: the first shared memory that is made is let go of as many
// milliseconds later as LATE_REMOVAL says, and meanwhile the file that LATE_MOMENT names is there.
// To be loaded before the libraries.
#include <X11/Xlib.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/shm.h>
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

int shmctl(int id, int command, shmid_ds* segment) noexcept {
    static const auto control = reinterpret_cast<decltype(&shmctl)>(dlsym(RTLD_NEXT, "shmctl"));
    static bool first = true;
    const char* delay = std::getenv("LATE_REMOVAL");
    const char* moment = std::getenv("LATE_MOMENT");
    if (command == IPC_RMID && delay && moment && first) {
        first = false;
        close(open(moment, O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
        usleep(1000 * std::atoi(delay));
    }
    return control(id, command, segment);
}
