// Recording what goes over the JTAG lines, for those who develop cables, pods and drivers.
//
// What drives lines tells an IJTagAnalyser. The one adaptor of the library hands everything on to
// its recorder, if it has one; without, each operation returns at once.
#pragma once

#include "support/Objects.h"

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

// The same to whoever drives lines. Statuses are those of the recorder's failures.
class IJTagAnalyser : public IInterface {
public:
    static constexpr Guid Id{
        0xAD251A61, 0x3A05, 0x4A9E, {0x91, 0xDF, 0x77, 0xCD, 0xDD, 0x23, 0xB5, 0x18}};

    virtual Status BeginWrite() noexcept = 0;
    virtual Status EndWrite() noexcept = 0;
    virtual Status BeginRead() noexcept = 0;
    virtual Status EndRead() noexcept = 0;
    virtual Status AddBytesOut(std::int32_t count) noexcept = 0;
    virtual Status AddBytesIn(std::int32_t count) noexcept = 0;
    virtual Status RecordSignals(std::int32_t mode, std::int32_t tms, std::int32_t tdi,
                                 std::int32_t tck) noexcept = 0;
    virtual Status RecordTick(std::int32_t mode, std::int32_t tms, std::int32_t tdi) noexcept = 0;
    virtual Status RecordTdo(std::int32_t bit) noexcept = 0;
    virtual Status RecordTdoString(const BitText& bits) noexcept = 0;
    virtual Status Save() noexcept = 0;

protected:
    ~IJTagAnalyser() = default;
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
    template<class... Parameters, class... Arguments>
    Status Forward(void (ITrafficRecorder::*operation)(Parameters...),
                   const Arguments&... arguments) noexcept;
};

} // namespace vorel
