// What every part of the saver agrees on.
#pragma once

#include <string>

/// Section of "Language.dat" that is shown; a compile-time choice.
#ifndef DEFAULT_LANGUAGE
#define DEFAULT_LANGUAGE "GER"
#endif

/// Most school fish and most single fish that the saver runs with, whatever the settings ask for: a
/// number from a damaged file would otherwise ask for more memory than there is, or hang.
constexpr int MAX_FISH = 1000;

/// Path of a file of the installed data, from its name below the data directory LOADDIR.
std::string dataFile(const char* name);
