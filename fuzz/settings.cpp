#include <memory>

#include "Globals.h"
#include "Marivista.h"
#include "fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::Printed printed;
    const auto scene = std::make_unique<CMarivistaScreensaver>();
    scene->settings_file = QString::fromLatin1(fuzz::asFile(data, size));
    scene->loadSettings(640, 480);
    fuzz::require(scene->wantedwssettings.boidcount <= MAX_FISH, "the school has its limit");
    fuzz::require(scene->wantedwssettings.fishcount <= MAX_FISH, "so have the single fish");
    fuzz::require(printed.lines() <= 2, "one line for each number that is too large");
    return 0;
}
