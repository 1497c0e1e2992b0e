// Who made the processor.
#pragma once

#include <string>

namespace vorel {

// The processor's own vendor string, such as "GenuineIntel" (twelve characters of the instruction
// CPUID, leaf 0); empty where the processor has no such instruction.
std::string ProcessorVendor();

} // namespace vorel
