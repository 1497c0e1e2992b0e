#include "transport/ParallelPortMapping.h"

#include "support/Errors.h"
#include "transport/JTagAnalyser.h"

namespace vorel {

namespace {

// Lines of the control and status register that the PC's port inverts in hardware.
constexpr std::uint8_t InvertedControlBits = 0x0B;
constexpr std::uint8_t InvertedStatusBits = 0x80;

constexpr std::uint8_t DataPart(std::uint32_t mask) noexcept {
    return static_cast<std::uint8_t>(mask);
}
constexpr std::uint8_t StatusPart(std::uint32_t mask) noexcept {
    return static_cast<std::uint8_t>(mask >> 8U);
}
constexpr std::uint8_t ControlPart(std::uint32_t mask) noexcept {
    return static_cast<std::uint8_t>(mask >> 16U);
}

constexpr std::uint8_t WithBits(std::uint8_t image, std::uint8_t bits, bool set) noexcept {
    return static_cast<std::uint8_t>(set ? image | bits : image & ~bits);
}

// The registers as they are to be written.
struct TRegisterImages {
    std::uint8_t Data = 0;
    bool DataDirty = false;
    std::uint8_t Control = 0;
    std::uint8_t ControlMask = 0;

    void Apply(std::uint32_t mask, bool level) {
        if (const std::uint8_t data = DataPart(mask); data != 0) {
            Data = WithBits(Data, data, level);
            DataDirty = true;
        } else if (const std::uint8_t control = ControlPart(mask); control != 0) {
            const bool inverted = (control & InvertedControlBits) != 0;
            Control = WithBits(Control, control, level != inverted);
            ControlMask = WithBits(ControlMask, control, true);
        }
    }
};

} // namespace

void TJTagParallelPort_ChannelMapping::ApplySignals(std::uint8_t startData, std::uint8_t tck,
                                                    std::uint8_t tdi, std::uint8_t tms) {
    TRegisterImages images{startData};
    images.Apply(Mask_TCK, tck != 0);
    images.Apply(Mask_TDI, tdi != 0);
    images.Apply(Mask_TMS, tms != 0);
    if (images.DataDirty) {
        Check(Port->WriteData(images.Data), "Writing the parallel port's data register");
    }
    if (images.ControlMask != 0) {
        Check(Port->WriteControl(images.Control, images.ControlMask),
              "Writing the parallel port's control register");
    }
}

void TJTagParallelPort_ChannelMapping::Activate() {
    if (Port == nullptr) {
        return;
    }
    Check(Port->Prepare(), "Claiming the parallel port");
    Check(Port->ReadData(SavedData), "Reading the parallel port's data register");
    ApplySignals(DataPart(DataBackground), 0, 0, 0);
    Tell(0, 0, 0);
}

void TJTagParallelPort_ChannelMapping::Tell(std::uint8_t tck, std::uint8_t tms, std::uint8_t tdi) {
    if (Analyser != nullptr) {
        Check(Analyser->RecordSignals(AnalyserMode, tms, tdi, tck), "Recording JTAG signals");
    }
}

void TJTagParallelPort_ChannelMapping::Deactivate() {
    if (Port == nullptr || Mask_DataFinal == 0) {
        return;
    }
    const std::uint32_t data = (SavedData & ~Mask_DataFinal) | (DataFinal & Mask_DataFinal);
    Check(Port->WriteData(DataPart(data)), "Writing the parallel port's data register");
}

void TJTagParallelPort_ChannelMapping::SetSignals(std::uint8_t tck, std::uint8_t tms,
                                                  std::uint8_t tdi) {
    if (Port == nullptr) {
        return;
    }
    std::uint8_t data = 0;
    Check(Port->ReadData(data), "Reading the parallel port's data register");
    ApplySignals(data, tck, tdi, tms);
    Tell(tck, tms, tdi);
}

void TJTagParallelPort_ChannelMapping::ReadTdo(std::uint8_t& level) {
    if (Port == nullptr) {
        return;
    }
    const std::uint8_t mask = StatusPart(Mask_TDO);
    std::uint8_t status = 0;
    Check(Port->PrepareStatusRead(), "Preparing to read the parallel port's status register");
    Check(Port->ReadStatus(status), "Reading the parallel port's status register");
    const bool high = (status & mask) != 0;
    const bool inverted = (mask & InvertedStatusBits) != 0;
    level = high != inverted ? 1 : 0;
    if (Analyser != nullptr) {
        Check(Analyser->RecordTdo(level), "Recording TDO");
    }
}

} // namespace vorel
