#include "host/virtual_display.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/uio.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/randr.h>
#include <xcb/xcbext.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <memory>

namespace test {

namespace {

using std::chrono::steady_clock;
constexpr std::chrono::seconds patience(60);

struct FREE {
    void operator()(void* memory) const { std::free(memory); }
};
template <class REPLY>
using Owned = std::unique_ptr<REPLY, FREE>;

[[noreturn]] void become(const std::vector<std::string>& words) {
    std::vector<char*> arguments;
    for (const std::string& word : words)
        arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    // A test that crashes leaves nothing behind that would hold its output open.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    execvp(arguments[0], arguments.data());
    _exit(127);
}

}  // namespace

VirtualDisplay::VirtualDisplay(std::vector<std::string> options) : pid(-1) {
    int answer[2];
    if (pipe(answer) != 0)
        return;
    std::vector<std::string> words = {"Xvfb",      "-displayfd", std::to_string(answer[1]),
                                      "-nolisten", "tcp",        "-noreset"};
    words.insert(words.end(), options.begin(), options.end());
    pid = fork();
    if (pid == 0) {
        const int null = open("/dev/null", O_RDWR);
        dup2(null, 2);
        close(answer[0]);
        become(words);
    }
    close(answer[1]);
    std::string number;
    char c = 0;
    while (read(answer[0], &c, 1) == 1 && c != '\n')
        number += c;
    close(answer[0]);
    if (!number.empty())
        display_name = ":" + number;
}

VirtualDisplay::~VirtualDisplay() {
    if (pid <= 0)
        return;
    ::kill(pid, SIGTERM);
    waitpid(pid, nullptr, 0);
}

void VirtualDisplay::kill() {
    if (pid <= 0)
        return;
    ::kill(pid, SIGKILL);
    waitpid(pid, nullptr, 0);
    pid = -1;
}

Process::Process(const std::vector<std::string>& words, const std::vector<std::string>& environment,
                 const std::vector<int>& blocked)
    : pid(-1), out_pipe(-1), err_pipe(-1) {
    int outs[2];
    int errs[2];
    if (pipe2(outs, O_CLOEXEC) != 0 || pipe2(errs, O_CLOEXEC) != 0)
        return;
    pid = fork();
    if (pid == 0) {
        dup2(outs[1], 1);
        dup2(errs[1], 2);
        for (const std::string& entry : environment) {
            const std::size_t equals = entry.find('=');
            if (equals == std::string::npos)
                unsetenv(entry.c_str());
            else
                setenv(entry.substr(0, equals).c_str(), entry.substr(equals + 1).c_str(), 1);
        }
        sigset_t set;
        sigemptyset(&set);
        for (const int number : blocked)
            sigaddset(&set, number);
        sigprocmask(SIG_SETMASK, &set, nullptr);
        become(words);
    }
    close(outs[1]);
    close(errs[1]);
    out_pipe = outs[0];
    err_pipe = errs[0];
}

Process::~Process() {
    if (pid > 0) {
        ::kill(pid, SIGKILL);
        waitpid(pid, nullptr, 0);
    }
    close(out_pipe);
    close(err_pipe);
}

void Process::signal(int number) const {
    if (pid > 0)  // -1 would be every process there is
        ::kill(pid, number);
}

/// Takes in what there is; false when both pipes are at their end.
bool Process::read(int milliseconds) {
    pollfd ends[2] = {{out_pipe, POLLIN, 0}, {err_pipe, POLLIN, 0}};
    if (poll(ends, 2, milliseconds) <= 0)
        return true;
    bool open = false;
    std::string* const texts[2] = {&out, &err};
    for (int i = 0; i < 2; ++i) {
        if (!ends[i].revents) {
            open = true;
            continue;
        }
        char bytes[4096];
        const ssize_t count = ::read(ends[i].fd, bytes, sizeof bytes);
        if (count > 0) {
            texts[i]->append(bytes, count);
            open = true;
        }
    }
    return open;
}

bool Process::waitForLine(const std::string& beginning) {
    const auto until = steady_clock::now() + patience;
    while (true) {
        if (out.compare(0, beginning.size(), beginning) == 0 ||
            out.find("\n" + beginning) != std::string::npos)
            return true;
        if (steady_clock::now() > until || !read(100))
            return false;
    }
}

END Process::wait(int milliseconds) {
    const auto until = steady_clock::now() + std::chrono::milliseconds(milliseconds);
    END end;
    while (true) {
        int status = 0;
        if (pid > 0 && waitpid(pid, &status, WNOHANG) == pid) {
            pid = -1;
            end.ended = true;
            if (WIFEXITED(status))
                end.status = WEXITSTATUS(status);
            if (WIFSIGNALED(status))
                end.signal = WTERMSIG(status);
            while (read(0)) {
                pollfd ends[2] = {{out_pipe, POLLIN, 0}, {err_pipe, POLLIN, 0}};
                if (poll(ends, 2, 0) <= 0)
                    break;
            }
            return end;
        }
        if (steady_clock::now() > until)
            return end;
        if (!read(5))
            usleep(5000);
    }
}

Client::Client(const std::string& display) : xcb(xcb_connect(display.c_str(), nullptr)) {}

Client::~Client() { xcb_disconnect(xcb); }

const xcb_screen_t* Client::screenAt(int number) const {
    auto it = xcb_setup_roots_iterator(xcb_get_setup(xcb));
    while (number-- > 0)
        xcb_screen_next(&it);
    return it.data;
}

xcb_window_t Client::root() const { return screenAt(0)->root; }

xcb_window_t Client::window(int x, int y, int width, int height, int depth, int screen) {
    const xcb_screen_t* place = screenAt(screen);
    xcb_visualid_t visual = place->root_visual;
    if (depth == 0)
        depth = place->root_depth;
    for (auto depths = xcb_screen_allowed_depths_iterator(place); depths.rem;
         xcb_depth_next(&depths))
        if (depths.data->depth == depth && depth != place->root_depth)
            visual = xcb_depth_visuals(depths.data)->visual_id;
    const xcb_colormap_t colours = xcb_generate_id(xcb);
    xcb_create_colormap(xcb, XCB_COLORMAP_ALLOC_NONE, colours, place->root, visual);
    const xcb_window_t window = xcb_generate_id(xcb);
    const std::uint32_t values[] = {
        0xffffffff,  // background
        0,           // border, of no parent's depth
        1,           // override-redirect
        XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_POINTER_MOTION,
        colours};
    xcb_create_window(xcb, depth, window, place->root, x, y, width, height, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, visual,
                      XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT |
                          XCB_CW_EVENT_MASK | XCB_CW_COLORMAP,
                      values);
    xcb_map_window(xcb, window);
    Owned<xcb_get_input_focus_reply_t> done(
        xcb_get_input_focus_reply(xcb, xcb_get_input_focus(xcb), nullptr));
    return window;
}

void Client::resize(xcb_window_t window, int width, int height) {
    const std::uint32_t values[] = {static_cast<std::uint32_t>(width),
                                    static_cast<std::uint32_t>(height)};
    xcb_configure_window(xcb, window, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, values);
    xcb_flush(xcb);
}

void Client::destroy(xcb_window_t window) {
    xcb_destroy_window(xcb, window);
    xcb_flush(xcb);
}

void Client::unmap(xcb_window_t window) {
    xcb_unmap_window(xcb, window);
    xcb_flush(xcb);
}

void Client::map(xcb_window_t window) {
    xcb_map_window(xcb, window);
    xcb_flush(xcb);
}

xcb_atom_t Client::atom(const std::string& name) {
    const Owned<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
        xcb, xcb_intern_atom(xcb, 0, static_cast<std::uint16_t>(name.size()), name.c_str()),
        nullptr));
    return reply ? reply->atom : XCB_NONE;
}

