// The controller of the development board: the one device of its board chain, by whose name the
// board is recognised.
#include "drivers/ModuleExports.h"
#include "drivers/NamedDriver.h"

namespace vorel {

namespace {

constexpr TNamedDevice Controller{u"LUMAPLATE", u"Board Controllers",
                                  u"Controller of the Lumaplate development board", 0x1B8C0B01U, 8};

} // namespace

std::int32_t ModuleDriverCount() {
    return 1;
}

IVorelDriver* MakeModuleDriver(std::size_t) {
    return new TNamedDriver(Controller);
}

} // namespace vorel
