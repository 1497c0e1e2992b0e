// mapping: what the user said about JTAG ids that no driver knows.
//
// It works on the mapping file itself rather than through the library, which writes the file when
// it is unloaded, without a word when that fails, and cannot list what is in it.
#include "hosts/kit/PlainHost.h"
#include "hosts/vorelctl/Commands.h"
#include "hosts/vorelctl/Knowledge.h"
#include "hosts/vorelctl/Listing.h"
#include "knowledge/JtagId.h"
#include "knowledge/Manage_GenericDevices.h"
#include "knowledge/TextFile.h"
#include "support/Text.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>

namespace vorel::host {

namespace {

namespace fs = std::filesystem;

constexpr std::int64_t LongestInstruction = 65535; // the most that the file holds

[[noreturn]] void FailEnvironment(const std::string& text) {
    throw ECommandFailure(ExitStatus::EnvironmentFault, text);
}

// The file as it is now, and back again.
class TMappingFile {
public:
    TMappingFile() : Path(PathOfInstallation()) {
        std::error_code error;
        const std::uintmax_t size = fs::file_size(Path, error);
        if (!error && size > TextFileLimit) {
            FailEnvironment("The mapping file " + Path + " is too large to be one.");
        }
        Text = ReadTextFile(Path).value_or("");
        List.ReadIni(Text);
    }

    void Save() const {
        std::error_code error;
        fs::create_directories(fs::path(Path).parent_path(), error);
        if (!ReplaceTextFile(Path, List.WriteIni(Text))) {
            FailEnvironment("Cannot write the mapping file " + Path +
                            (error ? ": " + error.message() : "") +
                            ". Is the installation writable for you?");
        }
    }

    const std::string& GetPath() const noexcept { return Path; }
    TMappingList List;

private:
    static std::string PathOfInstallation() {
        return (TInstallation::OfThisProgram().Library() / "BSDL/Generic/BSDL_FileMap.txt")
            .string();
    }

