#include "host/Arguments.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

std::vector<std::string> split(const std::string& line) {
    std::istringstream in(line);
    std::vector<std::string> words;
    for (std::string word; in >> word;)
        words.push_back(word);
    return words;
}

struct MODE_CASE {
    const char* line;
    const char* host_window;  ///< null: not in the environment
    SAVER_MODE mode;
    std::uint32_t window;
    int status;
};

void PrintTo(const MODE_CASE& c, std::ostream* out) {
    *out << "\"" << c.line << "\" with " << (c.host_window ? c.host_window : "no host window");
}

class Mode : public testing::TestWithParam<MODE_CASE> {};

TEST_P(Mode, IsWhatTheHostMeans) {
    const MODE_CASE& c = GetParam();
    const ARGUMENTS arguments = parseArguments(split(c.line), c.host_window);
    EXPECT_EQ(arguments.mode, c.mode);
    EXPECT_EQ(arguments.window, c.window);
    EXPECT_EQ(arguments.status, c.status);
}

constexpr auto EMBED = SAVER_MODE::EMBED;
constexpr auto ROOT = SAVER_MODE::ROOT;
constexpr auto DEMO = SAVER_MODE::DEMO;
constexpr auto SETUP = SAVER_MODE::SETUP;
constexpr auto REFUSED = SAVER_MODE::REFUSED;

INSTANTIATE_TEST_SUITE_P(
    CommandLines, Mode,
    testing::Values(
        // Ids, in the two notations, with either way to give a value, with one dash and two.
        MODE_CASE{"-window-id 12345", nullptr, EMBED, 12345, 0},
        MODE_CASE{"--window-id 0x400D60", nullptr, EMBED, 0x400D60, 0},
        MODE_CASE{"-window-id=0xfFfFfFfF", nullptr, EMBED, 0xffffffff, 0},
        MODE_CASE{"--window-id=4294967295", nullptr, EMBED, 0xffffffff, 0},
        MODE_CASE{"-window-id 4294967296", nullptr, REFUSED, 0, 1},
        MODE_CASE{"-window-id 0x100000000", nullptr, REFUSED, 0, 1},
        MODE_CASE{"-window-id 99999999999999999999999", nullptr, REFUSED, 0, 1},
        MODE_CASE{"-window-id 123x", nullptr, REFUSED, 0, 1},
        MODE_CASE{"-window-id 0x12g", nullptr, REFUSED, 0, 1},
        MODE_CASE{"-window-id 0x", nullptr, REFUSED, 0, 1},
        MODE_CASE{"-window-id -5", nullptr, REFUSED, 0, 1},
        MODE_CASE{"-window-id +5", nullptr, REFUSED, 0, 1},
        MODE_CASE{"-window-id 0", nullptr, REFUSED, 0, 1},
        MODE_CASE{"-window-id word", nullptr, REFUSED, 0, 1},
        MODE_CASE{"-window-id=", nullptr, REFUSED, 0, 1},
        MODE_CASE{"-window-id", nullptr, REFUSED, 0, 1},
        // Root, and the window that the environment names.
        MODE_CASE{"-root", nullptr, ROOT, 0, 0}, MODE_CASE{"--root", "0x1A", EMBED, 26, 0},
        MODE_CASE{"-root", "26", EMBED, 26, 0}, MODE_CASE{"--root", "wayland-0", REFUSED, 0, 1},
        MODE_CASE{"-root", "", REFUSED, 0, 1}, MODE_CASE{"-root", "0", REFUSED, 0, 1},
        // Nothing at all.
        MODE_CASE{"", nullptr, DEMO, 0, 0}, MODE_CASE{"", "0x1A", EMBED, 26, 0},
        MODE_CASE{"", "none", REFUSED, 0, 1}, MODE_CASE{"-fps", "0x1A", EMBED, 26, 0},
        // Windows of our own.
        MODE_CASE{"-demo", nullptr, DEMO, 0, 0}, MODE_CASE{"--demo", "0x1A", DEMO, 0, 0},
        MODE_CASE{"-window", "0x1A", DEMO, 0, 0}, MODE_CASE{"-window -root", nullptr, DEMO, 0, 0},
        MODE_CASE{"-window -window-id 7", nullptr, EMBED, 7, 0},
        // Precedence: setup, demo, window id, root; a good -window-id beats the environment.
        MODE_CASE{"--root --window-id 0x400D60", nullptr, EMBED, 0x400D60, 0},
        MODE_CASE{"--root --window-id 7", "0x1A", EMBED, 7, 0},
        MODE_CASE{"-window-id 7 -root", "word", EMBED, 7, 0},
        MODE_CASE{"-window-id 7 -demo", nullptr, DEMO, 0, 0},
        MODE_CASE{"-root -window-id 7 -demo -setup", nullptr, SETUP, 0, 0},
        MODE_CASE{"-setup -caption A -icon B -miniicon C", "0x1A", SETUP, 0, 0},
        MODE_CASE{"-setup -help", nullptr, SAVER_MODE::HELP, 0, 0},
        MODE_CASE{"--version -root", nullptr, SAVER_MODE::VERSION, 0, 0},
        // What other savers understand is accepted, with its value where it has one.
        MODE_CASE{"-root -visual default -install -noinstall -mono -nocrashhandler", nullptr, ROOT,
                  0, 0},
        MODE_CASE{"-session a -style b -name c -title -root -window-id 7", nullptr, EMBED, 7, 0},
        // Unknown words end the program only where no host is waiting for a picture.
        MODE_CASE{"-root -sparkle", nullptr, ROOT, 0, 0},
        MODE_CASE{"-window-id 7 sparkle", nullptr, EMBED, 7, 0},
        MODE_CASE{"-sparkle", "0x1A", EMBED, 26, 0},
        MODE_CASE{"-sparkle", nullptr, REFUSED, 0, 254},
        MODE_CASE{"-demo -sparkle", nullptr, REFUSED, 0, 254},
        MODE_CASE{"-setup -sparkle", nullptr, REFUSED, 0, 254},
        MODE_CASE{"-help -sparkle", nullptr, REFUSED, 0, 254},
        MODE_CASE{"-sparkle -window-id x", nullptr, REFUSED, 0, 1},
        MODE_CASE{"---root", nullptr, REFUSED, 0, 254}, MODE_CASE{"-", nullptr, REFUSED, 0, 254},
        MODE_CASE{"--", nullptr, REFUSED, 0, 254}, MODE_CASE{"root", nullptr, REFUSED, 0, 254}));

