#pragma once

#include <array>
#include <cstddef>

/// The saver's options, shared by the scene and the setup dialog. A new record holds the defaults;
/// nothing here or in the readers keeps a value in its range, only the dialog does.
class SaverSettings {
public:
    SaverSettings();

    int boidmodel;         ///< school fish: 0 silver fish, any other value red fish
    int boidcount;         ///< fish in the school; 0 or less: no school
    bool fish_red;         ///< reef species 1
    bool fish_blue;        ///< reef species 2
    bool fish_stripe;      ///< reef species 0
    bool fish_yell_blu;    ///< reef species 3
    bool fish_dot;         ///< the hunting fish
    bool fish_big_grey;    ///< the first big fish; also decides whether both big models are loaded
    bool fish_big_red;     ///< the second big fish
    bool fish_manta;       ///< the manta ray
    bool bird_gull;        ///< the gull and its calls
    int fishcount;         ///< budget of single fish: manta, hunter, big fish, then reef fish
    int camerapos;         ///< 0 automatic, 1 top, 2 middle, 3 bottom
    int cameraspeed;       ///< automatic camera, degrees of pitch per second
    int camerafix_top;     ///< rest at the top, seconds
    int camerafix_bottom;  ///< rest at the bottom, seconds
    int skytype;           ///< 0 cloudy, any other value clear
    bool soundOn;          ///< water ambience and gull calls
};

/// One key of the settings file and the field it belongs to: a number or a flag, the other is null.
struct SETTING {
    const char* key;
    int SaverSettings::*number;
    bool SaverSettings::*flag;
};

/// Every key, in the order in which the saver reads them, which is that of the record's fields.
inline constexpr std::array<SETTING, 18> settings_read = {{
    {"BoidModel", &SaverSettings::boidmodel, nullptr},
    {"BoidCount", &SaverSettings::boidcount, nullptr},
    {"FishRed", nullptr, &SaverSettings::fish_red},
    {"FishBlue", nullptr, &SaverSettings::fish_blue},
    {"FishStripe", nullptr, &SaverSettings::fish_stripe},
    {"FishYellBlu", nullptr, &SaverSettings::fish_yell_blu},
    {"FishDot", nullptr, &SaverSettings::fish_dot},
    {"FishBigGrey", nullptr, &SaverSettings::fish_big_grey},
    {"FishBigRed", nullptr, &SaverSettings::fish_big_red},
    {"FishManta", nullptr, &SaverSettings::fish_manta},
    {"BirdGull", nullptr, &SaverSettings::bird_gull},
    {"FishCount", &SaverSettings::fishcount, nullptr},
    {"CameraPos", &SaverSettings::camerapos, nullptr},
    {"CameraSpeed", &SaverSettings::cameraspeed, nullptr},
    {"CameraFixTop", &SaverSettings::camerafix_top, nullptr},
    {"CameraFixBottom", &SaverSettings::camerafix_bottom, nullptr},
    {"SkyType", &SaverSettings::skytype, nullptr},
    {"SoundOn", nullptr, &SaverSettings::soundOn},
}};

/// The same keys in the order in which they are written: "FishCount" before "BirdGull".
inline constexpr std::array<SETTING, 18> settings_written = [] {
    std::array<SETTING, 18> order = settings_read;
    for (std::size_t i = 1; i < order.size(); ++i) {
        if (settings_read[i].number == &SaverSettings::fishcount) {
            order[i - 1] = settings_read[i];
            order[i] = settings_read[i - 1];
        }
    }
    return order;
}();
