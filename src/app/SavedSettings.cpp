#include "app/SavedSettings.h"

#include <KConfigGroup>
#include <QLocale>

#include "Globals.h"
#include "KMarivistaSetup.h"
#include "framework/SettingsFile.h"
#include "quick/Reef.h"
#include "setup/SetupLanguage.h"

namespace {

/// The property with the name of a key: "BoidCount" is `boidCount`.
QByteArray propertyOf(const char* key) {
    QByteArray name(key);
    name[0] = static_cast<char>(name[0] | 0x20);
    return name;
}

}  // namespace

void applySavedSettings(Reef& reef) {
    const std::unique_ptr<KConfig> file = openSettings(QStringLiteral("Orvo Atollia"));
    const KConfigGroup keys = file->group(QString());
    const SaverSettings defaults;
    for (const SETTING& setting : settings_read) {
        if (setting.flag == &SaverSettings::soundOn)
            reef.setMuted(!keys.readEntry(setting.key, defaults.soundOn));
        else if (setting.flag)
            reef.setProperty(propertyOf(setting.key),
                             keys.readEntry(setting.key, defaults.*setting.flag));
        else
            reef.setProperty(propertyOf(setting.key),
                             keys.readEntry(setting.key, defaults.*setting.number));
    }
    const EXTRA_SETTINGS today = REEF_WISHES::today();
    for (const EXTRA_SETTING& setting : extra_settings)
        reef.setProperty(propertyOf(setting.key),
                         keys.readEntry(setting.key, today.*setting.field));
}

std::unique_ptr<QDialog> makeSettingsDialog() {
    const std::string texts = dataFile("Language.dat");
    return std::make_unique<KMarivistaSetup>(texts,
                                             setupLanguage(QLocale().uiLanguages(), texts.c_str()),
                                             nullptr, Qt::WindowFlags(), REEF_WISHES::today());
}
