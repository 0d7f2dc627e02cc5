#include "bench/Allocations.h"

#include <atomic>
#include <cstdlib>
#include <new>

// glibc's own allocator under the name by which a replacement of malloc can reach it.
extern "C" void* __libc_malloc(std::size_t size);

namespace {

std::atomic<std::uint64_t> fromCpp = 0;
std::atomic<std::uint64_t> fromMalloc = 0;

} // namespace

extern "C" void* malloc(std::size_t size) {
    fromMalloc.fetch_add(1, std::memory_order_relaxed);
    return __libc_malloc(size);
}

void* operator new(std::size_t size) {
    fromCpp.fetch_add(1, std::memory_order_relaxed);
    if (void* memory = std::malloc(size != 0 ? size : 1))
        return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace noctra::bench {

AllocationCounts allocationCounts() {
    return {fromCpp, fromMalloc};
}

} // namespace noctra::bench
