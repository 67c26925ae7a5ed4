#include "main.h"

#include <SDL.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QLocale>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <optional>
#include <utility>
#include <vector>

#include "Globals.h"
#include "KMarivistaSetup.h"
#include "Marivista.h"
#include "host/Arguments.h"
#include "host/KDEScreensaverFrame.h"
#include "host/ScreenPainter.h"
#include "setup/SetupLanguage.h"
#include "system/RowClip.h"

#define EXPORTED __attribute__((visibility("default")))

namespace {

std::vector<EXTRA_VALUE> preset;

/// The scene of a saver that kss_create has made.
CMarivistaScreensaver& sceneOf(KScreenSaver& saver) {
    return static_cast<CMarivistaScreensaver&>(*static_cast<KDEScreensaverFrame&>(saver).saver);
}

/// The second alone, with which the scene begins, makes twins of two monitors' savers.
unsigned seed(WId window) {
    constexpr unsigned SPREAD = 2654435769u;  // the golden ratio's share of 32 bits
    const auto process = static_cast<unsigned>(getpid());
    return static_cast<unsigned>(std::time(nullptr)) ^ process * SPREAD ^
           static_cast<unsigned>(window) * (SPREAD >> 1);
}

/// SDL 1.2 opens the device to choose its driver. Layers over its successors, whose versions count
/// from 1.2.50 on, do not, and find no device only when the sounds start.
bool deviceOpens() {
    if (SDL_Linked_Version()->patch < 50)
        return true;
    SDL_AudioSpec wanted = {};
    wanted.freq = 22050;
    wanted.format = AUDIO_S16LSB;
    wanted.channels = 2;
    wanted.samples = 4096;
    wanted.callback = [](void*, Uint8*, int) {};
    if (SDL_OpenAudio(&wanted, nullptr) != 0)
        return false;
    SDL_CloseAudio();
    return true;
}

/// Where no sound can be had, one line says so, and the scene plays to nobody: it would find fault
/// with each of its sounds.
void findSoundDevice() {
    char driver[2];
    // The result of the start does not tell: it may be well without a driver.
    if (SDL_InitSubSystem(SDL_INIT_AUDIO) == 0 && SDL_AudioDriverName(driver, sizeof driver) &&
        deviceOpens())
        return;
    std::printf("no sound: %s\n", SDL_GetError());
    SDL_QuitSubSystem(SDL_INIT_AUDIO);
    setenv("SDL_AUDIODRIVER", "dummy", 1);
}

}  // namespace

extern "C" {

EXPORTED const char* kss_applicationName = "atollia.kss";
EXPORTED const char* kss_description = "Atollia";
EXPORTED const char* kss_version = "0.1";

EXPORTED KScreenSaver* kss_create(WId id) {
    static std::optional<CMarivistaScreensaver> scene;
    // One that no saver has any more has released what it loaded.
    if (scene && !scene->parentWidget())
        scene.reset();
    if (!scene) {
        // The clock counts from the first part of SDL that starts. That would be the sound, after
        // everything in the scene has read a clock that counts from elsewhere.
        SDL_InitSubSystem(0);
        scene.emplace();
        std::srand(seed(id));
        scene->readSettings();
        if (scene->wantedwssettings.soundOn)
            findSoundDevice();
        scene->readExtraSettings();
        scene->draw_in_rows = drawInRows;
        for (const EXTRA_VALUE& wanted : preset)
            scene->extras.*wanted.field = wanted.value;
        // The end of the application is the last moment at which a widget can be destroyed.
        static const bool once = (qAddPostRoutine([] { scene.reset(); }), true);
        (void)once;
    }
    auto* frame = new KDEScreensaverFrame(id);
    frame->init(&*scene);
    return frame;
}

EXPORTED QDialog* kss_setup() { return createSetup({}); }
}

QDialog* createSetup(const std::string& language) {
    const std::string texts = dataFile("Language.dat");
    std::string section;
    if (!language.empty()) {
        section = languageSection(QString::fromStdString(language), texts.c_str());
        if (section.empty())
            std::printf("-language: %s has no texts in \"%s\"\n", texts.c_str(), language.c_str());
    }
    if (section.empty())
        section = setupLanguage(QLocale::system().uiLanguages(), texts.c_str());
    return new KMarivistaSetup(texts, section, nullptr, Qt::WindowFlags());
}

SCENE_PICTURE pictureOf(KScreenSaver& saver) {
    CMarivistaScreensaver& scene = sceneOf(saver);
    return {[&scene] {
                const bool text = std::exchange(scene.fpsOn, false);
                scene.renderScene();
                scene.fpsOn = text;
            },
            [&scene] {
                if (scene.fpsOn)
                    scene.fpstext.render();
            },
            [&scene] {
                return scene.fpsOn ? static_cast<int>(std::ceil(scene.fpstext.getLineheight())) : 0;
            },
            [&scene] { return scene.autoCameraDirection != 0; },
            [&scene](int width, int height) { scene.setViewSize(width, height); },
            [&scene] { scene.sharpenSlants(); }};
}

void showFrameRate(KScreenSaver& saver) { sceneOf(saver).fpsOn = true; }

void presetSetting(const EXTRA_VALUE& wanted) { preset.push_back(wanted); }

void setViewSize(KScreenSaver& saver, int width, int height) {
    sceneOf(saver).setViewSize(width, height);
}

void skipUnseenTime(KScreenSaver& saver) { sceneOf(saver).skipUnseenTime(); }

void setDayTime(KScreenSaver& saver, int minute) {
    sceneOf(saver).localTime = [minute] { return LOCAL_TIME{double(minute), 0}; };
}
