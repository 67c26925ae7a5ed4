// Where the scene of a test finds its data: by default the clone's own.
#pragma once

#include <string>

namespace test {

/// Sets the directory that dataFile() looks in from now on, with a final slash; empty for the
/// clone's own data.
void setDataDirectory(const std::string& directory);

}  // namespace test
