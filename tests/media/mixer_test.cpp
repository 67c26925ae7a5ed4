// What a Sound asks of the mixer, in order. The mixer is a stand-in that writes it down.
#include <gmock/gmock.h>

#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "system/Sound.h"

namespace {

std::vector<std::string> calls;
Mix_Chunk chunks[4];
int loaded = 0;
bool device_there = true;

std::string nameOf(const Mix_Chunk* chunk) {
    for (int i = 0; i < 4; ++i)
        if (chunk == &chunks[i])
            return "chunk " + std::to_string(i);
    return "no chunk";
}

}  // namespace

extern "C" {
int __wrap_Mix_OpenAudio(int rate, Uint16 format, int channels, int buffers) {
    calls.push_back("open " + std::to_string(rate) + " " + std::to_string(format) + " " +
                    std::to_string(channels) + " " + std::to_string(buffers));
    return device_there ? 0 : -1;
}
int __wrap_Mix_QuerySpec(int* rate, Uint16* format, int* channels) {
    calls.push_back("query");
    *rate = 44100;
    *format = AUDIO_U8;
    *channels = 1;
    return 0;
}
Mix_Chunk* __wrap_Mix_LoadWAV_RW(SDL_RWops* source, int free_source) {
    calls.push_back(source ? "load " + std::to_string(free_source) : "load nothing");
    if (!source)
        return nullptr;
    SDL_RWclose(source);
    return &chunks[loaded++];
}
int __wrap_Mix_PlayChannelTimed(int channel, Mix_Chunk* chunk, int loops, int ticks) {
    calls.push_back("play " + nameOf(chunk) + " on " + std::to_string(channel) + ", loops " +
                    std::to_string(loops) + ", ticks " + std::to_string(ticks));
    return -1;
}
int __wrap_Mix_AllocateChannels(int count) {
    calls.push_back("allocate " + std::to_string(count));
    return count;
}
int __wrap_Mix_HaltMusic() {
    calls.push_back("halt music");
    return 0;
}
int __wrap_Mix_HaltChannel(int channel) {
    calls.push_back("halt " + std::to_string(channel));
    return 0;
}
void __wrap_Mix_FreeChunk(Mix_Chunk* chunk) { calls.push_back("free " + nameOf(chunk)); }
void __wrap_Mix_CloseAudio() { calls.push_back("close"); }
}

namespace {

using testing::ElementsAre;

class MixerTest : public testing::Test {
protected:
    MixerTest() {
        device_there = true;
        EXPECT_TRUE(opened.initialize());
        calls.clear();
        loaded = 0;
        path = testing::TempDir() + "mixer" + std::to_string(getpid()) + ".wav";
        const unsigned char bytes[] = {'R', 'I', 'F', 'F', 40,   0,    0, 0, 'W', 'A', 'V', 'E',
                                       'f', 'm', 't', ' ', 16,   0,    0, 0, 1,   0,   1,   0,
                                       34,  86,  0,   0,   0x44, 0xac, 0, 0, 2,   0,   16,  0,
                                       'd', 'a', 't', 'a', 4,    0,    0, 0, 1,   2,   3,   4};
        std::ofstream(path, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes), sizeof bytes);
    }
    ~MixerTest() override { std::remove(path.c_str()); }

    std::string path;
    Sound opened;  ///< each test begins with a device that nobody has closed
};

TEST_F(MixerTest, TheSceneDoesAllOfIt) {
    {
        Sound sound;
        EXPECT_TRUE(sound.initialize());
        EXPECT_EQ(sound.audio_rate, 44100);
        EXPECT_EQ(sound.audio_format, AUDIO_U8);
        EXPECT_EQ(sound.audio_channels, 1);
        EXPECT_EQ(sound.audio_buffers, 4096);
        EXPECT_TRUE(sound.loadMusic(path.c_str()));
        sound.playMusic();
        sound.loadSound(path.c_str(), 5);
        sound.loadSound(path.c_str(), 2);
        sound.loadSound(path.c_str(), 5);
        sound.playSound(2, 0);
        sound.playSound(5, -1);
        sound.playSound(3, 0);
        EXPECT_THAT(calls, ElementsAre("open 22050 32784 2 4096", "query", "load 1",
                                       "play chunk 0 on -1, loops -1, ticks -1", "load 1", "load 1",
                                       "load 1", "play chunk 2 on -1, loops 0, ticks -1",
                                       "play chunk 1 on -1, loops -1, ticks -1"));
        calls.clear();
    }
    EXPECT_THAT(calls, ElementsAre("halt music", "halt -1", "free chunk 0", "free chunk 1",
                                   "free chunk 2", "free chunk 3", "close"));
}

TEST_F(MixerTest, WithoutADeviceTheRestIsAsked) {
    device_there = false;
    {
        Sound sound;
        EXPECT_FALSE(sound.initialize());
        EXPECT_EQ(sound.audio_rate, 22050);
        sound.loadMusic(path.c_str());
        sound.playMusic();
    }
    EXPECT_THAT(calls, ElementsAre("open 22050 32784 2 4096", "load 1",
                                   "play chunk 0 on -1, loops -1, ticks -1", "halt music",
                                   "halt -1", "free chunk 0", "close"));
}

TEST_F(MixerTest, APlayerThatDidNothingEndsInTheSameOrder) {
    { Sound sound; }
    EXPECT_THAT(calls, ElementsAre("halt music", "halt -1", "close"));
}

TEST_F(MixerTest, AMissingFileIsTheLoadersToRefuse) {
    Sound sound;
    testing::internal::CaptureStdout();
    EXPECT_TRUE(sound.loadMusic("no such.wav"));
    sound.loadSound("no such.wav", 0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "musicchunk == 0\nsc.chunk == NULL\n");
    EXPECT_THAT(calls, ElementsAre("load nothing", "load nothing"));
}

}  // namespace