TEST(Arguments, QuietWhenAllIsWell) {
    EXPECT_THAT(parseArguments(split("-root -visual x -fps"), nullptr).complaints, IsEmpty());
}

TEST(Arguments, OneLineForEachThingWrong) {
    EXPECT_THAT(parseArguments(split("-root -sparkle -glitter"), nullptr).complaints, SizeIs(2));
    EXPECT_THAT(parseArguments({"-window-id"}, nullptr).complaints,
                testing::ElementsAre("-window-id needs a value"));
    EXPECT_THAT(parseArguments({"-window-id", "12 "}, nullptr).complaints,
                testing::ElementsAre("-window-id: \"12 \" is not a window id"));
    EXPECT_THAT(parseArguments({}, "wayland-0").complaints,
                testing::ElementsAre("XSCREENSAVER_WINDOW: \"wayland-0\" is not a window id"));
}

TEST(Arguments, LastFrameRateOptionCounts) {
    EXPECT_FALSE(parseArguments({}, nullptr).fps);
    EXPECT_TRUE(parseArguments({"--fps"}, nullptr).fps);
    EXPECT_FALSE(parseArguments({"-fps", "-no-fps"}, nullptr).fps);
}

TEST(Arguments, DisplayLanguageAndFrameLimit) {
    EXPECT_EQ(parseArguments({}, nullptr).display, "");
    EXPECT_EQ(parseArguments({"-display", ":3.1"}, nullptr).display, ":3.1");
    EXPECT_EQ(parseArguments({"--display=host:1"}, nullptr).display, "host:1");
    EXPECT_EQ(parseArguments({}, nullptr).language, "");
    EXPECT_EQ(parseArguments({"-setup", "-language", "ITA"}, nullptr).language, "ITA");
    EXPECT_EQ(parseArguments({"-setup", "-language", "ITA"}, nullptr).mode, SAVER_MODE::SETUP);
    EXPECT_EQ(parseArguments({}, nullptr).maxfps, 0);
    EXPECT_EQ(parseArguments({"-maxfps", "25"}, nullptr).maxfps, 25);
    EXPECT_EQ(parseArguments({"-maxfps", "30", "-maxfps", "0"}, nullptr).maxfps, 0);
    EXPECT_THAT(parseArguments({"-maxfps", "0"}, nullptr).complaints, IsEmpty());
    for (const char* bad : {"-1", "x", "1001", "25x", "", " 5", "99999999999999999999"}) {
        const ARGUMENTS arguments = parseArguments({"-root", "-maxfps", bad}, nullptr);
        EXPECT_EQ(arguments.maxfps, 0) << bad;
        EXPECT_THAT(arguments.complaints, SizeIs(1)) << bad;
        EXPECT_EQ(arguments.mode, SAVER_MODE::ROOT) << bad;
    }
}

