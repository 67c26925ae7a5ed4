// What the controls of the settings dialog do to the settings file, and the file to the controls.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <KConfig>
#include <KConfigGroup>
#include <KUrlLabel>
#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QDesktopServices>
#include <QDir>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QMetaMethod>
#include <QMouseEvent>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QSlider>
#include <map>
#include <ostream>
#include <set>

#include "Marivista.h"
#include "dialog.h"
#include "framework/LanguagePack.h"

using test::ConfigFolder;
using test::Dialog;
using testing::ElementsAre;

namespace {

using Entries = std::map<std::string, std::string>;

/// What a new settings file holds when nothing was changed.
const Entries defaults = {
    {"BoidModel", "0"},        {"BoidCount", "10"},     {"FishRed", "true"},
    {"FishBlue", "true"},      {"FishStripe", "true"},  {"FishYellBlu", "true"},
    {"FishDot", "true"},       {"FishBigGrey", "true"}, {"FishBigRed", "true"},
    {"FishManta", "true"},     {"FishCount", "10"},     {"BirdGull", "true"},
    {"CameraPos", "0"},        {"CameraSpeed", "4"},    {"CameraFixTop", "30"},
    {"CameraFixBottom", "30"}, {"SkyType", "0"},        {"SoundOn", "true"},
};

Entries with(Entries entries, const std::string& key, const std::string& value) {
    entries[key] = value;
    return entries;
}

/// The lines of a settings file; every line must be a key of the default group.
Entries parse(const QByteArray& text) {
    Entries entries;
    for (const QByteArray& line : text.split('\n')) {
        if (line.isEmpty())
            continue;
        const int equals = line.indexOf('=');
        EXPECT_GT(equals, 0) << "no entry: " << line.toStdString();
        const std::string key = line.left(equals).toStdString();
        EXPECT_EQ(entries.count(key), 0u) << key << " stands there twice";
        entries[key] = line.mid(equals + 1).toStdString();
    }
    return entries;
}

void pressKey(QWidget* widget, Qt::Key key, int times = 1) {
    widget->setFocus();
    for (int i = 0; i < times; ++i)
        QTest::keyClick(widget, key);
}

/// Clicks into the left part of a button, where its box or its picture is.
void click(QAbstractButton* button) {
    ASSERT_TRUE(button->isVisible());
    QTest::mouseClick(button, Qt::LeftButton, Qt::NoModifier, QPoint(8, button->height() / 2));
}

void pick(QListWidget* list, int row) {
    QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier,
                      list->visualItemRect(list->item(row)).center());
}

enum PAGE { INTRO, BOID, FISH, BIRDS, SKY, CAMERA, SOUND, EXTRAS, PAGES };

class SetupTest : public testing::Test {
protected:
    ConfigFolder folder;
};

}  // namespace

// From a control to its key.

struct CONTROL {
    const char* name;
    PAGE page;
    void (*use)(Dialog&);
    const char* key;
    const char* value;
};

void PrintTo(const CONTROL& control, std::ostream* out) { *out << control.name; }

class SetupControl : public SetupTest, public testing::WithParamInterface<CONTROL> {};

TEST_P(SetupControl, ChangesItsKeyOnly) {
    const CONTROL& control = GetParam();
    Dialog dialog;
    dialog.open();
    pick(dialog.sellist, control.page);
    control.use(dialog);
    click(dialog.okbutton);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(parse(folder.read()), with(defaults, control.key, control.value));
}

TEST_P(SetupControl, IsForgottenOnCancel) {
    const CONTROL& control = GetParam();
    Dialog dialog;
    dialog.open();
    pick(dialog.sellist, control.page);
    control.use(dialog);
    click(dialog.cancelbutton);
    EXPECT_EQ(dialog.result(), QDialog::Rejected);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_FALSE(QFile::exists(folder.file()));
}

