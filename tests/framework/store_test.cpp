#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <KConfig>
#include <KConfigGroup>
#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <cstdio>
#include <type_traits>

#include "MVSettingsDlg.h"
#include "Marivista.h"
#include "framework/frame_scene.h"

namespace {

using test::FrameScene;

QString folder() { return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation); }

void writeFile(const QString& name, const QByteArray& text) {
    ASSERT_TRUE(QDir().mkpath(folder()));
    QFile file(folder() + "/" + name);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text);
}

QByteArray readFile(const QString& name) {
    QFile file(folder() + "/" + name);
    file.open(QIODevice::ReadOnly);
    return file.readAll();
}

class Store : public testing::Test {
protected:
    void SetUp() override { QDir(folder()).removeRecursively(); }
    FrameScene frame;
};

TEST_F(Store, WithoutAnOpenFileNumbersAreZeroWhateverTheDefault) {
    EXPECT_EQ(frame.readInt("BoidCount", 10), 0);
    EXPECT_FALSE(frame.readBool("BirdGull", true));
    EXPECT_EQ(frame.readString("Name", "default"), nullptr);
    EXPECT_TRUE(frame.closeSettingsFile());
}

TEST_F(Store, AMissingFileYieldsTheDefaultsAndStaysMissing) {
    ASSERT_TRUE(frame.openSettingsFile("Software\\Orvo", "Orvo Atollia"));
    EXPECT_NE(frame.config, nullptr);
    EXPECT_EQ(frame.readInt("BoidCount", 10), 10);
    EXPECT_TRUE(frame.readBool("BirdGull", true));
    EXPECT_FALSE(frame.readBool("BirdGull", false));
    EXPECT_STREQ(frame.readString("Name", "default"), "default");
    EXPECT_TRUE(frame.closeSettingsFile());
    EXPECT_EQ(frame.config, nullptr);
    EXPECT_FALSE(QFile::exists(folder() + "/Orvo Atollia"));
}

TEST_F(Store, KeysStandAtTheTopOfTheFileWithoutAHeader) {
    writeFile("Orvo Atollia",
              "BoidCount=15\nBirdGull=false\nName=Gr\xc3\xbcn\n"
              "[Other]\nBoidCount=3\nSkyType=1\n");
    frame.openSettingsFile("", "Orvo Atollia");
    EXPECT_EQ(frame.readInt("BoidCount", 10), 15);
    EXPECT_FALSE(frame.readBool("BirdGull", true));
    EXPECT_STREQ(frame.readString("Name", ""), "Gr\xfcn");
    EXPECT_EQ(frame.readInt("SkyType", 0), 0);
    frame.closeSettingsFile();
}

TEST_F(Store, TheDesktopsGlobalSettingsAreLeftOut) {
    writeFile("kdeglobals", "BoidCount=99\n");
    frame.openSettingsFile("", "Orvo Atollia");
    EXPECT_EQ(frame.readInt("BoidCount", 10), 10);
    frame.closeSettingsFile();
}

TEST_F(Store, ClosingWritesBackWhatOthersChangedThroughTheOpenFile) {
    frame.openSettingsFile("", "Orvo Atollia");
    frame.config->group(QString()).writeEntry("BoidCount", 5);
    frame.closeSettingsFile();
    EXPECT_EQ(readFile("Orvo Atollia"), "BoidCount=5\n");
}

TEST_F(Store, TheFrameItselfNeverWrites) {
    frame.openSettingsFile("", "Orvo Atollia");
    EXPECT_FALSE(frame.writeInt("BoidCount", 5));
    EXPECT_FALSE(frame.writeBool("BirdGull", false));
    EXPECT_FALSE(frame.writeString("Name", "x"));
    frame.closeSettingsFile();
    EXPECT_FALSE(QFile::exists(folder() + "/Orvo Atollia"));
}

TEST_F(Store, ATextStaysValidUntilTheNextCall) {
    writeFile("Orvo Atollia", "A=first\nB=second\n");
    frame.openSettingsFile("", "Orvo Atollia");
    const char* first = frame.readString("A", "");
    frame.closeSettingsFile();
    EXPECT_STREQ(first, "first");
    frame.openSettingsFile("", "Orvo Atollia");
    EXPECT_STREQ(frame.readString("B", ""), "second");
    EXPECT_STREQ(frame.readString("C", "third"), "third");
    frame.closeSettingsFile();
}

