#include "host/SoundGate.h"

#include <SDL_mixer.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QX11Info>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <string>
#include <thread>

#include "system/Waiting.h"

namespace {

// The mixer's turn comes every 185 milliseconds, and a device may take as long for what was mixed.
constexpr int DELIVERY_MS = 400;
// What a sound server needs at the most to fetch what was mixed.
constexpr int FETCH_MS = 10;
constexpr long PLAY_MS = 600;  // enough for two turns

template <class REPLY>
using Owned = std::unique_ptr<REPLY, void (*)(void*)>;

xcb_window_t ownerOf(xcb_connection_t* connection, xcb_atom_t selection) {
    const Owned<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(connection, xcb_get_selection_owner(connection, selection),
                                      nullptr),
        std::free);
    return reply ? reply->owner : XCB_NONE;
}

/// Asks for news of the window's end; false when there is no such window.
bool watchEnd(xcb_connection_t* connection, xcb_window_t window) {
    const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    const Owned<xcb_generic_error_t> error(
        xcb_request_check(connection, xcb_change_window_attributes_checked(
                                          connection, window, XCB_CW_EVENT_MASK, &mask)),
        std::free);
    return !error;
}

std::string driverName() {
    char name[32] = "";
    return SDL_AudioDriverName(name, sizeof name) ? name : "";
}

/// The life of the process that holds the device. Host and display must not notice it: it has
/// neither the connection nor the standard streams, which some hosts read to their end.
[[noreturn]] void holdDevice(int display) {
    close(display);
    const int nothing = open("/dev/null", O_RDWR);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        dup2(nothing, stream);
    const std::timespec rest = {0, PLAY_MS * 1'000'000};
    nanosleep(&rest, nullptr);
    _exit(0);
}

/// Takes a message of the sound library: file, line, function, error, text.
void ignoreMessage(const char*, int, const char*, int, const char*, ...) {}

}  // namespace

SoundGate::SoundGate()
    : connection(QX11Info::connection()),
      selection(XCB_NONE),
      own(XCB_NONE),
      watched(XCB_NONE),
      drawing(false) {
    const std::string name = "_ATOLLIA_SOUND_" + std::to_string(getuid());
    const Owned<xcb_intern_atom_reply_t> atom(
        xcb_intern_atom_reply(
            connection,
            xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.c_str()),
            nullptr),
        std::free);
    if (atom)
        selection = atom->atom;
    qApp->installNativeEventFilter(this);
    fade.attach();
    setDrawing(true);
}

SoundGate::~SoundGate() {
    SoundFade::detach();
    qApp->removeNativeEventFilter(this);
    release();
}

void SoundGate::setDrawing(bool now) {
    if (now == drawing)
        return;
    drawing = now;
    if (drawing)
        claim();
    else
        release();
}

bool SoundGate::silent() const {
    return fade.closed() || !Mix_QuerySpec(nullptr, nullptr, nullptr) || driverName() == "dummy";
}

void SoundGate::waitForSilence(int milliseconds) const {
    waitUntil([this] { return silent(); }, milliseconds);
}

void SoundGate::leaveToDevice() {
    fadeOut();
    // Servers are handed what was mixed when they have room for it, cards take it while they play.
    const bool served = driverName().compare(0, 5, "pulse") == 0;
    if (!waitUntil([&] { return served ? fade.closed() : fade.delivered(); }, DELIVERY_MS))
        return;
    if (served)
        std::this_thread::sleep_for(std::chrono::milliseconds(FETCH_MS));
    if (fork() == 0)
        holdDevice(xcb_get_file_descriptor(connection));
}

void SoundGate::claim() {
    if (!own) {
        own = xcb_generate_id(connection);
        const xcb_window_t root = QX11Info::appRootWindow();
        xcb_create_window(connection, 0, own, root, -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                          XCB_COPY_FROM_PARENT, 0, nullptr);
    }
    // Not with the server grabbed: hosts stop savers at any moment.
    for (bool settled = false; !settled;) {
        watched = ownerOf(connection, selection);
        if (!watched) {
            xcb_set_selection_owner(connection, own, selection, XCB_CURRENT_TIME);
            watched = ownerOf(connection, selection);
        }
        // Without the window there is no owner either, and the question is asked again.
        settled = watched == own || !watched || watchEnd(connection, watched);
    }
    if (watched == own)
        watched = XCB_NONE;
    fade.open(watched == XCB_NONE);
}

void SoundGate::release() {
    fade.open(false);
    if (own)
        xcb_destroy_window(connection, own);  // the others hear of it
    xcb_flush(connection);
    own = watched = XCB_NONE;
}

bool SoundGate::nativeEventFilter(const QByteArray& type, void* message, long*) {
    if (type != "xcb_generic_event_t")
        return false;
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    switch (event->response_type & 0x7f) {
        case XCB_DESTROY_NOTIFY: {
            const auto* destroyed = reinterpret_cast<const xcb_destroy_notify_event_t*>(event);
            if (watched && destroyed->window == watched)
                claim();
            break;
        }
        case XCB_SELECTION_CLEAR: {
            // Two savers have asked at the same moment; the other one was later.
            const auto* lost = reinterpret_cast<const xcb_selection_clear_event_t*>(event);
            if (own && lost->owner == own)
                claim();
            break;
        }
        default:
            break;
    }
    return false;
}

void quietSoundLibrary() {
    using HANDLER = decltype(&ignoreMessage);
    void* library = dlopen("libasound.so.2", RTLD_LAZY | RTLD_NOLOAD);
    if (!library)
        return;
    const auto set =
        reinterpret_cast<int (*)(HANDLER)>(dlsym(library, "snd_lib_error_set_handler"));
    if (set)
        set(ignoreMessage);
    dlclose(library);
}