INSTANTIATE_TEST_SUITE_P(
    Every, SetupControl,
    testing::Values(
        CONTROL{"boidtype_radio2", BOID, [](Dialog& d) { click(d.boidtype_radio2); }, "BoidModel",
                "1"},
        CONTROL{"boidtype_radio1", BOID,
                [](Dialog& d) {
                    click(d.boidtype_radio2);
                    click(d.boidtype_radio1);
                },
                "BoidModel", "0"},
        CONTROL{"boidcount_slider", BOID,
                [](Dialog& d) { pressKey(d.boidcount_slider, Qt::Key_Right); }, "BoidCount", "15"},
        CONTROL{"boidcount_slider_page", BOID,
                [](Dialog& d) { pressKey(d.boidcount_slider, Qt::Key_PageUp, 2); }, "BoidCount",
                "20"},
        CONTROL{"boidcount_slider_none", BOID,
                [](Dialog& d) { pressKey(d.boidcount_slider, Qt::Key_Home); }, "BoidCount", "0"},
        CONTROL{"fishspecies1", FISH, [](Dialog& d) { click(d.fishspecies1); }, "FishRed", "false"},
        CONTROL{"fishspecies2", FISH, [](Dialog& d) { click(d.fishspecies2); }, "FishBlue",
                "false"},
        CONTROL{"fishspecies3", FISH, [](Dialog& d) { click(d.fishspecies3); }, "FishStripe",
                "false"},
        CONTROL{"fishspecies4", FISH, [](Dialog& d) { click(d.fishspecies4); }, "FishDot", "false"},
        CONTROL{"fishspecies5", FISH, [](Dialog& d) { click(d.fishspecies5); }, "FishYellBlu",
                "false"},
        CONTROL{"fishspecies6", FISH, [](Dialog& d) { click(d.fishspecies6); }, "FishBigGrey",
                "false"},
        CONTROL{"fishspecies7", FISH, [](Dialog& d) { click(d.fishspecies7); }, "FishBigRed",
                "false"},
        CONTROL{"fishspecies8", FISH, [](Dialog& d) { click(d.fishspecies8); }, "FishManta",
                "false"},
        CONTROL{"fishspecies4_twice", FISH,
                [](Dialog& d) {
                    click(d.fishspecies4);
                    pressKey(d.fishspecies4, Qt::Key_Space);
                },
                "FishDot", "true"},
        CONTROL{"fishcount_slider", FISH,
                [](Dialog& d) { pressKey(d.fishcount_slider, Qt::Key_Left, 3); }, "FishCount", "7"},
        CONTROL{"birdspecies1", BIRDS, [](Dialog& d) { click(d.birdspecies1); }, "BirdGull",
                "false"},
        CONTROL{"sky_radio2", SKY, [](Dialog& d) { click(d.sky_radio2); }, "SkyType", "1"},
        CONTROL{"sky_radio2_by_key", SKY, [](Dialog& d) { pressKey(d.sky_radio1, Qt::Key_Down); },
                "SkyType", "1"},
        CONTROL{"camerapos_combo", CAMERA,
                [](Dialog& d) { pressKey(d.camerapos_combo, Qt::Key_Down, 2); }, "CameraPos", "2"},
        CONTROL{"camerapos_combo_last", CAMERA,
                [](Dialog& d) { pressKey(d.camerapos_combo, Qt::Key_End); }, "CameraPos", "3"},
        CONTROL{"scrollspeed_slider", CAMERA,
                [](Dialog& d) { pressKey(d.scrollspeed_slider, Qt::Key_End); }, "CameraSpeed", "9"},
        CONTROL{"resttop_slider", CAMERA,
                [](Dialog& d) { pressKey(d.resttop_slider, Qt::Key_Home); }, "CameraFixTop", "1"},
        CONTROL{"restbottom_slider", CAMERA,
                [](Dialog& d) { pressKey(d.restbottom_slider, Qt::Key_Home); }, "CameraFixBottom",
                "5"},
        CONTROL{"restbottom_slider_page", CAMERA,
                [](Dialog& d) { pressKey(d.restbottom_slider, Qt::Key_PageUp); }, "CameraFixBottom",
                "31"},
        CONTROL{"usesound", SOUND, [](Dialog& d) { click(d.usesound); }, "SoundOn", "false"},
        CONTROL{"daytime_radio2", EXTRAS, [](Dialog& d) { click(d.daytime_radio2); }, "DayTime",
                "1"},
        CONTROL{"volume_slider", EXTRAS,
                [](Dialog& d) { pressKey(d.volume_slider, Qt::Key_Left, 30); }, "Volume", "70"},
        CONTROL{"trueproportions", EXTRAS, [](Dialog& d) { click(d.trueproportions); },
                "Proportions", "1"}),
    [](const auto& info) { return std::string(info.param.name); });

// From a key to its control.

struct STORED {
    const char* name;
    const char* line;
    std::string (*shown)(const Dialog&);
    const char* expected;
};

void PrintTo(const STORED& stored, std::ostream* out) { *out << stored.line; }

namespace {

std::string state(const QAbstractButton* button) { return button->isChecked() ? "on" : "off"; }

std::string states(const QAbstractButton* first, const QAbstractButton* second) {
    return state(first) + " " + state(second);
}

std::string state(const QSlider* slider) { return std::to_string(slider->value()); }

std::string state(const QSlider* slider, const QLabel* label) {
    return state(slider) + " " + label->text().toStdString();
}

}  // namespace

class SetupKey : public SetupTest, public testing::WithParamInterface<STORED> {};

TEST_P(SetupKey, IsShownByItsControl) {
    folder.write(QByteArray(GetParam().line) + "\n");
    const Dialog dialog;
    EXPECT_EQ(GetParam().shown(dialog), GetParam().expected);
}

// OK without touching anything leaves the person's file as it is, and adds what was missing.
TEST_P(SetupKey, IsWrittenBackAsRead) {
    const std::string line = GetParam().line;
    folder.write(QByteArray::fromStdString(line) + "\n");
    Dialog dialog;
    dialog.open();
    click(dialog.okbutton);
    const size_t equals = line.find('=');
    EXPECT_EQ(parse(folder.read()),
              with(defaults, line.substr(0, equals), line.substr(equals + 1)));
}

#define CHECKED(box) [](const Dialog& d) { return state(d.box); }
#define BOIDTYPE [](const Dialog& d) { return states(d.boidtype_radio1, d.boidtype_radio2); }
#define BOIDCOUNT [](const Dialog& d) { return state(d.boidcount_slider, d.boidcount_edit); }
#define FISHCOUNT [](const Dialog& d) { return state(d.fishcount_slider, d.fishcount_edit); }
#define SKYTYPE [](const Dialog& d) { return states(d.sky_radio1, d.sky_radio2); }
#define DAYTIME [](const Dialog& d) { return states(d.daytime_radio1, d.daytime_radio2); }
#define SLIDER(slider) [](const Dialog& d) { return state(d.slider); }

