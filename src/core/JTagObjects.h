// The door to ports, channels and chain devices.
#pragma once

#include "core/CoreContext.h"
#include "core/JTagChannel.h"
#include "core/JTagDevice.h"
#include "core/JTagParallelPort.h"
#include "core/JTagUsbPort.h"
#include "core/PortList.h"
