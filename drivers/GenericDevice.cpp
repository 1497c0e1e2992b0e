// What stands in for a device that no other module knows. Its instruction length and BSDL file are
// what the user says about its id.
#include "drivers/ModuleExports.h"
#include "drivers/NamedDriver.h"

namespace vorel {

namespace {

constexpr TNamedDevice Generic{u"GenericDevice", u"Generic", u"Device that no driver knows", 0, 0};

} // namespace

std::int32_t ModuleDriverCount() {
    return 1;
}

IVorelDriver* MakeModuleDriver(std::size_t) {
    return new TNamedDriver(Generic);
}

} // namespace vorel
