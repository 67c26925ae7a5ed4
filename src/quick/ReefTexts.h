// The texts of the settings for pages, in the language of the desktop.
#pragma once

#include <QObject>
#include <memory>

class LanguagePack;

/// `ReefTexts` of the module org.atollia.reef.
class ReefTexts : public QObject {
    Q_OBJECT

public:
    explicit ReefTexts(QObject* parent = nullptr);
    ~ReefTexts() override;

    /// The text with this key in the language file; empty when there is none.
    Q_INVOKABLE QString text(const QString& key) const;

private:
    std::unique_ptr<LanguagePack> texts;
};
