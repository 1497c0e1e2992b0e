#include "transport/JTagAnalyser.h"

#include "support/Errors.h"

namespace vorel {

template<class Call>
Status TJTagAnalyserAdaptor::Forward(const Call& call) noexcept {
    if (Form == nullptr) {
        return StatusOk;
    }
    return Guard([&] { call(*Form); });
}

Status TJTagAnalyserAdaptor::BeginWrite() noexcept {
    return Forward([](ITrafficRecorder& recorder) { recorder.BeginWrite(); });
}

Status TJTagAnalyserAdaptor::EndWrite() noexcept {
    return Forward([](ITrafficRecorder& recorder) { recorder.EndWrite(); });
}

Status TJTagAnalyserAdaptor::BeginRead() noexcept {
    return Forward([](ITrafficRecorder& recorder) { recorder.BeginRead(); });
}

Status TJTagAnalyserAdaptor::EndRead() noexcept {
    return Forward([](ITrafficRecorder& recorder) { recorder.EndRead(); });
}

Status TJTagAnalyserAdaptor::AddBytesOut(std::int32_t count) noexcept {
    return Forward([&](ITrafficRecorder& recorder) { recorder.AddBytesOut(count); });
}

Status TJTagAnalyserAdaptor::AddBytesIn(std::int32_t count) noexcept {
    return Forward([&](ITrafficRecorder& recorder) { recorder.AddBytesIn(count); });
}

Status TJTagAnalyserAdaptor::RecordSignals(std::int32_t mode, std::int32_t tms, std::int32_t tdi,
                                           std::int32_t tck) noexcept {
    return Forward(
        [&](ITrafficRecorder& recorder) { recorder.RecordSignals(mode, tms, tdi, tck); });
}

Status TJTagAnalyserAdaptor::RecordTick(std::int32_t mode, std::int32_t tms,
                                        std::int32_t tdi) noexcept {
    return Forward([&](ITrafficRecorder& recorder) { recorder.RecordTick(mode, tms, tdi); });
}

Status TJTagAnalyserAdaptor::RecordTdo(std::int32_t bit) noexcept {
    return Forward([&](ITrafficRecorder& recorder) { recorder.RecordTdo(bit); });
}

Status TJTagAnalyserAdaptor::RecordTdoString(const BitText& bits) noexcept {
    return Forward([&](ITrafficRecorder& recorder) { recorder.RecordTdoString(bits); });
}

Status TJTagAnalyserAdaptor::Save() noexcept {
    return Forward([](ITrafficRecorder& recorder) { recorder.Save(); });
}

} // namespace vorel