void Client::mark(xcb_window_t window, const char* property) {
    xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, window, atom(property), XCB_ATOM_WINDOW, 32, 1,
                        &window);
    xcb_flush(xcb);
}

void Client::askToClose(xcb_window_t window) {
    xcb_client_message_event_t event = {};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = atom("WM_PROTOCOLS");
    event.data.data32[0] = atom("WM_DELETE_WINDOW");
    xcb_send_event(xcb, 0, window, 0, reinterpret_cast<const char*>(&event));
    xcb_flush(xcb);
}

xcb_window_t Client::child(xcb_window_t window) {
    const Owned<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(xcb, xcb_query_tree(xcb, window), nullptr));
    if (!tree || xcb_query_tree_children_length(tree.get()) == 0)
        return 0;
    return xcb_query_tree_children(tree.get())[0];
}

xcb_window_t Client::find(int width, int height) {
    return find([=](int w, int h) { return w == width && h == height; });
}

xcb_window_t Client::findAny() {
    return find([](int width, int height) { return width >= 100 && height >= 100; });
}

xcb_window_t Client::find(const std::function<bool(int width, int height)>& wanted) {
    const Owned<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(xcb, xcb_query_tree(xcb, root()), nullptr));
    for (int i = 0; tree && i < xcb_query_tree_children_length(tree.get()); ++i) {
        const xcb_window_t window = xcb_query_tree_children(tree.get())[i];
        const Owned<xcb_get_geometry_reply_t> area(
            xcb_get_geometry_reply(xcb, xcb_get_geometry(xcb, window), nullptr));
        const Owned<xcb_get_window_attributes_reply_t> attributes(
            xcb_get_window_attributes_reply(xcb, xcb_get_window_attributes(xcb, window), nullptr));
        if (area && attributes && wanted(area->width, area->height) &&
            attributes->map_state == XCB_MAP_STATE_VIEWABLE)
            return window;
    }
    return 0;
}

