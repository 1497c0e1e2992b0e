// The tables of the public interfaces are a binary contract with hosts and driver modules: sizes
// and places are checked by calling through a table.
#include "TableDouble.h"
#include "vorel/Bsdl.h"
#include "vorel/Channel.h"
#include "vorel/Device.h"
#include "vorel/DeviceManager.h"
#include "vorel/Driver.h"
#include "vorel/Host.h"
#include "vorel/ParallelPort.h"
#include "vorel/Ports.h"
#include "vorel/VorelDevice.h"

#include <gtest/gtest.h>

namespace vorel::test {
namespace {

template<class I>
class ILonger : public I {
public:
    virtual Status OneMore() noexcept = 0;

protected:
    ~ILonger() = default;
};

template<class I>
int EntryCount() {
    return SlotOf(&ILonger<I>::OneMore);
}

TEST(InterfaceTables, HaveTheirSizes) {
    EXPECT_EQ(EntryCount<IInterface>(), 3);
    EXPECT_EQ(EntryCount<IVorelDevice>(), 115 + 3);
    EXPECT_EQ(EntryCount<IVorelDriver>(), 123);
    EXPECT_EQ(EntryCount<IVorelBreakpoints>(), 32);
    EXPECT_EQ(EntryCount<IVorelBreakpoint>(), 11);
    EXPECT_EQ(EntryCount<IProcessorRegister>(), 15 + 3);
    EXPECT_EQ(EntryCount<IMemorySpace>(), 12 + 3);
    EXPECT_EQ(EntryCount<IDeviceManager>(), 19 + 3);
    EXPECT_EQ(EntryCount<IDeviceCatalog>(), 2 + 3);
    EXPECT_EQ(EntryCount<IDeviceFamilyManager>(), 4 + 3);
    EXPECT_EQ(EntryCount<IDeviceFamilyInfo>(), 17 + 3);
    EXPECT_EQ(EntryCount<IGenericDeviceManager>(), 9 + 3);
    EXPECT_EQ(EntryCount<IJTagPort>(), 14 + 3);
    EXPECT_EQ(EntryCount<IJTagUsbPort>(), 14 + 3);
    EXPECT_EQ(EntryCount<IJTagParallelPort>(), 15 + 3);
    EXPECT_EQ(EntryCount<IJTagPins>(), 12 + 3);
    EXPECT_EQ(EntryCount<IJTagBitBus>(), 13 + 3);
    EXPECT_EQ(EntryCount<IJTagChannel>(), 39 + 3);
    EXPECT_EQ(EntryCount<IJTagDevice>(), 23 + 3);
    EXPECT_EQ(EntryCount<IParallelPort>(), 71);
    EXPECT_EQ(EntryCount<IParallelPortManager>(), 10);
    EXPECT_EQ(EntryCount<IBSDLEntity>(), 32 + 3);
    EXPECT_EQ(EntryCount<IBSDLPin>(), 11 + 3);
    EXPECT_EQ(EntryCount<IBSDLPinMapping>(), 6 + 3);
    EXPECT_EQ(EntryCount<IBSDLBoundaryCell>(), 15 + 3);
    EXPECT_EQ(EntryCount<IBSDLOpCode>(), 5 + 3);
    EXPECT_EQ(EntryCount<IBSDLRegisterAssociation>(), 7 + 3);
    EXPECT_EQ(EntryCount<IBSDLTagged>(), 1 + 3);
}

// Operations that follow each other from `entry` on.
template<class... Operations>
void ExpectFrom(int entry, Operations... operations) {
    for (const int slot : {SlotOf(operations)...}) {
        EXPECT_EQ(slot, entry++);
    }
}

// The entries that soft devices use are checked where they call them.
TEST(InterfaceTables, DriverEntriesThatNoDeviceUsesStandInTheirPlaces) {
    using D = IVorelDriver;
    EXPECT_EQ(SlotOf(&D::GetAttributeNumber12), 12);
    EXPECT_EQ(SlotOf(&D::GetSpeedGrade), 24);
    ExpectFrom(37, &D::GetDspMultipliers, &D::GetClockManagers, &D::GetEmbeddedRam,
               &D::GetOnChipTermination, &D::GetGlobalClocks, &D::GetConfigMemory,
               &D::GetDifferentialPairs, &D::GetHighSpeedPairs, &D::GetAttributeNumber45,
               &D::GetAttributeItem46);
    EXPECT_EQ(SlotOf(&D::GetImplementingObject), 112);
    EXPECT_EQ(SlotOf(&IVorelBreakpoints::GetA), 23);
}

TEST(InterfaceTables, NumberedEntriesOfParallelPortsStandInTheirPlaces) {
    using P = IParallelPort;
    EXPECT_EQ(SlotOf(&P::Prepare), 3);
    ExpectFrom(5, &P::IsXilinxCable, &P::ReadData);
    EXPECT_EQ(SlotOf(&P::ReadStatus), 39);
    EXPECT_EQ(SlotOf(&P::WriteData), 65);
    EXPECT_EQ(SlotOf(&P::WriteControl), 67);
    EXPECT_EQ(SlotOf(&P::PrepareStatusRead), 70);
    ExpectFrom(8, &IParallelPortManager::GetPortCount, &IParallelPortManager::GetPort);
}

TEST(InterfaceTables, OperationsStandInOrder) {
    using M = IDeviceManager;
    EXPECT_EQ(SlotOf(&M::LoadOptions), 3);
    EXPECT_EQ(SlotOf(&M::AcquireDevice), 8);
    EXPECT_EQ(SlotOf(&M::ReleaseDevice), 13);
    EXPECT_EQ(SlotOf(&M::GetFamilyManager), 17);
    EXPECT_EQ(SlotOf(&M::JtagIdsMatch), 21);
    EXPECT_EQ(SlotOf(&IDeviceCatalog::CreateDevice), 4);
    using C = IJTagChannel;
    EXPECT_EQ(SlotOf(&C::Refresh), 12);
    EXPECT_EQ(SlotOf(&C::ExchangeFill), 17);
    EXPECT_EQ(SlotOf(&C::ExchangeDrFill), 22);
    EXPECT_EQ(SlotOf(&C::ExchangeIrFill), 27);
    EXPECT_EQ(SlotOf(&C::ScanIrFill), 33);
    EXPECT_EQ(SlotOf(&C::GetPort), 41);
    EXPECT_EQ(SlotOf(&IJTagDevice::SelectPart), 13);
    EXPECT_EQ(SlotOf(&IJTagDevice::ReadBoundary), 19);
    EXPECT_EQ(SlotOf(&IJTagPort::Detect), 7);
    EXPECT_EQ(SlotOf(&IBSDLEntity::GetBypassOpcode), 22);
    EXPECT_EQ(SlotOf(&IBSDLEntity::GetFileName), 34);
}

} // namespace
} // namespace vorel::test