    std::string Path;
    std::string Text;
};

std::vector<std::string> FilesOf(const TJTAGIdMapping& mapping) {
    std::vector<std::string> files;
    for (int i = 0; i < mapping.LinkCount(); ++i) {
        files.push_back(mapping.LinkAt(i)->BSDLFileName);
    }
    return files;
}

std::vector<std::string> PositionsOf(const TJTAGIdMapping& mapping) {
    std::vector<std::string> positions;
    for (int i = 0; i < mapping.IndexLinkCount(); ++i) {
        const TJTAGIndexAndBSDLLink& link = *mapping.IndexLinkAt(i);
        positions.push_back(std::to_string(link.JTAGIndex) + "=" + link.BSDLFileName);
    }
    return positions;
}

ExitStatus ListMappings(bool asJson) {
    const TMappingFile file;
    TListing listing{{{"File", "file", file.GetPath()}},
                     "mappings",
                     {{"Id", "id"},
                      {"Instruction length", "instruction_length"},
                      {"Length only", "length_only"},
                      {"BSDL file", "bsdl_file"},
                      {"Files on offer", "files"},
                      {"Positions", "positions"}},
                     {}};
    for (const auto& mapping : file.List.Items()) {
        const std::string& chosen = mapping->GetLastAssociatedBSDL();
        const std::int64_t bits = mapping->InstructionLength;
        listing.Rows.push_back({IdText(mapping->GetIdCode()), bits != 0 ? TValue(bits) : TValue(),
                                mapping->UseInstructionLength,
                                chosen.empty() ? TValue() : TValue(chosen), FilesOf(*mapping),
                                PositionsOf(*mapping)});
    }
    PrintListing(listing, asJson);
    return ExitStatus::Ok;
}

void SayWhereWritten(std::uint32_t id, const std::string& what, const TMappingFile& file) {
    std::printf("%s: %s\nWritten to %s\n", IdText(id).c_str(), what.c_str(),
                file.GetPath().c_str());
}

// Devices ask with the id as it identifies a part.
std::uint32_t ParseMappedId(const std::string& text) {
    const std::uint32_t id = MaskedIdCode(ParseId(text));
    if (id == 0) {
        throw ECommandFailure(ExitStatus::WrongUsage, "0 is no id.");
    }
    return id;
}

ExitStatus SetLength(const std::string& idText, const std::string& bitsText) {
    const std::uint32_t id = ParseMappedId(idText);
    const std::optional<std::int64_t> bits = ParseDecimal(bitsText);
    if (!bits || *bits < 0 || *bits > LongestInstruction) {
        throw ECommandFailure(ExitStatus::WrongUsage, "An instruction length is 0 (none) to " +
                                                          std::to_string(LongestInstruction) +
                                                          " bits, not \"" + bitsText + "\".");
    }
    TMappingFile file;
    TJTAGIdMapping& mapping = file.List.FindOrMake(id);
    mapping.InstructionLength = static_cast<std::int32_t>(*bits);
    mapping.UseInstructionLength = *bits != 0;
    file.Save();
    SayWhereWritten(id,
                    *bits != 0 ? "instruction length " + bitsText + ", no BSDL file"
                               : "no instruction length",
                    file);
    return ExitStatus::Ok;
}

// Puts the file on offer and chooses it for every position that has a choice already.
void ChooseFile(TJTAGIdMapping& mapping, const std::string& path) {
    const std::vector<std::string> offered = FilesOf(mapping);
    if (std::find(offered.begin(), offered.end(), path) == offered.end()) {
        mapping.AddLink(path);
    }
    mapping.SetLastAssociatedBSDL(path);
    for (int i = 0; i < mapping.IndexLinkCount(); ++i) {
        mapping.SetIndexLinkFile(mapping.IndexLinkAt(i)->JTAGIndex, path);
    }
    mapping.UseInstructionLength = false;
}

ExitStatus SetBsdl(const std::string& idText, const std::string& name) {
    const std::uint32_t id = ParseMappedId(idText);
    std::error_code error;
    const std::string path = fs::absolute(name, error).lexically_normal().string();
    if (!fs::is_regular_file(path, error)) {
        FailEnvironment("There is no file " + path + ".");
    }
    if (path.find_first_of("\r\n") != std::string::npos) {
        FailEnvironment("A mapping cannot hold a file name with line ends.");
    }
    TMappingFile file;
    ChooseFile(file.List.FindOrMake(id), path);
    file.Save();
    SayWhereWritten(id, "BSDL file " + path, file);
    return ExitStatus::Ok;
}

class TMappingCommand final : public ICommand {
public:
    std::string_view Name() const override { return "mapping"; }
    std::string_view Usage() const override {
        return "list [--json] | set-length ID BITS | set-bsdl ID FILE";
    }
    std::string_view Summary() const override {
        return "say what devices are that no driver knows";
    }
    std::string_view Details() const override {
        return "ID is hexadecimal, with or without version bits. set-length makes the chain "
               "behind\n"
               "an unknown device usable; 0 takes the length back. set-bsdl chooses a "
               "boundary-scan\n"
               "description, which knows the length as well. Ids that a driver knows need no\n"
               "mapping and ignore it. The file is Library/BSDL/Generic/BSDL_FileMap.txt of the\n"
               "installation; a program that is running writes it when it ends.";
    }
    std::vector<TOption> Options() const override { return {JsonOption}; }
    ExitStatus Run(const TArguments& arguments) const override;
};

ExitStatus TMappingCommand::Run(const TArguments& arguments) const {
    const std::vector<std::string>& words = arguments.Words();
    const std::string action = words.empty() ? "" : words.front();
    if (action == "list" && words.size() == 1) {
        return ListMappings(arguments.Has("--json"));
    }
    if (action == "set-length" && words.size() == 3) {
        return SetLength(words[1], words[2]);
    }
    if (action == "set-bsdl" && words.size() == 3) {
        return SetBsdl(words[1], words[2]);
    }
    throw ECommandFailure(ExitStatus::WrongUsage,
                          "usage: vorelctl mapping " + std::string(Usage()));
}

} // namespace

const ICommand& MappingCommand() {
    static const TMappingCommand command;
    return command;
}

} // namespace vorel::host
