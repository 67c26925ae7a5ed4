// The settings that the program and its dialog share with the saver.
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QFile>
#include <QRadioButton>
#include <QTemporaryDir>
#include <cstdlib>

#include "KMarivistaSetup.h"
#include "app/SavedSettings.h"
#include "quick/Reef.h"

namespace {

class SavedSettingsTest : public testing::Test {
protected:
    SavedSettingsTest() {
        setenv("XDG_CONFIG_HOME", qPrintable(home.filePath("own")), 1);
        setenv("XDG_CONFIG_DIRS", qPrintable(home.filePath("everyone")), 1);
        QDir(home.path()).mkpath("own");
        QDir(home.path()).mkpath("everyone");
    }

    void write(const char* folder, const QByteArray& keys) const {
        QFile file(home.filePath(folder) + "/Orvo Atollia");
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(keys);
    }

    const QTemporaryDir home;
};

TEST_F(SavedSettingsTest, WithoutAFileTheProgramHasItsOwnDefaults) {
    Reef reef;
    applySavedSettings(reef);
    EXPECT_EQ(reef.dayTime(), 1);
    EXPECT_EQ(reef.proportions(), 1);
    EXPECT_EQ(reef.latitude(), 0);
    EXPECT_EQ(reef.volume(), 100);
    EXPECT_EQ(reef.quietFrom(), 0);
    EXPECT_EQ(reef.quietTo(), 0);
    EXPECT_FALSE(reef.muted());
}

TEST_F(SavedSettingsTest, EveryExtraKeyOfTheFileCounts) {
    write("own",
          "DayTime=0\nProportions=0\nVolume=40\nQuietFrom=22\nQuietTo=7\nLatitude=-17\n"
          "SoundOn=false\n");
    Reef reef;
    applySavedSettings(reef);
    EXPECT_EQ(reef.dayTime(), 0);
    EXPECT_EQ(reef.proportions(), 0);
    EXPECT_EQ(reef.volume(), 40);
    EXPECT_EQ(reef.quietFrom(), 22);
    EXPECT_EQ(reef.quietTo(), 7);
    EXPECT_EQ(reef.latitude(), -17);
    EXPECT_TRUE(reef.muted());
}

TEST_F(SavedSettingsTest, TheAdministratorsFileCountsBelowThePersonsOwn) {
    write("everyone", "Volume=40\nFishCount=3\n");
    write("own", "FishCount=5\n");
    Reef reef;
    applySavedSettings(reef);
    EXPECT_EQ(reef.volume(), 40);
    EXPECT_EQ(reef.fishCount(), 5);
}

TEST_F(SavedSettingsTest, TheProgramsDialogShowsWhatTheReefHasAndCanTurnItOff) {
    const auto owner = makeSettingsDialog();
    auto& dialog = dynamic_cast<KMarivistaSetup&>(*owner);
    EXPECT_TRUE(dialog.daytime_radio2->isChecked());
    EXPECT_TRUE(dialog.trueproportions->isChecked());
    dialog.daytime_radio1->click();
    dialog.trueproportions->click();
    dialog.writeConfig();
    Reef reef;
    applySavedSettings(reef);
    EXPECT_EQ(reef.dayTime(), 0);
    EXPECT_EQ(reef.proportions(), 0);
}

}  // namespace
