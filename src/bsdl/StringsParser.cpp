#include "bsdl/StringsParser.h"

#include "support/Text.h"

namespace vorel {

namespace {

enum class TCharClass : std::uint8_t {
    Other,
    Blank,
    LineEnd,
    Nul,
    Letter,
    Digit,
    Symbol,
    Quote,
    Dash,
};

constexpr std::string_view SymbolCharacters = "&'()*+,./:;<=>|";

constexpr std::array<TCharClass, 256> MakeCharClasses() {
    std::array<TCharClass, 256> classes{};
    const auto put = [&classes](char c, TCharClass value) {
        classes[static_cast<unsigned char>(c)] = value;
    };
    for (std::size_t c = 1; c < 33; ++c) {
        classes[c] = TCharClass::Blank;
    }
    for (char c = 'A'; c <= 'Z'; ++c) {
        put(c, TCharClass::Letter);
        put(LowerAscii(c), TCharClass::Letter);
    }
    for (char c = '0'; c <= '9'; ++c) {
        put(c, TCharClass::Digit);
    }
    for (const char c : SymbolCharacters) {
        put(c, TCharClass::Symbol);
    }
    put('_', TCharClass::Letter);
    put('\r', TCharClass::LineEnd);
    put('\n', TCharClass::LineEnd);
    put('\0', TCharClass::Nul);
    put('"', TCharClass::Quote);
    put('-', TCharClass::Dash);
    return classes;
}

constexpr std::array<TCharClass, 256> CharClasses = MakeCharClasses();

TCharClass ClassOf(char c) noexcept {
    return CharClasses[static_cast<unsigned char>(c)];
}
bool IsDigit(char c) noexcept {
    return c >= '0' && c <= '9';
}
bool EndsLine(char c) noexcept {
    return c == '\n' || c == '\r';
}

constexpr std::size_t BucketOf(std::string_view word) noexcept {
    auto hash = static_cast<std::uint32_t>(word.size() - 1);
    for (const char c : word) {
        hash = (hash ^ static_cast<unsigned char>(UpperAscii(c))) * 2;
    }
    return (hash >> 1U) & 255U;
}

// The token table by hash: the first token of each bucket, and the next one of the same bucket.
struct TTokenBuckets {
    std::array<std::int16_t, 256> First{};
    std::array<std::int16_t, VHDLTokens.size()> Next{};
};

constexpr TTokenBuckets MakeBuckets() {
    TTokenBuckets buckets;
    buckets.First.fill(-1);
    for (std::size_t i = VHDLTokens.size(); i-- > 0;) {
        const std::size_t bucket = BucketOf(VHDLTokens[i]);
        buckets.Next[i] = buckets.First[bucket];
        buckets.First[bucket] = static_cast<std::int16_t>(i);
    }
    return buckets;
}

constexpr TTokenBuckets Buckets = MakeBuckets();

// Every character that starts a symbol is one by itself, too.
constexpr std::array<std::int16_t, 128> MakeSingleSymbols() {
    std::array<std::int16_t, 128> tokens{};
    for (std::size_t i = 0; i < VHDLTokens.size(); ++i) {
        if (VHDLTokens[i].size() == 1) {
            tokens[static_cast<unsigned char>(VHDLTokens[i][0])] = static_cast<std::int16_t>(i);
        }
    }
    return tokens;
}

constexpr std::array<std::int16_t, 128> SingleSymbols = MakeSingleSymbols();

} // namespace

std::int32_t FindToken(std::string_view word) noexcept {
    if (word.empty()) {
        return VHDLToken::None;
    }
    std::int32_t token = Buckets.First[BucketOf(word)];
    while (token >= 0 && !SameText(VHDLTokens[static_cast<std::size_t>(token)], word)) {
        token = Buckets.Next[static_cast<std::size_t>(token)];
    }
    return token;
}

void TStringsParser::SetText(const std::string& text) {
    // The terminating NUL of the text stops every scan below without a test for the end.
    State = TState{};
    State.Cursor = State.LineStart = State.TokenStart = text.c_str();
    End = text.c_str() + text.size();
    ForgetLookAhead();
}

void TStringsParser::Take(TTokenKind kind, std::int32_t number, std::size_t length) noexcept {
    State.TokenStart = State.Cursor;
    State.Text = {State.Cursor, length};
    State.Cursor += length;
    State.Kind = kind;
    State.Number = number;
}

void TStringsParser::SkipLine() noexcept {
    while (State.Cursor != End && !EndsLine(*State.Cursor)) {
        ++State.Cursor;
    }
}

// A line end at the very end of the text makes no further line.
bool TStringsParser::NextLine() noexcept {
    const bool pair = State.Cursor[0] == '\r' && State.Cursor[1] == '\n';
    const char* next = State.Cursor + (pair ? 2 : 1);
    if (next == End) {
        return false;
    }
    State.Cursor = State.LineStart = next;
    ++State.Line;
    return true;
}

void TStringsParser::NextRaw() {
    for (;;) {
        switch (ClassOf(*State.Cursor)) {
        case TCharClass::Blank:
            ++State.Cursor;
            break;
        case TCharClass::LineEnd:
            if (!NextLine()) {
                return Take(TTokenKind::Eof, VHDLToken::None, 0);
            }
            break;
        case TCharClass::Nul:
            if (State.Cursor == End) {
                return Take(TTokenKind::Eof, VHDLToken::None, 0);
            }
            SkipLine();
            break;
        case TCharClass::Letter:
            return ScanWord();
        case TCharClass::Digit:
            return ScanNumber();
        case TCharClass::Symbol:
            return ScanSymbol();
        case TCharClass::Quote:
            return ScanString();
        case TCharClass::Dash:
            return ScanDash();
        case TCharClass::Other:
            return Take(TTokenKind::WhiteChar, VHDLToken::None, 1);
        }
    }
}

void TStringsParser::Next() {
    if (AheadFrom == State.Cursor) {
        State = Ahead;
        return;
    }
    do {
        NextRaw();
    } while (State.Kind == TTokenKind::Comment);
}

bool TStringsParser::NextUnless(std::int32_t a, std::int32_t b, std::int32_t c) {
    const TState here = State;
    Next();
    const std::int32_t token = State.Number;
    if (token != a && token != b && token != c && State.Kind != TTokenKind::Eof) {
        return true;
    }
    Ahead = State;
    AheadFrom = here.Cursor;
    State = here;
    return false;
}

const TStringsParser::TState& TStringsParser::LookAhead() {
    if (AheadFrom != State.Cursor) {
        const TState here = State;
        Next();
        Ahead = State;
        AheadFrom = here.Cursor;
        State = here;
    }
    return Ahead;
}

TTokenKind TStringsParser::PeekKind() {
    const TState here = State;
    NextRaw();
    const TTokenKind kind = State.Kind;
    State = here;
    return kind;
}

void TStringsParser::ScanDash() {
    Take(TTokenKind::WhiteChar, VHDLToken::None, 1);
}

void TStringsParser::ScanWord() noexcept {
    const char* at = State.Cursor;
    while (ClassOf(*at) == TCharClass::Letter || ClassOf(*at) == TCharClass::Digit) {
        ++at;
    }
    const auto length = static_cast<std::size_t>(at - State.Cursor);
    constexpr std::size_t longest = 13; // "rtl_synthesis", "configuration", "translate_off"
    const std::int32_t number =
        length <= longest ? FindToken({State.Cursor, length}) : VHDLToken::None;
    Take(number == VHDLToken::None ? TTokenKind::Symbol : TTokenKind::ResWord, number, length);
}

void TStringsParser::ScanSymbol() noexcept {
    const TCharClass next = ClassOf(State.Cursor[1]);
    if (next == TCharClass::Symbol || next == TCharClass::Quote || next == TCharClass::Dash) {
        const std::int32_t pair = FindToken({State.Cursor, 2});
        if (pair != VHDLToken::None) {
            return Take(TTokenKind::ResWord, pair, 2);
        }
    }
    Take(TTokenKind::ResWord, SingleSymbols[static_cast<unsigned char>(*State.Cursor)], 1);
}

void TStringsParser::ScanString() noexcept {
    const char* at = State.Cursor + 1;
    for (;; ++at) {
        const TCharClass c = ClassOf(*at);
        if (c == TCharClass::Quote) {
            ++at;
            if (*at != '"') {
                break;
            }
        } else if (c == TCharClass::LineEnd || c == TCharClass::Nul) {
            break;
        }
    }
    Take(TTokenKind::String, VHDLToken::None, static_cast<std::size_t>(at - State.Cursor));
}

void TStringsParser::ScanNumber() noexcept {
    const char* at = State.Cursor;
    TTokenKind kind = TTokenKind::Integer;
    const auto skipDigits = [&at] {
        while (IsDigit(*at)) {
            ++at;
        }
    };
    skipDigits();
    if (at[0] == '.' && IsDigit(at[1])) {
        ++at;
        skipDigits();
        kind = TTokenKind::Float;
    }
    if (*at == 'E' || *at == 'e') {
        const bool sign = at[1] == '+' || at[1] == '-';
        if (IsDigit(at[sign ? 2 : 1])) {
            at += sign ? 2 : 1;
            skipDigits();
            kind = TTokenKind::Float;
        }
    }
    Take(kind, VHDLToken::None, static_cast<std::size_t>(at - State.Cursor));
}

} // namespace vorel
