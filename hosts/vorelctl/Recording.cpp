#include "hosts/vorelctl/Recording.h"

#include "hosts/vorelctl/CommandLine.h"
#include "support/Errors.h"

#include <filesystem>

namespace vorel::host {

namespace {

std::string FileNameOf(const std::string& name) {
    std::string file = std::filesystem::path(name).filename().string();
    if (file.empty() || file == "." || file == "..") {
        throw ECommandFailure(ExitStatus::WrongUsage,
                              "--record needs the name of a file, not \"" + name + "\".");
    }
    return file;
}

// Has to be there before the work whose traffic is recorded.
std::string FolderOf(const std::string& name) {
    std::string folder = std::filesystem::path(name).parent_path().string();
    std::error_code error;
    if (!folder.empty() && !std::filesystem::is_directory(folder, error)) {
        throw ECommandFailure(ExitStatus::EnvironmentFault,
                              "--record " + name + ": there is no folder " + folder + ".");
    }
    return folder.empty() ? "." : folder;
}

} // namespace

TRecording::TRecording(const std::string& name)
    : Start(name), Files(FileNameOf(name), FolderOf(name)) {
    Adaptor->Form = &Files;
}

std::string TRecording::Save() {
    const std::size_t lines = Files.TextRecorder().Lines().size();
    const TJTagAnalyserRecorder::Counters totals = Files.TextRecorder().Totals();
    try {
        Files.Save();
    } catch (const EVorelError& error) {
        throw ECommandFailure(ExitStatus::EnvironmentFault, error.what());
    }
    std::string text = "The traffic was recorded: " + std::to_string(lines) + " changes of lines, ";
    text += std::to_string(totals.BytesOut) + " bytes to pods and " +
            std::to_string(totals.BytesIn) + " from them. ";
    if (lines >= static_cast<std::size_t>(TJTagAnalyserRecorder::MaxLines)) {
        text += "The text files were full then; later traffic is missing in them. ";
    }
    return text + "See " + Start + "_JTAG.txt (what went out), " + Start +
           "_JTAGOut.txt (what came back) and " + Start + ".vcd (for a wave viewer).";
}

} // namespace vorel::host
