// Writes the good files that fuzzing starts from: seeds CORPUS. Each target has a folder there.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "media/font_bytes.h"
#include "models/model_bytes.h"
#include "system/Support.h"

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
    write("texture", "old-header.bmp", oldBitmap());

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
