#include "Globals.h"

std::string dataFile(const char* name) { return std::string(LOADDIR) + name; }
