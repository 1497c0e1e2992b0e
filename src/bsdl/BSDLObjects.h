// The BSDL reader: entity, records, report, and the library that gives them out.
#pragma once

#include "bsdl/BSDLEntity.h"  // IWYU pragma: export
#include "bsdl/BSDLLibrary.h" // IWYU pragma: export
#include "bsdl/BSDLParser.h"  // IWYU pragma: export
#include "bsdl/BSDLRecords.h" // IWYU pragma: export
#include "bsdl/BSDLReport.h"  // IWYU pragma: export
#include "bsdl/ReaderBSDL.h"  // IWYU pragma: export
