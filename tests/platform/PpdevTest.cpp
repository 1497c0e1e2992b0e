// The port library against a kernel port that umockdev plays, with a virtual cable and chain
// behind it.
#include "platform/ParallelPortLibrary.h"
#include "transport/ParallelTestTools.h"

#include <gtest/gtest.h>
#include <linux/ppdev.h>
#include <sys/ioctl.h>
#include <umockdev.h>

#include <cerrno>
#include <mutex>

namespace vorel {
namespace {

class Ppdev : public testing::Test {
protected:
    Ppdev() : Bed(umockdev_testbed_new()), Handler(umockdev_ioctl_base_new()) {
        sim::CableWiring wiring = PlainWiring();
        AddDevice(Chain, 0x1B8C'0B01);
        Cable.Connect(wiring, Chain);
        umockdev_testbed_add_from_string(Bed,
                                         "P: /devices/pnp0/00:05/ppdev/parport0\nN: parport0\n"
                                         "E: SUBSYSTEM=ppdev\nE: DEVNAME=/dev/parport0\n",
                                         nullptr);
        g_signal_connect(Handler, "handle-ioctl", G_CALLBACK(OnIoctl), this);
        Attached = umockdev_testbed_attach_ioctl(Bed, "/dev/parport0", Handler, nullptr) != FALSE;
    }
    ~Ppdev() override {
        umockdev_testbed_detach_ioctl(Bed, "/dev/parport0", nullptr);
        g_object_unref(Handler);
        g_object_unref(Bed);
    }

    // Runs on a thread of umockdev's.
    static gboolean OnIoctl(UMockdevIoctlBase* /*base*/, UMockdevIoctlClient* client,
                            gpointer self) {
        return static_cast<Ppdev*>(self)->Answer(client);
    }

    gboolean Answer(UMockdevIoctlClient* client) {
        const std::lock_guard lock(Mutex);
        const auto request = umockdev_ioctl_client_get_request(client);
        const int error = Perform(request, umockdev_ioctl_client_get_arg(client));
        umockdev_ioctl_client_complete(client, error == 0 ? 0 : -1, error);
        return TRUE;
    }

    int Perform(unsigned long request, UMockdevIoctlData* argument) {
        switch (request) {
        case PPEXCL:
            Exclusive = true;
            return 0;
        case PPCLAIM:
            Claimed = !Busy && Exclusive;
            return Claimed ? 0 : ENXIO;
        case PPRELEASE:
            Claimed = false;
            ++Releases;
            return 0;
        default:
            return Claimed ? Transfer(request, argument) : EINVAL;
        }
    }

    int Transfer(unsigned long request, UMockdevIoctlData* argument) {
        const std::size_t size = request == PPFCONTROL ? 2 : 1;
        UMockdevIoctlData* data = umockdev_ioctl_data_resolve(argument, 0, size, nullptr);
        std::uint8_t value = 0;
        if (request == PPWDATA) {
            Cable.WriteData(data->data[0]);
        } else if (request == PPFCONTROL) {
            Cable.WriteControl(data->data[1], data->data[0]);
        } else {
            request == PPRDATA ? Cable.ReadData(value) : Cable.ReadStatus(value);
            umockdev_ioctl_data_update(data, 0, &value, 1);
        }
        g_object_unref(data);
        return 0;
    }

    IParallelPort* Port() {
        std::int32_t count = 0;
        IParallelPort* port = nullptr;
        if (Library.Manager() != nullptr) {
            Library.Manager()->GetPortCount(count);
            EXPECT_EQ(count, 1);
            Library.Manager()->GetPort(0, port);
        }
        return port;
    }

    UMockdevTestbed* Bed;
    UMockdevIoctlBase* Handler;
    std::mutex Mutex;
    sim::TChain Chain;
    sim::TParallelCable Cable;
    bool Attached = false;
    bool Exclusive = false;
    bool Claimed = false;
    bool Busy = false;
    int Releases = 0;
    TSystemModuleLoader Loader;
    TParallelPortLibrary Library{Loader, VOREL_TREE "/System"};
};

TEST_F(Ppdev, ReadsAnIdAndGivesThePortBackWithItsLastUser) {
    ASSERT_TRUE(Attached);
    Ref<IParallelPort> port(Port());
    ASSERT_TRUE(port);
    std::uint32_t address = 0;
    EXPECT_EQ(port->GetBaseAddress(address), StatusOk);
    EXPECT_EQ(address, 0x378U);
    auto mapping = PlainMapping(*port);
    mapping.Activate();
    EXPECT_TRUE(Exclusive);
    EXPECT_EQ(ReadId(mapping), 0x1B8C'0B01U);
    EXPECT_EQ(port->WriteControl(0xFF, 0x04), StatusOk);
    EXPECT_EQ(port->WriteControl(0x00, 0x08), StatusOk);
    EXPECT_EQ(Cable.ControlRegister(), 0x04);
    port.Reset();
    EXPECT_FALSE(Claimed);
    EXPECT_EQ(Releases, 1);
}

TEST_F(Ppdev, ABusyOrUnclaimedPortFailsWithItsReason) {
    IParallelPort* port = Port();
    ASSERT_NE(port, nullptr);
    std::uint8_t value = 1;
    EXPECT_EQ(port->ReadData(value), StatusFromOsError(EINVAL));
    EXPECT_EQ(value, 0);
    Busy = true;
    EXPECT_EQ(port->Prepare(), StatusFromOsError(EBUSY));
    Bool32 present = True32;
    EXPECT_EQ(port->IsXilinxCable(present), StatusFromOsError(EBUSY));
    EXPECT_EQ(present, False32);
    IParallelPort* beyond = port;
    EXPECT_EQ(Library.Manager()->GetPort(1, beyond), StatusOk);
    EXPECT_EQ(beyond, nullptr);
}

TEST_F(Ppdev, KnowsTheCableByItsLoopAndPutsTheDataBack) {
    IParallelPort* port = Port();
    ASSERT_NE(port, nullptr);
    Cable.WriteData(0x5A);
    Bool32 present = True32;
    EXPECT_EQ(port->IsXilinxCable(present), StatusOk);
    EXPECT_EQ(present, False32);
    Cable.SetIdentificationLoop(true);
    EXPECT_EQ(port->IsXilinxCable(present), StatusOk);
    EXPECT_EQ(present, True32);
    EXPECT_EQ(Cable.DataRegister(), 0x5A);
    EXPECT_FALSE(Claimed);
}

TEST(PortLibrary, IsAbsentWithoutAFile) {
    TSystemModuleLoader loader;
    EXPECT_EQ(TParallelPortLibrary(loader, "/no/such/folder").Manager(), nullptr);
}

} // namespace
} // namespace vorel
