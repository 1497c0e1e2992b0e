// A memory on the soft chain, with nothing around it. Registers of its port: 0 identity, 1 size in
// words, 2 the word number at which 3, the stream of 32-bit words, begins.
#include "drivers/ModuleExport.h"
#include "drivers/RegisterPort.h"
#include "support/Errors.h"
#include "vorel/DriverBase.h"

namespace {

using namespace vorel;

constexpr std::uint32_t UnitId = 0x4D454D31;
constexpr std::uint8_t IdRegister = 0;
constexpr TRegisterPort::TStream Words{2, 3, 1};
constexpr std::int64_t Size = 4096;
constexpr std::int32_t Width = 32;

void CheckBlock(std::int32_t index, const void* buffer, std::int64_t address, std::int32_t count) {
    if (index != 0 || address < 0 || count < 0 || address > Size || count > Size - address) {
        throw EVorelError(StatusIndexOutOfRange, "The memory has no such locations");
    }
    if (buffer == nullptr && count > 0) {
        throw EVorelError(StatusBadArgument, "A block needs a buffer");
    }
}

class TSoftMemory final : public TDriverBase {
public:
    Status GetIdCode(std::uint32_t& idCode) noexcept override { return Give(idCode, 0x1B8C0201U); }
    Status GetDeviceName(WideText& text) noexcept override { return Give(text, u"SOFTMEM4K"); }
    Status GetDescription(WideText& text) noexcept override {
        return Give(text, u"Memory of 4,096 words on the soft chain");
    }
    Status GetFamily(WideText& text) noexcept override { return Give(text, u"Soft Instruments"); }
    Status GetVendor(WideText& text) noexcept override { return Give(text, u"Tarvex"); }
    Status GetKind(WideText& text) noexcept override { return Give(text, u"Memory_Data"); }
    Status GetCapacity(std::int32_t& value) noexcept override {
        return Give(value, static_cast<std::int32_t>(Size));
    }
    Status GetByteOrder(std::int32_t& value) noexcept override { return Give(value, 0); }
    Status SetDevice(IVorelDevice* device) noexcept override {
        Port.SetDevice(device);
        return StatusOk;
    }
    // 0 when the memory answers, 1 when something else does.
    Status RunDiagnostic(std::int32_t& value) noexcept override {
        return Guard([&] { value = Port.Read(IdRegister) == UnitId ? 0 : 1; });
    }
    Status GetMemorySpaceCount(std::int32_t& value) noexcept override { return Give(value, 1); }
    Status GetMainMemoryIndex(std::int32_t& value) noexcept override { return Give(value, 0); }
    Status GetMemoryName(std::int32_t index, WideText& name) noexcept override {
        return Give(name, index == 0 ? u"Memory" : u"");
    }
    Status GetMemoryWidth(std::int32_t index, std::int32_t& bits) noexcept override {
        return Give(bits, index == 0 ? Width : 0);
    }
    Status GetMemorySize(std::int32_t index, std::int64_t& locations) noexcept override {
        return Give(locations, index == 0 ? Size : 0);
    }
    Status ReadMemory(std::int32_t index, std::uint32_t* buffer, std::int64_t address,
                      std::int32_t count, std::int32_t& result) noexcept override {
        result = 0;
        return Guard([&] {
            CheckBlock(index, buffer, address, count);
            Port.ReadStream(Words, static_cast<std::uint32_t>(address),
                            {buffer, static_cast<std::size_t>(count)});
        });
    }
    Status WriteMemory(std::int32_t index, const std::uint32_t* buffer, std::int64_t address,
                       std::int32_t count, std::int32_t& result) noexcept override {
        result = 0;
        return Guard([&] {
            CheckBlock(index, buffer, address, count);
            Port.WriteStream(Words, static_cast<std::uint32_t>(address),
                             {buffer, static_cast<std::size_t>(count)});
        });
    }

private:
    TRegisterPort Port;
};

using TModule = TDriverModule<TSoftMemory>;

} // namespace

VOREL_MODULE_EXPORT vorel::Status GetVorelDriverCount(std::int32_t* count) {
    return TModule::GetCount(count);
}

VOREL_MODULE_EXPORT vorel::Status GetVorelDriver(std::int32_t index, vorel::IVorelDriver** driver) {
    return TModule::MakeDriver(index, driver);
}
