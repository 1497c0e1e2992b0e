#include "bsdl/BsdlTestSupport.h"

#include <gmock/gmock.h>

namespace vorel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(VHDLTokens, StandInTheirPlaces) {
    const std::vector<std::pair<std::string_view, std::int32_t>> places{{"'", 0},
                                                                        {"(", 4},
                                                                        {":=", 13},
                                                                        {"<=", 18},
                                                                        {"=>", 21},
                                                                        {"ENTITY", 48},
                                                                        {"Downto", 44},
                                                                        {"to", 97},
                                                                        {"synopsys", 95},
                                                                        {"transport", 98},
                                                                        {"variable", 105},
                                                                        {"rtl_synthesis", 90},
                                                                        {"configuration", 41}};
    for (const auto& [word, place] : places) {
        EXPECT_EQ(FindToken(word), place) << word;
    }
    for (std::size_t i = 0; i < VHDLTokens.size(); ++i) {
        EXPECT_EQ(FindToken(VHDLTokens[i]), static_cast<std::int32_t>(i));
    }
    EXPECT_EQ(FindToken("entit"), VHDLToken::None);
    EXPECT_EQ(FindToken(""), VHDLToken::None);
}

class TTokenLister : public TStringsParser {
public:
    std::string List(const std::string& text) {
        std::string list;
        SetText(text);
        for (NextRaw(); State.Kind != TTokenKind::Eof; NextRaw()) {
            list += std::to_string(static_cast<int>(State.Kind)) + "<" + std::string(State.Text) +
                    ">" + std::to_string(State.Line) + " ";
        }
        return list;
    }
};

TEST(StringsParser, TakesTokensOfEveryKind) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"abc_1 Port", "3<abc_1>0 6<Port>0 "},
        {"a:=b<=c=>d", "3<a>0 6<:=>0 3<b>0 6<<=>0 3<c>0 6<=>>0 3<d>0 "},
        {");", "6<)>0 6<;>0 "},
        {"1 2.5 10.0e6 1E-3 7.x", "4<1>0 5<2.5>0 5<10.0e6>0 5<1E-3>0 4<7>0 6<.>0 3<x>0 "},
        {"'1'", "6<'>0 4<1>0 6<'>0 "},
        {"-1", "7<->0 4<1>0 "},
        {"\"a\"\"b\" \"open", "1<\"a\"\"b\">0 1<\"open>0 "},
        {"\"open\nb", "1<\"open>0 3<b>1 "},
        {"#[\xE9", "7<#>0 7<[>0 7<\xE9>0 "},
        {"a\rb\r\nc\n\nd", "3<a>0 3<b>1 3<c>2 3<d>4 "},
        {std::string("a\0 lost\nb", 9), "3<a>0 3<b>1 "},
        {"a\n", "3<a>0 "},
        {"", ""},
    };
    for (const auto& [text, tokens] : cases) {
        EXPECT_EQ(TTokenLister().List(text), tokens) << text;
    }
}

TEST(VHDLParser, ReadsPortsWithModesRangesAndDefaults) {
    const TParsed parsed("entity E is port (a, B : in bit;\n c : bit_vector (7 downto 0);"
                         " d : out w(3); e : buffer x := 1 + 2; f : linkage y range 0 to 9;"
                         " g : inout v(-1 to N)); end entity E;");
    EXPECT_EQ(parsed.Parser.ErrorLine, -1);
    const TEntity& entity = *parsed.Entities.Find("e");
    std::vector<std::string> texts;
    std::vector<std::string> names;
    for (const TVHDLPort* port : entity.PortsByIndex) {
        texts.push_back(port->GetText());
        names.push_back(port->GetFullName());
    }
    EXPECT_THAT(texts, ElementsAre("Port a Input : bit", "Port B Input : bit",
                                   "Port c I/O : bit_vector( 7 downto 0)", "Port d Output : w( 3)",
                                   "Port e Open Collector : x := 1+2",
                                   "Port f I/O : y(range0 to 9)", "Port g I/O : v( - 1 to N)"));
    EXPECT_THAT(names, ElementsAre("a", "B", "c[7..0]", "d3", "e", "f[range0..9]", "g[- 1..N]"));
    const TVHDLPort& vector = *entity.Ports.Find("C");
    EXPECT_EQ(vector.Direction(), 44);
    EXPECT_EQ(vector.ListIndex, 2);
    EXPECT_EQ(vector.Line, 2);
    EXPECT_EQ(vector.Column, 2);
}

