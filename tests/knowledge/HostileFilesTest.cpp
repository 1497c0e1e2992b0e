// Text files of the installation and the user that are anything but what they should be.
#include "knowledge/JtagAliases.h"
#include "knowledge/Manage_DeviceFamilies.h"
#include "knowledge/Manage_GenericDevices.h"
#include "knowledge/TempFolder.h"
#include "knowledge/TextFile.h"

#include <gtest/gtest.h>

namespace vorel {
namespace {

struct TExpected {
    const char* Name;
    std::string Text;
    int Families;
    int Aliases;
    int Mappings;
};

std::vector<TExpected> HostileTexts() {
    std::string line;
    line.resize(50'000'000, 'x');
    const std::string nuls(100'000, '\0');
    return {{"a family without end", "1=2\nDEVICE_FAMILY=A\nValueType=STR|Key=" + line, 1, 1, 0},
            {"a long value", "[JTAGMapping1]\nIdCode=5\nLibrary=" + line, 0, 0, 1},
            {"NULs", nuls + "\n3=4\n" + nuls + "\n[JTAGMapping1]\nIdCode=5\n", 0, 1, 1},
            {"line ends", std::string(3'000'000, '\n'), 0, 0, 0}};
}

TEST(HostileFiles, AreReadWithinBounds) {
    TTempFolder folder;
    for (const TExpected& hostile : HostileTexts()) {
        SCOPED_TRACE(hostile.Name);
        const std::string path = folder.Write("file.txt", hostile.Text);
        const std::string read = ReadTextFile(path).value_or("");
        EXPECT_EQ(read.size(), std::min(hostile.Text.size(), TextFileLimit));

        const Ref<TDeviceFamilyManager> families(new TDeviceFamilyManager(path));
        std::int32_t count = 0;
        EXPECT_EQ(families->GetCount(count), StatusOk);
        EXPECT_EQ(count, hostile.Families);
        EXPECT_EQ(static_cast<int>(TJtagAliases(read).Count()), hostile.Aliases);
        {
            const Ref<TGenericDeviceManager> generics(new TGenericDeviceManager(path, nullptr));
            EXPECT_EQ(static_cast<int>(generics->GetMappings().size()), hostile.Mappings);
            EXPECT_EQ(generics->SetInstructionLength(0x77, 9), StatusOk);
        }
        const bool isWhole = hostile.Text.size() <= TextFileLimit;
        EXPECT_EQ(std::filesystem::file_size(path) != hostile.Text.size(), isWhole)
            << "a file that was not read whole is left alone";
    }
}

} // namespace
} // namespace vorel
