// Chance in a test: what rand() returns. The library's own generator until one of these is called;
// from then on srand() changes nothing.
#pragma once

#include <cstddef>
#include <vector>

namespace test {

/// Exactly these values, in this order; asking for one more fails the test.
void setRandom(std::vector<int> sequence);
/// How many values of the sequence have not been asked for.
size_t randomLeft();
/// A generator of its own, which gives the same values for the same seed.
void seedRandom(unsigned seed);

}  // namespace test
