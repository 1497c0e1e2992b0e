// One board that a parallel-port cable may lead to: a board file, an ini text with the extension
// .JTGBRD.
#pragma once

#include "transport/ParallelPortMapping.h"

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace vorel {

// Sections [FileVersion], [BoardDetails], [BoardChannel], [HardChannel], [SoftChannel] and
// [SPIChannel]. Numbers are hexadecimal without prefix and end at the first character that is no
// digit; booleans are 0 and 1, "true" and "false". A missing channel section is a missing chain.
class TJTagParallelPort_BoardType {
public:
    using TMapping = std::unique_ptr<TJTagParallelPort_ChannelMapping>;

    std::vector<std::uint32_t> BoardIds;
    std::string Name;
    bool Xilinx = false; // the port has to report the cable as present
    TMapping BoardChannel;
    TMapping HardChannel;
    TMapping SoftChannel;
    TMapping SPIChannel;

    // False, and nothing changed, when the file cannot be read, is larger than any board file, or
    // has another version.
    bool LoadFromFile(const std::filesystem::path& fileName);
    // The same for the contents of a board file.
    bool LoadFromText(std::string_view text);
    // Gives the port, not owned, to every mapping that exists.
    void SetPort(IParallelPort* port) noexcept;
    // Tells an analyser, not owned, of the traffic on every mapping that exists: the board channel
    // as lines 1, the others, which a multiplexer may put on the same wires, as lines 0.
    void SetAnalyser(IJTagAnalyser* analyser) noexcept;
    // There is a hard chain with a port, and the cable answers if the board asks for that.
    bool PortIsUsable();

    std::size_t BoardIdCount() const noexcept { return BoardIds.size(); }
    std::uint32_t BoardIdAt(std::size_t index) const { return BoardIds.at(index); }
    // A board without ids matches everything.
    bool MatchesBoardId(std::uint32_t id) const noexcept;
};

} // namespace vorel
