#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <map>
#include <set>
#include <sstream>

#include "framework/LanguagePack.h"

namespace {

using testing::ElementsAre;

/// A language file of the test's own, gone with it.
class LanguagePackTest : public testing::Test {
protected:
    ~LanguagePackTest() override {
        if (!path.empty())
            remove(path.c_str());
    }

    const char* fileWith(const std::string& text) {
        path = testing::TempDir() + "languageXXXXXX";
        const int descriptor = mkstemp(path.data());
        EXPECT_GE(descriptor, 0);
        FILE* out = fdopen(descriptor, "wb");
        EXPECT_EQ(fwrite(text.data(), 1, text.size(), out), text.size());
        fclose(out);
        return path.c_str();
    }

    std::string path;
};

std::vector<std::string> names(const LanguagePack& pack) {
    std::vector<std::string> result;
    for (const LanguageString& entry : pack.lstrings)
        result.push_back(entry.name);
    return result;
}

TEST_F(LanguagePackTest, StartsEmpty) {
    LanguagePack pack;
    EXPECT_FALSE(pack.initialized);
    EXPECT_EQ(pack.file, nullptr);
    EXPECT_STREQ(pack.language_str, "");
    EXPECT_TRUE(pack.lstrings.empty());
    EXPECT_STREQ(pack.getString("intro"), "");
}

TEST_F(LanguagePackTest, ReadsTheSectionOfItsLanguageOnly) {
    LanguagePack pack(
        fileWith("[ENG] a = {one} b = {two} [GER] a = {eins} c = {drei} [FRA] d = {x}"), "GER");
    EXPECT_TRUE(pack.initialized);
    EXPECT_THAT(names(pack), ElementsAre("a", "c"));
    EXPECT_STREQ(pack.getString("a"), "eins");
    EXPECT_STREQ(pack.getString("c"), "drei");
    EXPECT_STREQ(pack.getString("b"), "");
    EXPECT_STREQ(pack.getString("d"), "");
}

TEST_F(LanguagePackTest, ParsesOnTheFirstQuestionInEitherOrderOfSettingUp) {
    const char* file = fileWith("[GER] a = {eins}");
    LanguagePack open_first, language_first;
    EXPECT_TRUE(open_first.openFile(file));
    open_first.setLanguage("GER");
    language_first.setLanguage("GER");
    EXPECT_TRUE(language_first.openFile(file));
    for (LanguagePack* pack : {&open_first, &language_first}) {
        EXPECT_STREQ(pack->language_str, "[GER]");
        EXPECT_FALSE(pack->initialized);
        EXPECT_STREQ(pack->getString("a"), "eins");
        EXPECT_TRUE(pack->initialized);
        EXPECT_STREQ(pack->getString("a"), "eins");
        EXPECT_EQ(pack->lstrings.size(), 1u) << "parsed twice";
    }
}

TEST_F(LanguagePackTest, SectionWithoutEntriesCountsAsRead) {
    for (const char* text : {"[GER]", "[GER] \n\t", "[GER][ENG] a = {one}", "[GER] just words"}) {
        LanguagePack pack(fileWith(text), "GER");
        EXPECT_TRUE(pack.initialized) << text;
        EXPECT_TRUE(pack.lstrings.empty()) << text;
        EXPECT_STREQ(pack.getString("a"), "") << text;
        EXPECT_STREQ(pack.getString(""), "") << text;
        remove(path.c_str());
    }
}

TEST_F(LanguagePackTest, FindsTheHeaderInsideAnotherText) {
    LanguagePack pack(fileWith("[ENG] a = {see [GER] b = {inner} } [GER] a = {outer}"), "GER");
    EXPECT_STREQ(pack.getString("b"), "inner");
    EXPECT_STREQ(pack.getString("a"), "");
}

TEST_F(LanguagePackTest, DropsBlanksAroundKeyAndText) {
    LanguagePack pack(
        fileWith("[GER]\r\n \t a key \n = junk {\n\t two words \r\n}\r\nb={}c={ \n }"), "GER");
    EXPECT_THAT(names(pack), ElementsAre("a key", "b", "c"));
    EXPECT_STREQ(pack.getString("a key"), "two words");
    EXPECT_STREQ(pack.getString("b"), "");
    EXPECT_STREQ(pack.getString("c"), "");
}

TEST_F(LanguagePackTest, KeyWrittenTwiceYieldsItsFirstText) {
    LanguagePack pack(fileWith("[GER] a = {first} a = {second}"), "GER");
    EXPECT_THAT(names(pack), ElementsAre("a", "a"));
    EXPECT_STREQ(pack.getString("a"), "first");
}

TEST_F(LanguagePackTest, KeysAreCaseSensitiveAndWhole) {
    LanguagePack pack(fileWith("[GER] top = {oben} hyperlink_txt = {Seite} hyperlink = {url}"),
                      "GER");
    EXPECT_STREQ(pack.getString("Top"), "");
    EXPECT_STREQ(pack.getString("to"), "");
    EXPECT_STREQ(pack.getString("hyperlink"), "url");
}

TEST_F(LanguagePackTest, BracketInATextEndsTheSection) {
    LanguagePack pack(fileWith("[GER] a = {one} b = {cut [here} c = {three}"), "GER");
    EXPECT_TRUE(pack.initialized);
    EXPECT_THAT(names(pack), ElementsAre("a"));
    EXPECT_STREQ(pack.getString("b"), "");
    EXPECT_STREQ(pack.getString("c"), "");
}

TEST_F(LanguagePackTest, TextSpansLinesAndHoldsEqualsAndOpeningBraces) {
    LanguagePack pack(fileWith("[GER] a = { x = 1\n{y = 2 } b = {z}"), "GER");
    EXPECT_STREQ(pack.getString("a"), "x = 1\n{y = 2");
    EXPECT_STREQ(pack.getString("b"), "z");
}

TEST_F(LanguagePackTest, WhatStandsBetweenEntriesBelongsToTheNextKey) {
    LanguagePack pack(fileWith("[GER] a = {one} # note\nb = {two}"), "GER");
    EXPECT_THAT(names(pack), ElementsAre("a", "# note\nb"));
    EXPECT_STREQ(pack.getString("b"), "");
}

TEST_F(LanguagePackTest, EntryWithoutBracesIsPassedOver) {
    LanguagePack open(fileWith("[GER] a = {one} b = {never closed"), "GER");
    EXPECT_TRUE(open.initialized);
    EXPECT_THAT(names(open), ElementsAre("a"));
    remove(path.c_str());

    LanguagePack plain(fileWith("[GER] a = one b = two"), "GER");
    EXPECT_TRUE(plain.initialized);
    EXPECT_TRUE(plain.lstrings.empty());
    remove(path.c_str());

    // The text of the second entry is the first pair of braces after the first "=".
    LanguagePack joined(fileWith("[GER] a = b = {two}"), "GER");
    EXPECT_THAT(names(joined), ElementsAre("a"));
    EXPECT_STREQ(joined.getString("a"), "two");
    remove(path.c_str());

    LanguagePack reversed(fileWith("[GER] a = } { b = {two}"), "GER");
    EXPECT_THAT(names(reversed), ElementsAre("} { b"));
}

TEST_F(LanguagePackTest, ReadsFilesOfAnyLength) {
    for (size_t size : {510u, 511u, 512u, 1021u, 1022u, 1023u, 100000u}) {
        const std::string text(size, 'x');
        LanguagePack pack(fileWith("[GER] long = {" + text + "} last = {end}"), "GER");
        EXPECT_EQ(pack.getString("long"), text);
        EXPECT_STREQ(pack.getString("last"), "end");
        remove(path.c_str());
    }
}

TEST_F(LanguagePackTest, MissingFileOrSectionIsSilent) {
    testing::internal::CaptureStdout();
    LanguagePack missing;
    EXPECT_FALSE(missing.openFile((testing::TempDir() + "no such file").c_str()));
    missing.setLanguage("GER");
    EXPECT_STREQ(missing.getString("a"), "");
    EXPECT_FALSE(missing.initialized);

    LanguagePack folder(testing::TempDir().c_str(), "GER");
    EXPECT_STREQ(folder.getString("a"), "");

    LanguagePack empty(fileWith(""), "GER");
    EXPECT_STREQ(empty.getString("a"), "");
    remove(path.c_str());

    LanguagePack other(fileWith("[ENG] a = {one}"), "GER");
    EXPECT_STREQ(other.getString("a"), "");
    EXPECT_FALSE(other.initialized);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST_F(LanguagePackTest, FileIsReadOnce) {
    LanguagePack pack(fileWith("[ENG] a = {one}"), "GER");
    EXPECT_FALSE(pack.initialized);
    pack.setLanguage("ENG");
    EXPECT_STREQ(pack.getString("a"), "") << "the file was rewound";
    EXPECT_FALSE(pack.initialized);
}

TEST_F(LanguagePackTest, FileOpenedEarlierStaysOpen) {
    const char* name = fileWith("[GER] a = {one}");
    LanguagePack pack;
    ASSERT_TRUE(pack.openFile(name));
    FILE* first = pack.file;
    ASSERT_TRUE(pack.openFile(name));
    EXPECT_NE(pack.file, first);
    EXPECT_EQ(fgetc(first), '[');
    fclose(first);
}

TEST_F(LanguagePackTest, LanguageCodeThatDoesNotFitNamesNoSection) {
    LanguagePack pack(fileWith("[ABCDEFGHIJKLM] a = {13} [ABCDEFGHIJKLMN] a = {14}"),
                      "ABCDEFGHIJKLMN");
    EXPECT_STREQ(pack.language_str, "");
    EXPECT_STREQ(pack.getString("a"), "");
    pack.setLanguage("ABCDEFGHIJKLM");
    EXPECT_STREQ(pack.language_str, "[ABCDEFGHIJKLM]");
    EXPECT_STREQ(pack.getString("a"), "13");
    pack.setLanguage("ABCDEFGHIJKLMN");
    EXPECT_STREQ(pack.language_str, "");
}

TEST_F(LanguagePackTest, TrimsBothEnds) {
    LanguagePack pack;
    for (auto [text, trimmed] :
         std::vector<std::pair<std::string, std::string>>{{"", ""},
                                                          {" \t\n\r", ""},
                                                          {"a", "a"},
                                                          {"\n a b\t", "a b"},
                                                          {"a ", "a"},
                                                          {" a", "a"},
                                                          {"\va\f", "\va\f"}}) {
        pack.trim(text);
        EXPECT_EQ(text, trimmed);
    }
}

// What the setup dialog shows.

/// What the dialog's pages cannot do without; other pages and the later one have more.
constexpr const char* dialog_keys[] = {
    "intro",    "boid",        "fish",         "birds",           "sky",           "camera",
    "sound",    "caption",     "cancel",       "infotxt",         "hyperlink_txt", "hyperlink",
    "boidtype", "boidcount",   "fishtype",     "fishcount",       "birdtype",      "skytext",
    "cloudy",   "cloudless",   "cameratext",   "automatic",       "top",           "middle",
    "bottom",   "scrollspeed", "resttime_top", "resttime_bottom", "soundtext",     "on_off"};

const std::string language_file = SOURCE_DIR "data/Language.dat";

class TranslationTest : public testing::TestWithParam<const char*> {};
INSTANTIATE_TEST_SUITE_P(Languages, TranslationTest,
                         testing::Values("GER", "ENG", "FRA", "ESP", "ITA"),
                         [](const auto& info) { return std::string(info.param); });

TEST_P(TranslationTest, HasEveryKeyOnceAndTheSameAsTheOthers) {
    LanguagePack pack(language_file.c_str(), GetParam());
    LanguagePack german(language_file.c_str(), "GER");
    ASSERT_TRUE(pack.initialized && german.initialized);
    EXPECT_EQ(names(pack), names(german));
    const auto keys = names(pack);
    EXPECT_EQ(std::set<std::string>(keys.begin(), keys.end()).size(), keys.size());
    for (const char* key : dialog_keys)
        EXPECT_THAT(keys, testing::Contains(key));
    for (const auto& key : keys)
        EXPECT_STRNE(pack.getString(key.c_str()), "") << key;
}

TEST_P(TranslationTest, NoTextIsCut) {
    std::ifstream in(language_file);
    std::stringstream all;
    all << in.rdbuf();
    const std::string text = all.str();
    const std::string header = "[" + std::string(GetParam()) + "]";
    const size_t begin = text.find(header);
    ASSERT_NE(begin, std::string::npos);
    EXPECT_EQ(text.find(header, begin + 1), std::string::npos) << "a second section";

    // A stray bracket or brace would leave a line that is neither header nor the start, inside or
    // end of an entry: as many of each as there are entries and sections.
    const size_t next = text.find("\n[", begin);
    const std::string section = text.substr(begin, next == std::string::npos ? next : next - begin);
    EXPECT_EQ(std::count(section.begin(), section.end(), '['), 1);
    EXPECT_EQ(std::count(section.begin(), section.end(), ']'), 1);
    LanguagePack pack(language_file.c_str(), GetParam());
    ASSERT_TRUE(pack.initialized);
    const auto entries = static_cast<std::ptrdiff_t>(pack.lstrings.size());
    EXPECT_EQ(std::count(section.begin(), section.end(), '{'), entries);
    EXPECT_EQ(std::count(section.begin(), section.end(), '}'), entries);
}

/// Number of characters; -1 when the text is not UTF-8.
int utf8Length(const std::string& text) {
    int length = 0;
    for (size_t i = 0; i < text.size(); ++length) {
        const unsigned char lead = text[i++];
        const int more = lead < 0x80   ? 0
                         : lead < 0xc2 ? -1
                         : lead < 0xe0 ? 1
                         : lead < 0xf0 ? 2
                                       : -1;
        if (more < 0)
            return -1;
        for (int k = 0; k < more; ++k, ++i) {
            if (i >= text.size() || (text[i] & 0xc0) != 0x80)
                return -1;
        }
    }
    return length;
}

TEST_P(TranslationTest, IsUtf8AndFitsTheDialog) {
    LanguagePack pack(language_file.c_str(), GetParam());
    for (const LanguageString& entry : pack.lstrings) {
        const int length = utf8Length(entry.content);
        EXPECT_GT(length, 0) << entry.name << ": " << entry.content;
        EXPECT_EQ(entry.content.find('?'), std::string::npos) << entry.name;
        if (entry.name == "infotxt") {
            EXPECT_GT(length, 150);
            EXPECT_LT(length, 400);
        } else {
            EXPECT_LE(length, 46) << entry.name << ": " << entry.content;
        }
    }
    for (const char* page : {"intro", "boid", "fish", "birds", "sky", "camera", "sound", "extras"})
        EXPECT_LE(utf8Length(pack.getString(page)), 17) << page;
}

TEST_P(TranslationTest, NoTwoChoicesReadTheSame) {
    LanguagePack pack(language_file.c_str(), GetParam());
    for (const auto& group : std::vector<std::vector<const char*>>{
             {"intro", "boid", "fish", "birds", "sky", "camera", "sound", "extras"},
             {"noon", "clock"},
             {"automatic", "top", "middle", "bottom"},
             {"cloudy", "cloudless"},
             {"scrollspeed", "resttime_top", "resttime_bottom"}}) {
        std::map<std::string, int> seen;
        for (const char* key : group)
            EXPECT_EQ(seen[pack.getString(key)]++, 0) << key;
    }
}

TEST(Translations, LinkIsAnAddress) {
    for (const char* language : {"GER", "ENG", "FRA", "ESP", "ITA"}) {
        LanguagePack pack(language_file.c_str(), language);
        EXPECT_THAT(pack.getString("hyperlink"), testing::StartsWith("https://"));
    }
}

TEST(Translations, DifferFromEachOther) {
    std::map<std::string, int> seen;
    for (const char* language : {"GER", "ENG", "FRA", "ESP", "ITA"}) {
        LanguagePack pack(language_file.c_str(), language);
        EXPECT_EQ(seen[pack.getString("infotxt")]++, 0) << language;
        EXPECT_EQ(seen[pack.getString("cancel")]++, 0) << language;
    }
}

TEST(Translations, AccentsAreRight) {
    EXPECT_STREQ(LanguagePack(language_file.c_str(), "GER").getString("birds"), "Vögel");
    EXPECT_STREQ(LanguagePack(language_file.c_str(), "FRA").getString("camera"), "Caméra");
    EXPECT_STREQ(LanguagePack(language_file.c_str(), "ESP").getString("camera"), "Cámara");
    EXPECT_THAT(LanguagePack(language_file.c_str(), "ITA").getString("scrollspeed"),
                testing::HasSubstr("Velocità"));
}

}  // namespace
