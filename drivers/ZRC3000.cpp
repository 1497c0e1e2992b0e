// The soft processor ZRC3000. What its debug unit offers, and what the numbered entries mean here,
// stands in ZRC3000.md.
#include "drivers/ModuleExport.h"
#include "drivers/ProcessorBreakpoints.h"
#include "drivers/ProcessorMemory.h"
#include "drivers/ProcessorRun.h"
#include "drivers/ProcessorUnit.h"
#include "support/Errors.h"
#include "support/Text.h"
#include "vorel/DriverBase.h"

#include <array>

namespace {

using namespace vorel;

constexpr std::array<const char16_t*, TProcessorUnit::RegisterCount> RegisterNames{
    u"zero", u"at", u"v0", u"v1", u"a0", u"a1", u"a2", u"a3", u"t0", u"t1", u"t2", u"t3",
    u"t4",   u"t5", u"t6", u"t7", u"s0", u"s1", u"s2", u"s3", u"s4", u"s5", u"s6", u"s7",
    u"t8",   u"t9", u"k0", u"k1", u"gp", u"sp", u"s8", u"ra", u"hi", u"lo", u"pc"};
constexpr std::int32_t ReturnAddressIndex = 31;
constexpr std::int32_t GeneralCount = 32;
constexpr std::int32_t RegisterBits = 32;

enum Space : std::int32_t { Ram = 0, Peripherals = 1, SpaceCount = 2 };

struct TSpace {
    const char16_t* Name;
    const char16_t* Attribute;
    std::int32_t Width;
    std::int64_t Size;
};
constexpr std::array<TSpace, SpaceCount> Spaces{{
    {u"Memory", u"Program and data, byte addresses from 00000000", 8, TProcessorUnit::RamSize},
    {u"Peripherals", u"Words from FFFF0000: console, timer", 32, TProcessorUnit::PeripheralWords},
}};

bool IsRegister(std::int32_t index) noexcept {
    return index >= 0 && index < TProcessorUnit::RegisterCount;
}

void CheckRegister(std::int32_t index) {
    if (!IsRegister(index)) {
        throw EVorelError(StatusIndexOutOfRange, "There is no register of this number");
    }
}

const TSpace* SpaceAt(std::int32_t index) noexcept {
    return index >= 0 && index < SpaceCount ? &Spaces[static_cast<std::size_t>(index)] : nullptr;
}

// Nothing is touched when any of the locations is not there.
void CheckBlock(std::int32_t index, const void* buffer, std::int64_t address, std::int32_t count) {
    const TSpace* const space = SpaceAt(index);
    if (space == nullptr || address < 0 || count < 0 || address > space->Size ||
        count > space->Size - address) {
        throw EVorelError(StatusIndexOutOfRange, "The memory has no such locations");
    }
    if (buffer == nullptr && count > 0) {
        throw EVorelError(StatusBadArgument, "A block needs a buffer");
    }
}

std::uint32_t PeripheralAddress(std::int64_t location) noexcept {
    return TProcessorUnit::PeripheralBase + 4 * static_cast<std::uint32_t>(location);
}

// Hexadecimal, with or without 0x.
std::uint32_t ParseValue(const WideText& text) {
    const std::string utf8 = ToUtf8(text);
    std::string_view digits = Trim(utf8);
    if (digits.starts_with("0x") || digits.starts_with("0X")) {
        digits.remove_prefix(2);
    }
    const auto value = ParseHex(digits);
    if (!value || *value > 0xFFFFFFFF) {
        throw EVorelError(StatusBadArgument, "A register takes up to eight hexadecimal digits");
    }
    return static_cast<std::uint32_t>(*value);
}

class TProcessor final : public TDriverWith<IVorelBreakpoints> {
public:
    Status GetIdCode(std::uint32_t& idCode) noexcept override { return Give(idCode, 0x1B8C0101U); }
    Status GetDeviceName(WideText& text) noexcept override { return Give(text, u"ZRC3000"); }
    Status GetDescription(WideText& text) noexcept override {
        return Give(text, u"32-bit RISC soft processor with debug unit");
    }
    Status GetFamily(WideText& text) noexcept override { return Give(text, u"Soft Processors"); }
    Status GetVendor(WideText& text) noexcept override { return Give(text, u"Tarvex"); }
    Status GetKind(WideText& text) noexcept override { return Give(text, u"Processor_OCDS"); }
    Status GetCapacity(std::int32_t& value) noexcept override {
        return Give(value, std::int32_t{TProcessorUnit::RamSize});
    }
    Status GetByteOrder(std::int32_t& value) noexcept override { return Give(value, 0); }
    Status HasAttribute(const WideText& word, Bool32& value) noexcept override {
        return Give(value, ToBool32(word == u"PROC"));
    }
    Status SetDevice(IVorelDevice* device) noexcept override {
        Unit.Port.SetDevice(device);
        return StatusOk;
    }
    Status RunDiagnostic(std::int32_t& value) noexcept override {
        return Guard([&] { value = Unit.Diagnose(); });
    }
    // 0 the console's waiting text, which is taken; 1 why the processor stopped; 2 the cycle count.
    Status GetCoreText111(std::int32_t argument, WideText& text) noexcept override {
        return Guard([&] {
            text.clear();
            text = ToWide(argument == 0   ? Unit.TakeConsole()
                          : argument == 1 ? Running.StopText()
                          : argument == 2 ? std::to_string(Unit.Cycles())
                                          : std::string());
        });
    }