INSTANTIATE_TEST_SUITE_P(
    Every, SetupKey,
    testing::Values(STORED{"BoidModel0", "BoidModel=0", BOIDTYPE, "on off"},
                    STORED{"BoidModel1", "BoidModel=1", BOIDTYPE, "off on"},
                    STORED{"BoidCount0", "BoidCount=0", BOIDCOUNT, "0 0"},
                    STORED{"BoidCount5", "BoidCount=5", BOIDCOUNT, "1 5"},
                    STORED{"BoidCount20", "BoidCount=20", BOIDCOUNT, "4 20"},
                    STORED{"FishRed", "FishRed=false", CHECKED(fishspecies1), "off"},
                    STORED{"FishBlue", "FishBlue=false", CHECKED(fishspecies2), "off"},
                    STORED{"FishStripe", "FishStripe=false", CHECKED(fishspecies3), "off"},
                    STORED{"FishDot", "FishDot=false", CHECKED(fishspecies4), "off"},
                    STORED{"FishYellBlu", "FishYellBlu=false", CHECKED(fishspecies5), "off"},
                    STORED{"FishBigGrey", "FishBigGrey=false", CHECKED(fishspecies6), "off"},
                    STORED{"FishBigRed", "FishBigRed=false", CHECKED(fishspecies7), "off"},
                    STORED{"FishManta", "FishManta=false", CHECKED(fishspecies8), "off"},
                    STORED{"FishMantaOn", "FishManta=true", CHECKED(fishspecies8), "on"},
                    STORED{"FishCount0", "FishCount=0", FISHCOUNT, "0 0"},
                    STORED{"FishCount7", "FishCount=7", FISHCOUNT, "7 7"},
                    STORED{"BirdGull", "BirdGull=false", CHECKED(birdspecies1), "off"},
                    STORED{"SkyType0", "SkyType=0", SKYTYPE, "on off"},
                    STORED{"SkyType1", "SkyType=1", SKYTYPE, "off on"},
                    STORED{"CameraSpeed1", "CameraSpeed=1", SLIDER(scrollspeed_slider), "1"},
                    STORED{"CameraSpeed9", "CameraSpeed=9", SLIDER(scrollspeed_slider), "9"},
                    STORED{"CameraFixTop", "CameraFixTop=60", SLIDER(resttop_slider), "60"},
                    STORED{"CameraFixBottom", "CameraFixBottom=5", SLIDER(restbottom_slider), "5"},
                    STORED{"SoundOn", "SoundOn=false", CHECKED(usesound), "off"},
                    STORED{"DayTime0", "DayTime=0", DAYTIME, "on off"},
                    STORED{"DayTime1", "DayTime=1", DAYTIME, "off on"},
                    STORED{"Volume", "Volume=35", SLIDER(volume_slider), "35"},
                    STORED{"VolumeUsual", "Volume=100", SLIDER(volume_slider), "100"},
                    STORED{"Proportions", "Proportions=1", CHECKED(trueproportions), "on"},
                    STORED{"Latitude", "Latitude=-34", CHECKED(trueproportions), "off"}),
    [](const auto& info) { return std::string(info.param.name); });

// Values that the controls do not have show as the nearest one.
INSTANTIATE_TEST_SUITE_P(
    OutOfRange, SetupKey,
    testing::Values(STORED{"BoidModel2", "BoidModel=2", BOIDTYPE, "off off"},
                    STORED{"BoidModelNegative", "BoidModel=-1", BOIDTYPE, "off off"},
                    STORED{"FishCount11", "FishCount=11", FISHCOUNT, "10 11"},
                    STORED{"FishCountHuge", "FishCount=2147483647", FISHCOUNT, "10 2147483647"},
                    STORED{"FishCountNegative", "FishCount=-3", FISHCOUNT, "0 -3"},
                    STORED{"SkyType7", "SkyType=7", SKYTYPE, "off off"}),
    [](const auto& info) { return std::string(info.param.name); });

// Camera speed and rests are saved as they are shown.

struct CLAMPED {
    const char* name;
    const char* key;
    const char* stored;
    std::string (*shown)(const Dialog&);
    const char* expected;
};

void PrintTo(const CLAMPED& clamped, std::ostream* out) { *out << clamped.name; }

class SetupCameraValue : public SetupTest, public testing::WithParamInterface<CLAMPED> {};

TEST_P(SetupCameraValue, IsBroughtIntoRangeAndSaved) {
    const CLAMPED& clamped = GetParam();
    folder.write(QByteArray(clamped.key) + "=" + clamped.stored + "\n");
    Dialog dialog;
    dialog.open();
    EXPECT_EQ(clamped.shown(dialog), clamped.expected);
    click(dialog.okbutton);
    EXPECT_EQ(parse(folder.read()), with(defaults, clamped.key, clamped.expected));
}

