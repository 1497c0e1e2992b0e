// The door to the device manager: the root object, its soft devices with their registers and
// memories, and what it needs from outside.
#pragma once

#include "core/DeviceManager.h"
#include "core/MemorySpace.h"
#include "core/PanelManager.h"
#include "core/ProcessorRegister.h"
#include "core/UserDialogs.h"
#include "core/VorelDevice.h"
