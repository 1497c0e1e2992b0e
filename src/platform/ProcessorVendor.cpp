#include "platform/ProcessorVendor.h"

#if defined(__has_include)
#if __has_include(<cpuid.h>) && (defined(__x86_64__) || defined(__i386__))
#define VOREL_HAS_CPUID 1
#include <cpuid.h>
#endif
#endif

#include <array>
#include <cstring>

namespace vorel {

#ifdef VOREL_HAS_CPUID

std::string ProcessorVendor() {
    unsigned highestLeaf = 0;
    std::array<unsigned, 3> words{};
    // The text lies in EBX, EDX, ECX, in this order.
    if (__get_cpuid(0, &highestLeaf, &words[0], &words[2], &words[1]) == 0) {
        return {};
    }
    std::array<char, sizeof(words)> text{};
    std::memcpy(text.data(), words.data(), text.size());
    return {text.data(), text.size()};
}

#else

std::string ProcessorVendor() {
    return {};
}

#endif

} // namespace vorel
