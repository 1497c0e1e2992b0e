#include "transport/JTagAnalyserRecorder.h"

#include "support/Text.h"
#include "transport/TrafficFile.h"

#include <algorithm>

namespace vorel {

namespace {

constexpr std::int32_t ClockDigit = 8;

std::string LineStart(std::int32_t number, std::int32_t mode, std::int32_t tms, std::int32_t tdi) {
    return std::to_string(number) + ": Mode:" + std::to_string(mode) +
           " TMS:" + std::to_string(tms) + " TDI:" + std::to_string(tdi) + " TCK:";
}

std::string StateText(TTapState state) {
    return std::string(" ->").append(TapStateNames[static_cast<std::size_t>(state)]);
}

} // namespace

TJTagAnalyserRecorder::TJTagAnalyserRecorder(std::string name, std::string folder)
    : Name(std::move(name)), Folder(std::move(folder)) {}

void TJTagAnalyserRecorder::EndWrite() {
    if (--TransferDepth == 0) {
        ++Total.WriteCount;
    }
}

void TJTagAnalyserRecorder::EndRead() {
    if (--TransferDepth == 0) {
        ++Total.ReadCount;
    }
}

bool TJTagAnalyserRecorder::HasState(TTapState first, TTapState second) const noexcept {
    return TapTracker.GetState() == first || TapTracker.GetState() == second;
}

std::string TJTagAnalyserRecorder::TakeTdoBits() {
    std::reverse(TdoBits.begin(), TdoBits.end());
    return " (" + std::exchange(TdoBits, {}) + ")";
}

void TJTagAnalyserRecorder::AddTrace(std::int32_t digit) {
    Trace.append(ToHex(static_cast<std::uint32_t>(digit) & 0xFU, 1));
}

void TJTagAnalyserRecorder::RecordSignals(std::int32_t mode, std::int32_t tms, std::int32_t tdi,
                                          std::int32_t tck) {
    if (!IsRecording()) {
        return;
    }
    std::string line = LineStart(LineNumber, mode, tms, tdi) + std::to_string(tck);
    const std::int32_t digit = mode * 4 + tms * 2 + tdi;
    if (tck != 1 || LastTCK) {
        AddTrace(digit);
    } else {
        line += StateText(TapTracker.Step(tms));
        if (HasState(TTapState::DREXIT1, TTapState::IREXIT1)) {
            line += TakeTdoBits();
            AddTrace(digit + ClockDigit);
        }
    }
    InLines.push_back(std::move(line));
    LastTCK = tck != 0;
    ++LineNumber;
}

void TJTagAnalyserRecorder::RecordTick(std::int32_t mode, std::int32_t tms, std::int32_t tdi) {
    if (!IsRecording()) {
        return;
    }
    if (HasState(TTapState::DREXIT1, TTapState::IREXIT1) && !InLines.empty()) {
        InLines.back() += TakeTdoBits();
    }
    const TTapState state = TapTracker.Step(tms);
    InLines.push_back(LineStart(LineNumber, mode, tms, tdi) + "Tick" + StateText(state));
    AddTrace(mode * 4 + ClockDigit + tms * 2 + tdi);
    LastTCK = false;
    ++LineNumber;
}

void TJTagAnalyserRecorder::FillReadLines(std::int32_t last) {
    for (; OutLineNumber <= last; ++OutLineNumber) {
        OutLines.push_back(std::to_string(OutLineNumber) + ": -");
    }
}

void TJTagAnalyserRecorder::AddReadLine(std::int32_t number, char bit) {
    if (static_cast<std::int32_t>(OutLines.size()) < MaxLines) {
        OutLines.push_back(std::to_string(number) + ": Read TDO:" + bit);
    }
}

void TJTagAnalyserRecorder::RecordTdo(std::int32_t bit) {
    if (!IsRecording()) {
        return;
    }
    FillReadLines(LineNumber - 2);
    const char digit = bit != 0 ? '1' : '0';
    AddReadLine(OutLineNumber, digit);
    if (HasState(TTapState::DRSHIFT, TTapState::IRSHIFT) && TdoBits.size() < MaxLines) {
        TdoBits.push_back(digit);
    }
    if (OutLineNumber < LineNumber) {
        ++OutLineNumber;
    }
}

void TJTagAnalyserRecorder::RecordTdoString(const BitText& bits) {
    constexpr std::size_t most = static_cast<std::size_t>(MaxLines);
    if (!IsRecording() || TransferDepth <= 0 || bits.size() > most - TdoBits.size()) {
        return;
    }
    FillReadLines(LineNumber - 1 - static_cast<std::int32_t>(bits.size()));
    for (auto bit = bits.rbegin(); bit != bits.rend(); ++bit) {
        AddReadLine(OutLineNumber++, *bit);
    }
    TdoBits.append(bits.rbegin(), bits.rend());
}

void TJTagAnalyserRecorder::Save() {
    if (!RecordEnabled) {
        return;
    }
    const std::string start = Folder + "/" + Name;
    WriteTrafficFile(start + "_JTAG.txt", JoinLines(InLines) + Trace + "\n");
    WriteTrafficFile(start + "_JTAGOut.txt", JoinLines(OutLines));
    Clear();
}

void TJTagAnalyserRecorder::Clear() {
    InLines.clear();
    OutLines.clear();
    LineNumber = 0;
    OutLineNumber = 0;
    TdoBits.clear();
    Trace.clear();
}

} // namespace vorel
