// The item Reef where the installed data is missing, whole or in part.
#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include "Globals.h"
#include "quick/page.h"

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

TEST(MissingData, WithOneFileOnlyItDrawsWithoutTheOthers) {
    const QTemporaryDir poor;
    folder = (poor.path() + "/").toStdString();
    QFile terrain(poor.filePath("terrain.nlt"));
    ASSERT_TRUE(terrain.open(QIODevice::WriteOnly));
    terrain.write("no picture at all");
    terrain.close();
    test::Page page(FILLING);
    EXPECT_TRUE(page.waitFrames(5));
    EXPECT_EQ(page.reef()->problem(), "");
}

}  // namespace
