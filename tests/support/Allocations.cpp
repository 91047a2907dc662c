#include "tests/support/Allocations.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> allocationCount{0};
std::atomic<std::size_t> allocationBytes{0};
std::atomic<std::size_t> freedCount{0};

} // namespace

Allocations Allocations::now() {
    return {allocationCount.load(), allocationBytes.load(), freedCount.load()};
}

#ifdef __SANITIZE_THREAD__ // which has an allocator of its own, and tells of it

extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*taken)(const volatile void*, std::size_t),
                                                         void (*freed)(const volatile void*));

namespace {

const int installed = __sanitizer_install_malloc_and_free_hooks(
    [](const volatile void*, std::size_t size) {
        allocationCount.fetch_add(1, std::memory_order_relaxed);
        allocationBytes.fetch_add(size, std::memory_order_relaxed);
    },
    [](const volatile void*) { freedCount.fetch_add(1, std::memory_order_relaxed); });

} // namespace

#else

// NOLINTBEGIN(cppcoreguidelines-no-malloc,misc-new-delete-overloads): these are the allocator
void* operator new(std::size_t size, const std::nothrow_t& /*nothrow*/) noexcept {
    allocationCount.fetch_add(1, std::memory_order_relaxed);
    allocationBytes.fetch_add(size, std::memory_order_relaxed);
    return std::malloc(size);
}

void* operator new(std::size_t size) {
    if (void* memory = operator new(size, std::nothrow)) return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    if (memory) freedCount.fetch_add(1, std::memory_order_relaxed);
    std::free(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept {
    operator delete(memory);
}
// NOLINTEND(cppcoreguidelines-no-malloc,misc-new-delete-overloads)

#endif
