// A whole recording: the two text files and the wave file of the same traffic.
#pragma once

#include "transport/JTagAnalyserRecorder.h"
#include "transport/VcdWriter.h"

namespace vorel {

// Give it to the adaptor as its recorder; Save writes FOLDER/NAME_JTAG.txt, NAME_JTAGOut.txt and
// NAME.vcd.
class TTrafficRecording final : public ITrafficRecorder {
public:
    TTrafficRecording(const std::string& name, const std::string& folder)
        : Text(name, folder), Waves(folder + "/" + name + ".vcd") {}

    const TJTagAnalyserRecorder& TextRecorder() const noexcept { return Text; }

    void BeginWrite() override { Text.BeginWrite(); }
    void EndWrite() override { Text.EndWrite(); }
    void BeginRead() override { Text.BeginRead(); }
    void EndRead() override { Text.EndRead(); }
    void AddBytesOut(std::int32_t count) override { Text.AddBytesOut(count); }
    void AddBytesIn(std::int32_t count) override { Text.AddBytesIn(count); }
    void RecordSignals(std::int32_t mode, std::int32_t tms, std::int32_t tdi,
                       std::int32_t tck) override {
        Text.RecordSignals(mode, tms, tdi, tck);
        Waves.RecordSignals(mode, tms, tdi, tck);
    }
    void RecordTick(std::int32_t mode, std::int32_t tms, std::int32_t tdi) override {
        Text.RecordTick(mode, tms, tdi);
        Waves.RecordTick(mode, tms, tdi);
    }
    void RecordTdo(std::int32_t bit) override {
        Text.RecordTdo(bit);
        Waves.RecordTdo(bit);
    }
    void RecordTdoString(const BitText& bits) override {
        Text.RecordTdoString(bits);
        Waves.RecordTdoString(bits);
    }
    void Save() override {
        Text.Save();
        Waves.Save();
    }

private:
    TJTagAnalyserRecorder Text;
    TVcdWriter Waves;
};

} // namespace vorel
