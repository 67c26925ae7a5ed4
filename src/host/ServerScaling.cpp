#include "host/ServerScaling.h"

#include <GL/gl.h>
#include <sys/mman.h>
#include <unistd.h>
#include <xcb/render.h>
#include <xcb/shm.h>
#include <xcb/xcb.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>

namespace {

constexpr int PIXEL = 4;  // bytes

template <class REPLY>
using Owned = std::unique_ptr<REPLY, void (*)(void*)>;

template <class REPLY>
Owned<REPLY> owned(REPLY* reply) {
    return Owned<REPLY>(reply, std::free);
}

bool has(xcb_connection_t* connection, xcb_extension_t& extension) {
    const xcb_query_extension_reply_t* found = xcb_get_extension_data(connection, &extension);
    return found && found->present;
}

/// Memory can be handed over as a file, which nobody has to clean up.
bool sharesFiles(xcb_connection_t* connection) {
    if (!has(connection, xcb_shm_id))
        return false;
    const auto version =
        owned(xcb_shm_query_version_reply(connection, xcb_shm_query_version(connection), nullptr));
    return version && (version->major_version > 1 || version->minor_version >= 2);
}

bool hasPixelsOf32Bits(const xcb_setup_t* setup, int depth) {
    if (setup->image_byte_order != XCB_IMAGE_ORDER_LSB_FIRST)
        return false;
    for (auto it = xcb_setup_pixmap_formats_iterator(setup); it.rem; xcb_format_next(&it))
        if (it.data->depth == depth)
            return it.data->bits_per_pixel == 32 && it.data->scanline_pad == 32;
    return false;
}

/// The format of a visual; 0 without one.
std::uint32_t formatOf(const xcb_render_query_pict_formats_reply_t* formats,
                       xcb_visualid_t visual) {
    for (auto screen = xcb_render_query_pict_formats_screens_iterator(formats); screen.rem;
         xcb_render_pictscreen_next(&screen))
        for (auto depth = xcb_render_pictscreen_depths_iterator(screen.data); depth.rem;
             xcb_render_pictdepth_next(&depth)) {
            const xcb_render_pictvisual_t* const visuals = xcb_render_pictdepth_visuals(depth.data);
            for (int i = 0; i < xcb_render_pictdepth_visuals_length(depth.data); ++i)
                if (visuals[i].visual == visual)
                    return visuals[i].format;
        }
    return 0;
}

/// Blue, green, red and a byte that nothing means, as GL_BGRA has them.
bool isPlain(const xcb_render_query_pict_formats_reply_t* formats, std::uint32_t format) {
    const xcb_render_pictforminfo_t* const all = xcb_render_query_pict_formats_formats(formats);
    for (int i = 0; i < xcb_render_query_pict_formats_formats_length(formats); ++i) {
        const xcb_render_pictforminfo_t& one = all[i];
        const xcb_render_directformat_t& bits = one.direct;
        if (one.id == format)
            return one.type == XCB_RENDER_PICT_TYPE_DIRECT && one.depth == 24 &&
                   bits.red_shift == 16 && bits.green_shift == 8 && bits.blue_shift == 0 &&
                   bits.red_mask == 0xff && bits.green_mask == 0xff && bits.blue_mask == 0xff;
    }
    return false;
}

xcb_render_fixed_t fixed(double value) {
    return static_cast<xcb_render_fixed_t>(std::lround(value * 65536));
}

}  // namespace

ServerScaling::ServerScaling(xcb_connection_t* connection, std::uint32_t window)
    : connection_(connection), window_(window) {}

ServerScaling::~ServerScaling() {
    forget();
    if (pixmap_) {
        xcb_render_free_picture(connection_, source_);
        xcb_free_pixmap(connection_, pixmap_);
    }
    if (picture_) {
        xcb_render_free_picture(connection_, picture_);
        xcb_free_gc(connection_, context_);
    }
    xcb_flush(connection_);
}

bool ServerScaling::possible() {
    if (!std::exchange(asked_, true))
        possible_ = has(connection_, xcb_render_id) && sharesFiles(connection_) && findFormat() &&
                    provide(PIXEL);
    return possible_;
}

