// A host frame for tools and tests: the scene on any current GL context, no toolkit, no timer.
#pragma once

#include <KConfig>
#include <KConfigGroup>
#include <memory>

#include "framework/BaseFramework.h"

/// Reads its settings from the file that settings_file names; with none, all settings keep their
/// defaults. The owner plays the part of the toolkit: start() once with a context current, then
/// tick() for every frame.
class OffscreenFrame : public BaseFramework {
public:
    OffscreenFrame(void*, const char*) {}

    /// What the first resize does; change settings between loadSettings and buildWorld.
    void loadSettings(int width, int height) {
        resolution_x = width;
        resolution_y = height;
        readSettings();
    }
    void buildWorld() {
        initGL();
        initScene();
    }
    void tick() {
        updateScene();
        renderScene();
    }

    bool processSDLEvents(SDL_Event* event) override { return event->type == SDL_QUIT; }
    bool openSettingsFile(const char*, const char*) override {
        if (settings_file.isEmpty())
            return false;
        config = std::make_unique<KConfig>(settings_file, KConfig::SimpleConfig);
        return true;
    }
    bool closeSettingsFile() override {
        config.reset();
        return true;
    }
    int readInt(const char* key, int fallback) override {
        return config->group(QString()).readEntry(key, fallback);
    }
    bool readBool(const char* key, bool fallback) override {
        return config->group(QString()).readEntry(key, fallback);
    }
    virtual bool doConfig() = 0;
    virtual bool readSettings() = 0;
    virtual bool writeSettings() = 0;

    QString settings_file;

private:
    std::unique_ptr<KConfig> config;
};

#define BASECLASS OffscreenFrame
