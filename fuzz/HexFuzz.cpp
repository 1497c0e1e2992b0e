// Any bytes as Intel Hex: into blocks and into an image. Both ends of each block are read, so
// that a block outside the loader's memory is found.
#include "objectcode/Rt_IntelHexFileLoader.h"
#include "support/NeutralHost.h"

#include <cstdlib>
#include <memory>

namespace {

// Blocks stay inside one segment and its spare part, and can be read.
void CheckBlock(const std::uint8_t* bytes, std::int64_t count, std::int64_t address) {
    if (count > 65536 + 255 || address < 0) {
        std::abort();
    }
    if (count > 0) {
        const volatile std::uint8_t ends = bytes[0] | bytes[count - 1];
        static_cast<void>(ends);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const auto image = std::make_unique<vorel::TMemoryImage>();
    vorel::TNeutralHost host;
    vorel::THexLoader loader(host, "fuzz.hex");
    loader.SetText({data, size});
    const bool good = loader.LoadToConsumer(CheckBlock);
    const std::int32_t errors = loader.ErrorCount;
    loader.SetText({data, size});
    const std::uint32_t wordSize = size % 6;
    if (loader.LoadToImage(*image, wordSize) != good || loader.ErrorCount != errors) {
        std::abort();
    }
    return 0;
}