bool ServerScaling::begin() {
    if (!possible())
        return false;
    // An answer to anything at all means that the server has read the last frame.
    const auto answer =
        owned(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    used_ = 0;
    return answer != nullptr;
}

bool ServerScaling::findFormat() {
    const auto window = owned(xcb_get_window_attributes_reply(
        connection_, xcb_get_window_attributes(connection_, window_), nullptr));
    const auto geometry =
        owned(xcb_get_geometry_reply(connection_, xcb_get_geometry(connection_, window_), nullptr));
    const auto formats = owned(xcb_render_query_pict_formats_reply(
        connection_, xcb_render_query_pict_formats(connection_), nullptr));
    if (!window || !geometry || !formats)
        return false;
    depth_ = geometry->depth;
    format_ = formatOf(formats.get(), window->visual);
    if (!isPlain(formats.get(), format_) || !hasPixelsOf32Bits(xcb_get_setup(connection_), depth_))
        return false;
    picture_ = xcb_generate_id(connection_);
    xcb_render_create_picture(connection_, picture_, window_, format_, 0, nullptr);
    context_ = xcb_generate_id(connection_);
    xcb_create_gc(connection_, context_, window_, 0, nullptr);
    return true;
}

void ServerScaling::forget() {
    if (!memory_.pixels)
        return;
    xcb_shm_detach(connection_, memory_.segment);
    munmap(memory_.pixels, memory_.size);
    memory_ = {};
}

bool ServerScaling::provide(std::size_t size) {
    if (memory_.size >= size)
        return true;
    forget();
    const int file = memfd_create("picture", MFD_CLOEXEC);
    if (file < 0)
        return false;
    void* place = MAP_FAILED;
    if (ftruncate(file, static_cast<off_t>(size)) == 0)
        place = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    if (place == MAP_FAILED) {
        close(file);
        return false;
    }
    const std::uint32_t segment = xcb_generate_id(connection_);
    // The file is the connection's from here on.
    const auto error = owned(xcb_request_check(
        connection_, xcb_shm_attach_fd_checked(connection_, segment, file, true)));
    if (error || xcb_connection_has_error(connection_)) {
        munmap(place, size);
        return false;
    }
    memory_ = {static_cast<unsigned char*>(place), size, segment};
    return true;
}

bool ServerScaling::read(int width, int height) {
    const std::size_t size =
        std::size_t{PIXEL} * static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    if (used_ + size > memory_.size) {
        // What the frame has sent already is the server's to keep until it has shown it.
        if (!provide(used_ + size))
            return false;
        used_ = 0;
    }
    place_ = used_;
    used_ += size;
    glReadPixels(0, 0, width, height, GL_BGRA, GL_UNSIGNED_BYTE, memory_.pixels + place_);
    return true;
}

void ServerScaling::setPixmap(int width, int height) {
    if (width == width_ && height == height_)
        return;
    if (pixmap_) {
        xcb_render_free_picture(connection_, source_);
        xcb_free_pixmap(connection_, pixmap_);
    }
    pixmap_ = xcb_generate_id(connection_);
    xcb_create_pixmap(connection_, depth_, pixmap_, window_, static_cast<std::uint16_t>(width),
                      static_cast<std::uint16_t>(height));
    source_ = xcb_generate_id(connection_);
    const std::uint32_t repeat = XCB_RENDER_REPEAT_PAD;
    xcb_render_create_picture(connection_, source_, pixmap_, format_, XCB_RENDER_CP_REPEAT,
                              &repeat);
    constexpr char filter[] = "bilinear";
    xcb_render_set_picture_filter(connection_, source_, sizeof filter - 1, filter, 0, nullptr);
    width_ = width;
    height_ = height;
}

bool ServerScaling::show(int width, int height, const AREA& area, int omitted) {
    if (!read(width, height))
        return false;
    setPixmap(width, height);
    const auto columns = static_cast<std::uint16_t>(width);
    const auto rows = static_cast<std::uint16_t>(height);
    xcb_shm_put_image(connection_, pixmap_, context_, columns, rows, 0, 0, columns, rows, 0, 0,
                      depth_, XCB_IMAGE_FORMAT_Z_PIXMAP, 0, memory_.segment,
                      static_cast<std::uint32_t>(place_));
    // GL's rows begin at the bottom.
    const double across = static_cast<double>(width) / area.width;
    const double down = static_cast<double>(height) / area.height;
    const xcb_render_transform_t transform = {fixed(across), 0, 0, 0,       fixed(-down),
                                              fixed(height), 0, 0, fixed(1)};
    xcb_render_set_picture_transform(connection_, source_, transform);
    xcb_render_composite(
        connection_, XCB_RENDER_PICT_OP_SRC, source_, XCB_RENDER_PICTURE_NONE, picture_, 0,
        static_cast<std::int16_t>(omitted), 0, 0, static_cast<std::int16_t>(area.x),
        static_cast<std::int16_t>(area.y + omitted), static_cast<std::uint16_t>(area.width),
        static_cast<std::uint16_t>(area.height - omitted));
    xcb_flush(connection_);
    return true;
}
