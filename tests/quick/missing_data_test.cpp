// The item Reef where the installed data is missing, whole or in part.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "Globals.h"
#include "quick/page.h"
#include "system/support.h"

namespace {

std::string folder;  ///< of the data, with a final slash

constexpr char FILLING[] = "Reef { anchors.fill: parent }";

}  // namespace

// In place of the program's own, which knows the installed folder only.
std::string dataFile(const char* name) { return folder + name; }

namespace {

TEST(MissingData, WithoutTheFolderThereIsAStillPictureAndTheReason) {
    folder = "/nowhere/at all/";
    test::Page page(FILLING);
    ASSERT_TRUE(page.waitFrames(1));
    EXPECT_TRUE(page.reef()->problem().contains("/nowhere/at all/"));
    EXPECT_FALSE(page.reef()->problem().contains('\n'));
    EXPECT_GT(test::colours(page.picture()), 1000);
    EXPECT_EQ(page.reef()->frameRate(), 0);
}

TEST(MissingData, AnEmptyFolderIsTheSame) {
    const QTemporaryDir empty;
    folder = (empty.path() + "/").toStdString();
    test::Page page(FILLING);
    ASSERT_TRUE(page.waitFrames(1));
    EXPECT_TRUE(page.reef()->problem().contains(empty.path()));
    EXPECT_GT(test::colours(page.picture()), 1000);
}

void writeGarbage(const QString& file) {
    QFile garbage(file);
    ASSERT_TRUE(garbage.open(QIODevice::WriteOnly));
    garbage.write("no picture at all");
}

/// The reef is drawn and says that it lacks this file.
void expectOneLineAbout(test::Page& page, const QString& file) {
    EXPECT_TRUE(test::until([&] { return page.reef()->problem().contains(file); }))
        << qPrintable(page.reef()->problem());
    EXPECT_FALSE(page.reef()->problem().contains('\n'));
    EXPECT_TRUE(test::until([&] { return page.reef()->frameRate() > 0; }));
}

TEST(MissingData, WithOneFileOnlyItDrawsWithoutTheOthersAndSaysSo) {
    const QTemporaryDir poor;
    folder = (poor.path() + "/").toStdString();
    writeGarbage(poor.filePath("terrain.nlt"));
    test::Page page(FILLING);
    expectOneLineAbout(page, poor.path());
}

/// A folder with all of the data but one file.
class Almost : public testing::TestWithParam<const char*> {
protected:
    Almost() {
        folder = (whole.path() + "/").toStdString();
        link(QStringLiteral(ATOLLIA_TEST_DATA), whole.path());
        QFile::remove(lost());
    }
    QString lost() const { return whole.filePath(GetParam()); }

    static void link(const QString& from, const QString& to) {
        for (const QFileInfo& file : QDir(from).entryInfoList(QDir::Files))
            QFile::link(file.canonicalFilePath(), to + '/' + file.fileName());
        for (const QFileInfo& folder :
             QDir(from).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot)) {
            QDir(to).mkdir(folder.fileName());
            link(folder.filePath(), to + '/' + folder.fileName());
        }
    }

    const QTemporaryDir whole;
};

TEST_P(Almost, ItDrawsWithoutTheFileAndSaysSo) {
    test::Page page(FILLING);
    expectOneLineAbout(page, QFileInfo(lost()).fileName());
    EXPECT_GT(test::colours(page.picture()), 1000);
}

TEST_P(Almost, TheSameWithAFileThatCannotBeRead) {
    writeGarbage(lost());
    test::Page page(FILLING);
    expectOneLineAbout(page, QFileInfo(lost()).fileName());
}

TEST_P(Almost, TheSameWithAPictureOfADepthThatNothingTakes) {
    const auto bytes = bitmap(16, 16, 16, [](int x, int) { return x; });
    QFile picture(lost());
    ASSERT_TRUE(picture.open(QIODevice::WriteOnly));
    picture.write(reinterpret_cast<const char*>(bytes.data()), static_cast<int>(bytes.size()));
    picture.close();
    test::Page page(FILLING);
    expectOneLineAbout(page, QFileInfo(lost()).fileName());
}

INSTANTIATE_TEST_SUITE_P(MissingData, Almost,
                         testing::Values("terrain.nlt", "water.nlt", "models/coral_c.nlm",
                                         "terrain_map.nlt", "hours/evening_cloudy.nlt"));

TEST(MissingData, AnotherSceneThatLacksNothingHasNoProblem) {
    const QTemporaryDir poor;
    folder = (poor.path() + "/").toStdString();
    writeGarbage(poor.filePath("terrain.nlt"));
    test::Page page(FILLING);
    expectOneLineAbout(page, poor.path());
    folder = ATOLLIA_TEST_DATA;
    page.reef()->set_skyType(1);
    EXPECT_TRUE(test::until([&] { return page.reef()->problem().isEmpty(); }));
}

}  // namespace
