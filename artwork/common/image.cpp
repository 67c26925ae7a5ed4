#include "common/image.h"

#include <png.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace art {
namespace {

uint8_t toByte(float v) { return static_cast<uint8_t>(clamp01(v) * 255 + 0.5f); }

void writeFile(const std::string& path, const std::vector<uint8_t>& bytes) {
    FILE* file = std::fopen(path.c_str(), "wb");
    if (!file || std::fwrite(bytes.data(), 1, bytes.size(), file) != bytes.size() ||
        std::fclose(file) != 0)
        fail("cannot write " + path);
}

void put16(std::vector<uint8_t>& out, unsigned v) {
    out.push_back(static_cast<uint8_t>(v));
    out.push_back(static_cast<uint8_t>(v >> 8));
}

void put32(std::vector<uint8_t>& out, unsigned v) {
    put16(out, v & 0xffff);
    put16(out, v >> 16);
}

/// Writes a bitmap; row(y, out) appends row y, y = 0 at the top, without padding.
template <class Row>
void saveBmp(int width, int height, int bits, const std::string& path, Row row) {
    const unsigned palette = bits == 8 ? 256 : 0;
    const unsigned stride = (static_cast<unsigned>(width * bits) + 31) / 32 * 4;
    const unsigned start = 14 + 40 + palette * 4;
    const unsigned size = stride * static_cast<unsigned>(height);
    std::vector<uint8_t> out;
    out.reserve(start + size);
    out.push_back('B');
    out.push_back('M');
    put32(out, start + size);
    put32(out, 0);
    put32(out, start);
    put32(out, 40);
    put32(out, static_cast<unsigned>(width));
    put32(out, static_cast<unsigned>(height));
    put16(out, 1);
    put16(out, static_cast<unsigned>(bits));
    put32(out, 0);
    put32(out, size);
    put32(out, 2835);  // 72 dots per inch
    put32(out, 2835);
    put32(out, palette);
    put32(out, 0);
    for (unsigned i = 0; i < palette; ++i)
        put32(out, i * 0x010101u);
    for (int y = height - 1; y >= 0; --y) {
        row(y, out);
        while ((out.size() - start) % 4 != 0)
            out.push_back(0);
    }
    writeFile(path, out);
}

}  // namespace

Pixel Image::sample(float x, float y) const {
    x -= 0.5f;
    y -= 0.5f;
    const float fx = std::floor(x), fy = std::floor(y);
    const int ix = static_cast<int>(fx), iy = static_cast<int>(fy);
    const float u = x - fx, v = y - fy;
    const Pixel &a = wrapped(ix, iy), &b = wrapped(ix + 1, iy), &c = wrapped(ix, iy + 1),
                &d = wrapped(ix + 1, iy + 1);
    return {mix(mix(a.colour, b.colour, u), mix(c.colour, d.colour, u), v),
            mix(mix(a.alpha, b.alpha, u), mix(c.alpha, d.alpha, u), v)};
}

Image shrunk(const Image& image, int columns, int rows) {
    Image small(image.width() / columns, image.height() / rows);
    const auto count = static_cast<float>(columns * rows);
    for (int y = 0; y < small.height(); ++y)
        for (int x = 0; x < small.width(); ++x) {
            Vec3 weighted, plain;
            float alpha = 0;
            for (int i = 0; i < columns * rows; ++i) {
                const Pixel& p = image.at(columns * x + i % columns, rows * y + i / columns);
                weighted += p.colour * p.alpha;
                plain += p.colour;
                alpha += p.alpha;
            }
            small.at(x, y) = {alpha > 0 ? weighted / alpha : plain / count, alpha / count};
        }
    return small;
}

Image sharpened(const Image& image, float across, float down) {
    Image sharp = image;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const Vec3 c = image.at(x, y).colour;
            const Vec3 beside =
                (image.wrapped(x - 1, y).colour + image.wrapped(x + 1, y).colour) / 2;
            const Vec3 above =
                (image.wrapped(x, y - 1).colour + image.wrapped(x, y + 1).colour) / 2;
            const Vec3 s = c + (c - beside) * across + (c - above) * down;
            sharp.at(x, y).colour = {clamp01(s.x), clamp01(s.y), clamp01(s.z)};
        }
    return sharp;
}

