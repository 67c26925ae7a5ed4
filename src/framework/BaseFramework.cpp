#include "framework/BaseFramework.h"

#include <cstring>

BaseFramework::BaseFramework()
    : strRegPath(),
      dataPath(),
      strProjectName(),
      resolution_x(800),
      resolution_y(600),
      colordepth(16),
      quit(false) {}

BaseFramework::~BaseFramework() = default;

bool BaseFramework::openSettingsFile(const char*, const char*) { return false; }

bool BaseFramework::closeSettingsFile() { return false; }

bool BaseFramework::writeString(const char*, const char*) { return false; }

bool BaseFramework::writeInt(const char*, int) { return false; }

bool BaseFramework::writeBool(const char*, bool) { return false; }

void BaseFramework::readString(const char*, char* dest, const char* def) { std::strcpy(dest, def); }

int BaseFramework::readInt(const char*, int def) { return def; }

bool BaseFramework::readBool(const char*, bool def) { return def; }
