// The person's settings, those of the saver, for a reef.
#pragma once

#include <memory>

class QDialog;
class Reef;

/// Gives the reef what the settings file says, and where it says nothing the program's defaults.
void applySavedSettings(Reef& reef);

/// The dialog, shared with the saver, that writes that file; in the person's language, with the
/// program's defaults.
std::unique_ptr<QDialog> makeSettingsDialog();
