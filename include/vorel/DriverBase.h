// For authors of driver modules: a driver that has nothing to say, to derive from, and the two
// functions that a module exports. Header only, because modules do not link the library.
//
//     class TMyCore final : public vorel::TDriverBase {
//     public:
//         vorel::Status GetDeviceName(vorel::WideText& text) noexcept override {
//             return Give(text, u"MY_CORE");
//         }
//     };
//
//     using TMyModule = vorel::TDriverModule<TMyCore>;
//
//     extern "C" [[gnu::visibility("default")]] vorel::Status
//     GetVorelDriverCount(std::int32_t* count) {
//         return TMyModule::GetCount(count);
//     }
//     extern "C" [[gnu::visibility("default")]] vorel::Status
//     GetVorelDriver(std::int32_t index, vorel::IVorelDriver** driver) {
//         return TMyModule::MakeDriver(index, driver);
//     }
//
// Nothing may leave an entry as an exception: entries are noexcept, and one that raises ends the
// process.
#pragma once

#include "vorel/Driver.h"

#include <array>
#include <exception>
#include <new>

namespace vorel {

// Every entry gives what a device without a driver gives: 0 or -1, empty texts, null; only that it
// has no attribute and no name. A driver overrides the entries that differ.
//
// It is not counted. GetImplementingObject gives the object for whoever made it to free; the
// interface is void from then on. Counted items that an entry gives out carry a reference for the
// caller.
class TDriverBase : public IVorelDriver, public IDriverObject {
public:
    TDriverBase() = default;
    TDriverBase(const TDriverBase&) = delete;
    TDriverBase& operator=(const TDriverBase&) = delete;
    virtual ~TDriverBase() = default;

    void Free() noexcept final { delete this; }

    // 0 to 2.
    Status QueryInterface(const Guid& id, void*& object) noexcept override {
        object = id == IVorelDriver::Id ? static_cast<IVorelDriver*>(this) : nullptr;
        return object != nullptr ? StatusOk : StatusNoInterface;
    }
    std::int32_t AddRef() noexcept override { return 1; }
    std::int32_t Release() noexcept override { return 1; }

