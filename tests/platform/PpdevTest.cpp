// The port library against a kernel port that umockdev plays, with a virtual cable and chain
// behind it.
#include "platform/EmulatedPort.h"
#include "platform/ParallelPortLibrary.h"
#include "transport/ParallelTestTools.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <fstream>
#include <string>

namespace vorel {
namespace {

class Ppdev : public testing::Test {
protected:
    void SetUp() override {
        AddDevice(Chain, 0x1B8C'0B01);
        Cable.Connect(PlainWiring(), Chain);
        gchar* root = umockdev_testbed_get_root_dir(Emulated.GetTestbed());
        std::ofstream(std::string(root) + "/dev/parport1") << "no port of the kernel, a file";
        g_free(root);
        ASSERT_NE(Library.Manager(), nullptr);
        std::int32_t count = 0;
        EXPECT_EQ(Library.Manager()->GetPortCount(count), StatusOk);
        EXPECT_EQ(count, 1);
        EXPECT_EQ(Library.Manager()->GetPort(0, Port), StatusOk);
        ASSERT_NE(Port, nullptr);
    }

    sim::TChain Chain;
    sim::TParallelCable Cable;
    TEmulatedPort Emulated{Cable};
    TSystemModuleLoader Loader;
    TParallelPortLibrary Library{Loader, VOREL_TREE "/System"};
    IParallelPort* Port = nullptr;
};

TEST_F(Ppdev, ReadsAnIdAndGivesThePortBackWithItsLastUser) {
    Ref<IParallelPort> port(Port);
    std::uint32_t address = 0;
    EXPECT_EQ(port->GetBaseAddress(address), StatusOk);
    EXPECT_EQ(address, 0x378U);
    auto mapping = PlainMapping(*port);
    mapping.Activate();
    EXPECT_EQ(ReadId(mapping), 0x1B8C'0B01U);
    EXPECT_EQ(port->WriteControl(0xFF, 0x04), StatusOk);
    EXPECT_EQ(port->WriteControl(0x00, 0x08), StatusOk);
    EXPECT_EQ(Cable.ControlRegister(), 0x04);
    port.Reset();
    EXPECT_FALSE(Emulated.IsClaimed());
    EXPECT_EQ(Emulated.Releases, 1);
}

TEST_F(Ppdev, ABusyOrUnclaimedPortFailsWithItsReason) {
    std::uint8_t value = 1;
    EXPECT_EQ(Port->ReadData(value), StatusFromOsError(EINVAL));
    EXPECT_EQ(value, 0);
    Emulated.HasOtherDriver = true;
    EXPECT_EQ(Port->Prepare(), StatusFromOsError(EBUSY));
    Bool32 present = True32;
    EXPECT_EQ(Port->IsXilinxCable(present), StatusFromOsError(EBUSY));
    EXPECT_EQ(present, False32);
    IParallelPort* beyond = Port;
    EXPECT_EQ(Library.Manager()->GetPort(1, beyond), StatusOk);
    EXPECT_EQ(beyond, nullptr);
}

TEST_F(Ppdev, KnowsTheCableByItsLoopAndPutsTheDataBack) {
    Cable.WriteData(0x5A);
    Bool32 present = True32;
    EXPECT_EQ(Port->IsXilinxCable(present), StatusOk);
    EXPECT_EQ(present, False32);
    Cable.SetIdentificationLoop(true);
    EXPECT_EQ(Port->IsXilinxCable(present), StatusOk);
    EXPECT_EQ(present, True32);
    EXPECT_EQ(Cable.DataRegister(), 0x5A);
    EXPECT_FALSE(Emulated.IsClaimed());
}

TEST(PortLibrary, IsAbsentWithoutAFile) {
    TSystemModuleLoader loader;
    EXPECT_EQ(TParallelPortLibrary(loader, "/no/such/folder").Manager(), nullptr);
}

} // namespace
} // namespace vorel