TEST(Arguments, SamplesPerPixel) {
    EXPECT_EQ(parseArguments({}, nullptr).samples, std::nullopt);
    EXPECT_EQ(parseArguments({"-samples", "8"}, nullptr).samples, 8);
    EXPECT_EQ(parseArguments({"--samples=0"}, nullptr).samples, 0);
    for (const char* bad : {"-1", "x", "33", "4x", "", " 4", "99999999999999999999"}) {
        const ARGUMENTS arguments = parseArguments({"-root", "-samples", bad}, nullptr);
        EXPECT_EQ(arguments.samples, std::nullopt) << bad;
        EXPECT_THAT(arguments.complaints, SizeIs(1)) << bad;
        EXPECT_EQ(arguments.mode, SAVER_MODE::ROOT) << bad;
    }
}

TEST(Arguments, ScaleIsAFractionOrLeftToTheRenderer) {
    EXPECT_EQ(parseArguments({}, nullptr).scale, std::nullopt);
    EXPECT_EQ(parseArguments({"-scale", "0.5"}, nullptr).scale, 0.5);
    EXPECT_EQ(parseArguments({"--scale=1"}, nullptr).scale, 1.0);
    EXPECT_EQ(parseArguments({"-scale", "0.4", "-scale", "auto"}, nullptr).scale, std::nullopt);
    for (const char* bad : {"0.39", "1.01", "-1", "half", "0,5", "0.5x", "", "nan", "inf", "1e9"}) {
        const ARGUMENTS arguments = parseArguments({"-root", "-scale", bad}, nullptr);
        EXPECT_EQ(arguments.scale, std::nullopt) << bad;
        EXPECT_EQ(arguments.complaints.size(), 1u) << bad;
        EXPECT_EQ(arguments.mode, SAVER_MODE::ROOT) << bad;
    }
}

TEST(Arguments, SettingsBesideTheSavers) {
    const ARGUMENTS good = parseArguments(
        split("-proportions true -volume 0 --volume=100 -proportions stretched"), nullptr);
    EXPECT_THAT(good.complaints, IsEmpty());
    ASSERT_THAT(good.extras, SizeIs(4));
    EXTRA_SETTINGS settings;
    const int proportions[] = {1, 1, 1, 0}, volumes[] = {100, 0, 100, 100};
    for (int i = 0; i < 4; ++i) {
        settings.*good.extras[i].field = good.extras[i].value;
        EXPECT_EQ(settings.proportions, proportions[i]) << i;
        EXPECT_EQ(settings.volume, volumes[i]) << i;
    }
    for (const char* bad : {"-proportions wide", "-proportions 1", "-volume 101", "-volume -1",
                            "-volume loud", "-volume="}) {
        const ARGUMENTS arguments = parseArguments(split(bad), nullptr);
        EXPECT_THAT(arguments.extras, IsEmpty()) << bad;
        EXPECT_THAT(arguments.complaints, SizeIs(1)) << bad;
        EXPECT_EQ(arguments.mode, SAVER_MODE::DEMO) << bad;
    }
}

