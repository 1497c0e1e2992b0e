// The pods' wire format: descriptors, endpoints and the opcodes of the command stream.
//
// The stream is a sequence of items of two bytes, operand first, opcode second, at most 512 bytes
// in a batch. Items that ask for an answer get two bytes each, in order. Opcodes of the clock
// family: bit 7 capture, bits 6 and 5 set, bit 4 single sample instead of packed clocks, bit 3
// select, bits 2 to 0 the number of bits. The operand of packed clocks holds a pair of bits for
// each clock, the first lowest: TDI, and above it TMS.
#pragma once

#include <cstdint>

namespace vorel {

namespace UsbPod {
inline constexpr std::uint16_t VendorId = 0x1B8C;
inline constexpr std::uint16_t FirstProductId = 0x0100;
inline constexpr std::uint16_t SecondProductId = 0x0200;
inline constexpr std::uint8_t CommandEndpoint = 0x02;
inline constexpr std::uint8_t AnswerEndpoint = 0x86;
inline constexpr std::uint32_t MaximumTransferSize = 4096; // bytes, of interface 0
inline constexpr std::uint32_t TransferTimeoutMs = 5000;
} // namespace UsbPod

namespace UsbPodOpcode {
inline constexpr std::uint8_t Identify = 0x00; // answer: two characters, "11" when ready
inline constexpr std::uint8_t EndOfBatch = 0x10;
inline constexpr std::uint8_t Wait = 0x20;    // operand: ticks
inline constexpr std::uint8_t TimingA = 0x41; // operand: timing value
inline constexpr std::uint8_t TimingB = 0x42;
inline constexpr std::uint8_t TimingD = 0x44;
inline constexpr std::uint8_t Session = 0x50; // operand: 1 on, 0 off
inline constexpr std::uint8_t Tms = 0x51;     // operand: level
inline constexpr std::uint8_t Mode = 0x55;    // operand: pod mode
inline constexpr std::uint8_t Clocks = 0x60;  // plus the number of packed clocks, 1 to 4
inline constexpr std::uint8_t Sample = 0x71;  // operand: level of TDI; no clock
inline constexpr std::uint8_t SelectFlag = 0x08;
inline constexpr std::uint8_t CaptureFlag = 0x80;
inline constexpr std::uint8_t BitCountMask = 0x07;
inline constexpr std::uint8_t FamilyMask = 0xF0;
inline constexpr std::uint8_t NumberFamily = 0xD0; // answer: a 16-bit number; no pod command has it
} // namespace UsbPodOpcode

} // namespace vorel
