// sand PICTURE.png ...: the figures of the sand in pictures of the bottom view, 1280 x 948.
#include <cstdio>

#include "sand_figures.h"

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: sand PICTURE.png ...\n");
        return 2;
    }
    std::printf("saturation deviation brightest crispness  line  fine\n");
    for (int i = 1; i < argc; ++i) {
        const Picture picture = Picture::loadPng(argv[i]);
        if (picture.width != 1280 || picture.height != 948) {
            std::fprintf(stderr, "%s is no picture of 1280 x 948\n", argv[i]);
            return 1;
        }
        for (const SandBox& box : {NEAR_SAND, MIDDLE_SAND}) {
            const SandFigures f = measureSand(picture, box);
            std::printf("%10.3f %9.1f %9.0f %9.1f %5.1f %5.2f  %s, %s\n", f.saturation, f.deviation,
                        f.brightest, f.crispness, f.line, f.fine, argv[i],
                        box.top == NEAR_SAND.top ? "near" : "middle");
        }
    }
}
