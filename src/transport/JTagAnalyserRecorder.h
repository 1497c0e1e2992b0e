// The recorder that writes JTAG traffic as two text files: what went out, and what came back.
#pragma once

#include "objectcode/Rt_TAP.h"
#include "transport/JTagAnalyser.h"

#include <string>
#include <vector>

namespace vorel {

// Lines of the first file, numbered from 0, numbers in decimal:
//
//   N: Mode:M TMS:S TDI:I TCK:Tick ->STATE    a whole clock; STATE is the TAP's state after it
//   N: Mode:M TMS:S TDI:I TCK:C               levels; on a rising edge " ->STATE" follows
//
// The line at which a shift ends also has the bits read in it, in brackets. The last line is the
// trace: a hexadecimal digit for each change, mode * 4 + tms * 2 + tdi, and 8 for a clock; of the
// rising edges among levels only those that end a shift have one. Lines of the second file, in step
// with the first: "N: Read TDO:B", or "N: -" where nothing was read.
//
// One TAP is followed for both sets of lines: behind a change of sets its states are right again
// from the next reset on. Each session of a channel with TAPs begins with one.
class TJTagAnalyserRecorder final : public ITrafficRecorder {
public:
    // Lines of one recording; what comes beyond is not recorded until the next Save.
    static constexpr std::int32_t MaxLines = 1'000'000;

    struct Counters {
        std::int32_t WriteCount = 0;
        std::int32_t ReadCount = 0;
        std::int32_t BytesIn = 0;
        std::int32_t BytesOut = 0;
    };

    // `folder` is where the files go: NAME_JTAG.txt and NAME_JTAGOut.txt. It has to exist at Save.
    TJTagAnalyserRecorder(std::string name, std::string folder);

    // Nothing is recorded while this is off; the counters go on.
    bool RecordEnabled = true;

    const Counters& Totals() const noexcept { return Total; }
    const std::vector<std::string>& Lines() const noexcept { return InLines; }
    const std::vector<std::string>& ReadLines() const noexcept { return OutLines; }

    void BeginWrite() override { ++TransferDepth; }
    void EndWrite() override;
    void BeginRead() override { ++TransferDepth; }
    void EndRead() override;
    void AddBytesOut(std::int32_t count) override { Total.BytesOut += count; }
    void AddBytesIn(std::int32_t count) override { Total.BytesIn += count; }
    void RecordSignals(std::int32_t mode, std::int32_t tms, std::int32_t tdi,
                       std::int32_t tck) override;
    void RecordTick(std::int32_t mode, std::int32_t tms, std::int32_t tdi) override;
    // The bit belongs to the line recorded last.
    void RecordTdo(std::int32_t bit) override;
    // Counts only within a transfer.
    void RecordTdoString(const BitText& bits) override;
    // EVorelError when a file cannot be written; the recording is kept then.
    void Save() override;

private:
    bool IsRecording() const noexcept { return RecordEnabled && LineNumber < MaxLines; }
    bool HasState(TTapState first, TTapState second) const noexcept;
    std::string TakeTdoBits();
    void AddTrace(std::int32_t digit);
    void FillReadLines(std::int32_t last);
    void AddReadLine(std::int32_t number, char bit);
    void Clear();

    std::string Name;
    std::string Folder;
    TTapSimulator TapTracker;
    std::vector<std::string> InLines;
    std::vector<std::string> OutLines;
    std::int32_t LineNumber = 0;
    std::int32_t OutLineNumber = 0;
    bool LastTCK = false;
    std::string TdoBits; // of the present shift, the oldest bit first
    std::string Trace;
    std::int32_t TransferDepth = 0;
    Counters Total;
};

} // namespace vorel
