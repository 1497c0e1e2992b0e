// Shared by the tests of the BSDL reader.
#pragma once

#include "bsdl/FileText.h"
#include "bsdl/RT_ParseVHDL.h"
#include "bsdl/ReaderBSDL.h"
#include "knowledge/TempFolder.h"
#include "support/NeutralHost.h"

#include <gtest/gtest.h>

namespace vorel {

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
    std::vector<std::string> Log() const { return SplitLines(Folder.Read("VHDL Parser.log")); }
    // The message of the error, without its place.
    std::string Error() const {
        const std::string text = Host.Messages.empty() ? "|" : Host.Messages.front();
        const std::size_t start = text.rfind('|') + 1;
        return text.substr(start, text.find(" at Line:") - start);
    }

    TTempFolder Folder;
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

// What an operation gives that has to succeed.
template<class Interface, class T>
T Got(std::type_identity_t<Interface>& object, Status (Interface::*get)(T&) noexcept) {
    T value{};
    EXPECT_EQ((object.*get)(value), StatusOk);
    return value;
}

// An entity with these declarations in it.
inline std::string EntityText(const std::string& declarations) {
    return "entity E is\n" + declarations + "\nend E;\n";
}

} // namespace vorel