TEST_F(Store, WithoutAFileTheSceneKeepsItsDefaults) {
    CMarivistaScreensaver scene;
    EXPECT_TRUE(scene.readSettings());
    EXPECT_EQ(scene.config, nullptr) << "open only while it is read";
    const SaverSettings defaults;
    for (const SETTING& setting : settings_read) {
        if (setting.number)
            EXPECT_EQ(scene.wantedwssettings.*setting.number, defaults.*setting.number)
                << setting.key;
        else
            EXPECT_EQ(scene.wantedwssettings.*setting.flag, defaults.*setting.flag) << setting.key;
    }
}

TEST_F(Store, TheSceneReadsEveryKeyAndWritesNone) {
    const QByteArray text(
        "BoidModel=1\nBoidCount=15\nFishRed=false\nFishBlue=false\nFishStripe=false\n"
        "FishYellBlu=false\nFishDot=false\nFishBigGrey=false\nFishBigRed=false\n"
        "FishManta=false\nBirdGull=false\nFishCount=-7\nCameraPos=99\nCameraSpeed=0\n"
        "CameraFixTop=1\nCameraFixBottom=2\nSkyType=3\nSoundOn=false\n");
    writeFile("Orvo Atollia", text);
    CMarivistaScreensaver scene;
    EXPECT_TRUE(scene.readSettings());
    const int numbers[] = {1, 15, -7, 99, 0, 1, 2, 3};
    int next = 0;
    for (const SETTING& setting : settings_read) {
        if (setting.number)
            EXPECT_EQ(scene.wantedwssettings.*setting.number, numbers[next++]) << setting.key;
        else
            EXPECT_FALSE(scene.wantedwssettings.*setting.flag) << setting.key;
    }
    scene.wantedwssettings = SaverSettings();
    EXPECT_TRUE(scene.writeSettings());
    EXPECT_EQ(readFile("Orvo Atollia"), text);
}

struct VALUE {
    const char* text;
    int number;  ///< read with default 7
    bool flag;   ///< read with default true
};

void PrintTo(const VALUE& value, std::ostream* out) { *out << '"' << value.text << '"'; }

class StoredValue : public Store, public testing::WithParamInterface<VALUE> {};

TEST_P(StoredValue, IsConverted) {
    const VALUE& value = GetParam();
    writeFile("Orvo Atollia", QByteArray("Key=") + value.text + "\n");
    frame.openSettingsFile("", "Orvo Atollia");
    EXPECT_EQ(frame.readInt("Key", 7), value.number);
    EXPECT_EQ(frame.readBool("Key", true), value.flag);
    frame.closeSettingsFile();
}

INSTANTIATE_TEST_SUITE_P(Texts, StoredValue,
                         testing::Values(VALUE{"0", 0, false}, VALUE{"1", 1, true},
                                         VALUE{"-3", -3, true}, VALUE{"false", 7, false},
                                         VALUE{"true", 7, true}, VALUE{"off", 7, false},
                                         VALUE{"no", 7, false}, VALUE{"coral", 7, true},
                                         VALUE{"2147483647", 2147483647, true},
                                         VALUE{"-2147483648", -2147483647 - 1, true},
                                         VALUE{"99999999999999999999999", 7, true},
                                         VALUE{"0x10", 7, true}));

TEST_F(Store, AFolderInPlaceOfTheFileYieldsTheDefaults) {
    ASSERT_TRUE(QDir().mkpath(folder() + "/Orvo Atollia"));
    ASSERT_TRUE(frame.openSettingsFile("", "Orvo Atollia"));
    EXPECT_EQ(frame.readInt("BoidCount", 10), 10);
    frame.closeSettingsFile();
}

