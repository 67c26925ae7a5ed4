#pragma once

union SDL_Event;

/// What a host frame asks of a scene and what a scene may ask of its frame. The settings operations
/// here are those of a frame without a settings store: nothing opens, nothing is kept, every read
/// yields the default.
class BaseFramework {
public:
    BaseFramework();
    virtual ~BaseFramework();

    virtual bool initScene() = 0;
    virtual bool initGL() = 0;
    virtual void updateScene() = 0;
    virtual void renderScene() = 0;
    /// Both run while the GL context is current, before the window goes.
    virtual bool releaseGL() = 0;
    virtual bool cleanup() = 0;
    virtual bool resetEvents() = 0;
    /// True when the event asks the program to end.
    virtual bool processSDLEvents(SDL_Event* event) = 0;

    virtual bool openSettingsFile(const char* regPath, const char* name);
    virtual bool closeSettingsFile();
    virtual bool writeString(const char* key, const char* value);
    virtual bool writeInt(const char* key, int value);
    virtual bool writeBool(const char* key, bool value);
    /// Copies the text into `dest`, which must have room for it.
    virtual void readString(const char* key, char* dest, const char* def);
    virtual int readInt(const char* key, int def);
    virtual bool readBool(const char* key, bool def);

    char strRegPath[256];      ///< registry-style settings path; filled by the scene
    char dataPath[256];        ///< data directory; filled by the scene
    char strProjectName[128];  ///< name of the settings file; filled by the scene
    int resolution_x;          ///< width of the GL area, pixels
    int resolution_y;          ///< height of the GL area, pixels
    int colordepth;            ///< bits per pixel; frames of this desktop leave it at 16
    bool quit;                 ///< request to end
};
