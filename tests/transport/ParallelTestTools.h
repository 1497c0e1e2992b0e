// Driving a chain through a parallel-port mapping, bit by bit.
#pragma once

#include "simulator/Chain.h"
#include "simulator/ParallelCable.h"
#include "transport/JTagParallelPortMap.h"

#include <string_view>

namespace vorel {

// The cable of PlainHardChain.JTGBRD.
inline sim::CableWiring PlainWiring() {
    using enum sim::PortRegister;
    return {{Data, 1}, {Data, 2}, {Data, 0}, {Status, 4}};
}

inline TJTagParallelPort_ChannelMapping PlainMapping(IParallelPort& port) {
    TJTagParallelPort_ChannelMapping mapping;
    mapping.Mask_TCK = 2;
    mapping.Mask_TMS = 4;
    mapping.Mask_TDI = 1;
    mapping.Mask_TDO = 0x1000;
    mapping.SetPort(&port);
    return mapping;
}

inline void AddDevice(sim::TChain& chain, std::uint32_t id) {
    sim::TapSettings settings;
    settings.Id = id;
    chain.Add(std::make_unique<sim::TTapDevice>(settings));
}

// One clock: settle, rise, fall.
inline void ClockOnce(TJTagParallelPort_ChannelMapping& mapping, bool tms, bool tdi = false) {
    for (const bool tck : {false, true, false}) {
        mapping.SetSignals(tck ? 1 : 0, tms ? 1 : 0, tdi ? 1 : 0);
    }
}

// From any state to Shift-DR through Test-Logic-Reset, then 32 bits of the data register.
inline std::uint32_t ReadId(TJTagParallelPort_ChannelMapping& mapping) {
    for (const char tms : std::string_view("111110100")) {
        ClockOnce(mapping, tms == '1');
    }
    std::uint32_t id = 0;
    for (unsigned bit = 0; bit < 32; ++bit) {
        std::uint8_t level = 0;
        mapping.ReadTdo(level);
        id |= static_cast<std::uint32_t>(level) << bit;
        ClockOnce(mapping, bit == 31);
    }
    return id;
}

} // namespace vorel
