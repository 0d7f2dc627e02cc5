#include "bench/panel/CallerCounts.h"

#include <atomic>
#include <cstdlib>
#include <link.h>
#include <new>
#include <string_view>

// glibc's own allocator under the name by which a replacement of malloc can reach it.
extern "C" void* __libc_malloc(std::size_t size);

namespace {

/// Where a program or library lies in memory.
struct Span {
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;

    [[nodiscard]] bool contains(const void* address) const {
        const auto at = reinterpret_cast<std::uintptr_t>(address);
        return at >= begin && at < end;
    }
};

std::atomic<std::uint64_t> fromUs = 0;
std::atomic<std::uint64_t> fromOthers = 0;
// The program; the panel's library; the standard library, whose strings and lists only we use.
Span ourSpans[3];
bool spansAreKnown = false;

int noteSpan(dl_phdr_info* info, std::size_t, void*) {
    const std::string_view name = info->dlpi_name;
    Span* span = name.empty()                                             ? &ourSpans[0]
                 : name.find("libnoctra-panel") != std::string_view::npos ? &ourSpans[1]
                 : name.find("libstdc++") != std::string_view::npos       ? &ourSpans[2]
                                                                          : nullptr;
    if (span == nullptr || span->begin != 0)
        return 0;
    for (int i = 0; i < info->dlpi_phnum; ++i) {
        const auto& part = info->dlpi_phdr[i];
        if (part.p_type == PT_LOAD && (part.p_flags & PF_X) != 0)
            *span = {info->dlpi_addr + part.p_vaddr, info->dlpi_addr + part.p_vaddr + part.p_memsz};
    }
    return 0;
}

bool isOurs(const void* caller) {
    return spansAreKnown && (ourSpans[0].contains(caller) || ourSpans[1].contains(caller) ||
                             ourSpans[2].contains(caller));
}

} // namespace

extern "C" void* malloc(std::size_t size) {
    fromOthers.fetch_add(1, std::memory_order_relaxed);
    return __libc_malloc(size);
}

void* operator new(std::size_t size) {
    (isOurs(__builtin_return_address(0)) ? fromUs : fromOthers)
        .fetch_add(1, std::memory_order_relaxed);
    if (void* memory = __libc_malloc(size != 0 ? size : 1))
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

void findPanelLibrary() {
    dl_iterate_phdr(noteSpan, nullptr);
    spansAreKnown = true;
}

CallerCounts callerCounts() {
    return {fromUs, fromOthers};
}

} // namespace noctra::bench
