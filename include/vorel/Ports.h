// A port is one physical way out of the machine to JTAG hardware: the parallel-port cable or one
// USB pod.
//
// Ports live from the load of the library to its unload. They are not counted: the pointers stay
// good for as long as the library is loaded, also for a pod that was unplugged meanwhile.
#pragma once

#include "vorel/Interface.h"

namespace vorel {

class IJTagBitBus;
class IJTagChannel;
class IParallelPort;

class IJTagPort : public IInterface {
public:
    static constexpr Guid Id{
        0xDBD74F4F, 0x61E3, 0x49A9, {0xAC, 0x3D, 0x0A, 0xB1, 0x90, 0xD2, 0x0D, 0xAD}};

    // For people: "Parallel-Port (Address: 378)", or the pod's product name and serial number.
    virtual Status GetName(WideText& name) noexcept = 0;
    virtual Status GetDescription(WideText& description) noexcept = 0;
    // Asks the hardware now.
    virtual Status IsPresent(Bool32& present) noexcept = 0;
    // What the last IsPresent found; asks nothing.
    virtual Status IsConnected(Bool32& connected) noexcept = 0;
    // Finds the cable or board and scans its chains; true when something was found. Without `force`
    // the way that worked last is tried first. Blocks for the length of the scans.
    virtual Status Detect(Bool32 force, Bool32& found) noexcept = 0;
    // The four chains. They exist from the start; before a successful Detect they have no devices.
    virtual Status GetHardChain(IJTagChannel*& channel) noexcept = 0;
    virtual Status GetSoftChain(IJTagChannel*& channel) noexcept = 0;
    virtual Status GetBoardChain(IJTagChannel*& channel) noexcept = 0;
    virtual Status GetSpiChain(IJTagBitBus*& bus) noexcept = 0;
    // Four numbers of the board file in use; 0 without one, and for a USB pod.
    virtual Status GetBoardInfo1(std::int32_t& value) noexcept = 0;
    virtual Status GetBoardInfo2(std::int32_t& value) noexcept = 0;
    virtual Status GetBoardInfo3(std::int32_t& value) noexcept = 0;
    virtual Status GetBoardInfo4(std::int32_t& value) noexcept = 0;
    // Parallel port: the base address, three hexadecimal digits. Pod: its serial number.
    virtual Status GetPortId(WideText& id) noexcept = 0;

protected:
    ~IJTagPort() = default;
};

class IJTagParallelPort : public IJTagPort {
public:
    static constexpr Guid Id{
        0xDC8646B9, 0x62FA, 0x486B, {0x99, 0x57, 0xFB, 0x25, 0x03, 0xD8, 0xC5, 0x6F}};

    // The parallel port in use; null until Detect has found one.
    virtual Status GetParallelPort(IParallelPort*& port) noexcept = 0;

protected:
    ~IJTagParallelPort() = default;
};

class IJTagUsbPort : public IJTagPort {
public:
    static constexpr Guid Id{
        0xAA114DC9, 0xED7C, 0x466F, {0x9C, 0x2D, 0x49, 0x20, 0xC6, 0x37, 0x32, 0xF2}};

protected:
    ~IJTagUsbPort() = default;
};

} // namespace vorel
