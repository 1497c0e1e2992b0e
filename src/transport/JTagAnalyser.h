// Recording what goes over the JTAG lines, for those who develop cables, pods and drivers.
//
// What drives lines tells an IJTagAnalyser. The one adaptor of the library hands everything on to
// its recorder, if it has one; without, each operation returns at once.
#pragma once

#include "support/Objects.h"
#include "vorel/Analyser.h"

namespace vorel {

// Who records. Not counted; failures are exceptions.
//
// `mode` names the set of lines, as a pod numbers its outputs (0 and 1); levels are 0 or 1.
class ITrafficRecorder {
public:
    ITrafficRecorder() = default;
    ITrafficRecorder(const ITrafficRecorder&) = delete;
    ITrafficRecorder& operator=(const ITrafficRecorder&) = delete;
    virtual ~ITrafficRecorder() = default;

    // Transfers nest.
    virtual void BeginWrite() = 0;
    virtual void EndWrite() = 0;
    virtual void BeginRead() = 0;
    virtual void EndRead() = 0;
    virtual void AddBytesOut(std::int32_t count) = 0;
    virtual void AddBytesIn(std::int32_t count) = 0;
    // The lines were brought to these levels.
    virtual void RecordSignals(std::int32_t mode, std::int32_t tms, std::int32_t tdi,
                               std::int32_t tck) = 0;
    // One whole clock with these levels.
    virtual void RecordTick(std::int32_t mode, std::int32_t tms, std::int32_t tdi) = 0;
    // TDO was read now.
    virtual void RecordTdo(std::int32_t bit) = 0;
    // TDO as sampled at the last clocks, one character for each, the oldest rightmost.
    virtual void RecordTdoString(const BitText& bits) = 0;
    // Writes what is recorded, and starts anew.
    virtual void Save() = 0;
};

class TJTagAnalyserAdaptor final : public TInterfacedObject<IJTagAnalyser> {
public:
    // The recorder; not owned, may be null.
    ITrafficRecorder* Form = nullptr;

    Status BeginWrite() noexcept override;
    Status EndWrite() noexcept override;
    Status BeginRead() noexcept override;
    Status EndRead() noexcept override;
    Status AddBytesOut(std::int32_t count) noexcept override;
    Status AddBytesIn(std::int32_t count) noexcept override;
    Status RecordSignals(std::int32_t mode, std::int32_t tms, std::int32_t tdi,
                         std::int32_t tck) noexcept override;
    Status RecordTick(std::int32_t mode, std::int32_t tms, std::int32_t tdi) noexcept override;
    Status RecordTdo(std::int32_t bit) noexcept override;
    Status RecordTdoString(const BitText& bits) noexcept override;
    Status Save() noexcept override;

private:
    template<class Call>
    Status Forward(const Call& call) noexcept;
};

} // namespace vorel
