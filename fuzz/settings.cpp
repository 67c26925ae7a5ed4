#include <memory>

#include "Marivista.h"
#include "fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::Printed printed;
    const auto scene = std::make_unique<CMarivistaScreensaver>();
    scene->settings_file = QString::fromLatin1(fuzz::asFile(data, size));
    scene->loadSettings(640, 480);
    fuzz::require(printed.lines() == 0, "numbers are read as they stand, whatever they are");
    return 0;
}
