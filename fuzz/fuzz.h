// What the fuzz targets share. Each is one LLVMFuzzerTestOneInput, driven by libFuzzer or, in the
// ordinary builds, by replay.cpp. GL is there, without a context and without effect; uploads read
// the image as GL would.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace fuzz {

/// Catches what is printed to standard output while it lives.
class Printed {
public:
    Printed();
    ~Printed();
    Printed(const Printed&) = delete;
    Printed& operator=(const Printed&) = delete;

    /// Lines so far.
    int lines();

private:
    char text_[4096];
    std::FILE* before_;
};

/// Ends the program, and says why, when a promise is not kept.
void require(bool kept, const char* promise);

/// The bytes as a file for what reads files only; its path, the same for every call.
const char* asFile(const uint8_t* data, size_t size);

}  // namespace fuzz
