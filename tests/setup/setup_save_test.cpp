// What the settings dialog does when the settings cannot be saved.
#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <KConfig>
#include <KConfigGroup>
#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <csignal>

#include "dialog.h"

using test::ConfigFolder;
using test::Dialog;

namespace {

/// Answers message boxes with their button and remembers what they said.
class Reader {
public:
    Reader() {
        QObject::connect(&timer, &QTimer::timeout, [this] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (!box)
                return;
            texts.append(box->text() + "|" + box->informativeText());
            QTest::keyClick(box, Qt::Key_Escape);
        });
        timer.start(0);
    }
    QStringList texts;

private:
    QTimer timer;
};

/// While it lives, the folder takes no files, not even from root.
class ReadOnly {
public:
    explicit ReadOnly(const QString& path) : path(path) {
        chmod(path.toLocal8Bit(), 0555);
        if (user == 0) {
            EXPECT_EQ(seteuid(65534), 0);
        }
    }
    ~ReadOnly() {
        EXPECT_EQ(seteuid(user), 0);
        chmod(path.toLocal8Bit(), 0755);
    }

private:
    static void chmod(const QByteArray& path, mode_t mode) {
        EXPECT_EQ(::chmod(path.constData(), mode), 0);
    }
    const uid_t user = geteuid();
    const QString path;
};

/// While it lives, no file grows beyond a size: what a full disk does.
class Full {
public:
    explicit Full(rlim_t size) : handler(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &before);
        const rlimit limit = {size, before.rlim_max};
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    }
    ~Full() {
        setrlimit(RLIMIT_FSIZE, &before);
        std::signal(SIGXFSZ, handler);
    }

private:
    rlimit before;
    void (*handler)(int);
};

class SetupSave : public testing::Test {
protected:
    SetupSave() : dialog("GER") {
        folder.write(before);
        dialog.readConfig();
        dialog.open();
        dialog.usesound->click();
    }

    /// OK has failed: the person was told once, nothing else has happened.
    void expectNothingSaved() {
        EXPECT_EQ(reader.texts, QStringList("Die Einstellungen konnten nicht gespeichert werden.|" +
                                            folder.file()));
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_EQ(dialog.result(), 0);
        EXPECT_EQ(folder.read(), before);
        EXPECT_EQ(
            QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
            QStringList("Orvo Atollia"))
            << "nothing half-written lies about";
    }
    void expectSaved() {
        EXPECT_EQ(reader.texts.size(), 1) << "no more messages";
        EXPECT_FALSE(dialog.isVisible());
        EXPECT_EQ(dialog.result(), QDialog::Accepted);
        EXPECT_TRUE(folder.read().contains("SoundOn=false\n"));
        EXPECT_TRUE(folder.read().contains("CameraSpeed=7\n"));
    }

    const QByteArray before = "CameraSpeed=7\n";
    ConfigFolder folder;
    Reader reader;
    Dialog dialog;
};

}  // namespace

TEST_F(SetupSave, ReadOnlyFolderIsToldAndCanBeTriedAgain) {
    {
        const ReadOnly lock(folder.path());
        dialog.okbutton->click();
        expectNothingSaved();
    }
    dialog.okbutton->click();
    expectSaved();
}

TEST_F(SetupSave, FullFolderIsToldAndCanBeTriedAgain) {
    for (const rlim_t size : {0, 1, 100, 150, 200}) {
        reader.texts.clear();
        const Full full(size);
        dialog.okbutton->click();
        expectNothingSaved();
    }
    dialog.okbutton->click();
    expectSaved();
    EXPECT_GT(folder.read().size(), 200) << "the limits above were too generous to fail";
}

TEST_F(SetupSave, CancelAfterAFailureLeavesTheFile) {
    const ReadOnly lock(folder.path());
    dialog.okbutton->click();
    QTest::keyClick(&dialog, Qt::Key_Escape);
    EXPECT_EQ(dialog.result(), QDialog::Rejected);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(folder.read(), before);
}

TEST(SetupSaveText, SpeaksTheLanguageOfTheDialog) {
    for (const auto& [language, text] : std::initializer_list<std::pair<const char*, const char*>>{
             {"GER", "Die Einstellungen konnten nicht gespeichert werden."},
             {"ENG", "The settings could not be saved."},
             {"FRA", "Les réglages n’ont pas pu être enregistrés."},
             {"ESP", "No se han podido guardar los ajustes."},
             {"ITA", "Impossibile salvare le impostazioni."}}) {
        ConfigFolder folder;
        Reader reader;
        Dialog dialog(language);
        const ReadOnly lock(folder.path());
        dialog.okbutton->click();
        ASSERT_EQ(reader.texts.size(), 1);
        EXPECT_TRUE(reader.texts[0].startsWith(QString::fromUtf8(text) + "|")) << language;
    }
}

// Opening a pipe would wait for whoever fills it.
TEST(SetupSavePlace, APipeInTheFilesPlaceIsToldAndLeftAlone) {
    ConfigFolder folder;
    ASSERT_EQ(mkfifo(folder.file().toLocal8Bit().constData(), 0600), 0);
    Reader reader;
    Dialog dialog;
    dialog.open();
    dialog.okbutton->click();
    EXPECT_EQ(reader.texts.size(), 1);
    EXPECT_TRUE(dialog.isVisible());
    struct stat place;
    ASSERT_EQ(stat(folder.file().toLocal8Bit().constData(), &place), 0);
    EXPECT_TRUE(S_ISFIFO(place.st_mode));
}

// A folder that is not there yet is made.
TEST(SetupSaveFolder, IsMadeWhenMissing) {
    ConfigFolder folder;
    QDir(folder.path()).removeRecursively();
    Reader reader;
    Dialog dialog;
    dialog.okbutton->click();
    EXPECT_TRUE(reader.texts.isEmpty());
    EXPECT_TRUE(folder.read().contains("BoidCount=10\n"));
}
