#include "quick/ReefTexts.h"

#include <QLocale>

#include "Globals.h"
#include "framework/LanguagePack.h"
#include "setup/SetupLanguage.h"

// The pictures of the settings come with their texts. Outside every namespace, as the macro
// demands.
static void loadPictures() { Q_INIT_RESOURCE(pictures); }

ReefTexts::ReefTexts(QObject* parent) : QObject(parent) {
    loadPictures();
    const std::string file = dataFile("Language.dat");
    const std::string language = setupLanguage(QLocale().uiLanguages(), file.c_str());
    texts = std::make_unique<LanguagePack>(file.c_str(), language.c_str());
}

ReefTexts::~ReefTexts() = default;

QString ReefTexts::text(const QString& key) const {
    return QString::fromUtf8(texts->getString(key.toUtf8().constData()));
}