    Status GetRegisterCount(std::int32_t& value) noexcept override {
        return Give(value, TProcessorUnit::RegisterCount);
    }
    Status GetRegisterName(std::int32_t index, WideText& name) noexcept override {
        return Give(name, IsRegister(index) ? RegisterNames[static_cast<std::size_t>(index)] : u"");
    }
    // The machine's own name: r0 to r31; that of the others is their name.
    Status GetRegisterAttributeText(std::int32_t index, WideText& text) noexcept override {
        return Guard([&] {
            text.clear();
            if (index >= 0 && index < GeneralCount) {
                text = u"r" + ToWide(std::to_string(index));
            } else if (IsRegister(index)) {
                text = RegisterNames[static_cast<std::size_t>(index)];
            }
        });
    }
    // Width in bits.
    Status GetRegisterAttributeNumber(std::int32_t index, std::int32_t& value) noexcept override {
        return Give(value, IsRegister(index) ? RegisterBits : 0);
    }
    Status GetProgramCounterIndex(std::int32_t& value) noexcept override {
        return Give(value, TProcessorUnit::ProgramCounterIndex);
    }
    Status GetSecondRegisterIndex(std::int32_t& value) noexcept override {
        return Give(value, ReturnAddressIndex);
    }
    Status ReadRegister(std::int32_t index, std::uint32_t& value) noexcept override {
        return Guard([&] {
            value = 0;
            CheckRegister(index);
            value = Unit.ReadRegister(index);
        });
    }
    Status WriteRegister(std::int32_t index, std::uint32_t value,
                         std::int32_t& result) noexcept override {
        result = 0;
        return Guard([&] {
            CheckRegister(index);
            Unit.WriteRegister(index, value);
        });
    }
    // Eight hexadecimal digits.
    Status ReadRegisterText(std::int32_t index, WideText& text) noexcept override {
        return Guard([&] {
            text.clear();
            CheckRegister(index);
            text = ToWide(ToHex(Unit.ReadRegister(index), 8));
        });
    }
    Status WriteRegisterText(std::int32_t index, const WideText& text,
                             std::int32_t& result) noexcept override {
        result = 0;
        return Guard([&] {
            CheckRegister(index);
            Unit.WriteRegister(index, ParseValue(text));
        });
    }

    Status GetMemorySpaceCount(std::int32_t& value) noexcept override {
        return Give(value, std::int32_t{SpaceCount});
    }
    Status GetMainMemoryIndex(std::int32_t& value) noexcept override {
        return Give(value, std::int32_t{Ram});
    }
    Status GetMemoryName(std::int32_t index, WideText& name) noexcept override {
        const TSpace* const space = SpaceAt(index);
        return Give(name, space != nullptr ? space->Name : u"");
    }
    Status GetMemoryAttributeText(std::int32_t index, WideText& text) noexcept override {
        const TSpace* const space = SpaceAt(index);
        return Give(text, space != nullptr ? space->Attribute : u"");
    }
    Status GetMemoryWidth(std::int32_t index, std::int32_t& bits) noexcept override {
        const TSpace* const space = SpaceAt(index);
        return Give(bits, space != nullptr ? space->Width : 0);
    }
    Status GetMemorySize(std::int32_t index, std::int64_t& locations) noexcept override {
        const TSpace* const space = SpaceAt(index);
        return Give(locations, space != nullptr ? space->Size : 0);
    }
    Status ReadMemory(std::int32_t index, std::uint32_t* buffer, std::int64_t address,
                      std::int32_t count, std::int32_t& result) noexcept override;
    Status WriteMemory(std::int32_t index, const std::uint32_t* buffer, std::int64_t address,
                       std::int32_t count, std::int32_t& result) noexcept override;

