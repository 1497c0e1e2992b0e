// The library as a host loads it: with and without a host client.
#include "hosts/kit/Hardware.h"
#include "hosts/kit/LibraryLoader.h"
#include "hosts/kit/PlainHost.h"
#include "knowledge/TempFolder.h"
#include "vorel/DeviceManager.h"
#include "vorel/Ports.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <dlfcn.h>
#include <filesystem>

namespace vorel::host {
namespace {

class Library : public testing::Test {
protected:
    Library() { std::filesystem::current_path(Folder.Path()); }
    ~Library() override {
        SetHostClient(nullptr);
        std::filesystem::current_path("/");
    }

    const TTempFolder Folder;
    const std::filesystem::path System = VOREL_TREE "/System";
    TVorelLibrary Vorel;
};

TEST_F(Library, GivesTheRootObjectAndThePortsToAHost) {
    const auto hardware = OpenScene(VOREL_TREE "/scenes/three_devices.ini");
    TPlainHost host({VOREL_TREE}, {Folder.Path(), Folder.Path()});
    host.UseUsb(&hardware->Usb());
    host.UseParallelPorts(hardware->ParallelPorts());
    SetHostClient(&host);
    ASSERT_TRUE(Vorel.Load(System)) << Vorel.Problem();

    IDeviceManager* manager = Vorel.DeviceManager();
    ASSERT_NE(manager, nullptr);
    WideText name;
    EXPECT_EQ(manager->GetDefaultDevice(name), StatusOk);
    EXPECT_EQ(name, u"XC3S1500-4FG676C");
    EXPECT_NE(QueryFor<IDeviceCatalog>(manager), nullptr);

    std::int32_t count = -1;
    EXPECT_EQ(Vorel.GetJTagPortCount(&count), StatusOk);
    EXPECT_EQ(count, 0) << "before the first scan";
    EXPECT_EQ(Vorel.ScanJTagPorts(), StatusOk);
    EXPECT_EQ(Vorel.GetJTagPortCount(&count), StatusOk);
    EXPECT_EQ(count, 2);
    IJTagPort* port = nullptr;
    EXPECT_EQ(Vorel.GetJTagPort(1, &port), StatusOk);
    EXPECT_NE(QueryFor<IJTagUsbPort>(port), nullptr);
    EXPECT_TRUE(Failed(Vorel.GetJTagPort(-1, &port)));
    EXPECT_EQ(Vorel.ReleaseJTagPorts(), StatusOk);
    Vorel.Unload();
}

TEST_F(Library, WithoutAHostMakesNoRootObjectAndBringsTheCacheUpToDate) {
    ASSERT_TRUE(Vorel.Load(System)) << Vorel.Problem();
    EXPECT_EQ(Vorel.DeviceManager(), nullptr);
    std::int32_t count = -1;
    EXPECT_EQ(Vorel.GetJTagPortCount(&count), StatusOk);
    EXPECT_TRUE(std::filesystem::exists(Folder / "VorelCache.db"));
    Vorel.Unload();
}

TEST_F(Library, IsTakenFromTheProcessWhenItIsThere) {
    ASSERT_TRUE(Vorel.Load(System));
    TVorelLibrary second;
    EXPECT_TRUE(second.Load(Folder.Path())) << "the folder holds no library: " << second.Problem();
    EXPECT_EQ(second.ScanJTagPorts, Vorel.ScanJTagPorts);
    second.Unload();
    Vorel.Unload();
    TVorelLibrary third;
    EXPECT_FALSE(third.Load(Folder.Path()));
    EXPECT_NE(third.Problem().find(Folder / "VorelManager.so"), std::string::npos);
}

TEST_F(Library, ExportsExactlySixFunctions) {
    const std::string command =
        "nm -D --defined-only '" + (System / "VorelManager.so").string() + "' | wc -l";
    FILE* pipe = popen(command.c_str(), "r");
    int names = 0;
    ASSERT_EQ(fscanf(pipe, "%d", &names), 1);
    pclose(pipe);
    EXPECT_EQ(names, 6);
    ASSERT_TRUE(Vorel.Load(System)) << Vorel.Problem(); // has the six under their names
    Vorel.Unload();
}

} // namespace
} // namespace vorel::host