    // 3 to 47: what the part is.
    Status GetIdCode(std::uint32_t& idCode) noexcept override { return Give(idCode, 0U); }
    Status GetDeviceName(WideText& text) noexcept override { return Give(text, u""); }
    Status GetDescription(WideText& text) noexcept override { return Give(text, u""); }
    Status GetFamily(WideText& text) noexcept override { return Give(text, u""); }
    Status GetAttributeText7(WideText& text) noexcept override { return Give(text, u""); }
    Status GetAttributeText8(WideText& text) noexcept override { return Give(text, u""); }
    Status GetAttributeText9(WideText& text) noexcept override { return Give(text, u""); }
    Status GetAttributeText10(WideText& text) noexcept override { return Give(text, u""); }
    Status GetCapacity(std::int32_t& value) noexcept override { return Give(value, -1); }
    Status GetAttributeNumber12(std::int32_t& value) noexcept override { return Give(value, -1); }
    Status GetAttributeText13(WideText& text) noexcept override { return Give(text, u""); }
    Status GetAttributeText14(WideText& text) noexcept override { return Give(text, u""); }
    Status GetAttributeText15(WideText& text) noexcept override { return Give(text, u""); }
    Status GetAttributeText16(WideText& text) noexcept override { return Give(text, u""); }
    Status GetAttributeText17(WideText& text) noexcept override { return Give(text, u""); }
    Status GetPackage(WideText& text) noexcept override { return Give(text, u""); }
    Status GetAttributeText19(WideText& text) noexcept override { return Give(text, u""); }
    Status GetAttributeText20(WideText& text) noexcept override { return Give(text, u""); }
    Status GetTemperatureGrade(WideText& text) noexcept override { return Give(text, u""); }
    Status GetAttributeText22(WideText& text) noexcept override { return Give(text, u""); }
    Status GetAttributeText23(WideText& text) noexcept override { return Give(text, u""); }
    Status GetSpeedGrade(WideText& text) noexcept override { return Give(text, u""); }
    Status GetAttributeText25(WideText& text) noexcept override { return Give(text, u""); }
    Status GetAttributeText26(WideText& text) noexcept override { return Give(text, u""); }
    Status GetAttributeText27(WideText& text) noexcept override { return Give(text, u""); }
    Status GetAttributeText28(WideText& text) noexcept override { return Give(text, u""); }
    Status GetBsdlFile(WideText& text) noexcept override { return Give(text, u""); }
    Status GetDefaultEntity(IBSDLEntity*& entity) noexcept override {
        return Give(entity, nullptr);
    }
    Status GetVendor(WideText& text) noexcept override { return Give(text, u""); }
    Status GetIrLength(std::int32_t& value) noexcept override { return Give(value, 4); }
    Status GetPinCount(std::int32_t& value) noexcept override { return Give(value, 0); }
    Status GetIoPinCount(std::int32_t& value) noexcept override { return Give(value, -1); }
    Status GetDescriptionItem(std::int32_t, IInterface*& item) noexcept override {
        return Give(item, nullptr);
    }
    Status GetAttributeText36(WideText& text) noexcept override { return Give(text, u""); }
    Status GetDspMultipliers(std::int32_t& value) noexcept override { return Give(value, 0); }
    Status GetClockManagers(std::int32_t& value) noexcept override { return Give(value, 0); }
    Status GetEmbeddedRam(std::int32_t& value) noexcept override { return Give(value, 0); }
    Status GetOnChipTermination(Bool32& value) noexcept override { return Give(value, False32); }
    Status GetGlobalClocks(std::int32_t& value) noexcept override { return Give(value, 0); }
    Status GetConfigMemory(std::int32_t& value) noexcept override { return Give(value, 0); }
    Status GetDifferentialPairs(std::int32_t& value) noexcept override { return Give(value, 0); }
    Status GetHighSpeedPairs(std::int32_t& value) noexcept override { return Give(value, 0); }
    Status GetAttributeNumber45(std::int32_t& value) noexcept override { return Give(value, 0); }
    Status GetAttributeItem46(std::int32_t, IInterface*& item) noexcept override {
        return Give(item, nullptr);
    }
    // The device name, unless a driver has a better one for people.
    Status GetDisplayName(WideText& text) noexcept override { return GetDeviceName(text); }

    // 48 to 61: the device that this instance serves.
    Status GetKind(WideText& text) noexcept override { return Give(text, u"Unknown"); }
    Status GetCoreText49(WideText& text) noexcept override { return Give(text, u""); }
    Status SetDevice(IVorelDevice*) noexcept override { return StatusOk; }
    Status GetCoreNumber51(std::int32_t& value) noexcept override { return Give(value, 0); }
    Status GetCoreNumber52(std::int32_t& value) noexcept override { return Give(value, 0); }
    Status GetCoreNumber53(std::int32_t& value) noexcept override { return Give(value, 0); }
    Status GetCoreNumber54(std::int32_t& value) noexcept override { return Give(value, 0); }
    Status PrepareAboutInfo() noexcept override { return StatusOk; }
    Status GetAboutInfo(IInterface*& item) noexcept override { return Give(item, nullptr); }
    Status HasAttribute(const WideText&, Bool32& value) noexcept override {
        return Give(value, False32);
    }
    Status GetCoreNumber58(std::int32_t& value) noexcept override { return Give(value, 0); }
    Status GetCoreText59(WideText& text) noexcept override { return Give(text, u""); }
    Status GetCoreNumber60(std::int32_t& value) noexcept override { return Give(value, 0); }
    Status GetCoreNumber61(std::int32_t& value) noexcept override { return Give(value, 0); }

