// Writes the good files that fuzzing starts from: seeds CORPUS. Each target has a folder there.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "media/font_bytes.h"
#include "models/model_bytes.h"
#include "system/support.h"

namespace {

std::filesystem::path corpus;

template <class Bytes>
void write(const std::string& target, const std::string& name, const Bytes& bytes) {
    std::filesystem::create_directories(corpus / target);
    std::ofstream(corpus / target / name, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
}

/// A bitmap with the old header of 12 bytes, 2 x 2, 24 bits per pixel.
std::vector<uint8_t> oldBitmap() {
    std::vector<uint8_t> bytes(26 + 2 * 8, 0x7f);
    bytes[0] = 'B';
    bytes[1] = 'M';
    put(bytes, 2, static_cast<uint32_t>(bytes.size()), 4);
    put(bytes, 6, 0, 4);
    put(bytes, 10, 26, 4);
    put(bytes, 14, 12, 4);
    put(bytes, 18, 2, 2);
    put(bytes, 20, 2, 2);
    put(bytes, 22, 1, 2);
    put(bytes, 24, 24, 2);
    return bytes;
}

/// A bitmap with a palette of two or sixteen colours, 3 x 2.
std::vector<uint8_t> fewColours(int depth) {
    const int start = 54 + 4 * (1 << depth);
    std::vector<uint8_t> bytes = bitmap(3, 2, 32, [](int, int) { return 0x01020304u; });
    bytes.resize(start + 2 * 4, 0x5a);
    put(bytes, 2, static_cast<uint32_t>(bytes.size()), 4);
    put(bytes, 10, start, 4);
    put(bytes, 28, depth, 2);
    return bytes;
}

/// A bitmap, 3 x 2, that says where the colours are in a pixel; the top row comes first.
std::vector<uint8_t> masks(int depth, uint32_t red, uint32_t green, uint32_t blue) {
    std::vector<uint8_t> bytes =
        bitmap(3, 2, depth, [](int x, int y) { return 0x1357u * (x + y); });
    bytes.insert(bytes.begin() + 54, 12, 0);
    put(bytes, 2, static_cast<uint32_t>(bytes.size()), 4);
    put(bytes, 10, 66, 4);
    put(bytes, 22, static_cast<uint32_t>(-2), 4);
    put(bytes, 30, 3, 4);
    put(bytes, 54, red, 4);
    put(bytes, 58, green, 4);
    put(bytes, 62, blue, 4);
    return bytes;
}

/// A silent sound of eight frames.
std::vector<uint8_t> sound(int channels, int bits, uint32_t rate) {
    const int frame = channels * bits / 8, samples = 8 * frame;
    std::vector<uint8_t> bytes(44 + samples, bits == 8 ? 0x80 : 0);
    const auto tag = [&](size_t offset, const char* text) {
        std::copy_n(text, 4, bytes.begin() + static_cast<std::ptrdiff_t>(offset));
    };
    tag(0, "RIFF");
    put(bytes, 4, 36 + samples, 4);
    tag(8, "WAVE");
    tag(12, "fmt ");
    put(bytes, 16, 16, 4);
    put(bytes, 20, 1, 2);
    put(bytes, 22, channels, 2);
    put(bytes, 24, rate, 4);
    put(bytes, 28, rate * frame, 4);
    put(bytes, 32, frame, 2);
    put(bytes, 34, bits, 2);
    tag(36, "data");
    put(bytes, 40, samples, 4);
    return bytes;
}

}  // namespace

int main(int count, char** arguments) {
    if (count != 2) {
        std::fprintf(stderr, "usage: seeds CORPUS\n");
        return 2;
    }
    corpus = arguments[1];

    const auto pixel = [](int x, int y) { return 0x40302010u * (x + 3 * y + 1); };
    for (const int depth : {8, 24, 32}) {
        const std::string name = std::to_string(depth) + "-bits.bmp";
        write("texture", name, bitmap(3, 2, depth, pixel));
        write("height_map", name, bitmap(4, 4, depth, pixel));
    }
    for (const std::string target : {"texture", "height_map"}) {
        write(target, "old-header.bmp", oldBitmap());
        write(target, "1-bit.bmp", fewColours(1));
        write(target, "4-bits.bmp", fewColours(4));
        write(target, "masks-16.bmp", masks(16, 0xf800, 0x07e0, 0x001f));
        write(target, "masks-32.bmp", masks(32, 0x0000ff, 0x00ff00, 0xff0000));
    }

    test::Md3File md3 = test::Md3File::tetrahedron();
    write("md3", "tetrahedron.nlm", md3.bytes());
    md3.tags = md3.skins = 0;
    write("md3", "bare.nlm", md3.bytes());
    write("md2", "tetrahedron.md2", test::Md2File::tetrahedron().bytes());

    test::FONT_FILE font;
    write("font", "even.nlf", font.bytes());
    font.texWidth = 3;
    font.texels.resize(12);
    write("font", "odd.nlf", font.bytes());

    write(
        "language", "two.dat",
        std::string("[ENG]\ncaption = { Lagoon }\n[GER]\ncaption = {\n Lagune }\nsky={Himmel}\n"));
    write("language", "broken.dat", std::string("[GER] a = } { b = {two} c = {never closed"));

    write("settings", "all",
          std::string("BoidModel=1\nBoidCount=20\nFishRed=false\nFishBlue=true\nFishCount=1200\n"
                      "CameraPos=3\nCameraSpeed=-4\nSkyType=1\nSoundOn=0\n"));
    write("settings", "odd",
          std::string("[Group]\nBoidCount=5\n[$Version]\nFishCount[de]=7\nSkyType=\\x31\n"));

    write("sound", "mono-8.wav", sound(1, 8, 11025));
    write("sound", "stereo-16.wav", sound(2, 16, 22050));
    write("sound", "odd-rate.wav", sound(1, 16, 44101));
    return 0;
}