INSTANTIATE_TEST_SUITE_P(
    OutOfRange, SetupCameraValue,
    testing::Values(
        CLAMPED{"CameraSpeed0", "CameraSpeed", "0", SLIDER(scrollspeed_slider), "1"},
        CLAMPED{"CameraSpeed20", "CameraSpeed", "20", SLIDER(scrollspeed_slider), "9"},
        CLAMPED{"CameraFixTop0", "CameraFixTop", "0", SLIDER(resttop_slider), "1"},
        CLAMPED{"CameraFixTop3600", "CameraFixTop", "3600", SLIDER(resttop_slider), "60"},
        CLAMPED{"CameraFixBottom1", "CameraFixBottom", "1", SLIDER(restbottom_slider), "5"},
        CLAMPED{"CameraFixBottom61", "CameraFixBottom", "61", SLIDER(restbottom_slider), "60"},
        CLAMPED{"Volume101", "Volume", "101", SLIDER(volume_slider), "100"}),
    [](const auto& info) { return std::string(info.param.name); });

struct SCHOOL {
    const char* stored;
    const char* shown;
    const char* saved;
};

void PrintTo(const SCHOOL& school, std::ostream* out) { *out << school.stored; }

class SetupSchool : public SetupTest, public testing::WithParamInterface<SCHOOL> {};

TEST_P(SetupSchool, IsRoundedDownToAStepOfTheSlider) {
    folder.write(QByteArray("BoidCount=") + GetParam().stored + "\n");
    Dialog dialog;
    dialog.open();
    EXPECT_EQ(dialog.boidcount_edit->text(), GetParam().shown);
    click(dialog.okbutton);
    EXPECT_EQ(parse(folder.read()), with(defaults, "BoidCount", GetParam().saved));
}

INSTANTIATE_TEST_SUITE_P(Sizes, SetupSchool,
                         testing::Values(SCHOOL{"13", "10", "10"}, SCHOOL{"4", "0", "0"},
                                         SCHOOL{"19", "15", "15"}, SCHOOL{"24", "20", "20"},
                                         SCHOOL{"1000", "20", "20"}, SCHOOL{"-30", "0", "0"},
                                         SCHOOL{"-2147483648", "0", "0"}));

// A value is given up only when its own control is used.
TEST_F(SetupTest, UsingAControlReplacesAValueOutOfRange) {
    folder.write("SkyType=7\nBoidModel=3\nFishCount=50\n");
    Dialog dialog;
    dialog.open();
    pick(dialog.sellist, SKY);
    click(dialog.sky_radio2);
    pick(dialog.sellist, FISH);
    pressKey(dialog.fishcount_slider, Qt::Key_Left);
    click(dialog.okbutton);
    Entries expected = with(defaults, "SkyType", "1");
    expected["BoidModel"] = "3";
    expected["FishCount"] = "9";
    EXPECT_EQ(parse(folder.read()), expected);
}

TEST_F(SetupTest, MissingFileShowsTheDefaults) {
    const Dialog dialog;
    EXPECT_EQ(state(dialog.boidcount_slider, dialog.boidcount_edit), "2 10");
    EXPECT_EQ(states(dialog.boidtype_radio1, dialog.boidtype_radio2), "on off");
    for (const QCheckBox* box : dialog.findChildren<QCheckBox*>())
        EXPECT_EQ(box->isChecked(), box != dialog.trueproportions)
            << box->objectName().toStdString();
    EXPECT_EQ(state(dialog.fishcount_slider, dialog.fishcount_edit), "10 10");
    EXPECT_EQ(states(dialog.sky_radio1, dialog.sky_radio2), "on off");
    EXPECT_EQ(dialog.camerapos_combo->currentIndex(), 0);
    EXPECT_EQ(dialog.scrollspeed_slider->value(), 4);
    EXPECT_EQ(dialog.resttop_slider->value(), 30);
    EXPECT_EQ(dialog.restbottom_slider->value(), 30);
}

TEST_F(SetupTest, ReadingAgainForgetsWhatWasNotSaved) {
    folder.write("BoidCount=5\n");
    Dialog dialog;
    dialog.settings.boidcount = 15;
    dialog.settings.fishcount = 3;
    dialog.settings.fish_dot = false;
    dialog.readConfig();
    EXPECT_EQ(dialog.settings.boidcount, 5);
    EXPECT_EQ(dialog.settings.fishcount, 10);
    EXPECT_TRUE(dialog.settings.fish_dot);
}

TEST_F(SetupTest, StartingAgainShowsEverythingOnce) {
    Dialog dialog;
    dialog.open();
    dialog.changePage(SKY);
    folder.write("FishCount=7\n");
    dialog.init();
    EXPECT_EQ(dialog.pages.size(), size_t(PAGES));
    EXPECT_EQ(dialog.sellist->count(), PAGES);
    EXPECT_EQ(dialog.sellist->currentRow(), 0);
    EXPECT_EQ(dialog.camerapos_combo->count(), 4);
    EXPECT_EQ(dialog.fishcount_slider->value(), 7);
    EXPECT_TRUE(dialog.page_intro->isVisible());
    EXPECT_FALSE(dialog.page_sky->isVisible());
    EXPECT_EQ(dialog.windowTitle(), "Atollia einrichten");
}