    // 62 to 72: registers.
    Status WriteRegister(std::int32_t, std::uint32_t, std::int32_t& result) noexcept override {
        return Give(result, 0);
    }
    Status ReadRegister(std::int32_t, std::uint32_t& value) noexcept override {
        return Give(value, 0U);
    }
    Status GetRegisterAttributeNumber(std::int32_t, std::int32_t& value) noexcept override {
        return Give(value, 0);
    }
    Status GetRegisterName(std::int32_t, WideText& name) noexcept override {
        return Give(name, u"");
    }
    Status GetRegisterAttributeText(std::int32_t, WideText& text) noexcept override {
        return Give(text, u"");
    }
    Status GetRegisterCount(std::int32_t& value) noexcept override { return Give(value, 0); }
    Status GetProgramCounterIndex(std::int32_t& value) noexcept override { return Give(value, -1); }
    Status GetSecondRegisterIndex(std::int32_t& value) noexcept override { return Give(value, -1); }
    Status GetCoreNumber70(std::int32_t& value) noexcept override { return Give(value, 0); }
    Status GetCoreNumber71(std::int32_t& value) noexcept override { return Give(value, 0); }
    Status GetCoreNumber72(std::int32_t& value) noexcept override { return Give(value, 0); }

    // 73 to 84: memory spaces.
    Status GetMemoryWidth(std::int32_t, std::int32_t& bits) noexcept override {
        return Give(bits, 0);
    }
    Status GetMemorySize(std::int32_t, std::int64_t& locations) noexcept override {
        return Give(locations, 0);
    }
    Status GetMemoryAttributeNumber75(std::int32_t, std::int32_t& value) noexcept override {
        return Give(value, 0);
    }
    Status GetMemoryAttributeNumber76(std::int32_t, std::int32_t& value) noexcept override {
        return Give(value, 0);
    }
    Status GetMemoryName(std::int32_t, WideText& name) noexcept override { return Give(name, u""); }
    Status GetMemoryAttributeText(std::int32_t, WideText& text) noexcept override {
        return Give(text, u"");
    }
    Status GetMemorySpaceCount(std::int32_t& value) noexcept override { return Give(value, 0); }
    Status GetMainMemoryIndex(std::int32_t& value) noexcept override { return Give(value, -1); }
    Status ReadMemory(std::int32_t, std::uint32_t*, std::int64_t, std::int32_t,
                      std::int32_t& result) noexcept override {
        return Give(result, 0);
    }
    Status WriteMemory(std::int32_t, const std::uint32_t*, std::int64_t, std::int32_t,
                       std::int32_t& result) noexcept override {
        return Give(result, 0);
    }
    Status MemoryAction83(std::int32_t, std::int32_t& result) noexcept override {
        return Give(result, 0);
    }
    Status MemoryAction84(std::int32_t, std::int32_t& result) noexcept override {
        return Give(result, 0);
    }

    // 85 to 107: the processor and its run control.
    Status RunDiagnostic(std::int32_t& value) noexcept override { return Give(value, -1); }
    Status GetCoreNumber86(std::int32_t& value) noexcept override { return Give(value, -1); }
    Status GetCoreNumber87(std::int32_t& value) noexcept override { return Give(value, 0); }
    Status GetCoreNumber88(std::int32_t& value) noexcept override { return Give(value, 0); }
    Status GetCoreNumber89(std::int32_t, std::int32_t& value) noexcept override {
        return Give(value, 0);
    }
    Status GetByteOrder(std::int32_t& value) noexcept override { return Give(value, -1); }
    Status GetCoreItem91(IInterface*& item) noexcept override { return Give(item, nullptr); }
    Status GetCoreItem92(IInterface*& item) noexcept override { return Give(item, nullptr); }
    Status GetCoreText93(WideText& text) noexcept override { return Give(text, u""); }
    Status RunControl94() noexcept override { return StatusOk; }
    Status SingleStep() noexcept override { return StatusOk; }
    Status RunControl96() noexcept override { return StatusOk; }
    Status ResetProcessor() noexcept override { return StatusOk; }
    Status PauseProcessor() noexcept override { return StatusOk; }
    Status ContinueProcessor() noexcept override { return StatusOk; }
    Status RunSteps(std::int32_t) noexcept override { return StatusOk; }
    Status IsPaused(Bool32& value) noexcept override { return Give(value, False32); }
    Status IsReset(Bool32& value) noexcept override { return Give(value, False32); }
    Status GetCoreNumber103(std::int32_t& value) noexcept override { return Give(value, 0); }
    Status GetCoreNumber104(std::int32_t& value) noexcept override { return Give(value, 0); }
    Status GetCoreNumber105(std::int32_t& value) noexcept override { return Give(value, 0); }
    Status GetCoreNumber106(std::int32_t, std::int32_t& value) noexcept override {
        return Give(value, 0);
    }
    Status CoreAction107() noexcept override { return StatusOk; }

