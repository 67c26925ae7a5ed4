#pragma once

#include <QWidget>
#include <string>

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

/// A new setup dialog in the language of the locale; the caller shows and deletes it.
QDialog* kss_setup();
}

/// The same in a language named as in the language file ("ENG") or as locales are ("en"). One that
/// the file does not have is told in one line, and the locale's stands in for it.
QDialog* createSetup(const std::string& language);

/// Switches the frame-rate line of the saver's scene on.
void showFrameRate(KScreenSaver& saver);