    Status SingleStep() noexcept override {
        return Guard([&] { Running.Step(1); });
    }
    Status RunSteps(std::int32_t count) noexcept override {
        return Guard([&] { Running.Step(count); });
    }
    Status ResetProcessor() noexcept override {
        return Guard([&] { Unit.Reset(); });
    }
    Status PauseProcessor() noexcept override {
        return Guard([&] { Unit.Pause(); });
    }
    Status ContinueProcessor() noexcept override {
        return Guard([&] { Running.Continue(); });
    }
    Status NotifyReleased() noexcept override {
        return Guard([&] { Breakpoints.Release(); });
    }
    Status IsPaused(Bool32& value) noexcept override {
        return Guard([&] { value = ToBool32(Unit.Status().IsPaused()); });
    }
    Status IsReset(Bool32& value) noexcept override {
        return Guard([&] { value = ToBool32(Unit.Status().IsReset()); });
    }

    Status Add(std::int32_t space, std::int64_t address,
               IVorelBreakpoint*& breakpoint) noexcept override {
        return Guard([&] {
            breakpoint = nullptr;
            breakpoint = Breakpoints.Add(space, address);
        });
    }
    Status Remove(IVorelBreakpoint* breakpoint) noexcept override {
        return Guard([&] { Breakpoints.Remove(breakpoint); });
    }
    Status Find(std::int32_t space, std::int64_t address,
                IVorelBreakpoint*& breakpoint) noexcept override {
        return Guard([&] {
            breakpoint = nullptr;
            breakpoint = Breakpoints.Find(space, address);
        });
    }
    Status CountA(std::int32_t& count) noexcept override {
        return Guard([&] {
            count = 0;
            count = Breakpoints.Count();
        });
    }
    Status CountB(std::int32_t& count) noexcept override { return Give(count, 0); }
    Status GetA(std::int32_t index, IVorelBreakpoint*& breakpoint) noexcept override {
        return Give(breakpoint, Breakpoints.Get(index));
    }
    Status GetB(std::int32_t, IVorelBreakpoint*& breakpoint) noexcept override {
        return Give(breakpoint, nullptr);
    }
    Status HardwareLimit(std::int32_t& count) noexcept override {
        return Give(count, static_cast<std::int32_t>(TProcessorUnit::BreakpointCount));
    }

private:
    TProcessorUnit Unit;
    TProcessorMemory Memory{Unit};
    TProcessorRun Running{Unit, Memory};
    TProcessorBreakpoints Breakpoints{Unit, Memory};
};

Status TProcessor::ReadMemory(std::int32_t index, std::uint32_t* buffer, std::int64_t address,
                              std::int32_t count, std::int32_t& result) noexcept {
    result = 0;
    return Guard([&] {
        CheckBlock(index, buffer, address, count);
        const auto size = static_cast<std::uint32_t>(count);
        if (index == Ram) {
            Memory.ReadBytes(buffer, static_cast<std::uint32_t>(address), size);
        } else {
            Unit.ReadMemory({buffer, size}, PeripheralAddress(address));
        }
    });
}

Status TProcessor::WriteMemory(std::int32_t index, const std::uint32_t* buffer,
                               std::int64_t address, std::int32_t count,
                               std::int32_t& result) noexcept {
    result = 0;
    return Guard([&] {
        CheckBlock(index, buffer, address, count);
        const auto size = static_cast<std::uint32_t>(count);
        if (index == Ram) {
            Memory.WriteBytes(buffer, static_cast<std::uint32_t>(address), size);
        } else {
            Unit.WriteMemory({buffer, size}, PeripheralAddress(address));
        }
    });
}

using TModule = TDriverModule<TProcessor>;

} // namespace

VOREL_MODULE_EXPORT vorel::Status GetVorelDriverCount(std::int32_t* count) {
    return TModule::GetCount(count);
}

VOREL_MODULE_EXPORT vorel::Status GetVorelDriver(std::int32_t index, vorel::IVorelDriver** driver) {
    return TModule::MakeDriver(index, driver);
}
