// Runs a fuzz target over files: replay PLACE..., folders being taken with all that is in them.
// Fails when there is no file at all.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "fuzz.h"

namespace {

bool run(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
    std::fprintf(stderr, "%s\n", path.c_str());
    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
    return !file.bad() && file.is_open();
}

}  // namespace

int main(int count, char** places) {
    int files = 0;
    for (int i = 1; i < count; ++i) {
        if (!std::filesystem::is_directory(places[i])) {
            files += run(places[i]);
            continue;
        }
        for (const auto& entry : std::filesystem::recursive_directory_iterator(places[i]))
            if (entry.is_regular_file())
                files += run(entry.path());
    }
    std::printf("%d files\n", files);
    return files > 0 ? 0 : 1;
}
