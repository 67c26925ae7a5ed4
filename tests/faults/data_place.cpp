#include <cstdlib>

#include "Globals.h"

// Takes the place of the program's own, which knows one directory only.
std::string dataFile(const char* name) { return std::getenv("DATA_PLACE") + std::string(name); }