TEST(VHDLParser, KeepsAttributesAndConstantsInReverseOrder) {
    const TParsed parsed(
        "package P is x end P; use P.all;\n"
        "entity E is use STD_1149_1_1994.all; attribute KIND : string;\n"
        "attribute N of E : entity is \"ab \" & -- \"no\" & ;\n \"cd\"; attribute M of a, B : "
        "signal is 5;"
        " attribute L of all : label is \"one\" & two; attribute K of others : type is true;"
        "constant X, Y : T := \" v \"; constant Z : T; end;");
    EXPECT_EQ(parsed.Parser.ErrorLine, -1);
    const TEntity& entity = *parsed.Entities.Find("E");
    std::vector<std::string> texts;
    for (const auto& [key, attribute] : entity.Attributes) {
        texts.push_back(attribute->Name + "/" +
                        std::to_string(static_cast<int>(attribute->AttributeKind)) + "/" +
                        std::to_string(static_cast<int>(attribute->EntityListKind)) + "/" +
                        std::to_string(attribute->EntityClass) + "/" +
                        JoinCommaText(attribute->EntityNames) + "/" + attribute->Value);
    }
    EXPECT_THAT(texts, ElementsAre("K/2/2/101//true", "L/2/1/60//\"one\"&two", "M/2/3/93/a,B/5",
                                   "N/2/3/48/E/ab  cd", "KIND/1/0/-1//:string"));
    const auto constant = std::next(entity.Constants.begin());
    EXPECT_EQ(entity.Constants.begin()->second->Names.at(0), "Z");
    EXPECT_THAT(constant->second->Names, ElementsAre("X", "Y"));
    EXPECT_EQ(constant->second->Value, "v");
    EXPECT_EQ(constant->second->GetText(), "Constant ");
}

TEST(VHDLParser, ObeysPragmasInComments) {
    // By comment the error; without one the port behind the comment is there.
    const std::vector<std::pair<std::string, std::string>> cases{
        {"-- port; end; \" unclosed \xE9", ""},
        {"--", ""},
        {"-- rtl_synthesis off\n end garbage ; -- rtl_synthesis on\n", ""},
        {"-- synopsys transport\n end ( -- no comment end -- synopsys translate_on here\n", ""},
        {"-- synopsys translate_off\n", "Expected transport"},
        {"-- rtl_synthesis maybe\n", "Expected off"},
        {"-- rtl_synthesis off\n never closed", "Expected rtl_synthesis"},
        {"--\n synopsys", "Expected transport"}, // the word after the dashes is on the next line
    };
    for (const auto& [comment, error] : cases) {
        const TParsed parsed("entity E is " + comment + "\nport (a : bit); end;");
        EXPECT_EQ(parsed.Error(), error) << comment;
        EXPECT_EQ(parsed.Entities.Find("E")->Ports.Count(), error.empty() ? 1U : 0U);
    }
}

TEST(VHDLParser, ReportsTheFirstErrorWithItsPlace) {
    const TParsed parsed("entity A is end;\nentity B is\n  port (a bit); end;");
    EXPECT_EQ(parsed.Parser.ErrorLine, 3);
    EXPECT_EQ(parsed.Parser.ErrorColumn, 11);
    EXPECT_THAT(parsed.Host.Messages,
                ElementsAre("VHDL|a.vhd|[Error]|Expected : at Line: 3 Offset: 11"));
    EXPECT_THAT(parsed.Host.Processes,
                ElementsAre("TEXTEDIT:CrossProbeNotify|TargetFilename=dir/a.vhd|FocusWindows=True|"
                            "Kind=Position|LineNumber=2|ColumnNumber=10|SelectionLength=10"));
    EXPECT_THAT(parsed.Host.StatusTexts, ElementsAre("3|Entity:A", "3|Entity:B"));
    EXPECT_EQ(parsed.Entities.Count(), 2U);
}

TEST(VHDLParser, NamesEachFault) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"entity E is end; entity e is end;", "Entity e Redeclared"},
        {"entity end", "Identifier Expected"},
        {"entity E is generic (); end;", "Identifier Expected"},
        {"entity E is port (a : bit;); end;", "Identifier Expected"},
        {"entity E is attribute A of ; end;", "Identifier or Constant Expected"},
        {"entity E is attribute A of x : y is 1; end;", "Entity Class Expected (Entity..Units)"},
        {"entity E is constant C; end;", "Expected :"},
        {"entity E is end E F;", "Expected ;"},
        // No errors: the text may end anywhere between declarations.
        {"entity E is port (); port (x : bit);", ""},
        {"architecture", ""},
        {"", ""},
    };
    for (const auto& [text, error] : cases) {
        const TParsed parsed(text);
        EXPECT_EQ(parsed.Error(), error) << text;
    }
}

const char* const NetlistHead =
    "entity TOP is port (i : in bit; o : out bit; p : out bit); end TOP;\n"
    "architecture A of TOP is\n"
    " component C is generic (g : integer); port (x : in bit; y : out bit_vector(1 to 2));\n"
    " end component C;\n signal s : bit; signal t : bit_vector(3 downto 0);\nbegin\n";