bool Client::exists(xcb_window_t window) {
    const Owned<xcb_get_geometry_reply_t> area(
        xcb_get_geometry_reply(xcb, xcb_get_geometry(xcb, window), nullptr));
    return area != nullptr;
}

void Client::setMode(int width, int height, double refresh_rate) {
    const Owned<xcb_randr_get_screen_resources_reply_t> screen(xcb_randr_get_screen_resources_reply(
        xcb, xcb_randr_get_screen_resources(xcb, root()), nullptr));
    const xcb_randr_output_t output = *xcb_randr_get_screen_resources_outputs(screen.get());
    const std::string name = std::to_string(refresh_rate);
    xcb_randr_mode_info_t mode = {};
    mode.width = mode.hsync_start = mode.hsync_end = mode.htotal =
        static_cast<std::uint16_t>(width);
    mode.height = mode.vsync_start = mode.vsync_end = mode.vtotal =
        static_cast<std::uint16_t>(height);
    mode.dot_clock = static_cast<std::uint32_t>(refresh_rate * width * height);
    mode.name_len = static_cast<std::uint16_t>(name.size());
    const Owned<xcb_randr_create_mode_reply_t> made(xcb_randr_create_mode_reply(
        xcb, xcb_randr_create_mode(xcb, root(), mode, mode.name_len, name.c_str()), nullptr));
    xcb_randr_add_output_mode(xcb, output, made->mode);
    xcb_randr_set_crtc_config(xcb, *xcb_randr_get_screen_resources_crtcs(screen.get()),
                              XCB_CURRENT_TIME, screen->config_timestamp, 0, 0, made->mode,
                              XCB_RANDR_ROTATION_ROTATE_0, 1, &output);
    xcb_randr_set_screen_size(xcb, root(), mode.width, mode.height, mode.width, mode.height);
    xcb_flush(xcb);
}

