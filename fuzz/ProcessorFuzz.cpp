// The driver of the soft processor on a device whose answers are rubbish: wrong words, texts of the
// wrong length and with other characters than digits, failures in between. No operation may crash,
// or ask more than its work can need.
#include "FuzzInput.h"
#include "core/UserDialogs.h"
#include "core/VorelDevice.h"
#include "drivers/ModuleExport.h"
#include "support/NeutralHost.h"
#include "vorel/Channel.h"
#include "vorel/Driver.h"

#include <cstdlib>
#include <memory>
#include <vector>

VOREL_MODULE_EXPORT vorel::Status GetVorelDriver(std::int32_t index, vorel::IVorelDriver** driver);

namespace {

using namespace vorel;

constexpr int MaxOperations = 64;
// The longest row of steps takes 2,148 commands and as many questions.
constexpr int MaxAccesses = 5000;

struct TServices {
    TNeutralHost Host;
    TNoUserDialogs Dialogs;
};

class THostileDevice final : public TVorelDevice {
public:
    THostileDevice(TServices& services, IVorelDriver& driver, fuzz::TInput& answers)
        : TVorelDevice(services.Host, services.Dialogs, &driver), Answers(answers) {}

    int Accesses = 0;

    // On a chain that nobody may use.
    Status GetChannel(IJTagChannel*& channel) noexcept override {
        static char nothing = 0;
        channel = reinterpret_cast<IJTagChannel*>(&nothing);
        return StatusOk;
    }
    Status SetChannel(IJTagChannel*) noexcept override { return StatusOk; }
    Status ReadRegisterNumber(std::uint8_t, std::int32_t, std::uint32_t& value) noexcept override {
        value = Answers.Word();
        return Outcome();
    }
    Status WriteRegisterNumber(std::uint8_t, std::int32_t, std::uint32_t) noexcept override {
        return Outcome();
    }
    Status ReadRegisterText(std::uint8_t, std::int32_t count, BitText& bits) noexcept override {
        const std::uint8_t kind = Answers.Byte();
        const auto length = static_cast<std::size_t>(count);
        bits.assign(kind == 255 ? length + 1 : kind == 254 ? length / 2 : length, '0');
        std::uint8_t pattern = 0;
        for (std::size_t i = 0; i < bits.size(); ++i) {
            pattern = i % 8 == 0 && i < 256 ? Answers.Byte() : pattern;
            bits[i] = kind == 253 ? static_cast<char>(pattern) : "01"[pattern >> (i % 8) & 1];
        }
        return Outcome();
    }
    Status WriteRegisterText(std::uint8_t, const BitText&) noexcept override { return Outcome(); }

private:
    Status Outcome() {
        if (++Accesses > MaxAccesses) {
            std::abort();
        }
        return Answers.Byte() < 250 ? StatusOk : StatusError;
    }

    fuzz::TInput& Answers;
};

class TSession {
public:
    TSession(TVorelDevice& device, fuzz::TInput& input) : Device(device), Input(input) {}

    void Operate() {
        switch (Input.Byte() % 12) {
        case 0:
            Device.AddBreakpoint(Input.Byte() % 2, Address(), Breakpoint);
            break;
        case 1:
            Device.RemoveBreakpoint(0, Address(), Flag);
            break;
        case 2:
            Device.RemoveAllBreakpoints();
            break;
        case 3:
            Device.ContinueProcessor();
            break;
        case 4:
            Device.RunSteps(static_cast<std::int32_t>(Input.Word()));
            break;
        case 5:
            Device.PauseProcessor();
            Device.ResetProcessor();
            Device.GetStatusText(Text);
            break;
        case 6:
            Device.GetCoreText111(Input.Byte() % 4, Text);
            break;
        case 7:
            Device.RunDiagnostic(Number);
            break;
        case 8:
            UseRegister();
            break;
        case 9:
            UseMemory(true);
            break;
        case 10:
            UseMemory(false);
            break;
        default:
            Device.NotifyReleased();
            break;
        }
    }

private:
    // Mostly places that can be planted.
    std::int64_t Address() {
        const std::uint8_t kind = Input.Byte();
        return kind < 200 ? kind % 64 * 4 : static_cast<std::int32_t>(Input.Word());
    }
    void UseRegister() {
        IProcessorRegister* handle = nullptr;
        Device.GetRegister(Input.Byte() % 36, handle);
        if (handle != nullptr) {
            handle->ReadText(Text);
            handle->WriteText(Text);
        }
    }
    void UseMemory(bool write) {
        IMemorySpace* space = nullptr;
        Device.GetMemorySpace(Input.Byte() % 2, space);
        const std::int64_t address = Address();
        std::vector<std::uint32_t> slots(Input.Byte() % 4 == 0 ? 20000 : Input.Byte());
        const auto count = static_cast<std::int32_t>(slots.size());
        if (write) {
            space->WriteBlock(slots.data(), address, count);
        } else {
            space->ReadBlock(slots.data(), address, count);
        }
    }

    TVorelDevice& Device;
    fuzz::TInput& Input;
    IVorelBreakpoint* Breakpoint = nullptr;
    Bool32 Flag = False32;
    WideText Text;
    std::int32_t Number = 0;
};

struct TFree {
    void operator()(IVorelDriver* driver) const {
        IDriverObject* object = nullptr;
        if (driver->GetImplementingObject(object) == StatusOk) {
            object->Free();
        }
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    IVorelDriver* made = nullptr;
    if (GetVorelDriver(0, &made) != StatusOk) {
        std::abort();
    }
    const std::unique_ptr<IVorelDriver, TFree> driver(made);
    fuzz::TInput input(data, size);
    TServices services;
    THostileDevice device(services, *driver, input);
    device.SetChainIndex(0);
    TSession session(device, input);
    for (int i = 0; i < MaxOperations && !input.AtEnd(); ++i) {
        device.Accesses = 0;
        session.Operate();
    }
    return 0;
}
