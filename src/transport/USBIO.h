// The USB objects: a device, a buffer with its request, and a device bound to an endpoint. Nothing
// above them knows of handles, control codes or request blocks.
#pragma once

#include "transport/UsbIo.h"
#include "transport/UsbIoBuf.h"
#include "transport/UsbIoPipe.h"
#include "transport/UsbStatus.h"
