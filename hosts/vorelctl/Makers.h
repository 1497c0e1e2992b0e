// Names of the manufacturers that one meets on JTAG chains.
#pragma once

#include <cstdint>
#include <string>

namespace vorel::host {

// The maker of an 11-bit manufacturer field (bits 1 to 11 of an id): the JEDEC JEP106 code in bits
// 0 to 6, the number of its bank less one in bits 7 to 10. Empty when it is not one of the common
// ones.
std::string MakerName(std::uint32_t manufacturer);

} // namespace vorel::host
