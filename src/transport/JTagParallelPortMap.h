// Parallel-port cables: the mapping of JTAG signals to register bits, the boards that have such
// mappings, and all boards of the installation.
#pragma once

#include "transport/ParallelPortBoardType.h"
#include "transport/ParallelPortInstalledBoards.h"
#include "transport/ParallelPortMapping.h"