TEST_F(Store, GarbageYieldsTheDefaults) {
    QByteArray garbage("BoidCount\n=\n[[\n]\n[Other\n");
    for (int i = 0; i < 4096; ++i)
        garbage.append(static_cast<char>(i * 37 + i / 11));
    writeFile("Orvo Atollia", garbage);
    ASSERT_TRUE(frame.openSettingsFile("", "Orvo Atollia"));
    EXPECT_EQ(frame.readInt("BoidCount", 10), 10);
    frame.closeSettingsFile();
}

// ---- What an administrator says for everyone ----------------------------------------------------

class ForEveryone : public Store {
protected:
    void SetUp() override {
        Store::SetUp();
        before = qgetenv("XDG_CONFIG_DIRS");
        qputenv("XDG_CONFIG_DIRS", QFile::encodeName(place.path()));
    }
    void TearDown() override { qputenv("XDG_CONFIG_DIRS", before); }

    void writeForEveryone(const QByteArray& text) const {
        QFile file(place.filePath("Orvo Atollia"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }
    QTemporaryDir place;
    QByteArray before;
};

TEST_F(ForEveryone, CountsWhereThePersonSaysNothing) {
    writeForEveryone("BoidCount=7\nSkyType=1\n");
    writeFile("Orvo Atollia", "SkyType=0\n");
    CMarivistaScreensaver scene;
    EXPECT_TRUE(scene.readSettings());
    EXPECT_EQ(scene.wantedwssettings.boidcount, 7);
    EXPECT_EQ(scene.wantedwssettings.skytype, 0);
}

TEST_F(ForEveryone, MayNotBeOverruledWhereItSaysSo) {
    writeForEveryone("BoidCount[$i]=7\nSkyType=1\n");
    writeFile("Orvo Atollia", "BoidCount=3\nSkyType=0\n");
    CMarivistaScreensaver scene;
    EXPECT_TRUE(scene.readSettings());
    EXPECT_EQ(scene.wantedwssettings.boidcount, 7);
    EXPECT_EQ(scene.wantedwssettings.skytype, 0);

    writeForEveryone("[$i]\nBoidCount=8\n");
    EXPECT_TRUE(scene.readSettings());
    EXPECT_NE(scene.wantedwssettings.boidcount, 3) << "a whole file that may not be overruled";
}

// ---- Files that are none ------------------------------------------------------------------------

class Refused : public Store {
protected:
    void SetUp() override {
        Store::SetUp();
        ASSERT_TRUE(QDir().mkpath(folder()));
        path = QFile::encodeName(folder() + "/" + name());
    }
    /// Of its own for each test: one line is printed for each file.
    static QString name() {
        return QString("Refused ") + testing::UnitTest::GetInstance()->current_test_info()->name();
    }
    void expectDefaultsAndOneLine(const std::string& reason) {
        testing::internal::CaptureStdout();
        for (int i = 0; i < 2; ++i) {
            EXPECT_TRUE(frame.openSettingsFile("", qPrintable(name())));
            EXPECT_EQ(frame.readInt("BoidCount", 10), 10);
            EXPECT_TRUE(frame.closeSettingsFile());
        }
        std::fflush(stdout);
        EXPECT_EQ(testing::internal::GetCapturedStdout(),
                  path.toStdString() + " " + reason + ", running with the default settings\n");
    }
    QByteArray path;
};

TEST_F(Refused, APipe) {
    ASSERT_EQ(mkfifo(path.constData(), 0600), 0);
    expectDefaultsAndOneLine("is no plain file");
}

TEST_F(Refused, ADevice) {
    ASSERT_EQ(symlink("/dev/zero", path.constData()), 0);
    expectDefaultsAndOneLine("is no plain file");
}

TEST_F(Refused, AnythingLargerThanAMebibyte) {
    QByteArray text("BoidCount=5\n");
    writeFile(name(), text + QByteArray(1024 * 1024 - text.size(), '#'));
    frame.openSettingsFile("", qPrintable(name()));
    EXPECT_EQ(frame.readInt("BoidCount", 10), 5);
    frame.closeSettingsFile();
    writeFile(name(), text + QByteArray(1024 * 1024 - text.size() + 1, '#'));
    expectDefaultsAndOneLine("is larger than 1 MiB");
}

// ---- A frame without a store --------------------------------------------------------------------

class BareFrame : public BaseFramework {
public:
    bool initScene() override { return true; }
    bool initGL() override { return true; }
    void updateScene() override {}
    void renderScene() override {}
    bool releaseGL() override { return true; }
    bool cleanup() override { return true; }
    bool resetEvents() override { return true; }
    bool processSDLEvents(SDL_Event*) override { return false; }
};

TEST(BaseFramework, KeepsNothingAndAnswersWithTheDefault) {
    BareFrame frame;
    EXPECT_EQ(frame.resolution_x, 800);
    EXPECT_EQ(frame.resolution_y, 600);
    EXPECT_EQ(frame.colordepth, 16);
    EXPECT_FALSE(frame.quit);
    EXPECT_FALSE(frame.openSettingsFile("a", "b"));
    EXPECT_FALSE(frame.closeSettingsFile());
    EXPECT_FALSE(frame.writeString("key", "value"));
    EXPECT_FALSE(frame.writeInt("key", 1));
    EXPECT_FALSE(frame.writeBool("key", true));
    EXPECT_EQ(frame.readInt("key", -4), -4);
    EXPECT_TRUE(frame.readBool("key", true));
    EXPECT_FALSE(frame.readBool("key", false));
    char text[16] = "before";
    frame.readString("key", text, "default");
    EXPECT_STREQ(text, "default");
}

// ---- The record ---------------------------------------------------------------------------------

TEST(SaverSettings, DefaultsKeysAndOrder) {
    struct ROW {
        const char* key;
        int value;
        bool is_number;
    };
    const ROW rows[] = {
        {"BoidModel", 0, true},        {"BoidCount", 10, true},   {"FishRed", 1, false},
        {"FishBlue", 1, false},        {"FishStripe", 1, false},  {"FishYellBlu", 1, false},
        {"FishDot", 1, false},         {"FishBigGrey", 1, false}, {"FishBigRed", 1, false},
        {"FishManta", 1, false},       {"BirdGull", 1, false},    {"FishCount", 10, true},
        {"CameraPos", 0, true},        {"CameraSpeed", 4, true},  {"CameraFixTop", 30, true},
        {"CameraFixBottom", 30, true}, {"SkyType", 0, true},      {"SoundOn", 1, false}};
    const SaverSettings settings;
    ASSERT_EQ(settings_read.size(), std::size(rows));
    const char* previous = nullptr;
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        const SETTING& setting = settings_read[i];
        EXPECT_STREQ(setting.key, rows[i].key);
        ASSERT_EQ(setting.number != nullptr, rows[i].is_number) << setting.key;
        ASSERT_EQ(setting.flag == nullptr, rows[i].is_number) << setting.key;
        const char* at = nullptr;
        if (setting.number) {
            EXPECT_EQ(settings.*setting.number, rows[i].value) << setting.key;
            at = reinterpret_cast<const char*>(&(settings.*setting.number));
        } else {
            EXPECT_EQ(settings.*setting.flag, rows[i].value != 0) << setting.key;
            at = reinterpret_cast<const char*>(&(settings.*setting.flag));
        }
        EXPECT_GT(at, previous) << setting.key << " is out of the record's order";
        previous = at;
    }
}

TEST(SaverSettings, WrittenOrderHasTheFishBudgetBeforeTheGull) {
    std::vector<std::string> keys;
    for (const SETTING& setting : settings_written)
        keys.push_back(setting.key);
    EXPECT_THAT(
        keys, testing::ElementsAre("BoidModel", "BoidCount", "FishRed", "FishBlue", "FishStripe",
                                   "FishYellBlu", "FishDot", "FishBigGrey", "FishBigRed",
                                   "FishManta", "FishCount", "BirdGull", "CameraPos", "CameraSpeed",
                                   "CameraFixTop", "CameraFixBottom", "SkyType", "SoundOn"));
}

TEST(SaverSettings, IsAPlainRecord) {
    static_assert(std::is_trivially_copyable_v<SaverSettings>);
    SaverSettings one;
    one.boidcount = 3;
    one.soundOn = false;
    const SaverSettings two = one;
    EXPECT_EQ(two.boidcount, 3);
    EXPECT_FALSE(two.soundOn);
}

}  // namespace
