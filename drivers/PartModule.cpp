// A driver module of one maker's parts. The table is compiled in, so that a module is whole in one
// file and the driver cache, which looks at that file alone, sees every change of it.
#include "drivers/ModuleExports.h"
#include "drivers/PartDriver.h"

namespace vorel {

namespace {

constexpr const char* const Lines[] = {
#include "PartTableLines.inc"
};

const TPartTable& Table() {
    static const TPartTable table(Lines);
    return table;
}

} // namespace

std::int32_t ModuleDriverCount() {
    return static_cast<std::int32_t>(Table().GetVariants().size());
}

IVorelDriver* MakeModuleDriver(std::size_t index) {
    return new TPartDriver(Table(), Table().GetVariants()[index]);
}

} // namespace vorel
