#include "framework/LanguagePack.h"
#include "fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::Printed printed;
    LanguagePack pack;
    pack.openFile(fuzz::asFile(data, size));
    pack.setLanguage("GER");
    pack.getString("caption");
    for (const LanguageString& entry : pack.lstrings)
        fuzz::require(pack.getString(entry.name.c_str()) != nullptr, "every key has a text");
    fuzz::require(printed.lines() == 0, "nothing is printed");
    return 0;
}
