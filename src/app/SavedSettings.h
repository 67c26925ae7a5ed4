// The person's settings, those of the saver, for a reef.
#pragma once

class Reef;

/// Gives the reef what the settings file says. The settings dialog writes that file.
void applySavedSettings(Reef& reef);
