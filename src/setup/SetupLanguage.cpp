#include "setup/SetupLanguage.h"

#include <QLocale>

#include "Globals.h"
#include "framework/LanguagePack.h"

namespace {

/// The codes of the language file, which follow no one standard.
constexpr struct {
    QLocale::Language language;
    const char* section;
} SECTIONS[] = {
    {QLocale::German, "GER"},  {QLocale::English, "ENG"}, {QLocale::French, "FRA"},
    {QLocale::Spanish, "ESP"}, {QLocale::Italian, "ITA"},
};

}  // namespace

std::string languageSection(const QString& name, const char* languagefile) {
    const QLocale::Language wanted = QLocale(name).language();
    for (const auto& known : SECTIONS)
        if (known.language == wanted ||
            name.compare(QLatin1String(known.section), Qt::CaseInsensitive) == 0)
            return LanguagePack(languagefile, known.section).initialized ? known.section : "";
    return {};
}

std::string setupLanguage(const QStringList& languages, const char* languagefile) {
    for (const QString& name : languages) {
        std::string section = languageSection(name, languagefile);
        if (!section.empty())
            return section;
    }
    return DEFAULT_LANGUAGE;
}
