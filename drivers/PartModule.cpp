// A driver module of one maker's parts. The table is compiled in, so that a module is whole in one
// file and the driver cache, which looks at that file alone, sees every change of it.
#include "drivers/ModuleExport.h"
#include "drivers/PartDriver.h"
#include "support/Errors.h"

namespace {

constexpr const char* const Lines[] = {
#include "PartTableLines.inc"
};

const vorel::TPartTable& Table() {
    static const vorel::TPartTable table(Lines);
    return table;
}

} // namespace

VOREL_MODULE_EXPORT vorel::Status GetVorelDriverCount(std::int32_t* count) {
    return vorel::Guard([&] { *count = static_cast<std::int32_t>(Table().GetVariants().size()); });
}

VOREL_MODULE_EXPORT vorel::Status GetVorelDriver(std::int32_t index, vorel::IVorelDriver** driver) {
    *driver = nullptr;
    return vorel::Guard([&] {
        const auto& variant = Table().GetVariants().at(static_cast<std::size_t>(index));
        *driver = new vorel::TPartDriver(Table(), variant);
    });
}
