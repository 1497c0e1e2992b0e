#include "hosts/vorelctl/DebugTarget.h"

#include "support/Errors.h"
#include "support/Text.h"
#include "vorel/Channel.h"
#include "vorel/Device.h"
#include "vorel/DeviceManager.h"
#include "vorel/Ports.h"

#include <utility>

namespace vorel::host {

namespace {

// Get<WideText>([&](auto& v) { return x.Op(v); })
template<class T, class Op>
T Get(Op&& operation) {
    T value{};
    Check(operation(value), "Asking the target");
    return value;
}

[[noreturn]] void Refuse(const std::string& text) {
    throw ECommandFailure(ExitStatus::NothingFound, text);
}

std::string At(const char* action, std::int64_t address) {
    return std::string(action) + " at " + ToHex(static_cast<std::uint64_t>(address), 8);
}

bool IsDebuggable(IVorelDevice& device) {
    const auto registers = Get<std::int32_t>([&](auto& v) { return device.GetRegisterCount(v); });
    const auto spaces = Get<std::int32_t>([&](auto& v) { return device.GetMemorySpaceCount(v); });
    return registers > 0 || spaces > 0;
}

} // namespace

TDebugTarget::TDebugTarget(TSession& session, const std::string& device) : Session(session) {
    const TVorelLibrary& library = session.Library();
    Check(library.ScanJTagPorts(), "Looking for ports");
    const auto count = Get<std::int32_t>([&](auto& v) { return library.GetJTagPortCount(&v); });
    for (std::int32_t i = 0; i < count; ++i) {
        auto* const port = Get<IJTagPort*>([&](auto& v) { return library.GetJTagPort(i, &v); });
        Bool32 found = False32;
        if (port != nullptr) {
            Check(port->Detect(False32, found),
                  ("Looking for chains behind port " + std::to_string(i)).c_str());
        }
        if (found == False32) {
            continue;
        }
        if (ChooseOnPort(*port, device)) {
            Port = port;
            PortName = ToUtf8(Get<WideText>([&](auto& v) { return port->GetName(v); }));
            return;
        }
    }
    Refuse(device.empty() ? "No soft device that can be debugged was found; \"vorelctl scan\" "
                            "shows what is there."
                          : "There is no soft device \"" + device +
                                "\" that can be debugged; \"vorelctl scan\" shows what is there.");
}

TDebugTarget::~TDebugTarget() {
    Session.Library().DeviceManager()->ReleaseDevice(Chosen);
}

// A cable has a single chain, the hard one, whatever hangs on it.
bool TDebugTarget::ChooseOnPort(IJTagPort& port, const std::string& device) {
    auto* const soft = Get<IJTagChannel*>([&](auto& v) { return port.GetSoftChain(v); });
    if (soft != nullptr && Choose(*soft, device)) {
        ChainName = "soft chain";
        return true;
    }
    auto* const hard = Get<IJTagChannel*>([&](auto& v) { return port.GetHardChain(v); });
    if (hard != nullptr && Choose(*hard, device)) {
        ChainName = "hard chain";
        return true;
    }
    return false;
}

bool TDebugTarget::Choose(IJTagChannel& chain, const std::string& device) {
    IDeviceManager& manager = *Session.Library().DeviceManager();
    const auto count = Get<std::int32_t>([&](auto& v) { return chain.GetDeviceCount(v); });
    for (std::int32_t place = 0; place < count; ++place) {
        auto* const position =
            Get<IJTagDevice*>([&](auto& v) { return chain.GetDevice(place, v); });
        const auto name = Get<WideText>([&](auto& v) { return position->GetName(v); });
        if (!device.empty() && !SameText(device, ToUtf8(name)) && device != std::to_string(place)) {
            continue;
        }
        auto* const soft =
            Get<IVorelDevice*>([&](auto& v) { return manager.AcquireDevice(name, v); });
        if (soft != nullptr && IsDebuggable(*soft)) {
            Check(soft->SetChannel(&chain), "Putting the device on its chain");
            Check(soft->SetChainIndex(place), "Putting the device in its place");
            Chain = &chain;
            Chosen = soft;
            ChainIndex = place;
            return true;
        }
        manager.ReleaseDevice(soft);
    }
    return false;
}

std::string TDebugTarget::Name() const {
    return ToUtf8(Get<WideText>([&](auto& v) { return Chosen->GetDeviceName(v); }));
}

std::string TDebugTarget::Explain(const std::string& failure) const {
    std::string text = Name() + ": " + failure + ".";
    Bool32 present = False32;
    if (Succeeded(Port->IsPresent(present)) && present != False32) {
        return text;
    }
    return text + " " + PortName +
           " does not answer any more. Check that it is plugged in; in a session, reconnect finds "
           "it again.";
}

void TDebugTarget::Reconnect() const {
    Check(Session.Library().ScanJTagPorts(), "Looking for ports");
    Bool32 found = False32;
    if (Failed(Port->Detect(True32, found)) || found == False32) {
        Refuse(PortName + " is not back, or no chain answers behind it.");
    }
    auto* const position =
        Get<IJTagDevice*>([&](auto& v) { return Chain->GetDevice(ChainIndex, v); });
    if (position == nullptr ||
        !SameText(ToUtf8(Get<WideText>([&](auto& v) { return position->GetName(v); })), Name())) {
        Refuse(Name() + " is not at place " + std::to_string(ChainIndex) + " of the " + ChainName +
               " any more.");
    }
}

// A program may stop between two questions: a reason that was given counts.
std::string TDebugTarget::StatusText() const {
    const auto ask = [&] {
        return ToUtf8(Get<WideText>([&](auto& v) { return Chosen->GetStatusText(v); }));
    };
    std::string state = ask();
    const std::string reason = DriverText(1);
    if (reason.empty()) {
        return state;
    }
    state = ask();
    return reason.starts_with(state) ? reason : state + ": " + reason;
}

bool TDebugTarget::IsRunning() const {
    return Get<Bool32>([&](auto& v) { return Chosen->IsPaused(v); }) == False32 &&
           Get<Bool32>([&](auto& v) { return Chosen->IsReset(v); }) == False32;
}

bool TDebugTarget::IsProcessor() const {
    return Get<std::int32_t>([&](auto& v) { return Chosen->GetRegisterCount(v); }) > 0;
}

std::string TDebugTarget::DriverText(std::int32_t number) const {
    return ToUtf8(Get<WideText>([&](auto& v) { return Chosen->GetCoreText111(number, v); }));
}

std::vector<TDebugTarget::TRegister> TDebugTarget::Registers() const {
    const auto count = Get<std::int32_t>([&](auto& v) { return Chosen->GetRegisterCount(v); });
    std::vector<TRegister> registers;
    for (std::int32_t i = 0; i < count; ++i) {
        auto* const handle =
            Get<IProcessorRegister*>([&](auto& v) { return Chosen->GetRegister(i, v); });
        registers.push_back(
            {ToUtf8(Get<WideText>([&](auto& v) { return handle->GetName(v); })),
             ToUtf8(Get<WideText>([&](auto& v) { return handle->GetAttributeText(v); })), handle});
    }
    return registers;
}

IMemorySpace& TDebugTarget::Memory() const {
    auto* const space = Get<IMemorySpace*>([&](auto& v) { return Chosen->GetMainMemorySpace(v); });
    if (space == nullptr) {
        Refuse(Name() + " has no memory.");
    }
    return *space;
}

std::size_t TDebugTarget::LocationBytes() const {
    IMemorySpace& memory = Memory();
    const auto width = Get<std::int32_t>([&](auto& v) { return memory.GetWidth(v); });
    if (width < 1 || width > 32) {
        Refuse("The memory has locations of " + std::to_string(width) + " bits.");
    }
    return width <= 8 ? 1 : width <= 16 ? 2 : 4;
}

std::int64_t TDebugTarget::MemoryBytes() const {
    IMemorySpace& memory = Memory();
    return Get<std::int64_t>([&](auto& v) { return memory.GetSize(v); }) *
           static_cast<std::int64_t>(LocationBytes());
}

bool TDebugTarget::IsBigEndian() const {
    return Get<std::int32_t>([&](auto& v) { return Chosen->GetByteOrder(v); }) == 0;
}

void TDebugTarget::CheckBlock(std::int64_t address, std::size_t count) const {
    const std::int64_t size = MemoryBytes();
    const auto bytes = static_cast<std::int64_t>(LocationBytes());
    if (address < 0 || address > size || std::cmp_greater(count, size - address)) {
        Refuse("The memory ends at " + ToHex(static_cast<std::uint64_t>(size), 8) + ".");
    }
    if (address % bytes != 0 || count % static_cast<std::size_t>(bytes) != 0) {
        Refuse("Address and size have to be multiples of " + std::to_string(bytes) + " here.");
    }
}

std::vector<std::uint8_t> TDebugTarget::ReadBytes(std::int64_t address, std::size_t count) const {
    CheckBlock(address, count);
    const std::size_t size = LocationBytes();
    std::vector<std::uint32_t> slots(count / size);
    const Status read = Memory().ReadBlock(slots.data(), address / static_cast<std::int64_t>(size),
                                           static_cast<std::int32_t>(slots.size()));
    if (Failed(read)) {
        Chain->Unlock(); // a failed read leaves the chain locked once more
    }
    Check(read, At("Reading the memory", address).c_str());
    const bool big = IsBigEndian();
    std::vector<std::uint8_t> bytes(count);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t place = big ? size - 1 - i % size : i % size;
        bytes[i] = static_cast<std::uint8_t>(slots[i / size] >> (8 * place));
    }
    return bytes;
}

void TDebugTarget::WriteBytes(std::int64_t address, std::span<const std::uint8_t> bytes) const {
    CheckBlock(address, bytes.size());
    const std::size_t size = LocationBytes();
    std::vector<std::uint32_t> slots(bytes.size() / size);
    const bool big = IsBigEndian();
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const std::size_t place = big ? size - 1 - i % size : i % size;
        slots[i / size] |= std::uint32_t{bytes[i]} << (8 * place);
    }
    Check(Memory().WriteBlock(slots.data(), address / static_cast<std::int64_t>(size),
                              static_cast<std::int32_t>(slots.size())),
          At("Writing the memory", address).c_str());
}

} // namespace vorel::host
