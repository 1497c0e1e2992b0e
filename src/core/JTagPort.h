// A port as its channels and the port list see it, and the part of a port that turns its interface
// operations into calls of the class.
#pragma once

#include "support/Errors.h"
#include "support/Objects.h"
#include "vorel/Channel.h"
#include "vorel/Ports.h"

#include <string>

namespace vorel {

class TJTagChannel;

// The state that all ports share. A port owns its four channels; it is owned by the port list.
class TJtagPort {
public:
    // The multiplexer's position is not known.
    static constexpr std::uint8_t NoChain = 255;

    TJtagPort() = default;
    TJtagPort(const TJtagPort&) = delete;
    TJtagPort& operator=(const TJtagPort&) = delete;
    virtual ~TJtagPort() = default;

    virtual IJTagPort& GetInterface() noexcept = 0;

    // The chain number that the board's multiplexer was last set to.
    std::uint8_t GetSelectedChain() const noexcept { return SelectedChain; }
    void SetSelectedChain(std::uint8_t chain) noexcept { SelectedChain = chain; }
    bool IsConnectedNow() const noexcept { return Connected; }

protected:
    // The operations of the interface, with failures as EVorelError.
    virtual std::string DoGetName() = 0;
    virtual std::string DoGetDescription() = 0;
    virtual bool DoIsPresent() = 0;
    virtual bool DoDetect(bool force) = 0;
    virtual TJTagChannel& DoGetHardChain() noexcept = 0;
    virtual TJTagChannel& DoGetSoftChain() noexcept = 0;
    virtual TJTagChannel& DoGetBoardChain() noexcept = 0;
    virtual TJTagChannel& DoGetSpiChain() noexcept = 0;
    // Number `index`, 0 to 3.
    virtual std::int32_t DoGetBoardInfo(int index) = 0;
    virtual std::string DoGetPortId() = 0;

    // What the operations do around the calls above.
    bool CheckPresence();
    bool SearchChains(bool force);

private:
    bool Connected = false;
    std::uint8_t SelectedChain = NoChain;
};

// The interface operations, for the interface that the kind of port has.
template<class Interface>
class TJtagPortOf : public TJtagPort, public TNonRefCountedInterfacedObject<Interface> {
public:
    Status QueryInterface(const Guid& id, void*& object) noexcept override {
        return QueryOneOf<Interface, IJTagPort>(this, id, object);
    }
    IJTagPort& GetInterface() noexcept override { return *this; }

    Status GetName(WideText& name) noexcept final;
    Status GetDescription(WideText& description) noexcept final;
    Status IsPresent(Bool32& present) noexcept final;
    Status IsConnected(Bool32& connected) noexcept final;
    Status Detect(Bool32 force, Bool32& found) noexcept final;
    Status GetHardChain(IJTagChannel*& channel) noexcept final;
    Status GetSoftChain(IJTagChannel*& channel) noexcept final;
    Status GetBoardChain(IJTagChannel*& channel) noexcept final;
    Status GetSpiChain(IJTagBitBus*& bus) noexcept final;
    Status GetBoardInfo1(std::int32_t& value) noexcept final { return GetBoardInfo(0, value); }
    Status GetBoardInfo2(std::int32_t& value) noexcept final { return GetBoardInfo(1, value); }
    Status GetBoardInfo3(std::int32_t& value) noexcept final { return GetBoardInfo(2, value); }
    Status GetBoardInfo4(std::int32_t& value) noexcept final { return GetBoardInfo(3, value); }
    Status GetPortId(WideText& id) noexcept final;

private:
    Status GetBoardInfo(int index, std::int32_t& value) noexcept;
};

extern template class TJtagPortOf<IJTagUsbPort>;
extern template class TJtagPortOf<IJTagParallelPort>;

} // namespace vorel
