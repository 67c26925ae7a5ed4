#include "support/chance.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

namespace {

enum class SOURCE { library, sequence, generator };

SOURCE source = SOURCE::library;
std::vector<int> values;
size_t next_value = 0;
std::minstd_rand generator;

}  // namespace

extern "C" {
int __real_rand();
void __real_srand(unsigned seed);
int __wrap_rand();
void __wrap_srand(unsigned seed);

int __wrap_rand() {
    switch (source) {
        case SOURCE::sequence:
            if (next_value < values.size())
                return values[next_value++];
            ADD_FAILURE() << "rand() was called more than " << values.size() << " times";
            return 0;
        case SOURCE::generator:
            return static_cast<int>(generator() & RAND_MAX);
        case SOURCE::library:
            break;
    }
    return __real_rand();
}

void __wrap_srand(unsigned seed) {
    if (source == SOURCE::library)
        __real_srand(seed);
}
}

void test::setRandom(std::vector<int> sequence) {
    source = SOURCE::sequence;
    values = std::move(sequence);
    next_value = 0;
}

size_t test::randomLeft() { return values.size() - next_value; }

void test::seedRandom(unsigned seed) {
    source = SOURCE::generator;
    generator.seed(seed);
}