void bleed(Image& image, int texels, float threshold) {
    const int w = image.width(), h = image.height();
    std::vector<char> known(size_t(w) * size_t(h));
    Vec3 sum;
    float count = 0;
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
            if (image.at(x, y).alpha >= threshold) {
                known[size_t(y) * size_t(w) + size_t(x)] = 1;
                sum += image.at(x, y).colour;
                ++count;
            }
    if (count == 0)
        return;
    for (int pass = 0; pass < texels; ++pass) {
        std::vector<char> grown = known;
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) {
                if (known[size_t(y) * size_t(w) + size_t(x)])
                    continue;
                Vec3 near;
                int n = 0;
                for (int b = std::max(0, y - 1); b <= std::min(h - 1, y + 1); ++b)
                    for (int a = std::max(0, x - 1); a <= std::min(w - 1, x + 1); ++a)
                        if (known[size_t(b) * size_t(w) + size_t(a)]) {
                            near += image.at(a, b).colour;
                            ++n;
                        }
                if (n) {
                    image.at(x, y).colour = near / static_cast<float>(n);
                    grown[size_t(y) * size_t(w) + size_t(x)] = 1;
                }
            }
        known.swap(grown);
    }
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
            if (!known[size_t(y) * size_t(w) + size_t(x)])
                image.at(x, y).colour = sum / count;
}

void saveBmp24(const Image& image, const std::string& path) {
    saveBmp(image.width(), image.height(), 24, path, [&](int y, std::vector<uint8_t>& out) {
        for (int x = 0; x < image.width(); ++x) {
            const Vec3& c = image.at(x, y).colour;
            out.insert(out.end(), {toByte(c.z), toByte(c.y), toByte(c.x)});
        }
    });
}

void saveBmp32(const Image& image, const std::string& path) {
    saveBmp(image.width(), image.height(), 32, path, [&](int y, std::vector<uint8_t>& out) {
        for (int x = 0; x < image.width(); ++x) {
            const Pixel& p = image.at(x, y);
            out.insert(out.end(), {toByte(p.colour.z), toByte(p.colour.y), toByte(p.colour.x),
                                   toByte(p.alpha)});
        }
    });
}

void saveBmp8(const std::vector<uint8_t>& values, int width, int height, const std::string& path) {
    if (width % 4 != 0 || values.size() != size_t(width) * size_t(height))
        fail("bad size of " + path);
    saveBmp(width, height, 8, path, [&](int y, std::vector<uint8_t>& out) {
        const auto row = values.begin() + std::ptrdiff_t(y) * width;
        out.insert(out.end(), row, row + width);
    });
}

void savePng(const Image& image, const std::string& path) {
    std::vector<uint8_t> bytes;
    bytes.reserve(size_t(image.width()) * size_t(image.height()) * 4);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const Pixel& p = image.at(x, y);
            bytes.insert(bytes.end(), {toByte(p.colour.x), toByte(p.colour.y), toByte(p.colour.z),
                                       toByte(p.alpha)});
        }
    png_image png;
    std::memset(&png, 0, sizeof png);
    png.version = PNG_IMAGE_VERSION;
    png.width = static_cast<png_uint_32>(image.width());
    png.height = static_cast<png_uint_32>(image.height());
    png.format = PNG_FORMAT_RGBA;
    if (!png_image_write_to_file(&png, path.c_str(), 0, bytes.data(), 0, nullptr))
        fail("cannot write " + path + ": " + png.message);
}

Image loadPng(const std::string& path) {
    png_image png;
    std::memset(&png, 0, sizeof png);
    png.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&png, path.c_str()))
        fail("cannot read " + path + ": " + png.message);
    png.format = PNG_FORMAT_RGBA;
    std::vector<uint8_t> bytes(PNG_IMAGE_SIZE(png));
    if (!png_image_finish_read(&png, nullptr, bytes.data(), 0, nullptr))
        fail("cannot read " + path + ": " + png.message);
    Image image(static_cast<int>(png.width), static_cast<int>(png.height));
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const uint8_t* b = &bytes[(size_t(y) * size_t(image.width()) + size_t(x)) * 4];
            image.at(x, y) = {rgb(b[0], b[1], b[2]), static_cast<float>(b[3]) / 255};
        }
    return image;
}

void fail(const std::string& message) {
    std::fprintf(stderr, "%s\n", message.c_str());
    std::exit(1);
}

}  // namespace art
