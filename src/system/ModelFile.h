// What the decoders of the model files share with each other and with QModel, which uses them.
#pragma once

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <optional>
#include <vector>

#include "system/QModel.h"

// All numbers in the layouts are little-endian, as they are on the machines this runs on.
static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "the file records are copied as they lie");

/// A decoded model file: at least one frame, every index within the arrays it goes to.
struct MODEL_MESH {
    MODEL_MESH(int numframes, int numverts, int numtris, int numtex)
        : frames(numframes),
          vertices(numverts),
          triangles(numtris),
          framedata(new MDX_FRAMEDATA[numframes]),
          indices(new GLIndex[3 * static_cast<size_t>(numtris)]),
          texindices(new GLIndex[3 * static_cast<size_t>(numtris)]) {
        for (int f = 0; f < frames; ++f) {
            framedata[f].vertices.reset(new GLVertex[numverts]);
            framedata[f].tex.reset(new GLVector2[numtex]);
        }
    }

    int frames, vertices, triangles;
    std::unique_ptr<MDX_FRAMEDATA[]> framedata;
    std::unique_ptr<GLIndex[]> indices, texindices;
    std::vector<SAnimation> animations;  ///< those that the file names
};

/// The bytes of one file, with the checks that every read of them needs.
class ModelBytes {
public:
    ModelBytes(const uint8_t* data, size_t size, const char* loader, const char* path)
        : data_(data), size_(static_cast<int64_t>(size)), loader_(loader), path_(path) {}

    int64_t size() const { return size_; }

    /// Whether count records of so many bytes lie in the file at offset. Takes any numbers.
    bool fits(int64_t offset, int64_t count, int64_t recordsize) const {
        return offset >= 0 && offset <= size_ && count >= 0 &&
               count <= (size_ - offset) / recordsize;
    }

    /// The record at an offset that was found to fit. Records need not be aligned.
    template <class Record>
    Record read(int64_t offset) const {
        Record record;
        std::memcpy(&record, data_ + offset, sizeof(Record));
        return record;
    }

    /// Reads the record at the start; false, after the one line, when the file is shorter.
    template <class Record>
    bool begin(Record& header) const {
        if (fits(0, 1, sizeof(Record))) {
            header = read<Record>(0);
            return true;
        }
        broken("the header needs %zu bytes, the file has %zu", sizeof(Record), size_t(size_));
        return false;
    }

    /// Prints the one line that says what is wrong, and is nothing.
    __attribute__((format(printf, 2, 3))) std::nullopt_t broken(const char* what, ...) const {
        char text[160];
        va_list args;
        va_start(args, what);
        std::vsnprintf(text, sizeof(text), what, args);
        va_end(args);
        std::printf("QModel::%s %s: %s\n", loader_, path_, text);
        return std::nullopt;
    }

private:
    const uint8_t* data_;
    int64_t size_;
    const char* loader_;
    const char* path_;
};

/// Decode the bytes of a file; nothing, after one line on standard output, if they are broken. The
/// path is for that line only.
std::optional<MODEL_MESH> decodeMD3File(const uint8_t* data, size_t size, const char* path);
std::optional<MODEL_MESH> decodeMD2File(const uint8_t* data, size_t size, const char* path);
