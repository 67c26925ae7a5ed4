// The real settings dialog on a configuration folder that lives as long as the test.
#pragma once

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include "KMarivistaSetup.h"

namespace test {

/// The dialog in a language of choice.
class Dialog : public KMarivistaSetup {
public:
    explicit Dialog(const char* language = "GER", const char* file = LANGUAGE_FILE)
        : KMarivistaSetup(file, language, nullptr, Qt::WindowFlags()) {}

    /// Shows the dialog as the host does and waits until it can be used.
    void open() {
        show();
        activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(this));
    }
};

/// While it lives, settings are read from and written to an empty folder of their own.
class ConfigFolder {
public:
    ConfigFolder() : before(qgetenv("XDG_CONFIG_HOME")) {
        qputenv("XDG_CONFIG_HOME", dir.path().toLocal8Bit());
    }
    ~ConfigFolder() { qputenv("XDG_CONFIG_HOME", before); }

    QString path() const { return dir.path(); }
    QString file() const { return dir.filePath(QStringLiteral("Orvo Atollia")); }
    /// Replaces the settings file.
    void write(const QByteArray& text) const {
        QFile out(file());
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(text);
    }
    /// All of the settings file; empty if there is none.
    QByteArray read() const {
        QFile in(file());
        return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray();
    }

private:
    QTemporaryDir dir;
    QByteArray before;
};

}  // namespace test
