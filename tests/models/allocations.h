// What the program asks of the heap, counted from a test's chosen moment on.
#pragma once

#include <cstddef>

namespace test {

/// Begins counting anew.
void watchAllocations();
/// Calls of operator new since then, and the largest size asked for.
size_t allocationCount();
size_t largestAllocation();

}  // namespace test
