// The texts of one language out of "Language.dat".
#pragma once

#include <cstdio>
#include <string>
#include <vector>

struct LanguageString {
    std::string name;     ///< key
    std::string content;  ///< text, in the encoding of the file
};

/// Reads one section of a text file and hands its texts out by key. Nothing here prints: a missing
/// file, section or key is an empty text.
///
/// The file holds sections, each headed by a language code in square brackets and running to the
/// next "[" or the end of the file. In a section stand entries
///
///     key = { text }
///
/// Blanks and line breaks around key and text do not count. A text may span lines and hold "=",
/// but neither "}" nor "[". There are no comments: what stands between two entries belongs to the
/// key of the second.
class LanguagePack {
public:
    LanguagePack() = default;
    /// Opens the file and parses the section of the language at once.
    LanguagePack(const char* path, const char* language);
    ~LanguagePack();
    LanguagePack(const LanguagePack&) = delete;
    LanguagePack& operator=(const LanguagePack&) = delete;

    /// True when the file could be opened. A file opened earlier stays open and is forgotten.
    bool openFile(const char* path);
    /// The code of the section to read, up to 13 characters; a longer one names no section.
    void setLanguage(const char* code);
    /// Reads what is left of the file and parses the section. Does nothing while file or language
    /// are not set. The file is never rewound, so a section that is not found now is not found
    /// later.
    void initialize();
    /// The text of the first entry with exactly this key, "" if there is none. The first call
    /// parses the file. Valid while the pack lives.
    const char* getString(const char* key);
    /// Removes blanks, tabs and line breaks at both ends.
    void trim(std::string& text);

    bool initialized = false;              ///< the section was found and parsed
    FILE* file = nullptr;                  ///< owned
    char language_str[16] = "";            ///< header of the section: the code in square brackets
    std::vector<LanguageString> lstrings;  ///< entries in file order, repeated keys included
};
