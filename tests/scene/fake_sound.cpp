#include "fake_sound.h"

#include "system/Loudness.h"
#include "system/Sound.h"

std::vector<std::string> test::sounds;
std::vector<float> test::loudness;

namespace {
std::string fileName(const char* path) {
    const std::string text = path;
    return text.substr(text.rfind('/') + 1);
}
}  // namespace

Sound::~Sound() { test::sounds.push_back("gone"); }
bool Sound::initialize() { return true; }
bool Sound::loadMusic(const char* path) {
    test::sounds.push_back("music " + fileName(path));
    return true;
}
void Sound::playMusic() { test::sounds.push_back("loop"); }
void Sound::loadSound(const char* path, int id) {
    test::sounds.push_back("sound " + std::to_string(id) + " " + fileName(path));
}
void Sound::playSound(int id, int loops) {
    test::sounds.push_back("play " + std::to_string(id) + (loops == 0 ? "" : " again"));
}

void setLoudness(float percent) { test::loudness.push_back(percent); }
