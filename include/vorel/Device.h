// One position of a scanned chain: the thing that answered with a JTAG id.
//
// A device object is owned by its channel and outlives rescans: when its id is gone from the chain
// it is kept, and comes back with the id. Device 0 of a chain is nearest TDI. Everything has a
// default; a device that nobody knows is called "Unknown", has no entity, and counts as having a
// 4-bit instruction register.
#pragma once

#include "vorel/Bsdl.h"
#include "vorel/Interface.h"

namespace vorel {

class IVorelDriver;

class IJTagDevice : public IInterface {
public:
    static constexpr Guid Id{
        0xD975DDA2, 0xC3D3, 0x4E25, {0x80, 0x22, 0x70, 0x0D, 0x5D, 0xC6, 0x8D, 0x38}};

    // The boundary-scan description of the selected part, read on first demand; null when there is
    // none.
    virtual Status GetBsdlEntity(IBSDLEntity*& entity) noexcept = 0;
    // The shared driver that describes the selected part; null when no driver knows it.
    virtual Status GetDriver(IVorelDriver*& driver) noexcept = 0;
    // As read, without the version bits (except for manufacturer 110).
    virtual Status GetJTagId(std::uint32_t& id) noexcept = 0;
    virtual Status GetIrLength(std::int32_t& bits) noexcept = 0;
    virtual Status GetIdCodeOfEntity(std::uint32_t& idCode) noexcept = 0;
    virtual Status GetBoundaryLength(std::int32_t& cells) noexcept = 0;
    virtual Status
    GetChainIndex(std::int32_t& index) noexcept = 0; // -1 for a device that is on no chain now
    virtual Status GetFileName(WideText& path) noexcept = 0;
    virtual Status GetName(WideText& name) noexcept = 0;
    virtual Status SetChainIndex(std::int32_t index) noexcept = 0; // no effect: the chain decides
    // Chooses among the part names of this id, without case. False when the name is not among them.
    virtual Status SelectPart(const WideText& name, Bool32& selected) noexcept = 0;
    // The entity's records; null without entity.
    virtual Status GetPin(std::int32_t index, IBSDLPin*& pin) noexcept = 0;
    virtual Status GetPinMapping(std::int32_t index, IBSDLPinMapping*& mapping) noexcept = 0;
    virtual Status GetBoundaryCell(std::int32_t index, IBSDLBoundaryCell*& cell) noexcept = 0;
    virtual Status GetOpCode(std::int32_t index, IBSDLOpCode*& opCode) noexcept = 0;
    virtual Status GetRegisterAssociation(std::int32_t index,
                                          IBSDLRegisterAssociation*& association) noexcept = 0;
    // Samples the device's real pins into the pins of `entity`. Always true.
    virtual Status ReadBoundary(IBSDLEntity* entity, Bool32& done) noexcept = 0;
    virtual Status GetPinCount(std::int32_t& count) noexcept = 0;
    virtual Status GetPinMappingCount(std::int32_t& count) noexcept = 0;
    virtual Status GetBoundaryCellCount(std::int32_t& count) noexcept = 0;
    virtual Status GetOpCodeCount(std::int32_t& count) noexcept = 0;
    virtual Status GetRegisterAssociationCount(std::int32_t& count) noexcept = 0;
    // Reads the selected part's file again.
    virtual Status ReloadBsdl() noexcept = 0;

protected:
    ~IJTagDevice() = default;
};

} // namespace vorel