TEST_F(SetupTest, NonsenseInTheFileShowsSomethingAndDoesNotCrash) {
    folder.write("BoidCount=many\nFishCount=99999999999999\nSkyType=\nFishRed=perhaps\n\0\xff[");
    Dialog dialog;
    dialog.open();
    EXPECT_GE(dialog.boidcount_slider->value(), 0);
    EXPECT_FALSE(dialog.fishcount_edit->text().isEmpty());
}

// A file may hold more than this version knows.
TEST_F(SetupTest, ForeignEntriesSurvive) {
    folder.write("Mystery=1\n\n[Other]\nThing=2\n");
    Dialog dialog;
    dialog.open();
    click(dialog.okbutton);
    const QByteArray text = folder.read();
    EXPECT_TRUE(text.contains("Mystery=1\n"));
    EXPECT_TRUE(text.contains("[Other]\nThing=2\n"));
    EXPECT_TRUE(text.contains("BoidCount=10\n"));
}

namespace {

/// What the real scene makes of the settings file.
SaverSettings readByTheSaver() {
    CMarivistaScreensaver scene;
    scene.readSettings();
    return scene.wantedwssettings;
}

void expectEqual(const SaverSettings& a, const SaverSettings& b) {
    for (const SETTING& setting : settings_read) {
        if (setting.number)
            EXPECT_EQ(a.*setting.number, b.*setting.number) << setting.key;
        else
            EXPECT_EQ(a.*setting.flag, b.*setting.flag) << setting.key;
    }
}

}  // namespace

// What an administrator has set for everyone.
TEST_F(SetupTest, SettingsForEveryoneCountAndAreNotCopied) {
    const QTemporaryDir everyone;
    QFile shared(everyone.filePath("Orvo Atollia"));
    ASSERT_TRUE(shared.open(QIODevice::WriteOnly));
    shared.write("SkyType=1\nFishCount=4\nSoundOn=false\n");
    shared.close();
    const QByteArray before = qgetenv("XDG_CONFIG_DIRS");
    qputenv("XDG_CONFIG_DIRS", everyone.path().toLocal8Bit());
    folder.write("SoundOn=false\n");
    {
        Dialog dialog;
        dialog.open();
        EXPECT_TRUE(dialog.sky_radio2->isChecked());
        EXPECT_EQ(dialog.fishcount_slider->value(), 4);
        EXPECT_FALSE(dialog.usesound->isChecked());
        expectEqual(readByTheSaver(), dialog.settings);
        pick(dialog.sellist, FISH);
        pressKey(dialog.fishcount_slider, Qt::Key_Left);
        click(dialog.okbutton);
    }
    Entries expected = with(defaults, "FishCount", "3");
    expected.erase("SkyType");
    expected["SoundOn"] = "false";
    EXPECT_EQ(parse(folder.read()), expected) << "the sky stays the administrator's";
    // Wanting the usual again where the administrator wants something else is a wish, too.
    {
        Dialog dialog;
        dialog.open();
        pick(dialog.sellist, SKY);
        click(dialog.sky_radio1);
        click(dialog.okbutton);
    }
    EXPECT_EQ(parse(folder.read())["SkyType"], "0");
    qputenv("XDG_CONFIG_DIRS", before);
}

// The desktop's own settings are none of ours.
TEST_F(SetupTest, DesktopGlobalsDoNotCount) {
    QFile globals(QDir(folder.path()).filePath("kdeglobals"));
    ASSERT_TRUE(globals.open(QIODevice::WriteOnly));
    globals.write("SkyType=1\n");
    globals.close();
    EXPECT_EQ(Dialog().settings.skytype, 0);
}

TEST_F(SetupTest, AllSpeciesMayBeOff) {
    Dialog dialog;
    dialog.open();
    pick(dialog.sellist, FISH);
    for (QCheckBox* box : dialog.fishspecies_txt->findChildren<QCheckBox*>())
        click(box);
    click(dialog.okbutton);
    Entries expected = defaults;
    for (const char* key : {"FishRed", "FishBlue", "FishStripe", "FishYellBlu", "FishDot",
                            "FishBigGrey", "FishBigRed", "FishManta"})
        expected[key] = "false";
    EXPECT_EQ(parse(folder.read()), expected);
}

TEST_F(SetupTest, BoxFourIsDottedAndBoxFiveYellowAndBlue) {
    Dialog dialog;
    for (QCheckBox* box : {dialog.fishspecies4, dialog.fishspecies5})
        box->setChecked(false);
    dialog.fishspecies_clicked(3);
    EXPECT_FALSE(dialog.settings.fish_dot);
    EXPECT_TRUE(dialog.settings.fish_yell_blu);
    dialog.fishspecies_clicked(4);
    EXPECT_FALSE(dialog.settings.fish_yell_blu);
}

// The camera position.

TEST_F(SetupTest, StoredCameraPositionSurvivesAnUntouchedCombo) {
    folder.write("CameraPos=2\n");
    Dialog dialog("ENG");
    dialog.open();
    pick(dialog.sellist, CAMERA);
    EXPECT_EQ(dialog.camerapos_combo->currentText(), "Automatic");
    EXPECT_TRUE(dialog.scrollspeed_slider->isVisible());
    click(dialog.okbutton);
    EXPECT_EQ(parse(folder.read()), with(defaults, "CameraPos", "2"));
}

