// The VHDL reader: tokeniser, parser, and the objects that it makes.
#pragma once

#include "bsdl/StringsParser.h" // IWYU pragma: export
#include "bsdl/VHDLObjects.h"   // IWYU pragma: export
#include "bsdl/VHDLParser.h"    // IWYU pragma: export