TEST(Arguments, TheHourIsNoonTheClocksOrOneThatStays) {
    const auto read = [](const char* text) { return parseArguments(split(text), nullptr); };
    EXPECT_THAT(read("-root").extras, IsEmpty());
    EXTRA_SETTINGS settings;
    for (const char* text : {"-daytime clock", "-daytime noon", "--daytime=18:15"}) {
        const ARGUMENTS arguments = read(text);
        EXPECT_THAT(arguments.complaints, IsEmpty()) << text;
        ASSERT_THAT(arguments.extras, SizeIs(1)) << text;
        settings.*arguments.extras[0].field = arguments.extras[0].value;
        EXPECT_EQ(settings.daytime, std::string(text) == "-daytime noon" ? 0 : 1) << text;
    }
    EXPECT_EQ(read("--daytime=18:15").minute, 18 * 60 + 15);
    EXPECT_EQ(read("-daytime 6:30 -daytime clock").minute, std::nullopt);
    const ARGUMENTS bad = read("-root -daytime later");
    EXPECT_THAT(bad.extras, IsEmpty());
    EXPECT_THAT(bad.complaints, SizeIs(1));
    EXPECT_EQ(bad.mode, SAVER_MODE::ROOT);
}

TEST(Arguments, FullScreenOnRequest) {
    EXPECT_FALSE(parseArguments({"-demo"}, nullptr).fullscreen);
    EXPECT_TRUE(parseArguments({"-fullscreen"}, nullptr).fullscreen);
}

TEST(Arguments, UsageNamesEveryOptionThatDoesSomething) {
    for (const char* option :
         {"-demo", "-root", "-window-id", "-setup", "-language", "-geometry", "-display", "-fps",
          "-no-fps", "-maxfps", "-samples", "-scale", "-daytime", "-help", "-version"})
        EXPECT_THAT(usage(), HasSubstr(option));
}

struct GEOMETRY_CASE {
    const char* text;
    bool good;
    GEOMETRY geometry;
};

void PrintTo(const GEOMETRY_CASE& c, std::ostream* out) { *out << c.text; }

class Geometry : public testing::TestWithParam<GEOMETRY_CASE> {};

TEST_P(Geometry, IsRead) {
    const GEOMETRY_CASE& c = GetParam();
    const auto geometry = parseGeometry(c.text);
    ASSERT_EQ(geometry.has_value(), c.good);
    if (!c.good)
        return;
    EXPECT_EQ(geometry->width, c.geometry.width);
    EXPECT_EQ(geometry->height, c.geometry.height);
    EXPECT_EQ(geometry->placed, c.geometry.placed);
    EXPECT_EQ(geometry->x, c.geometry.x);
    EXPECT_EQ(geometry->y, c.geometry.y);
    EXPECT_EQ(geometry->from_right, c.geometry.from_right);
    EXPECT_EQ(geometry->from_bottom, c.geometry.from_bottom);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, Geometry,
    testing::Values(GEOMETRY_CASE{"640x480", true, {640, 480}},
                    GEOMETRY_CASE{"640X480+10+20", true, {640, 480, true, 10, 20}},
                    GEOMETRY_CASE{"640x480-0+20", true, {640, 480, true, 0, 20, true}},
                    GEOMETRY_CASE{"+5-6", true, {0, 0, true, 5, 6, false, true}},
                    GEOMETRY_CASE{"", false, {}}, GEOMETRY_CASE{"640", false, {}},
                    GEOMETRY_CASE{"640x", false, {}}, GEOMETRY_CASE{"x480", false, {}},
                    GEOMETRY_CASE{"0x480", false, {}}, GEOMETRY_CASE{"640x480+1", false, {}},
                    GEOMETRY_CASE{"640x480+1+2z", false, {}},
                    GEOMETRY_CASE{"640x480 +1+2", false, {}}, GEOMETRY_CASE{"99999x480", false, {}},
                    GEOMETRY_CASE{"32767x32767", false, {}}, GEOMETRY_CASE{"16385x1", false, {}},
                    GEOMETRY_CASE{"16384x16384", false, {}},
                    GEOMETRY_CASE{"16384x4096", true, {16384, 4096}},
                    GEOMETRY_CASE{"640x480+99999999999999999999+0", false, {}}));

TEST(Arguments, BadGeometryIsToldAndLeftOut) {
    const ARGUMENTS arguments = parseArguments({"-geometry", "wide"}, nullptr);
    EXPECT_EQ(arguments.mode, SAVER_MODE::DEMO);
    EXPECT_EQ(arguments.geometry.width, 0);
    EXPECT_THAT(arguments.complaints, SizeIs(1));
}

}  // namespace
