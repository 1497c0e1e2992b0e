// The two printed forms of a BSDL file.
#pragma once

#include "bsdl/BSDLFile.h"

#include <string>

namespace vorel::host {

// For people: the file's name, its error with line and column, and the report of its entity. Each
// line ends with LF.
std::string BsdlAsText(const std::string& fileName, const TBSDLFile& file);

// One JSON object in one line: "file", "errors" (true also for a file that could not be read),
// "error_line", "error_column" (null without an error), "entity", "instruction_length",
// "instruction_capture", "idcode_pattern", "idcode" ("0x" and 8 digits), "usercode_pattern",
// "boundary_length", "boundary_cells" (their count, null when they are not numbered 0 to n-1),
// "cells_error" (null or what is wrong with them), "opcodes" (name to first pattern), "pins" and
// "pin_mappings" (counts), "tap" (TDI, TDO, TMS, TCK, TRST to pin name, those that are told),
// "tck_hz" and "tck_mode" (into ScanClockModeNames). All that an entity would say is null without
// one.
std::string BsdlAsJson(const std::string& fileName, const TBSDLFile& file);

} // namespace vorel::host
