// The vocabulary of the VHDL subset (IEEE 1076-1987 and two tool pragmas): reserved words and
// symbols share one table, and the place in it is the token number.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace vorel {

enum class TTokenKind : std::uint8_t {
    Eof = 0,
    String = 1,
    Comment = 2,
    Symbol = 3, // an identifier that is no reserved word
    Integer = 4,
    Float = 5,
    ResWord = 6, // a reserved word or symbol; it has a token number
    WhiteChar = 7,
};
inline constexpr std::array<const char*, 13> TokenKindNames{
    "None",    "EOF",       "String",       "Comment",   "Symbol",  "Integer",   "Float",
    "ResWord", "WhiteChar", "PreProcessor", "Assembler", "HtmlTag", "HtmlParam "};

inline constexpr std::array<std::string_view, 106> VHDLTokens{"'",
                                                              "-",
                                                              "\"",
                                                              "&",
                                                              "(",
                                                              ")",
                                                              "*",
                                                              "**",
                                                              ",",
                                                              ".",
                                                              "/",
                                                              "/=",
                                                              ":",
                                                              ":=",
                                                              ";",
                                                              "|",
                                                              "+",
                                                              "<",
                                                              "<=",
                                                              "<>",
                                                              "=",
                                                              "=>",
                                                              ">",
                                                              ">=",
                                                              "abs",
                                                              "access",
                                                              "after",
                                                              "alias",
                                                              "all",
                                                              "and",
                                                              "architecture",
                                                              "array",
                                                              "assert",
                                                              "attribute",
                                                              "begin",
                                                              "block",
                                                              "body",
                                                              "buffer",
                                                              "bus",
                                                              "case",
                                                              "component",
                                                              "configuration",
                                                              "constant",
                                                              "disconnect",
                                                              "downto",
                                                              "else",
                                                              "elsif",
                                                              "end",
                                                              "entity",
                                                              "exit",
                                                              "file",
                                                              "for",
                                                              "function",
                                                              "generate",
                                                              "generic",
                                                              "guarded",
                                                              "if",
                                                              "in",
                                                              "inout",
                                                              "is",
                                                              "label",
                                                              "library",
                                                              "linkage",
                                                              "literal",
                                                              "loop",
                                                              "map",
                                                              "mod",
                                                              "nand",
                                                              "new",
                                                              "next",
                                                              "nor",
                                                              "not",
                                                              "null",
                                                              "of",
                                                              "off",
                                                              "on",
                                                              "open",
                                                              "or",
                                                              "others",
                                                              "out",
                                                              "package",
                                                              "port",
                                                              "procedure",
                                                              "process",
                                                              "range",
                                                              "record",
                                                              "register",
                                                              "rem",
                                                              "report",
                                                              "return",
                                                              "rtl_synthesis",
                                                              "select",
                                                              "severity",
                                                              "signal",
                                                              "subtype",
                                                              "synopsys",
                                                              "then",
                                                              "to",
                                                              "transport",
                                                              "translate_on",
                                                              "translate_off",
                                                              "type",
                                                              "units",
                                                              "until",
                                                              "use",
                                                              "variable"};

// The number of a word of the table; compiling fails for a word that is not in it.
consteval std::int32_t TokenNumber(std::string_view word) {
    for (std::size_t i = 0; i < VHDLTokens.size(); ++i) {
        if (VHDLTokens[i] == word) {
            return static_cast<std::int32_t>(i);
        }
    }
    throw "no such token";
}

namespace VHDLToken {
inline constexpr std::int32_t None = -1;
inline constexpr std::int32_t OpenParenthesis = TokenNumber("(");
inline constexpr std::int32_t CloseParenthesis = TokenNumber(")");
inline constexpr std::int32_t Comma = TokenNumber(",");
inline constexpr std::int32_t Colon = TokenNumber(":");
inline constexpr std::int32_t Assign = TokenNumber(":=");
inline constexpr std::int32_t Semicolon = TokenNumber(";");
inline constexpr std::int32_t LessEqual = TokenNumber("<=");
inline constexpr std::int32_t Arrow = TokenNumber("=>");
inline constexpr std::int32_t All = TokenNumber("all");
inline constexpr std::int32_t Architecture = TokenNumber("architecture");
inline constexpr std::int32_t Attribute = TokenNumber("attribute");
inline constexpr std::int32_t Begin = TokenNumber("begin");
inline constexpr std::int32_t Block = TokenNumber("block");
inline constexpr std::int32_t Buffer = TokenNumber("buffer");
inline constexpr std::int32_t Component = TokenNumber("component");
inline constexpr std::int32_t Configuration = TokenNumber("configuration");
inline constexpr std::int32_t Constant = TokenNumber("constant");
inline constexpr std::int32_t Downto = TokenNumber("downto");
inline constexpr std::int32_t End = TokenNumber("end");
inline constexpr std::int32_t Entity = TokenNumber("entity");
inline constexpr std::int32_t Generic = TokenNumber("generic");
inline constexpr std::int32_t In = TokenNumber("in");
inline constexpr std::int32_t Inout = TokenNumber("inout");
inline constexpr std::int32_t Is = TokenNumber("is");
inline constexpr std::int32_t Linkage = TokenNumber("linkage");
inline constexpr std::int32_t Map = TokenNumber("map");
inline constexpr std::int32_t Of = TokenNumber("of");
inline constexpr std::int32_t Off = TokenNumber("off");
inline constexpr std::int32_t On = TokenNumber("on");
inline constexpr std::int32_t Others = TokenNumber("others");
inline constexpr std::int32_t Out = TokenNumber("out");
inline constexpr std::int32_t Port = TokenNumber("port");
inline constexpr std::int32_t Process = TokenNumber("process");
inline constexpr std::int32_t Range = TokenNumber("range");
inline constexpr std::int32_t RtlSynthesis = TokenNumber("rtl_synthesis");
inline constexpr std::int32_t Signal = TokenNumber("signal");
inline constexpr std::int32_t Synopsys = TokenNumber("synopsys");
inline constexpr std::int32_t To = TokenNumber("to");
inline constexpr std::int32_t Transport = TokenNumber("transport");
inline constexpr std::int32_t TranslateOn = TokenNumber("translate_on");
} // namespace VHDLToken

// The token number of a word or symbol without regard to case; VHDLToken::None when it has none.
std::int32_t FindToken(std::string_view word) noexcept;

} // namespace vorel
