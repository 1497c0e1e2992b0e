#include "transport/UsbIoBuf.h"

#include <cstdlib>

namespace vorel {

TUsbIoBuf::TUsbIoBuf(IUsbServices& services, void* buffer, std::uint32_t size) noexcept
    : Buffer(buffer), Size(size), Overlapped(services.CreateRequest()), Services(services) {}

TUsbIoBuf::~TUsbIoBuf() {
    if (Overlapped != nullptr) {
        Services.DestroyRequest(Overlapped);
    }
    if (OwnsBuffer) {
        std::free(Buffer);
    }
}

} // namespace vorel
