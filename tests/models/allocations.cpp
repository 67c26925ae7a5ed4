#include "models/allocations.h"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace {

size_t count = 0;
size_t largest = 0;

}  // namespace

void* operator new(size_t size) {
    ++count;
    largest = std::max(largest, size);
    if (void* memory = std::malloc(size ? size : 1))
        return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept { std::free(memory); }

void operator delete(void* memory, size_t) noexcept { std::free(memory); }

namespace test {

void watchAllocations() { count = largest = 0; }

size_t allocationCount() { return count; }

size_t largestAllocation() { return largest; }

}  // namespace test
