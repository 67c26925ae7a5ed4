#pragma once

#include <QWidget>
#include <string>

struct EXTRA_VALUE;
struct SCENE_PICTURE;
class KScreenSaver;
class QDialog;

/// What a screensaver host finds in the program's dynamic symbol table.
extern "C" {

extern const char* kss_applicationName;
extern const char* kss_description;
extern const char* kss_version;

/// A new saver that draws into the window `id` of any client; the caller deletes it. There is one
/// scene per process: a later call embeds the scene that the first call built.
KScreenSaver* kss_create(WId id);

/// A new setup dialog in the language of the locale, in the C locale in DEFAULT_LANGUAGE; the
/// caller shows and deletes it.
QDialog* kss_setup();
}

/// The same in a language named as in the language file ("ENG") or as locales are ("en"). One that
/// the file does not have is told in one line, and the locale's stands in for it.
QDialog* createSetup(const std::string& language);

/// Sets one of the settings beside the saver's own for the scenes that are built from now on,
/// whatever the settings file says.
void presetSetting(const EXTRA_VALUE& wanted);

// What the program asks of the saver's scene beside what its frame asks.

/// The scene as a ScreenPainter draws it.
SCENE_PICTURE pictureOf(KScreenSaver& saver);

/// Switches the frame-rate line on.
void showFrameRate(KScreenSaver& saver);
/// Its window has another size, in pixels; its context must be current and the scene loaded.
void setViewSize(KScreenSaver& saver, int width, int height);
/// Nobody has seen the time since the last tick.
void skipUnseenTime(KScreenSaver& saver);
/// Its day stands still at so many minutes after midnight; before it is shown.
void setDayTime(KScreenSaver& saver, int minute);
