#include "platform/ppdev/PpdevPort.h"

#include "support/Errors.h"
#include "support/Objects.h"

#include <array>
#include <fstream>
#include <string>

namespace vorel {

namespace {

constexpr std::array<std::uint32_t, 3> ConventionalAddresses{0x378, 0x278, 0x3BC};
constexpr std::uint8_t LoopDataBit = 0x40;
constexpr std::uint8_t PaperOutBit = 0x20;
constexpr std::uint8_t BusyBit = 0x80; // inverted by the port

} // namespace

Status TPpdevPort::QueryInterface(const Guid& id, void*& object) noexcept {
    return QueryOneOf<IParallelPort>(this, id, object);
}

std::int32_t TPpdevPort::Release() noexcept {
    const std::int32_t left = --Users;
    if (left == 0) {
        Device.Release();
    }
    return left;
}

Status TPpdevPort::Prepare() noexcept {
    return Guard([&] { Device.Claim(); });
}

Status TPpdevPort::GetBaseAddress(std::uint32_t& address) noexcept {
    address = 0;
    return Guard([&] {
        // Two decimal numbers: the address, and that of the extended registers.
        std::ifstream file("/proc/sys/dev/parport/parport" + std::to_string(Number) + "/base-addr");
        std::uint32_t value = 0;
        if (file >> value) {
            address = value & 0xFFFFU;
        } else if (Number < ConventionalAddresses.size()) {
            address = ConventionalAddresses.at(Number);
        }
    });
}

bool TPpdevPort::LoopAnswers() {
    const std::uint8_t before = Device.ReadData();
    Device.WriteData(before | LoopDataBit);
    const std::uint8_t high = Device.ReadStatus();
    Device.WriteData(before & static_cast<std::uint8_t>(~LoopDataBit));
    const std::uint8_t low = Device.ReadStatus();
    Device.WriteData(before);
    constexpr std::uint8_t both = PaperOutBit | BusyBit;
    return (high & both) == PaperOutBit && (low & both) == BusyBit;
}

Status TPpdevPort::IsXilinxCable(Bool32& present) noexcept {
    present = False32;
    const bool wasClaimed = Device.IsClaimed();
    const Status status = Guard([&] {
        Device.Claim();
        present = ToBool32(LoopAnswers());
    });
    if (!wasClaimed) {
        Device.Release();
    }
    return status;
}

Status TPpdevPort::ReadData(std::uint8_t& value) noexcept {
    value = 0;
    return Guard([&] { value = Device.ReadData(); });
}

Status TPpdevPort::ReadStatus(std::uint8_t& value) noexcept {
    value = 0;
    return Guard([&] { value = Device.ReadStatus(); });
}

Status TPpdevPort::WriteData(std::uint8_t value) noexcept {
    return Guard([&] { Device.WriteData(value); });
}

Status TPpdevPort::WriteControl(std::uint8_t value, std::uint8_t mask) noexcept {
    return Guard([&] { Device.WriteControl(value, mask); });
}

} // namespace vorel
