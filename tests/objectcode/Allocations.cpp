// Counts the memory that the test program holds.
#include "ObjectCodeFixture.h"

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <new>

namespace {

std::size_t LiveBytes = 0;
std::size_t PeakBytes = 0;

void* Allocate(std::size_t size) noexcept {
    void* const memory = std::malloc(size != 0 ? size : 1);
    LiveBytes += malloc_usable_size(memory);
    PeakBytes = std::max(PeakBytes, LiveBytes);
    return memory;
}

void Release(void* memory) noexcept {
    LiveBytes -= malloc_usable_size(memory);
    std::free(memory);
}

} // namespace

namespace vorel {

TMemoryPeak::TMemoryPeak() : Before(LiveBytes) {
    PeakBytes = LiveBytes;
}

std::size_t TMemoryPeak::Bytes() const noexcept {
    return PeakBytes - Before;
}

} // namespace vorel

void* operator new(std::size_t size) {
    if (void* const memory = Allocate(size)) {
        return memory;
    }
    throw std::bad_alloc();
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size);
}

void operator delete(void* memory) noexcept {
    Release(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    Release(memory);
}
