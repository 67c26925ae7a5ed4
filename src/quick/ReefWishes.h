// What a page wants of its reef.
#pragma once

#include "ExtraSettings.h"
#include "MVSettingsDlg.h"

/// Written by the item, read by its renderer while the item's thread waits.
struct REEF_WISHES {
    SaverSettings settings;
    EXTRA_SETTINGS extras = today();
    double maximum_frame_rate = 0;  ///< a second; 0: as the renderer suggests
    int samples = -1;               ///< per pixel; -1: as the renderer suggests
    double render_scale = 0;        ///< of width and height; 0: what the renderer can afford
    bool running = true;            ///< time passes
    bool muted = true;

    /// What new pages begin with: true proportions, the light of the hour.
    static EXTRA_SETTINGS today() {
        EXTRA_SETTINGS extras;
        extras.proportions = 1;
        extras.daytime = 1;
        return extras;
    }
};
