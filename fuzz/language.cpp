#include "framework/LanguagePack.h"
#include "fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::Printed printed;
    LanguagePack pack;
    pack.openFile(fuzz::asFile(data, size));
    pack.setLanguage("GER");
    pack.getString("caption");
    if (!pack.lstrings.empty())
        pack.getString(pack.lstrings.back().name.c_str());
    fuzz::require(printed.lines() == 0, "nothing is printed");
    return 0;
}
