#include "framework/SettingsFile.h"

#include <sys/stat.h>

#include <QFile>
#include <QSet>
#include <QStandardPaths>
#include <cstdio>

namespace {

constexpr off_t LARGEST = 1024 * 1024;  // bytes

/// Reading from a pipe or a device may never end. A folder is left to KConfig, which reads nothing.
const char* whyNot(const QByteArray& path) {
    struct stat file;
    if (stat(path.constData(), &file) != 0 || S_ISDIR(file.st_mode))
        return nullptr;
    if (!S_ISREG(file.st_mode))
        return "is no plain file";
    return file.st_size > LARGEST ? "is larger than 1 MiB" : nullptr;
}

}  // namespace

std::unique_ptr<KConfig> openSettings(const QString& name) {
    constexpr auto place = QStandardPaths::GenericConfigLocation;
    for (const QString& folder : QStandardPaths::standardLocations(place)) {
        const QByteArray path = QFile::encodeName(folder + QLatin1Char('/') + name);
        const char* reason = whyNot(path);
        if (!reason)
            continue;
        static QSet<QByteArray> told;
        if (!told.contains(path)) {
            told.insert(path);
            std::printf("%s %s, running with the default settings\n", path.constData(), reason);
        }
        return std::make_unique<KConfig>(QString(), KConfig::SimpleConfig);
    }
    return std::make_unique<KConfig>(name, KConfig::NoGlobals, place);
}
