#include "bsdl/VHDLParser.h"

#include "bsdl/FileText.h"

namespace vorel {

TVHDLParser::TVHDLParser(IHostClient& host, std::string temporaryFolder, TEntityList& entities,
                         std::string fileName)
    : FileName(std::move(fileName)),
      Host(host),
      TemporaryFolder(std::move(temporaryFolder)),
      Entities(entities) {}

std::string TVHDLParser::GetLogFileName() const {
    return "VHDL Parser.log";
}

std::unique_ptr<TEntity> TVHDLParser::CreateEntity() {
    return std::make_unique<TEntity>();
}

void TVHDLParser::Log(std::string_view line) {
    LogFile.Write(line);
}

void TVHDLParser::Parse(const std::string& text) {
    ErrorLine = ErrorColumn = -1;
    PragmaToken = VHDLToken::None;
    Objects = 0;
    InArchitecture = false;
    SetText(text);
    try {
        if (!TemporaryFolder.empty()) {
            LogFile.Open(WithSeparator(TemporaryFolder) + GetLogFileName());
        }
        ParseUnits();
    } catch (...) {
        // A parse keeps its errors to itself; ErrorLine tells of them.
        if (ErrorLine != -1 && !InArchitecture) {
            TellEditor();
        }
    }
    LogFile.Close();
}

void TVHDLParser::ParseUnits() {
    while (LookAhead().Kind != TTokenKind::Eof) {
        const std::int32_t token = Peek();
        if (token == VHDLToken::Architecture) {
            ArchitectureRule();
        } else if (token == VHDLToken::Entity) {
            EntityRule();
        } else {
            Next();
        }
    }
}

void TVHDLParser::TellEditor() {
    const std::string parameters =
        "TargetFilename=" + FileName +
        "|FocusWindows=True|Kind=Position|LineNumber=" + std::to_string(ErrorLine - 1) +
        "|ColumnNumber=" + std::to_string(ErrorColumn - 1) + "|SelectionLength=10";
    Host.RunProcess(u"TEXTEDIT:CrossProbeNotify", ToWide(parameters));
}

void TVHDLParser::Raise(const std::string& message) {
    ErrorLine = State.Line + 1;
    ErrorColumn = static_cast<std::int32_t>(State.TokenStart - State.LineStart) + 1;
    if (InArchitecture) {
        throw EVHDLParserError(*this, "");
    }
    const std::string text = message + " at Line: " + std::to_string(ErrorLine) +
                             " Offset: " + std::to_string(ErrorColumn);
    Host.AddMessage(u"VHDL", FileTextToWide(text), ToWide(FileNameOf(FileName)), u"[Error]");
    throw EVHDLParserError(*this, text);
}

void TVHDLParser::ShowStatus(std::string_view what, std::string_view name) {
    constexpr std::int32_t panel = 3;
    Host.ShowStatusText(panel, FileTextToWide(what) + FileTextToWide(name));
}

void TVHDLParser::ClaimObjects(std::int32_t weight) {
    Objects += weight;
    if (Objects > MaximumObjects) {
        Raise("Too Many Objects");
    }
}

void TVHDLParser::Expect(std::int32_t token) {
    Next();
    if (State.Number != token) {
        Raise("Expected " + std::string(VHDLTokens[static_cast<std::size_t>(token)]));
    }
}

bool TVHDLParser::TakeIf(std::int32_t token) {
    if (Peek() != token) {
        return false;
    }
    Next();
    return true;
}

std::string_view TVHDLParser::ReadIdentifier() {
    Next();
    if (State.Kind != TTokenKind::Symbol) {
        Raise("Identifier Expected");
    }
    return State.Text;
}

std::string_view TVHDLParser::ReadValue() {
    Next();
    switch (State.Kind) {
    case TTokenKind::String:
    case TTokenKind::Symbol:
    case TTokenKind::Integer:
    case TTokenKind::Float:
        return State.Text;
    default:
        Raise("Identifier or Constant Expected");
    }
}

std::string TVHDLParser::ReadUntil(std::int32_t a, std::int32_t b) {
    std::string text;
    while (NextUnless(a, b, b)) {
        text.append(State.Text);
    }
    return text;
}

std::string TVHDLParser::ReadUntil3(std::int32_t a, std::int32_t b, std::int32_t c) {
    std::string text;
    while (NextUnless(a, b, c)) {
        text.push_back(' ');
        text.append(State.Text);
    }
    return text;
}

// "end", the unit's keyword and name where they stand, and the semicolon.
void TVHDLParser::EndClause(std::int32_t unit) {
    Expect(VHDLToken::End);
    TakeIf(unit);
    if (Peek() != VHDLToken::Semicolon) {
        ReadIdentifier();
    }
    Expect(VHDLToken::Semicolon);
}

void TVHDLParser::ScanDash() {
    const bool pair = State.Cursor[1] == '-';
    if (pair && PragmaToken == VHDLToken::None) {
        ScanComment();
    } else {
        Take(TTokenKind::WhiteChar, VHDLToken::None, pair ? 2 : 1);
    }
}

void TVHDLParser::ScanComment() {
    Take(TTokenKind::Comment, VHDLToken::None, 2);
    const TState dashes = State;
    // While a pragma may be under way, further dashes start no comment.
    PragmaToken = 1;
    NextRaw();
    PragmaToken = State.Number;
    State = dashes;
    if (PragmaToken == VHDLToken::RtlSynthesis) {
        SkipPragma(PragmaToken, VHDLToken::Off, VHDLToken::On);
    } else if (PragmaToken == VHDLToken::Synopsys) {
        // Not "translate_off": only the word "transport" opens such a region.
        SkipPragma(PragmaToken, VHDLToken::Transport, VHDLToken::TranslateOn);
    }
    SkipLine();
    PragmaToken = VHDLToken::None;
    State.Kind = TTokenKind::Comment;
    State.Number = VHDLToken::None;
}

void TVHDLParser::SkipPragma(std::int32_t word, std::int32_t off, std::int32_t on) {
    ForgetLookAhead();
    Expect(word);
    Expect(off);
    while (Peek() != word && LookAhead().Kind != TTokenKind::Eof) {
        NextRaw();
    }
    Expect(word);
    Expect(on);
    ForgetLookAhead();
}

} // namespace vorel
