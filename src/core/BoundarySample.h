// Samples the real pins of a device into the objects of its boundary-scan description.
#pragma once

#include "vorel/Bsdl.h"

namespace vorel {

class TJTagChannel;

// Runs SAMPLE on device `index` of the chain and gives each boundary cell of `entity` the bit that
// was captured for it, and each pin the bit of the cell that shows its state, as their tags (0 or
// 1). Takes the channel's lock. Does nothing when the entity has no SAMPLE instruction. Failures
// raise EVorelError.
void SampleBoundary(TJTagChannel& channel, std::int32_t index, IBSDLEntity& entity);

} // namespace vorel