TEST_F(SetupTest, StoredCameraPositionGivesWayToAnActivatedEntry) {
    folder.write("CameraPos=2\n");
    Dialog dialog;
    dialog.open();
    pick(dialog.sellist, CAMERA);
    pressKey(dialog.camerapos_combo, Qt::Key_Down);
    pressKey(dialog.camerapos_combo, Qt::Key_Up);
    click(dialog.okbutton);
    EXPECT_EQ(parse(folder.read()), defaults);
}

TEST_F(SetupTest, FixedCameraHidesSpeedAndRests) {
    Dialog dialog;
    dialog.open();
    pick(dialog.sellist, CAMERA);
    const QWidget* const travel[] = {dialog.scrollspeed_txt, dialog.scrollspeed_slider,
                                     dialog.resttop_txt,     dialog.resttop_slider,
                                     dialog.restbottom_txt,  dialog.restbottom_slider};
    const QRect box = dialog.camera_txt->geometry();
    for (int position : {0, 1, 2, 3, 0}) {
        while (dialog.camerapos_combo->currentIndex() != position)
            pressKey(dialog.camerapos_combo, position == 0 ? Qt::Key_Up : Qt::Key_Down);
        for (const QWidget* widget : travel)
            EXPECT_EQ(widget->isVisible(), position == 0)
                << widget->objectName().toStdString() << " at " << position;
        EXPECT_EQ(dialog.camera_txt->geometry(), box) << "what is left must not move";
    }
}

// Pages.

TEST_F(SetupTest, OneListEntryPerPageAndOnePageAtATime) {
    Dialog dialog("ENG");
    dialog.open();
    ASSERT_EQ(dialog.pages.size(), size_t(PAGES));
    const QFrame* const frames[] = {dialog.page_intro, dialog.page_boid,  dialog.page_fish,
                                    dialog.page_birds, dialog.page_sky,   dialog.page_camera,
                                    dialog.page_sound, dialog.page_extras};
    const char* const names[] = {"Introduction", "School of fish", "Reef fish", "Birds",
                                 "Sky",          "Camera",         "Sound",     "Extras"};
    for (int page : {0, 1, 2, 3, 4, 5, 6, 7, 0, 7, 2}) {
        pick(dialog.sellist, page);
        EXPECT_EQ(dialog.actpage, page);
        for (int other = 0; other < PAGES; ++other)
            EXPECT_EQ(dialog.pages[other].frame->isVisible(), other == page);
    }
    for (int page = 0; page < PAGES; ++page) {
        EXPECT_EQ(dialog.pages[page].frame, frames[page]);
        EXPECT_STREQ(dialog.pages[page].name, names[page]);
        EXPECT_EQ(dialog.sellist->item(page)->text(), names[page]);
    }
}

TEST_F(SetupTest, CaptionStandsUntilAPageIsHighlighted) {
    Dialog dialog("ENG");
    dialog.open();
    EXPECT_EQ(dialog.windowTitle(), "Atollia Settings");
    EXPECT_EQ(dialog.sellist->currentRow(), 0);
    pick(dialog.sellist, SKY);
    EXPECT_EQ(dialog.windowTitle(), "frame changed");
}

TEST_F(SetupTest, HighlightingThePageShownChangesTheCaptionOnly) {
    Dialog dialog("ENG");
    dialog.open();
    pick(dialog.sellist, INTRO);
    EXPECT_EQ(dialog.windowTitle(), "frame changed");
    EXPECT_EQ(dialog.actpage, 0);
    EXPECT_TRUE(dialog.page_intro->isVisible());
}

TEST_F(SetupTest, IndexWithoutAPageChangesTheCaptionOnly) {
    for (int index : {-1, int(PAGES), 1000}) {
        Dialog dialog("ENG");
        dialog.open();
        dialog.changePage(index);
        EXPECT_EQ(dialog.windowTitle(), "frame changed");
        EXPECT_EQ(dialog.actpage, 0);
        EXPECT_TRUE(dialog.page_intro->isVisible());
    }
}

TEST_F(SetupTest, ArrowKeysTurnThePages) {
    Dialog dialog;
    dialog.open();
    pressKey(dialog.sellist, Qt::Key_Down, 3);
    EXPECT_TRUE(dialog.page_birds->isVisible());
    pressKey(dialog.sellist, Qt::Key_Up);
    EXPECT_TRUE(dialog.page_fish->isVisible());
}

// Ways to close.

TEST_F(SetupTest, EnterIsOk) {
    for (int page = 0; page < PAGES; ++page) {
        ConfigFolder own;
        Dialog dialog;
        dialog.open();
        pick(dialog.sellist, page);
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
        EXPECT_EQ(dialog.result(), QDialog::Accepted) << page;
        EXPECT_EQ(parse(own.read()), defaults) << page;
    }
}

