// One position of a scanned chain; see IJTagDevice. Owned by its channel, which it does not
// outlive.
#pragma once

#include "core/CoreContext.h"
#include "core/JTagDeviceBsdl.h"
#include "support/Objects.h"
#include "vorel/Device.h"

#include <string>
#include <string_view>
#include <vector>

namespace vorel {

class TJTagChannel;

class TJTagDevice : public TNonRefCountedInterfacedObject<IJTagDevice> {
public:
    // The name under which the user's own mapping stands for an id that no driver knows.
    static constexpr std::string_view GenericName = "GenericDevice";
    // What a device counts as whose instruction register length nobody knows.
    static constexpr std::int32_t DefaultIrLength = 4;
    // A longer register than this in a file or driver is not believed: no chain could be scanned
    // with it.
    static constexpr std::int32_t MaxIrLength = 65536;

    TJTagDevice(TJTagChannel& channel, const TCoreContext& context);

    Status GetBsdlEntity(IBSDLEntity*& entity) noexcept override;
    Status GetDriver(IVorelDriver*& driver) noexcept override;
    Status GetJTagId(std::uint32_t& id) noexcept override;
    Status GetIrLength(std::int32_t& bits) noexcept override;
    Status GetIdCodeOfEntity(std::uint32_t& idCode) noexcept override;
    Status GetBoundaryLength(std::int32_t& cells) noexcept override;
    Status GetChainIndex(std::int32_t& index) noexcept override;
    Status GetFileName(WideText& path) noexcept override;
    Status GetName(WideText& name) noexcept override;
    Status SetChainIndex(std::int32_t index) noexcept override;
    Status SelectPart(const WideText& name, Bool32& selected) noexcept override;
    Status GetPin(std::int32_t index, IBSDLPin*& pin) noexcept override;
    Status GetPinMapping(std::int32_t index, IBSDLPinMapping*& mapping) noexcept override;
    Status GetBoundaryCell(std::int32_t index, IBSDLBoundaryCell*& cell) noexcept override;
    Status GetOpCode(std::int32_t index, IBSDLOpCode*& opCode) noexcept override;
    Status GetRegisterAssociation(std::int32_t index,
                                  IBSDLRegisterAssociation*& association) noexcept override;
    Status ReadBoundary(IBSDLEntity* entity, Bool32& done) noexcept override;
    Status GetPinCount(std::int32_t& count) noexcept override;
    Status GetPinMappingCount(std::int32_t& count) noexcept override;
    Status GetBoundaryCellCount(std::int32_t& count) noexcept override;
    Status GetOpCodeCount(std::int32_t& count) noexcept override;
    Status GetRegisterAssociationCount(std::int32_t& count) noexcept override;
    Status ReloadBsdl() noexcept override;

    // For the channel and the scan. Failures raise.
    std::uint32_t JTagId() const noexcept { return IdCode; }
    void SetJTagId(std::uint32_t id) noexcept { IdCode = id; }
    // Asks the knowledge what this id stands for and chooses one name.
    void Identify(std::uint32_t id);
    std::string PartName() const; // "Unknown" when none is selected
    bool SelectPartName(std::string_view name);
    // Above 0.
    std::int32_t IrLengthNow();

private:
    bool HasSelection() const noexcept;
    IVorelDriver* SelectedDriver() const;
    IBSDLEntity* SelectedEntity();

    // Runs `get` on the entity, if there is one.
    template<class Get>
    Status WithEntity(Get&& get) noexcept;

    TJTagChannel& Channel;
    const TCoreContext& Context;
    std::vector<std::string> PartNames;
    TJTagDeviceBsdl Bsdl;
    std::int32_t SelectedPart = -1;
    std::uint32_t IdCode = 0;
    std::int32_t IrLength = -1;
};

} // namespace vorel
