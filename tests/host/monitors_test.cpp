// Which monitors a window is drawn for.

#include "host/Monitors.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const AREA LEFT{0, 0, 1920, 1080}, RIGHT{1920, 0, 1280, 1024}, BELOW{0, 1080, 1920, 1080};

TEST(Monitors, AWindowOverTwoHasAPictureForEach) {
    EXPECT_THAT(monitorsInside({0, 0, 3200, 1080}, {LEFT, RIGHT}), ElementsAre(LEFT, RIGHT));
    EXPECT_THAT(monitorsInside({0, 0, 1920, 2160}, {LEFT, RIGHT, BELOW}), ElementsAre(LEFT, BELOW));
}

TEST(Monitors, PlacesAreTheWindowsOwn) {
    EXPECT_THAT(monitorsInside({-10, -20, 4000, 2000}, {LEFT, RIGHT}),
                ElementsAre(AREA{10, 20, 1920, 1080}, AREA{1930, 20, 1280, 1024}));
}

TEST(Monitors, AWindowInOneMonitorOrAcrossTheirBorderIsOnePicture) {
    EXPECT_THAT(monitorsInside({0, 0, 1920, 1080}, {LEFT, RIGHT}), IsEmpty());
    EXPECT_THAT(monitorsInside({1500, 100, 900, 600}, {LEFT, RIGHT}), IsEmpty());
    EXPECT_THAT(monitorsInside({0, 0, 2500, 1080}, {LEFT, RIGHT}), IsEmpty());
    EXPECT_THAT(monitorsInside({0, 0, 100, 100}, {}), IsEmpty());
}

TEST(Monitors, MonitorsThatShowTheSameCountOnce) {
    const AREA window{0, 0, 3200, 2160}, beamer{0, 0, 1024, 768};
    EXPECT_THAT(monitorsInside(window, {LEFT, LEFT}), IsEmpty());
    EXPECT_THAT(monitorsInside(window, {beamer, LEFT, RIGHT}), ElementsAre(LEFT, RIGHT));
    EXPECT_THAT(monitorsInside(window, {LEFT, beamer, RIGHT}), ElementsAre(LEFT, RIGHT));
    EXPECT_THAT(monitorsInside(window, {LEFT, {0, 0, 0, 0}, RIGHT}), ElementsAre(LEFT, RIGHT));
}

}  // namespace
