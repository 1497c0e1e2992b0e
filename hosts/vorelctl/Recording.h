// The recording of a command's JTAG traffic, as `--record NAME` asks for it.
#pragma once

#include "transport/TrafficRecording.h"
#include "vorel/Interface.h"

#include <string>

namespace vorel::host {

// Has to outlive the session whose traffic it records.
class TRecording {
public:
    // `name` is a file name without extension, perhaps with a folder before it. ECommandFailure
    // with WrongUsage when it names no file, with EnvironmentFault when the folder is not there.
    explicit TRecording(const std::string& name);

    IJTagAnalyser* Analyser() noexcept { return Adaptor.Get(); }
    // Writes NAME_JTAG.txt, NAME_JTAGOut.txt and NAME.vcd, and gives a sentence that says so and
    // what they hold. ECommandFailure with EnvironmentFault.
    std::string Save();

private:
    std::string Start; // folder and name
    TTrafficRecording Files;
    Ref<TJTagAnalyserAdaptor> Adaptor{new TJTagAnalyserAdaptor};
};

} // namespace vorel::host
