// How loud the mixer plays, with a device that only pretends.
#include "system/Loudness.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "system/Sound.h"

namespace {

TEST(Loudness, IsSetWhileThereIsADeviceAndNothingHappensWithout) {
    setenv("SDL_AUDIODRIVER", "dummy", 1);
    setLoudness(30);
    {
        Sound sound;
        ASSERT_TRUE(sound.initialize());
        setLoudness(50);
        EXPECT_EQ(Mix_Volume(0, -1), MIX_MAX_VOLUME / 2);
    }
    setLoudness(70);
}

}  // namespace
