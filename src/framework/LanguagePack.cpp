#include "framework/LanguagePack.h"

#include <cstring>

LanguagePack::LanguagePack(const char* path, const char* language) {
    openFile(path);
    setLanguage(language);
    initialize();
}

LanguagePack::~LanguagePack() {
    if (file)
        fclose(file);
}

bool LanguagePack::openFile(const char* path) {
    file = fopen(path, "rb");
    return file != nullptr;
}

void LanguagePack::setLanguage(const char* code) {
    if (strlen(code) + sizeof("[]") <= sizeof(language_str))
        snprintf(language_str, sizeof(language_str), "[%s]", code);
    else
        language_str[0] = '\0';
}

void LanguagePack::initialize() {
    if (!language_str[0] || !file)
        return;

    std::string all;
    char block[511];
    while (size_t size = fread(block, 1, sizeof(block), file))
        all.append(block, size);

    const size_t header = all.find(language_str);
    if (header == std::string::npos)
        return;
    const size_t begin = header + strlen(language_str);
    std::string section = all.substr(begin, all.find('[', begin) - begin);
    trim(section);

    size_t rest = 0;
    for (size_t equals; (equals = section.find('=', rest)) != std::string::npos;) {
        LanguageString entry;
        entry.name = section.substr(rest, equals - rest);
        trim(entry.name);
        rest = equals + 1;
        const size_t open = section.find('{', rest);
        const size_t close = section.find('}', rest);
        // Without a pair of braces this was no entry; the next "=" may begin one.
        if (open == std::string::npos || close == std::string::npos || close < open)
            continue;
        entry.content = section.substr(open + 1, close - open - 1);
        trim(entry.content);
        lstrings.push_back(entry);
        rest = close + 1;
    }
    initialized = true;
}

const char* LanguagePack::getString(const char* key) {
    if (!initialized)
        initialize();
    for (const LanguageString& entry : lstrings) {
        if (entry.name == key)
            return entry.content.c_str();
    }
    return "";
}

void LanguagePack::trim(std::string& text) {
    static const char blanks[] = " \t\n\r";
    text.erase(text.find_last_not_of(blanks) + 1);
    text.erase(0, text.find_first_not_of(blanks));
}