TEST_F(SetupTest, EnterIsOkFromEveryControl) {
    const char* const controls[] = {"sellist",          "boidtype_radio1", "boidtype_radio2",
                                    "boidcount_slider", "fishspecies1",    "fishspecies8",
                                    "fishcount_slider", "birdspecies1",    "sky_radio1",
                                    "sky_radio2",       "camerapos_combo", "scrollspeed_slider",
                                    "resttop_slider",   "usesound",        "restbottom_slider",
                                    "daytime_radio1",   "volume_slider",   "trueproportions"};
    for (const char* name : controls) {
        ConfigFolder own;
        Dialog dialog;
        dialog.open();
        auto* control = dialog.findChild<QWidget*>(QLatin1String(name));
        ASSERT_TRUE(control) << name;
        for (int page = 0; !control->isVisible() && page < PAGES; ++page)
            pick(dialog.sellist, page);
        pressKey(control, Qt::Key_Enter);
        EXPECT_EQ(dialog.result(), QDialog::Accepted) << name;
        EXPECT_EQ(parse(own.read()), defaults) << name;
    }
}

namespace {

void changeALot(Dialog& dialog) {
    dialog.open();
    pick(dialog.sellist, FISH);
    click(dialog.fishspecies1);
    pressKey(dialog.fishcount_slider, Qt::Key_Home);
    pick(dialog.sellist, SOUND);
    click(dialog.usesound);
}

}  // namespace

TEST_F(SetupTest, EscapeAndClosingWriteNothing) {
    const QByteArray before = "BoidCount=13\nFishCount=50\n";
    folder.write(before);
    {
        Dialog dialog;
        changeALot(dialog);
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Escape);
        EXPECT_FALSE(dialog.isVisible());
        EXPECT_EQ(dialog.result(), QDialog::Rejected);
    }
    EXPECT_EQ(folder.read(), before);
    {
        Dialog dialog;
        changeALot(dialog);
        dialog.close();
        EXPECT_FALSE(dialog.isVisible());
        EXPECT_EQ(dialog.result(), QDialog::Rejected);
    }
    EXPECT_EQ(folder.read(), before);
    {
        Dialog dialog;
        changeALot(dialog);
        click(dialog.cancelbutton);
    }
    EXPECT_EQ(folder.read(), before);
    {
        Dialog dialog;
        changeALot(dialog);
    }
    EXPECT_EQ(folder.read(), before) << "destroyed while open";
}

// What the saver makes of it.

TEST_F(SetupTest, SaverReadsWhatOkSaved) {
    Dialog dialog;
    dialog.open();
    pick(dialog.sellist, BOID);
    click(dialog.boidtype_radio2);
    pressKey(dialog.boidcount_slider, Qt::Key_End);
    pick(dialog.sellist, FISH);
    for (QCheckBox* box : {dialog.fishspecies2, dialog.fishspecies4, dialog.fishspecies6})
        click(box);
    pressKey(dialog.fishcount_slider, Qt::Key_Left, 4);
    pick(dialog.sellist, BIRDS);
    click(dialog.birdspecies1);
    pick(dialog.sellist, SKY);
    click(dialog.sky_radio2);
    pick(dialog.sellist, CAMERA);
    pressKey(dialog.scrollspeed_slider, Qt::Key_Right, 3);
    pressKey(dialog.resttop_slider, Qt::Key_Right, 11);
    pressKey(dialog.restbottom_slider, Qt::Key_Left, 12);
    pressKey(dialog.camerapos_combo, Qt::Key_End);
    pick(dialog.sellist, SOUND);
    click(dialog.usesound);
    click(dialog.okbutton);

    SaverSettings expected;
    expected.boidmodel = 1;
    expected.boidcount = 20;
    expected.fish_blue = expected.fish_dot = expected.fish_big_grey = false;
    expected.fishcount = 6;
    expected.bird_gull = false;
    expected.skytype = 1;
    expected.cameraspeed = 7;
    expected.camerafix_top = 41;
    expected.camerafix_bottom = 18;
    expected.camerapos = 3;
    expected.soundOn = false;
    expectEqual(dialog.settings, expected);
    expectEqual(readByTheSaver(), expected);
    // And so does the dialog itself when it is opened again.
    expectEqual(Dialog().settings, expected);
}

TEST_F(SetupTest, KeysAreWrittenInTheAgreedOrderOfTheTable) {
    std::vector<std::string> keys;
    for (const SETTING& setting : settings_written)
        keys.push_back(setting.key);
    EXPECT_THAT(keys, ElementsAre("BoidModel", "BoidCount", "FishRed", "FishBlue", "FishStripe",
                                  "FishYellBlu", "FishDot", "FishBigGrey", "FishBigRed",
                                  "FishManta", "FishCount", "BirdGull", "CameraPos", "CameraSpeed",
                                  "CameraFixTop", "CameraFixBottom", "SkyType", "SoundOn"));
}

// The link.

namespace {

/// Stands in for the person's browser.
class Browser : public QObject {
    Q_OBJECT
public:
    Browser() { QDesktopServices::setUrlHandler(QStringLiteral("https"), this, "open"); }
    ~Browser() override { QDesktopServices::unsetUrlHandler(QStringLiteral("https")); }
    std::vector<std::string> opened;

public slots:
    void open(const QUrl& url) { opened.push_back(url.toString().toStdString()); }
};

}  // namespace

