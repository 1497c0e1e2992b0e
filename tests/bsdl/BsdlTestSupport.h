// Shared by the tests of the BSDL reader.
#pragma once

#include "bsdl/FileText.h"
#include "bsdl/RT_ParseVHDL.h"
#include "bsdl/ReaderBSDL.h"
#include "support/NeutralHost.h"

#include <gtest/gtest.h>

#include <fstream>

namespace vorel {

// A folder of the test's own, removed at the end.
class TTestFolder {
public:
    TTestFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "vorel-XXXXXX").string();
        Folder = mkdtemp(pattern.data());
    }
    TTestFolder(const TTestFolder&) = delete;
    TTestFolder& operator=(const TTestFolder&) = delete;
    ~TTestFolder() { std::filesystem::remove_all(Folder); }

    std::string Path(const std::string& name = "") const {
        return name.empty() ? Folder.string() : (Folder / name).string();
    }
    // Writes a file, making its folders, and gives its path.
    std::string Write(const std::string& name, const std::string& bytes) const {
        std::filesystem::create_directories((Folder / name).parent_path());
        std::ofstream(Folder / name, std::ios::binary) << bytes;
        return Path(name);
    }
    std::size_t FileCount() const {
        const std::filesystem::directory_iterator files(Folder);
        return static_cast<std::size_t>(std::distance(begin(files), end(files)));
    }

private:
    std::filesystem::path Folder;
};

// Keeps what the parser tells its host.
class TRecordingHost : public TNeutralHost {
public:
    Status ShowStatusText(std::int32_t panel, const WideText& text) noexcept override {
        StatusTexts.push_back(std::to_string(panel) + "|" + ToUtf8(text));
        return StatusOk;
    }
    Status AddMessage(const WideText& messageClass, const WideText& text, const WideText& source,
                      const WideText& kind) noexcept override {
        Messages.push_back(ToUtf8(messageClass + u"|" + source + u"|" + kind + u"|" + text));
        return StatusOk;
    }
    Status RunProcess(const WideText& process, const WideText& parameters) noexcept override {
        Processes.push_back(ToUtf8(process + u"|" + parameters));
        return StatusOk;
    }

    std::vector<std::string> StatusTexts;
    std::vector<std::string> Messages;
    std::vector<std::string> Processes;
};

// One parsed text of plain VHDL.
struct TParsed {
    explicit TParsed(const std::string& text) : Parser(Host, Folder.Path(), Entities, "dir/a.vhd") {
        Parser.Parse(text);
    }
    std::vector<std::string> Log() const {
        return SplitLines(ReadWholeFile(Folder.Path("VHDL Parser.log")).value_or(""));
    }
    // The message of the error, without its place.
    std::string Error() const {
        const std::string text = Host.Messages.empty() ? "|" : Host.Messages.front();
        const std::size_t start = text.rfind('|') + 1;
        return text.substr(start, text.find(" at Line:") - start);
    }

    TTestFolder Folder;
    TRecordingHost Host;
    TEntityList Entities;
    TVHDLParser Parser;
};

// The entity of a BSDL text, perhaps null.
inline std::unique_ptr<TBSDLEntity> ReadBsdl(const std::string& text, const TIdMap& idMap = {}) {
    TNeutralHost host;
    TReaderBSDL reader(host, idMap, "", "test.bsd");
    reader.ReadText(text);
    return reader.TakeEntity();
}

// An entity with these declarations in it.
inline std::string EntityText(const std::string& declarations) {
    return "entity E is\n" + declarations + "\nend E;\n";
}

} // namespace vorel
