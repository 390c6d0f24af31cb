#include "Allocations.h"

#include <cstdlib>
#include <new>

namespace {

thread_local std::size_t count = 0;
thread_local std::size_t failingSize = 0;

}  // namespace

void* operator new(std::size_t size) {
    ++count;
    void* const memory = failingSize != 0 && size == failingSize ? nullptr : std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

// Not inlined, or g++ takes the free(3) in it for the wrong partner of new.
[[gnu::noinline]] void operator delete(void* memory) noexcept {
    std::free(memory);
}

[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

// These call the ones above by themselves, but not under a sanitizer, which brings its own.
void* operator new[](std::size_t size) {
    return ::operator new(size);
}

void operator delete[](void* memory) noexcept {
    std::free(memory);
}

void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}

std::size_t kelvo::test::allocations() {
    return count;
}

void kelvo::test::failAllocationsOf(std::size_t size) {
    failingSize = size;
}
