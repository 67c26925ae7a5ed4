#include "main.h"

#include <SDL.h>

#include <QCoreApplication>
#include <QLocale>
#include <cstdio>
#include <optional>

#include "Globals.h"
#include "KMarivistaSetup.h"
#include "Marivista.h"
#include "host/KDEScreensaverFrame.h"
#include "setup/SetupLanguage.h"

#define EXPORTED __attribute__((visibility("default")))

extern "C" {

EXPORTED const char* kss_applicationName = "atollia.kss";
EXPORTED const char* kss_description = "Atollia";
EXPORTED const char* kss_version = "0.1";

EXPORTED KScreenSaver* kss_create(WId id) {
    static std::optional<CMarivistaScreensaver> scene;
    if (!scene) {
        // The clock counts from the first part of SDL that starts. That would be the sound, after
        // everything in the scene has read a clock that counts from elsewhere.
        SDL_InitSubSystem(0);
        scene.emplace();
        scene->readExtraSettings();
        // The end of the application is the last moment at which a widget can be destroyed.
        qAddPostRoutine([] { scene.reset(); });
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

void showFrameRate(KScreenSaver& saver) {
    auto* frame = static_cast<KDEScreensaverFrame&>(saver).saver;
    if (auto* scene = dynamic_cast<CMarivistaScreensaver*>(frame))
        scene->fpsOn = true;
}
