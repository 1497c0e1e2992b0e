#include "core/JTagDevice.h"

#include "core/BoundarySample.h"
#include "core/JTagChannel.h"
#include "support/Errors.h"
#include "support/Text.h"

#include <algorithm>

namespace vorel {

namespace {

// Drivers of this family stand for no part in particular.
constexpr std::string_view GenericFamily = "Generic";

bool IsBelievable(std::int32_t irLength) noexcept {
    return irLength > 0 && irLength <= TJTagDevice::MaxIrLength;
}

} // namespace

TJTagDevice::TJTagDevice(TJTagChannel& channel, const TCoreContext& context)
    : Channel(channel), Context(context), Bsdl(context) {}

bool TJTagDevice::HasSelection() const noexcept {
    return SelectedPart >= 0 && static_cast<std::size_t>(SelectedPart) < PartNames.size();
}

std::string TJTagDevice::PartName() const {
    return HasSelection() ? PartNames[static_cast<std::size_t>(SelectedPart)] : "Unknown";
}

bool TJTagDevice::SelectPartName(std::string_view name) {
    if (SameText(name, PartName())) {
        return true;
    }
    const auto hit = std::find_if(PartNames.begin(), PartNames.end(),
                                  [&](const std::string& part) { return SameText(part, name); });
    if (hit == PartNames.end()) {
        return false;
    }
    SelectedPart = static_cast<std::int32_t>(hit - PartNames.begin());
    return true;
}

IVorelDriver* TJTagDevice::SelectedDriver() const {
    return HasSelection() ? Context.Knowledge->GetDriverForDevice(PartName()) : nullptr;
}

// The last name that is not generic wins; the user's own mapping only stands in when there is none.
void TJTagDevice::Identify(std::uint32_t id) {
    PartNames = Context.Knowledge->DevicesForJtagId(id);
    SelectedPart = PartNames.empty() ? -1 : 0;
    SelectPartName(GenericName);
    for (const std::string& name : PartNames) {
        IVorelDriver* driver = Context.Knowledge->GetDriverForDevice(name);
        WideText family;
        if (driver != nullptr) {
            Check(driver->GetFamily(family), "reading a driver's family");
        }
        if (!SameText(ToUtf8(family), GenericFamily)) {
            SelectPartName(name);
        }
    }
    if (IVorelDriver* driver = SelectedDriver()) {
        Check(driver->GetIrLength(IrLength), "reading a driver's instruction length");
    }
}

std::int32_t TJTagDevice::IrLengthNow() {
    if (IsBelievable(IrLength)) {
        return IrLength;
    }
    std::int32_t bits = 0;
    if (IBSDLEntity* entity = SelectedEntity()) {
        Check(entity->GetInstructionLength(bits), "reading an entity's instruction length");
        if (IsBelievable(bits)) {
            return bits;
        }
    }
    IVorelDriver* driver = SelectedDriver();
    if (driver != nullptr && Context.Generic != nullptr && IsGenericDriver(*driver)) {
        Check(Context.Generic->GetInstructionLength(IdCode, bits),
              "reading a generic device's instruction length");
        if (IsBelievable(bits)) {
            return bits;
        }
    }
    return DefaultIrLength;
}

IBSDLEntity* TJTagDevice::SelectedEntity() {
    IVorelDriver* driver = SelectedDriver();
    return driver == nullptr ? nullptr
                             : Bsdl.GetEntity(PartName(), *driver, IdCode, Channel.IndexOf(*this));
}

template<class Get>
Status TJTagDevice::WithEntity(Get&& get) noexcept {
    return Guard([&] {
        IBSDLEntity* entity = SelectedEntity();
        return entity != nullptr ? get(*entity) : StatusOk;
    });
}

Status TJTagDevice::GetBsdlEntity(IBSDLEntity*& entity) noexcept {
    entity = nullptr;
    return Guard([&] { entity = SelectedEntity(); });
}

Status TJTagDevice::GetDriver(IVorelDriver*& driver) noexcept {
    driver = nullptr;
    return Guard([&] { driver = SelectedDriver(); });
}

Status TJTagDevice::GetJTagId(std::uint32_t& id) noexcept {
    id = IdCode;
    return StatusOk;
}

Status TJTagDevice::GetIrLength(std::int32_t& bits) noexcept {
    bits = 0;
    return Guard([&] { bits = IrLengthNow(); });
}

Status TJTagDevice::GetIdCodeOfEntity(std::uint32_t& idCode) noexcept {
    idCode = 0;
    return WithEntity([&](IBSDLEntity& entity) { return entity.GetIdCode(idCode); });
}

Status TJTagDevice::GetBoundaryLength(std::int32_t& cells) noexcept {
    cells = 0;
    return WithEntity([&](IBSDLEntity& entity) { return entity.GetBoundaryLength(cells); });
}

Status TJTagDevice::GetChainIndex(std::int32_t& index) noexcept {
    index = Channel.IndexOf(*this);
    return StatusOk;
}

Status TJTagDevice::GetFileName(WideText& path) noexcept {
    path.clear();
    return WithEntity([&](IBSDLEntity& entity) { return entity.GetFileName(path); });
}

Status TJTagDevice::GetName(WideText& name) noexcept {
    name.clear();
    return Guard([&] { name = ToWide(PartName()); });
}

Status TJTagDevice::SetChainIndex(std::int32_t /*index*/) noexcept {
    return StatusOk;
}

Status TJTagDevice::SelectPart(const WideText& name, Bool32& selected) noexcept {
    selected = False32;
    return Guard([&] { selected = ToBool32(SelectPartName(ToUtf8(name))); });
}

Status TJTagDevice::GetPin(std::int32_t index, IBSDLPin*& pin) noexcept {
    pin = nullptr;
    return WithEntity([&](IBSDLEntity& entity) { return entity.GetPin(index, pin); });
}

Status TJTagDevice::GetPinMapping(std::int32_t index, IBSDLPinMapping*& mapping) noexcept {
    mapping = nullptr;
    return WithEntity([&](IBSDLEntity& entity) { return entity.GetPinMapping(index, mapping); });
}

Status TJTagDevice::GetBoundaryCell(std::int32_t index, IBSDLBoundaryCell*& cell) noexcept {
    cell = nullptr;
    return WithEntity([&](IBSDLEntity& entity) { return entity.GetBoundaryCell(index, cell); });
}

Status TJTagDevice::GetOpCode(std::int32_t index, IBSDLOpCode*& opCode) noexcept {
    opCode = nullptr;
    return WithEntity([&](IBSDLEntity& entity) { return entity.GetOpCode(index, opCode); });
}

Status TJTagDevice::GetRegisterAssociation(std::int32_t index,
                                           IBSDLRegisterAssociation*& association) noexcept {
    association = nullptr;
    return WithEntity(
        [&](IBSDLEntity& entity) { return entity.GetRegisterAssociation(index, association); });
}

Status TJTagDevice::ReadBoundary(IBSDLEntity* entity, Bool32& done) noexcept {
    done = True32;
    return Guard([&] {
        const std::int32_t index = Channel.IndexOf(*this);
        if (entity != nullptr && index >= 0) {
            SampleBoundary(Channel, index, *entity);
        }
    });
}

Status TJTagDevice::GetPinCount(std::int32_t& count) noexcept {
    count = 0;
    return WithEntity([&](IBSDLEntity& entity) { return entity.GetPinCount(count); });
}

Status TJTagDevice::GetPinMappingCount(std::int32_t& count) noexcept {
    count = 0;
    return WithEntity([&](IBSDLEntity& entity) { return entity.GetPinMappingCount(count); });
}

Status TJTagDevice::GetBoundaryCellCount(std::int32_t& count) noexcept {
    count = 0;
    return WithEntity([&](IBSDLEntity& entity) { return entity.GetBoundaryCellCount(count); });
}

Status TJTagDevice::GetOpCodeCount(std::int32_t& count) noexcept {
    count = 0;
    return WithEntity([&](IBSDLEntity& entity) { return entity.GetOpCodeCount(count); });
}

Status TJTagDevice::GetRegisterAssociationCount(std::int32_t& count) noexcept {
    count = 0;
    return WithEntity(
        [&](IBSDLEntity& entity) { return entity.GetRegisterAssociationCount(count); });
}

Status TJTagDevice::ReloadBsdl() noexcept {
    return Guard([&] {
        if (HasSelection()) {
            Bsdl.Forget(PartName());
            SelectedEntity();
        }
    });
}

} // namespace vorel
