// What can be looked at and stopped at in a soft device: registers, memories and breakpoints.
#include "core/MemorySpace.h"
#include "core/ProcessorRegister.h"
#include "core/VorelDevice.h"
#include "vorel/Host.h"

#include <utility>

namespace vorel {

namespace {

constexpr const char16_t* NoBreakpointLeft =
    u"A request for a hardware breakpoint could not be satisfied!\r\n\r\n"
    u"Either the underlying hardware has no support for hardware breakpoints or you need to free "
    u"up an existing hardware breakpoint.\r\n";

template<class Item>
Item* ItemAt(const std::vector<std::unique_ptr<Item>>& items, std::int32_t index) noexcept {
    const bool inside = index >= 0 && std::cmp_less(index, items.size());
    return inside ? items[static_cast<std::size_t>(index)].get() : nullptr;
}

using CountOperation = Status (IVorelBreakpoints::*)(std::int32_t&) noexcept;
using GetOperation = Status (IVorelBreakpoints::*)(std::int32_t, IVorelBreakpoint*&) noexcept;

// The count is taken once and the index goes up while items leave: so drivers expect it.
void RemoveList(IVorelBreakpoints& breakpoints, CountOperation getCount, GetOperation getItem) {
    std::int32_t count = 0;
    Check((breakpoints.*getCount)(count), "Counting breakpoints");
    for (std::int32_t index = 0; index < count; ++index) {
        IVorelBreakpoint* breakpoint = nullptr;
        Check((breakpoints.*getItem)(index, breakpoint), "Reading a breakpoint");
        if (breakpoint != nullptr) {
            Check(breakpoints.Remove(breakpoint), "Removing a breakpoint");
        }
    }
}

} // namespace

Status TVorelDevice::GetRegisterCount(std::int32_t& value) noexcept {
    return Give(value, static_cast<std::int32_t>(Registers.size()));
}

Status TVorelDevice::GetMemorySpaceCount(std::int32_t& value) noexcept {
    return Give(value, static_cast<std::int32_t>(Memories.size()));
}

Status TVorelDevice::GetMemorySpace(std::int32_t index, IMemorySpace*& space) noexcept {
    return Give(space, ItemAt(Memories, index));
}

Status TVorelDevice::GetRegister(std::int32_t index,
                                 IProcessorRegister*& processorRegister) noexcept {
    return Give(processorRegister, ItemAt(Registers, index));
}

Status TVorelDevice::GetProgramCounterRegister(IProcessorRegister*& processorRegister) noexcept {
    std::int32_t index = -1;
    const Status status = Link.Ask(&Entry::GetProgramCounterIndex, index, -1);
    processorRegister = Succeeded(status) ? ItemAt(Registers, index) : nullptr;
    return status;
}

Status TVorelDevice::GetSecondRegister(IProcessorRegister*& processorRegister) noexcept {
    std::int32_t index = -1;
    const Status status = Link.Ask(&Entry::GetSecondRegisterIndex, index, -1);
    processorRegister = Succeeded(status) ? ItemAt(Registers, index) : nullptr;
    return status;
}

Status TVorelDevice::GetMainMemorySpace(IMemorySpace*& space) noexcept {
    std::int32_t index = -1;
    const Status status = Link.Ask(&Entry::GetMainMemoryIndex, index, -1);
    space = Succeeded(status) ? ItemAt(Memories, index) : nullptr;
    return status;
}

Ref<IVorelBreakpoints> TVorelDevice::QueryBreakpoints() const noexcept {
    return Ref<IVorelBreakpoints>::Adopt(QueryFor<IVorelBreakpoints>(Link.GetDriver()));
}

Status TVorelDevice::GetBreakpointCount(std::int32_t& value) noexcept {
    value = 0;
    const Ref<IVorelBreakpoints> breakpoints = QueryBreakpoints();
    return breakpoints ? breakpoints->CountA(value) : StatusOk;
}

Status TVorelDevice::FindBreakpoint(std::int32_t space, std::int64_t address,
                                    IVorelBreakpoint*& breakpoint) noexcept {
    breakpoint = nullptr;
    const Ref<IVorelBreakpoints> breakpoints = QueryBreakpoints();
    return breakpoints ? breakpoints->Find(space, address, breakpoint) : StatusOk;
}

Status TVorelDevice::AddBreakpoint(std::int32_t space, std::int64_t address,
                                   IVorelBreakpoint*& breakpoint) noexcept {
    return Guard([&] {
        breakpoint = nullptr;
        const Ref<IVorelBreakpoints> breakpoints = QueryBreakpoints();
        if (!breakpoints) {
            return;
        }
        IVorelBreakpoint* added = nullptr;
        Check(breakpoints->Add(space, address, added), "Adding a breakpoint");
        if (added == nullptr) {
            TellOfMissingBreakpoint(*breakpoints);
            return;
        }
        // Drivers wait for this question; the answer plays no part here.
        std::int32_t dropped = 0;
        Check(added->GetNumber10(dropped), "Asking the new breakpoint");
        breakpoint = added;
    });
}

void TVorelDevice::TellOfMissingBreakpoint(IVorelBreakpoints& breakpoints) {
    std::int32_t limit = 0;
    Check(breakpoints.HardwareLimit(limit), "Asking for the number of hardware breakpoints");
    if (limit > 0) {
        MessageBoxAnswer answer = MessageBoxAnswer::Ok;
        Check(Host.ShowMessageBox(MessageBoxKind::Error, u"Error", NoBreakpointLeft, answer),
              "Showing a message");
    }
}

Status TVorelDevice::RemoveBreakpoint(std::int32_t space, std::int64_t address,
                                      Bool32& removed) noexcept {
    return Guard([&] {
        removed = False32;
        const Ref<IVorelBreakpoints> breakpoints = QueryBreakpoints();
        IVorelBreakpoint* breakpoint = nullptr;
        if (breakpoints) {
            Check(breakpoints->Find(space, address, breakpoint), "Finding a breakpoint");
        }
        if (breakpoint != nullptr) {
            Check(breakpoints->Remove(breakpoint), "Removing a breakpoint");
            removed = True32;
        }
    });
}

Status TVorelDevice::RemoveAllBreakpoints() noexcept {
    return Guard([&] {
        if (const Ref<IVorelBreakpoints> breakpoints = QueryBreakpoints()) {
            RemoveList(*breakpoints, &IVorelBreakpoints::CountA, &IVorelBreakpoints::GetA);
            RemoveList(*breakpoints, &IVorelBreakpoints::CountB, &IVorelBreakpoints::GetB);
        }
    });
}

} // namespace vorel
