// A kernel parallel port as the library's IParallelPort.
#pragma once

#include "platform/ppdev/PpdevDevice.h"
#include "vorel/ParallelPort.h"

#include <atomic>

namespace vorel {

// Owned by its manager; references do not keep the object alive. They say who works with the port:
// when the last of them goes, the claim is given back. Users that hold no reference leave the port
// claimed from the first Prepare until the port library is unloaded or the process ends.
class TPpdevPort final : public IParallelPort {
public:
    explicit TPpdevPort(unsigned number) : Number(number), Device(number) {}
    TPpdevPort(const TPpdevPort&) = delete;
    TPpdevPort& operator=(const TPpdevPort&) = delete;
    virtual ~TPpdevPort() = default;

    unsigned GetNumber() const noexcept { return Number; }

    Status QueryInterface(const Guid& id, void*& object) noexcept override;
    std::int32_t AddRef() noexcept override { return ++Users; }
    std::int32_t Release() noexcept override;

    // Claims the port. Fails with EBUSY when somebody else uses it.
    Status Prepare() noexcept override;
    // What the kernel says; without that, the conventional addresses 378, 278 and 3BC of ports 0 to
    // 2, and 0 for any other.
    Status GetBaseAddress(std::uint32_t& address) noexcept override;
    // The cable ties data line 6 to the status lines Busy and Paper Out; it is present when both
    // follow that line. The data register is put back. A port that was not claimed is claimed for
    // the time of the test only.
    Status IsXilinxCable(Bool32& present) noexcept override;
    Status ReadData(std::uint8_t& value) noexcept override;
    Status ReadStatus(std::uint8_t& value) noexcept override;
    Status WriteData(std::uint8_t value) noexcept override;
    Status WriteControl(std::uint8_t value, std::uint8_t mask) noexcept override;
    // The status register needs no preparation here.
    Status PrepareStatusRead() noexcept override { return StatusOk; }

private:
    bool LoopAnswers();

    unsigned Number;
    TPpdevDevice Device;
    std::atomic<std::int32_t> Users{0};
};

} // namespace vorel
