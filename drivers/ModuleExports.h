// What a driver module writes to have its two exports: the two functions here, which may raise.
#pragma once

#include "vorel/Driver.h"

#include <cstddef>

namespace vorel {

std::int32_t ModuleDriverCount();
// A new driver for an index from 0 to ModuleDriverCount - 1.
IVorelDriver* MakeModuleDriver(std::size_t index);

} // namespace vorel