void Client::setMonitors(const std::vector<AREA>& areas) {
    const Owned<xcb_randr_get_screen_resources_reply_t> screen(xcb_randr_get_screen_resources_reply(
        xcb, xcb_randr_get_screen_resources(xcb, root()), nullptr));
    for (std::size_t i = 0; i < areas.size(); ++i) {
        // By hand, for the library's own function aborts.
        struct {
            xcb_randr_set_monitor_request_t head = {};
            xcb_randr_monitor_info_t info = {};
            xcb_randr_output_t output = 0;
        } request;
        request.head.window = root();
        request.info.name = atom("monitor " + std::to_string(i));
        request.info.x = static_cast<std::int16_t>(areas[i].x);
        request.info.y = static_cast<std::int16_t>(areas[i].y);
        request.info.width = static_cast<std::uint16_t>(areas[i].width);
        request.info.height = static_cast<std::uint16_t>(areas[i].height);
        // The screen's output would be a monitor of its own if none of these had it.
        request.info.nOutput = i == 0 ? 1 : 0;
        request.output = *xcb_randr_get_screen_resources_outputs(screen.get());
        iovec parts[3] = {};
        parts[2] = {&request, sizeof request - (i == 0 ? 0 : sizeof request.output)};
        const xcb_protocol_request_t kind = {1, &xcb_randr_id, XCB_RANDR_SET_MONITOR, 1};
        xcb_send_request(xcb, 0, parts + 2, &kind);
    }
    // Answered when all of it has been done.
    const Owned<xcb_get_input_focus_reply_t> done(
        xcb_get_input_focus_reply(xcb, xcb_get_input_focus(xcb), nullptr));
}

void Client::blacken(xcb_window_t window) {
    const std::uint32_t black = 0;
    xcb_change_window_attributes(xcb, window, XCB_CW_BACK_PIXEL, &black);
    xcb_clear_area(xcb, 0, window, 0, 0, 0, 0);
    xcb_flush(xcb);
}

PICTURE Client::picture(int x, int y, int width, int height, int screen) {
    const Owned<xcb_get_image_reply_t> image(
        xcb_get_image_reply(xcb,
                            xcb_get_image(xcb, XCB_IMAGE_FORMAT_Z_PIXMAP, screenAt(screen)->root, x,
                                          y, width, height, ~0U),
                            nullptr));
    const std::size_t count = std::size_t(width) * height;
    if (!image || std::size_t(xcb_get_image_data_length(image.get())) < 4 * count)
        return {};
    PICTURE picture{width, height, {}};
    picture.pixels.reserve(count);
    const std::uint8_t* bytes = xcb_get_image_data(image.get());
    for (std::size_t i = 0; i < count; ++i, bytes += 4)
        picture.pixels.push_back({bytes[2], bytes[1], bytes[0]});
    return picture;
}

PIXEL Client::pixel(int x, int y, int screen) {
    const PICTURE one = picture(x, y, 1, 1, screen);
    return one.pixels.empty() ? PIXEL{-1, -1, -1} : one.pixels[0];
}

bool Client::waitForPixel(int x, int y, PIXEL colour, int screen) {
    const auto until = steady_clock::now() + patience;
    while (steady_clock::now() < until) {
        if (pixel(x, y, screen) == colour)
            return true;
        usleep(20000);
    }
    return false;
}

bool Client::waitForEvent(int type) {
    const auto until = steady_clock::now() + patience;
    while (steady_clock::now() < until) {
        while (const Owned<xcb_generic_event_t> event{xcb_poll_for_event(xcb)})
            if ((event->response_type & 0x7f) == type)
                return true;
        if (xcb_connection_has_error(xcb))
            return false;
        usleep(5000);
    }
    return false;
}

std::string hex(xcb_window_t window) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%X", window);
    return text;
}

}  // namespace test
