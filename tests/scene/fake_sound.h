// What the scene asks of its sound player, written down instead of played.
#pragma once

#include <string>
#include <vector>

namespace test {

/// In order: "music NAME", "loop", "sound ID NAME", "play ID", "gone"; names without folders.
extern std::vector<std::string> sounds;
/// Every loudness that was set, in percent.
extern std::vector<float> loudness;

}  // namespace test