TEST(VHDLParser, ReadsNetlists) {
    const TParsed parsed(
        std::string(NetlistHead) +
        "u1 : C generic map (g => 5) port map (x => s, y(1 to 2) => t(1 downto 0));\n"
        "u2 : c port map (i, o);\n"
        "s <= i; t <= o(3 downto 0); s <= a and b; o <= s; p <= t(1); p <= q(2);\n"
        "process (i, o) s := 1; end process; blk: block s <= q; end block blk;\n"
        "end A;");
    EXPECT_EQ(parsed.Parser.ErrorLine, -1);
    EXPECT_THAT(
        parsed.Log(),
        ElementsAre(
            "New Entity:TOP", "New Architecture: TOP For Entity:A", "Component Declaration :C",
            "Component Instance:U1 Type:C", "Adding AssociationElement:Generic Map U1- => ",
            "Adding AssociationElement:Port Map U1-x => s(Signal)",
            "Adding AssociationElement:Port Map U1-y => t(Signal)( 1 downto 0)",
            "Component Instance:U2 Type:c", "Adding AssociationElement:Port Map U2-x => i(Port)",
            "Adding AssociationElement:Port Map U2-y => o(Port)",
            "SignalConnectedToPort:Signal s I/O : bit To Port i Input : bit",
            "SignalConnectedToPortSlice:Signal t I/O : bit_vector( 3 downto 0) To Port o Output : "
            "bit[3..0]",
            "Unrecognized expression aandb assigned to signal s",
            "Found PortAssignment:Port o Output : bit <= s",
            "PortConnectedToSignal:Port o Output : bit To Signal s I/O : bit",
            "Found PortAssignment:Port p Output : bit <= t(1)",
            "PortConnectedToSignalSlice:Port p Output : bit To Signal t I/O : bit_vector( 3 downto "
            "0)[1..1]",
            "Found PortAssignment:Port p Output : bit <= q(2)",
            "Unrecognized slice q(2) assigned to port p"));
    const TEntity& top = *parsed.Entities.Find("TOP");
    EXPECT_EQ(top.Instances.Count(), 2U);
    EXPECT_EQ(top.Signals.Find("S")->Connections.Find("X")->Instance->InstanceName, "U1");
    EXPECT_EQ(parsed.Folder.FileCount(), 1) << "only the finished log is left";
}

TEST(VHDLParser, IsSilentAboutErrorsInArchitectures) {
    const std::vector<std::string> statements{"u : C port map (nopin => s);",
                                              "u : C port map (s, s, s);",
                                              "u : component C;",
                                              "u : entity work.C;",
                                              "u : configuration K;",
                                              "nothing <= s;",
                                              "u : if a then"};
    for (const std::string& statement : statements) {
        const TParsed parsed(NetlistHead + statement + "\nend A;");
        EXPECT_EQ(parsed.Parser.ErrorLine, 7) << statement;
        EXPECT_THAT(parsed.Host.Messages, IsEmpty());
        EXPECT_THAT(parsed.Host.Processes, IsEmpty());
        EXPECT_EQ(parsed.Entities.Find("TOP")->Instances.Count(), 0U) << statement;
    }
    const TParsed orphan("architecture A of NOBODY is begin end;");
    EXPECT_EQ(orphan.Parser.ErrorLine, 1);
    EXPECT_THAT(orphan.Host.Messages, IsEmpty());
}

TEST(VHDLParser, CutsLogLinesAndReplacesTheLog) {
    const std::string name(300, 'n');
    TParsed parsed("entity " + name + " is end;");
    EXPECT_THAT(parsed.Log(), ElementsAre("New Entity:" + name.substr(0, 244)));
    EXPECT_EQ(parsed.Entities.Find(name)->Name, name);
    parsed.Parser.Parse("entity B is end;");
    EXPECT_THAT(parsed.Log(), ElementsAre("New Entity:B"));
}

// Each text is as hostile as it is long; what matters is that the parse ends and stays bounded.
TEST(VHDLParser, SurvivesHostileTexts) {
    constexpr std::size_t many = 200'000;
    const auto repeated = [](const std::string& piece) {
        std::string text;
        for (std::size_t i = 0; i < many; ++i) {
            text += piece;
        }
        return text;
    };
    const std::vector<std::string> texts{
        "entity E is port (a : b" + repeated("(") + ")); end;",
        "entity E is attribute A of E : entity is " + repeated("(\"") + ";",
        "entity E is attribute A of E : entity is \"never closed" + repeated(" x"),
        repeated("--\n"),
        repeated("-"),
        "entity E is port (" + repeated("a,") + "a : b := " + repeated("c") + "); end;",
        "-- rtl_synthesis off\n" + repeated("-- rtl_synthesis "),
        std::string(NetlistHead) + repeated("s<=i;"),
        std::string(many, '\0'),
    };
    for (const std::string& text : texts) {
        const TParsed parsed(text);
        EXPECT_LE(parsed.Entities.Count(), 1U);
    }
    const TParsed tooMany(repeated("entity E") + " is");
    EXPECT_EQ(tooMany.Error(), "Expected is");
    std::string entities;
    for (std::size_t i = 0; i < many; ++i) {
        entities += "entity E" + std::to_string(i) + " is end;";
    }
    const TParsed limited(entities);
    EXPECT_EQ(limited.Error(), "Too Many Objects");
    EXPECT_EQ(limited.Entities.Count(), TVHDLParser::MaximumObjects / 8U);
}

} // namespace
} // namespace vorel
