#include "test_data.h"

#include "Globals.h"

namespace {
std::string directory = LOADDIR;
}

void test::setDataDirectory(const std::string& wanted) {
    directory = wanted.empty() ? LOADDIR : wanted;
}

// Takes the place of the program's own, which knows one directory only.
std::string dataFile(const char* name) { return directory + name; }
