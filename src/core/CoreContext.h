// What ports, channels and chain devices need from the rest of the system, handed down through
// their constructors. The library owns one context; a test makes its own. The context outlives
// everything that was given it, and its members may be exchanged while nothing is under way.
#pragma once

#include "knowledge/DeviceKnowledge.h"
#include "vorel/Bsdl.h"
#include "vorel/DeviceManager.h"
#include "vorel/Host.h"

#include <memory>
#include <string>

namespace vorel {

// A BSDL file once read. The entity is null when none was found in the file; `Log` is the report
// that is saved beside the file, empty without entity.
struct TLoadedBsdl {
    std::shared_ptr<IBSDLEntity> Entity;
    bool HadErrors = false;
    std::string Log;
};

// Where BSDL files come from. Failures of the file system are empty results, never exceptions of
// their own.
class IBsdlSource {
public:
    virtual ~IBsdlSource() = default;

    // The file to read for this path: the path itself, or a copy unpacked from the archive of the
    // same name; empty when there is neither.
    virtual std::string FindFile(const std::string& path) = 0;
    // Parses a file that exists.
    virtual TLoadedBsdl Load(const std::string& path) = 0;
};

struct TCoreContext {
    IHostClient& Host;
    // Never null.
    IDeviceKnowledge* Knowledge;
    // Null while there is none: generic devices then have no file and no length.
    IGenericDeviceManager* Generic = nullptr;
    // Null: no BSDL file is ever found.
    IBsdlSource* Bsdl = nullptr;
    // Clock period of the pods, 1 to 255 of their ticks. Counts from the next opening of a channel.
    std::int32_t TicksPerClock = 4;
};

} // namespace vorel