    // 108 to 122.
    Status WriteRegisterText(std::int32_t, const WideText&,
                             std::int32_t& result) noexcept override {
        return Give(result, 0);
    }
    Status ReadRegisterText(std::int32_t, WideText& text) noexcept override {
        return Give(text, u"0");
    }
    Status GetCoreFlag110(std::int32_t, Bool32& value) noexcept override {
        return Give(value, False32);
    }
    Status GetCoreText111(std::int32_t, WideText& text) noexcept override {
        return Give(text, u"");
    }
    Status GetImplementingObject(IDriverObject*& object) noexcept final {
        return Give(object, this);
    }
    Status GetCoreFlag113(Bool32& value) noexcept override { return Give(value, False32); }
    Status CoreAction114() noexcept override { return StatusOk; }
    Status NotifyReleased() noexcept override { return StatusOk; }
    Status GetCoreFlag116(Bool32& value) noexcept override { return Give(value, False32); }
    Status CoreAction117(std::int32_t) noexcept override { return StatusOk; }
    Status CoreAction118(std::int32_t, std::int32_t, std::int32_t, std::int32_t, std::int32_t,
                         std::int32_t) noexcept override {
        return StatusOk;
    }
    Status CoreCommand119(const WideText&, const WideText&, const WideText&,
                          Bool32& done) noexcept override {
        return Give(done, False32);
    }
    Status GetCoreFlag120(Bool32& value) noexcept override { return Give(value, False32); }
    Status GetCoreNumber121(std::int32_t, std::int32_t& value) noexcept override {
        return Give(value, -1);
    }
    Status CoreAction122(std::int32_t) noexcept override { return StatusOk; }

protected:
    // Answers a question: `out` takes the value.
    template<class Out, class Value>
    static Status Give(Out& out, const Value& value) noexcept {
        try {
            out = value;
            return StatusOk;
        } catch (const std::exception&) {
            return StatusOutOfMemory;
        }
    }
};

// The same with further interfaces, which a caller gets by query: TDriverWith<IVorelBreakpoints>.
template<class... Interfaces>
class TDriverWith : public TDriverBase, public Interfaces... {
public:
    Status QueryInterface(const Guid& id, void*& object) noexcept override {
        const Status status = TDriverBase::QueryInterface(id, object);
        ((id == Interfaces::Id ? static_cast<void>(object = static_cast<Interfaces*>(this))
                               : static_cast<void>(0)),
         ...);
        return object != nullptr ? StatusOk : status;
    }
    std::int32_t AddRef() noexcept final { return 1; }
    std::int32_t Release() noexcept final { return 1; }
};

// The exports of a module whose drivers are the listed classes, in this order. Each class has a
// constructor without arguments.
template<class... Drivers>
class TDriverModule {
public:
    static Status GetCount(std::int32_t* count) noexcept {
        if (count == nullptr) {
            return StatusBadArgument;
        }
        *count = static_cast<std::int32_t>(sizeof...(Drivers));
        return StatusOk;
    }

    // A new driver, the caller's to free.
    static Status MakeDriver(std::int32_t index, IVorelDriver** driver) noexcept {
        if (driver == nullptr) {
            return StatusBadArgument;
        }
        *driver = nullptr;
        if (index < 0 || index >= static_cast<std::int32_t>(sizeof...(Drivers))) {
            return StatusIndexOutOfRange;
        }
        try {
            constexpr std::array<IVorelDriver* (*)(), sizeof...(Drivers)> makers{&Make<Drivers>...};
            *driver = makers[static_cast<std::size_t>(index)]();
            return StatusOk;
        } catch (const std::bad_alloc&) {
            return StatusOutOfMemory;
        } catch (...) {
            return StatusError;
        }
    }

private:
    template<class Driver>
    static IVorelDriver* Make() {
        return new Driver;
    }
};

} // namespace vorel