TEST_F(SetupTest, LinkOpensItsAddressByMouseAndKeyboard) {
    LanguagePack texts(LANGUAGE_FILE, "ENG");
    const std::string address = texts.getString("hyperlink");
    ASSERT_FALSE(address.empty());
    Browser browser;
    Dialog dialog("ENG");
    dialog.open();
    EXPECT_EQ(dialog.hyperlink->text(), texts.getString("hyperlink_txt"));
    QTest::mouseClick(dialog.hyperlink, Qt::LeftButton);
    EXPECT_THAT(browser.opened, ElementsAre(address));
    pressKey(dialog.hyperlink, Qt::Key_Space);
    pressKey(dialog.hyperlink, Qt::Key_Return);
    EXPECT_THAT(browser.opened, ElementsAre(address, address, address));
    EXPECT_TRUE(dialog.isVisible()) << "following the link does not close the dialog";
}

// What designs and scripts may rely on.

TEST_F(SetupTest, SlotsAreRegisteredInTheirOrder) {
    std::vector<std::string> signatures;
    const QMetaObject& meta = KMarivistaSetup::staticMetaObject;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        signatures.push_back(meta.method(i).methodSignature().toStdString());
    EXPECT_THAT(signatures,
                ElementsAre("init()", "writeConfig()", "readConfig()", "leftClickedURL(QString)",
                            "changePage(int)", "boidcount_slider_valueChanged(int)",
                            "boidtype_clicked(int)", "fishspecies_clicked(int)",
                            "fishcount_slider_valueChanged(int)", "birdtype_clicked(int)",
                            "sky_clicked(int)", "camerapos_activated(int)",
                            "scrollspeed_valueChanged(int)", "resttop_valueChanged(int)",
                            "restbottom_valueChanged(int)", "usesound_changed(bool)"));
}

TEST_F(SetupTest, SlidersHaveTheirRangesAndSteps) {
    const Dialog dialog;
    const struct {
        const QSlider* slider;
        int low, high;
    } sliders[] = {{dialog.boidcount_slider, 0, 4},   {dialog.fishcount_slider, 0, 10},
                   {dialog.scrollspeed_slider, 1, 9}, {dialog.resttop_slider, 1, 60},
                   {dialog.restbottom_slider, 5, 60}, {dialog.volume_slider, 0, 100}};
    for (const auto& entry : sliders) {
        EXPECT_EQ(entry.slider->minimum(), entry.low);
        EXPECT_EQ(entry.slider->maximum(), entry.high);
        EXPECT_EQ(entry.slider->singleStep(), 1);
        EXPECT_EQ(entry.slider->pageStep(), 1);
    }
}

TEST_F(SetupTest, EverySecondCanBeSetWithTheMouse) {
    const QFont before = QApplication::font();
    for (int points : {7, 9, 12, 16}) {
        QApplication::setFont(QFont(before.family(), points));
        Dialog dialog;
        dialog.open();
        pick(dialog.sellist, CAMERA);
        for (QSlider* slider :
             {dialog.scrollspeed_slider, dialog.resttop_slider, dialog.restbottom_slider}) {
            // Dragged pixel by pixel along its whole way, it stops at every value.
            std::set<int> values;
            slider->setValue(slider->minimum());
            const auto drag = [slider](QEvent::Type type, int x) {
                QMouseEvent event(type, QPointF(x, slider->height() / 3), Qt::LeftButton,
                                  Qt::LeftButton, Qt::NoModifier);
                QCoreApplication::sendEvent(slider, &event);
            };
            drag(QEvent::MouseButtonPress, 5);
            for (int x = 5; x < slider->width(); ++x) {
                drag(QEvent::MouseMove, x);
                values.insert(slider->value());
            }
            drag(QEvent::MouseButtonRelease, slider->width());
            EXPECT_EQ(values.size(), static_cast<size_t>(slider->maximum() - slider->minimum() + 1))
                << points << " " << slider->objectName().toStdString();
        }
    }
    QApplication::setFont(before);
}

TEST_F(SetupTest, CameraSlidersShowValueAndUnit) {
    folder.write("CameraSpeed=3\nCameraFixTop=17\nCameraFixBottom=45\n");
    Dialog dialog;
    dialog.open();
    pick(dialog.sellist, CAMERA);
    const auto shown = [&] {
        QStringList texts;
        for (const QLabel* label : dialog.camera_txt->findChildren<QLabel*>())
            if (label->isVisible() && !label->buddy())
                texts << label->text();
        return texts;
    };
    EXPECT_EQ(shown(), QStringList({"3 °/s", "17 s", "45 s"}));
    pressKey(dialog.resttop_slider, Qt::Key_Right);
    EXPECT_EQ(shown(), QStringList({"3 °/s", "18 s", "45 s"}));
    pressKey(dialog.camerapos_combo, Qt::Key_Down);
    EXPECT_EQ(shown(), QStringList());
}

TEST_F(SetupTest, LabelsFollowTheSliders) {
    Dialog dialog;
    dialog.open();
    for (int value = 0; value <= 4; ++value) {
        dialog.boidcount_slider->setValue(value);
        EXPECT_EQ(dialog.boidcount_edit->text(), QString::number(value * 5));
        EXPECT_EQ(dialog.settings.boidcount, value * 5);
    }
    for (int value = 0; value <= 10; ++value) {
        dialog.fishcount_slider->setValue(value);
        EXPECT_EQ(dialog.fishcount_edit->text(), QString::number(value));
        EXPECT_EQ(dialog.settings.fishcount, value);
    }
}

#include "setup_test.moc"
