// object: what a loader takes from an object code file.
#include "hosts/vorelctl/Commands.h"
#include "hosts/vorelctl/Knowledge.h"
#include "hosts/vorelctl/Listing.h"
#include "hosts/vorelctl/ObjectImage.h"
#include "objectcode/ObjectCodeFile.h"
#include "objectcode/Rt_ElfFileLoader.h"
#include "support/NeutralHost.h"
#include "support/Text.h"

#include <nettle/sha2.h>

#include <array>
#include <cstdio>
#include <utility>

namespace vorel::host {

namespace {

struct TBlockDigest {
    std::int64_t Address;
    std::int64_t Length;
    std::string Sha256;
};

struct TLoadedFile {
    bool Loaded = false;
    TObjectFileReport Report;
    std::vector<TBlockDigest> Blocks;
};

struct TFormatNames {
    const char* Key;
    const char* Label;
};

// By TObjectFileFormat.
constexpr std::array<TFormatNames, 3> FormatNames{
    {{"hex", "Intel Hex"}, {"elf", "ELF"}, {"bin", "binary"}}};

const TFormatNames& NamesOf(TObjectFileFormat format) {
    return FormatNames[static_cast<std::size_t>(format)];
}

// Keeps the texts of the error boxes.
class TMessageKeeper final : public TNeutralHost {
public:
    Status ShowMessageBox(MessageBoxKind kind, const WideText& caption, const WideText& text,
                          MessageBoxAnswer& answer) noexcept override {
        Messages.push_back(ToUtf8(text));
        return TNeutralHost::ShowMessageBox(kind, caption, text, answer);
    }

    std::vector<std::string> Messages;
};

class TConsoleHost final : public TPlainHost {
public:
    TConsoleHost() : TPlainHost(TInstallation::OfThisProgram(), TUserFolders::OfThisUser()) {
        OnMessage = [](const std::string& text) { std::fprintf(stderr, "%s\n", text.c_str()); };
    }
};

std::string Sha256Of(const std::uint8_t* bytes, std::size_t count) {
    sha256_ctx context;
    sha256_init(&context);
    sha256_update(&context, count, bytes);
    std::array<std::uint8_t, SHA256_DIGEST_SIZE> digest{};
    sha256_digest(&context, digest.size(), digest.data());
    std::string text;
    for (const std::uint8_t byte : digest) {
        text += LowerCase(ToHex(byte, 2));
    }
    return text;
}

TLoadedFile LoadFile(IHostClient& host, const std::string& fileName) {
    TLoadedFile file;
    const auto digest = [&](const std::uint8_t* bytes, std::int64_t count, std::int64_t address) {
        if (count > 0) {
            file.Blocks.push_back(
                {address, count, Sha256Of(bytes, static_cast<std::size_t>(count))});
        }
    };
    file.Loaded = LoadObjectFileAsBytes(host, fileName, digest, &file.Report);
    return file;
}

TListing ForPrograms(const TLoadedFile& file, std::vector<std::string> messages) {
    if (!file.Report.Remark.empty()) {
        messages.push_back(file.Report.Remark);
    }
    TListing listing{{{"", "format", NamesOf(file.Report.Format).Key},
                      {"", "ok", file.Loaded && !file.Blocks.empty()},
                      {"", "messages", std::move(messages)}},
                     "blocks",
                     {{"", "address"}, {"", "length"}, {"", "sha256"}},
                     {}};
    for (const TBlockDigest& block : file.Blocks) {
        listing.Rows.push_back({block.Address, block.Length, block.Sha256});
    }
    return listing;
}

TListing ForPeople(const TLoadedFile& file) {
    TListing listing{{{"Format", "", NamesOf(file.Report.Format).Label},
                      {"Blocks", "", file.Report.BlockCount},
                      {"Bytes", "", file.Report.ByteCount}},
                     "",
                     {{"Address", ""}, {"Length", ""}, {"SHA-256", ""}},
                     {}};
    for (const TBlockDigest& block : file.Blocks) {
        listing.Rows.push_back({"0x" + ToHex(static_cast<std::uint64_t>(block.Address), 8),
                                block.Length, block.Sha256});
    }
    return listing;
}

ExitStatus DumpSections(const std::string& fileName) {
    TConsoleHost host;
    TElfFile file(host, fileName);
    if (const std::string obstacle = WhyUnreadable(fileName); !obstacle.empty()) {
        throw ECommandFailure(ExitStatus::EnvironmentFault, fileName + ": " + obstacle);
    }
    if (!file.Read()) {
        throw ECommandFailure(ExitStatus::NothingFound,
                              fileName + " gives no sections." +
                                  (file.GetRemark().empty() ? "" : " " + file.GetRemark()));
    }
    file.Dump([](const std::string& text) { std::fwrite(text.data(), 1, text.size(), stdout); });
    return ExitStatus::Ok;
}

class TObjectCommand final : public ICommand {
public:
    std::string_view Name() const override { return "object"; }
    std::string_view Usage() const override { return "FILE [--json | --dump]"; }
    std::string_view Summary() const override {
        return "say what an object code file would put into a memory";
    }
    std::string_view Details() const override {
        return "Prints the format and the blocks that \"load\" would write: address, length, "
               "SHA-256.\n"
               "A file named .hex is Intel Hex, 32-bit big-endian ELF is known by its content, "
               "all\n"
               "else is binary and starts at address 0. Of an ELF file the sections .text... and\n"
               ".rodata... count, and it has to be stripped. --json gives the keys format (hex, "
               "elf\n"
               "or bin), ok, messages, blocks (address, length, sha256).\n"
               "Exit status: 0 blocks were delivered, 1 the file is broken or delivers nothing,\n"
               "3 it cannot be read.";
    }
    std::vector<TOption> Options() const override {
        return {JsonOption, {"--dump", "", "print the loadable sections of an ELF file instead"}};
    }
    ExitStatus Run(const TArguments& arguments) const override;
};

ExitStatus StatusOf(const TLoadedFile& file) {
    if (!file.Report.Readable) {
        return ExitStatus::EnvironmentFault;
    }
    return file.Loaded && !file.Blocks.empty() ? ExitStatus::Ok : ExitStatus::NothingFound;
}

ExitStatus TObjectCommand::Run(const TArguments& arguments) const {
    const std::string& name = NeedWords(arguments, 1, "object FILE [--json | --dump]").front();
    if (arguments.Has("--dump")) {
        return DumpSections(name);
    }
    if (arguments.Has("--json")) {
        TMessageKeeper host;
        const TLoadedFile file = LoadFile(host, name);
        PrintListing(ForPrograms(file, host.Messages), true);
        return StatusOf(file);
    }
    TConsoleHost host;
    const TLoadedFile file = LoadFile(host, name);
    CheckDelivery(host, name, file.Loaded, file.Report);
    PrintListing(ForPeople(file), false);
    return ExitStatus::Ok;
}

} // namespace

const ICommand& ObjectCommand() {
    static const TObjectCommand command;
    return command;
}

} // namespace vorel::host
