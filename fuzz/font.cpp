#include "fuzz.h"
#include "system/GLText.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::Printed printed;
    GLText text;
    text.initialized = text.createFont(data, size, "font");
    fuzz::require(printed.lines() == (text.initialized ? 0 : 1),
                  "a bad font gets one line, a good one none");
    std::string characters;
    for (int c = 1; c < 256; ++c)
        characters += static_cast<char>(c);
    text.setText(characters.c_str());
    text.render();
    return 0;
}
