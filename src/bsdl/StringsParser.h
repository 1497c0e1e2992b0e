// A line tokeniser over a text in memory. Tokens are views into the text; the text is never copied
// or re-encoded, and every byte of any encoding is allowed in strings and comments.
#pragma once

#include "bsdl/VHDLTokens.h"

#include <string>

namespace vorel {

class TStringsParser {
public:
    TStringsParser() = default;
    TStringsParser(const TStringsParser&) = delete;
    TStringsParser& operator=(const TStringsParser&) = delete;
    virtual ~TStringsParser() = default;

protected:
    // Where the tokeniser stands, and the token that it took last. Copies save and restore a place.
    struct TState {
        const char* Cursor = nullptr;     // behind the token
        const char* LineStart = nullptr;  // of the line that the cursor is in
        const char* TokenStart = nullptr; // in that line
        std::string_view Text;            // the token as written; a string with its quotes
        std::int32_t Line = 0;            // counted from 0
        std::int32_t Number = VHDLToken::None;
        TTokenKind Kind = TTokenKind::Eof;
    };

    // Starts at the front of `text`, which must stay until the last token was taken. Lines end with
    // LF, CR LF or CR; a NUL hides the rest of its line.
    void SetText(const std::string& text);

    // Takes the next token, comments included. At the end the kind is Eof, again and again.
    void NextRaw();
    // Takes the next token that is no comment.
    void Next();
    // Next(), unless that is the end or one of three tokens: then false, and the position is kept.
    bool NextUnless(std::int32_t a, std::int32_t b, std::int32_t c);
    // The state that Next() will reach; the position is kept.
    const TState& LookAhead();
    // The token number of the token that Next() will take.
    std::int32_t Peek() { return LookAhead().Number; }
    // The kind of the token that NextRaw() will take.
    TTokenKind PeekKind();
    // Drops what LookAhead() found, for a change that makes the same characters other tokens.
    void ForgetLookAhead() noexcept { AheadFrom = nullptr; }

    // Takes the token that starts with the minus sign at State.Cursor. Here it is a WhiteChar.
    virtual void ScanDash();
    void Take(TTokenKind kind, std::int32_t number, std::size_t length) noexcept;
    // Moves to the end of the line.
    void SkipLine() noexcept;

    TState State;

private:
    bool NextLine() noexcept;
    void ScanWord() noexcept;
    void ScanSymbol() noexcept;
    void ScanString() noexcept;
    void ScanNumber() noexcept;

    const char* End = nullptr;
    TState Ahead;
    const char* AheadFrom = nullptr; // the cursor for which Ahead holds
};

} // namespace vorel
