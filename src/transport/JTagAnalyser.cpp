#include "transport/JTagAnalyser.h"

#include "support/Errors.h"

namespace vorel {

template<class... Parameters, class... Arguments>
Status TJTagAnalyserAdaptor::Forward(void (ITrafficRecorder::*operation)(Parameters...),
                                     const Arguments&... arguments) noexcept {
    if (Form == nullptr) {
        return StatusOk;
    }
    return Guard([&] { (Form->*operation)(arguments...); });
}

Status TJTagAnalyserAdaptor::BeginWrite() noexcept {
    return Forward(&ITrafficRecorder::BeginWrite);
}

Status TJTagAnalyserAdaptor::EndWrite() noexcept {
    return Forward(&ITrafficRecorder::EndWrite);
}

Status TJTagAnalyserAdaptor::BeginRead() noexcept {
    return Forward(&ITrafficRecorder::BeginRead);
}

Status TJTagAnalyserAdaptor::EndRead() noexcept {
    return Forward(&ITrafficRecorder::EndRead);
}

Status TJTagAnalyserAdaptor::AddBytesOut(std::int32_t count) noexcept {
    return Forward(&ITrafficRecorder::AddBytesOut, count);
}

Status TJTagAnalyserAdaptor::AddBytesIn(std::int32_t count) noexcept {
    return Forward(&ITrafficRecorder::AddBytesIn, count);
}

Status TJTagAnalyserAdaptor::RecordSignals(std::int32_t mode, std::int32_t tms, std::int32_t tdi,
                                           std::int32_t tck) noexcept {
    return Forward(&ITrafficRecorder::RecordSignals, mode, tms, tdi, tck);
}

Status TJTagAnalyserAdaptor::RecordTick(std::int32_t mode, std::int32_t tms,
                                        std::int32_t tdi) noexcept {
    return Forward(&ITrafficRecorder::RecordTick, mode, tms, tdi);
}

Status TJTagAnalyserAdaptor::RecordTdo(std::int32_t bit) noexcept {
    return Forward(&ITrafficRecorder::RecordTdo, bit);
}

Status TJTagAnalyserAdaptor::RecordTdoString(const BitText& bits) noexcept {
    return Forward(&ITrafficRecorder::RecordTdoString, bits);
}

Status TJTagAnalyserAdaptor::Save() noexcept {
    return Forward(&ITrafficRecorder::Save);
}

} // namespace vorel
