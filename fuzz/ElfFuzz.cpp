// Any bytes as an ELF file: sections into blocks, into an image and as a dump. Both ends of each
// block are read, and all blocks together stay in proportion to the file.
#include "objectcode/Rt_ElfFileLoader.h"
#include "support/NeutralHost.h"

#include <algorithm>
#include <cstdlib>
#include <memory>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const auto image = std::make_unique<vorel::TMemoryImage>();
    vorel::TNeutralHost host;
    vorel::TElfFile file(host, "fuzz.elf");
    file.SetContents({data, size});
    if (!file.Read()) {
        return 0;
    }
    std::size_t total = 0;
    file.DeliverTo([&](const std::uint8_t* bytes, std::int64_t count, std::int64_t address) {
        total += static_cast<std::size_t>(count);
        if (count < 1 || address < 0) {
            std::abort();
        }
        const volatile std::uint8_t ends = bytes[0] | bytes[count - 1];
        static_cast<void>(ends);
    });
    if (total > 4 * std::max<std::size_t>(size, 65536) || file.WriteTo(*image) < 0) {
        std::abort();
    }
    if (size % 8 != 0) {
        return 0; // a dump takes its time
    }
    std::size_t dumped = 0;
    file.Dump([&](const std::string& text) { dumped += text.size(); });
    // A line of 48 characters for four bytes, and a head with a name for each section.
    if (dumped > 12 * 4 * std::max<std::size_t>(size, 65536) + 65535 * 1400) {
        std::abort();
    }
    return 0;
}
