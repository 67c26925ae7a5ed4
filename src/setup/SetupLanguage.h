// Which language the setup dialog opens in.
#pragma once

#include <QStringList>
#include <string>

/// The section of the language file for a language named as the file does ("FRA", in any case) or
/// as locales are ("fr", "de-AT"). Empty when the file has none.
std::string languageSection(const QString& name, const char* languagefile);

/// The section for the first of these languages that has one; for none of them DEFAULT_LANGUAGE.
/// The C locale is no language.
std::string setupLanguage(const QStringList& languages, const char* languagefile);
