#include "ObjectCodeFixture.h"

#include <cstdlib>
#include <new>

namespace vorel {
std::size_t LargestAllocation = 0;
}

void* operator new(std::size_t size) {
    vorel::LargestAllocation = std::max(vorel::LargestAllocation, size);
    if (void* const memory = std::malloc(size != 0 ? size : 1)) {
        return memory;
    }
    throw std::bad_alloc();
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    vorel::LargestAllocation = std::max(vorel::LargestAllocation, size);
    return std::malloc(size != 0 ? size : 1);
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
