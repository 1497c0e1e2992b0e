// The USB JTAG pods: the manager that finds them, a pod, and a pod's batch of commands.
#pragma once

#include "transport/UsbBuffer.h"
#include "transport/UsbJtagManager.h"
#include "transport/UsbPort.h"
