#include "bsdl/BSDLReport.h"
#include "bsdl/BsdlTestSupport.h"
#include "bsdl/NaturalSort.h"

#include <gmock/gmock.h>

#include <random>

namespace vorel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string Spec(const std::string& name, const std::string& value) {
    return "attribute " + name + " of E : entity is \"" + value + "\";\n";
}

// An entity with a pin map of one package.
std::string WithPinMap(const std::string& ports, const std::string& map,
                       const std::string& rest = "") {
    return EntityText("port (" + ports +
                      ");\nattribute PIN_MAP of E : entity is PHYSICAL_PIN_MAP;\n"
                      "constant PACK : PIN_MAP_STRING := \"" +
                      map + "\";\n" + rest);
}

TEST(BsdlEntity, MakesPinsAndLinksThemInOrderOfTheirNumbers) {
    const auto entity = ReadBsdl(
        WithPinMap("IO10, IO9 : inout bit; D : out bit_vector (0 to 2); LOST : in bit_vector (4);"
                   " VCC_A, VCC_1 : linkage bit; XGND : linkage bit; NC : buffer bit",
                   "IO10 : A10, io9 : A9, D : (B3, B1, B2), VCC_A : P1, NOBODY: Q1, XGND : (G1)",
                   Spec("BOUNDARY_REGISTER", "0 (BC_1, VCC_1, input, X)")));
    std::vector<std::string> texts;
    for (const auto& pin : entity->Pins) {
        texts.push_back(pin->LongText() + std::to_string(static_cast<int>(pin->Function)));
    }
    EXPECT_THAT(texts, ElementsAre("NC()-Open Collector0", "VCC_1()-I/O6", "IO9(A9)-I/O0",
                                   "IO10(A10)-I/O0", "D(B1)-Output0", "D(B2)-Output0",
                                   "D(B3)-Output0", "XGND(G1)-I/O7", "VCC_A(P1)-I/O6"));
    EXPECT_EQ(entity->PinMappings.back()->PinNumber, "Q1");
    EXPECT_EQ(entity->PinMappings.back()->Pin, nullptr);
    EXPECT_EQ(entity->PinMappings.front()->Pin, entity->Pins[2].get());
    Got(*entity, &IBSDLEntity::GetBoundaryCellCount);
    EXPECT_EQ(entity->Pins[1]->Function, PinFunction::Normal) << "a pin with a cell";
}

TEST(BsdlEntity, ReadsPinMapsAsTheyAreWritten) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"A:1,B:2", "A=1;B=2"},
        {"A : (1, \" &\n\"2),\" & -- A \"comment\" ;\n \"B : 3", "A=1;A=2;B=3"},
        {"A:(1,2) , B:3", "A=1;A=2;, B=3"}, // the comma is only dropped right behind the list
        {"A:(1,2", ""},
        {"A:(1,B:(2),C:3", "A=1;C=3;A=B:(2"},
        {"A:", "A="},
        {"A 1, B 2", ""},
        {"", ""},
    };
    for (const auto& [map, expected] : cases) {
        const auto entity = ReadBsdl(WithPinMap("A : in bit", map));
        std::string text;
        for (const auto& mapping : entity->PinMappings) {
            text.append(text.empty() ? "" : ";").append(mapping->PinName);
            text.append("=").append(mapping->PinNumber);
        }
        EXPECT_EQ(text, expected) << map;
    }
}

TEST(BsdlEntity, TakesTheLastPackageOfSeveral) {
    const auto entity =
        ReadBsdl(WithPinMap("A : in bit", "A:1", "constant LAST : PIN_MAP_STRING := \"A:2\";"));
    ASSERT_EQ(entity->Pins.size(), 1U);
    EXPECT_EQ(entity->Pins[0]->Number, "2");
    EXPECT_THAT(ReadBsdl(EntityText("port (A : in bit);"))->Pins, IsEmpty()) << "no pin map";
}

TEST(BsdlEntity, FindsTheTestAccessPort) {
    const auto entity = ReadBsdl(WithPinMap(
        "TDI, TMS, TCK : in bit; TDO : out bit", "TDI:1,TMS:2,TCK:3,TDO:4",
        "attribute TAP_SCAN_IN of tdi : signal is true; attribute TAP_SCAN_OUT of TDO : signal is "
        "true; attribute TAP_SCAN_MODE of NOBODY : signal is true;"
        "attribute TAP_SCAN_CLOCK of TCK : signal is true;"));
    EXPECT_EQ(entity->TdiPin->Number, "1");
    EXPECT_EQ(entity->TdiPin->Function, PinFunction::Tdi);
    EXPECT_EQ(entity->TdoPin->Function, PinFunction::Tdo);
    EXPECT_EQ(entity->TckPin->Function, PinFunction::Tck);
    EXPECT_EQ(entity->TmsPin, nullptr);
    EXPECT_EQ(entity->TrstPin, nullptr);
}

TEST(BsdlEntity, ReadsScanClocks) {
    const std::vector<std::tuple<std::string, double, int>> cases{
        {"(1.5e6, LOW)", 1.5e6, 1}, {"(fast, BOTH)", 0, 2}, {"(5, HIGH)", 5, 0}, {"5, LOW", 0, 0},
        {")5, LOW(", 0, 0},         {"(inf, LOW)", 0, 1},   {"true", 0, 0}};
    for (const auto& [value, hertz, mode] : cases) {
        const auto entity =
            ReadBsdl(EntityText("attribute TAP_SCAN_CLOCK of TCK : signal is " + value + ";"));
        EXPECT_EQ(entity->ScanClockFrequency, hertz) << value;
        EXPECT_EQ(entity->ScanClockMode, mode) << value;
    }
}

TEST(BsdlEntity, ReadsInstructionsAndRegisters) {
    const auto entity = ReadBsdl(EntityText(
        Spec("INSTRUCTION_OPCODE", "extest (0000), SAMPLE(00 01, 0111), \" &\n \"PRIV (X1X0),"
                                   " IDCODE (xx10), CLAMP (10A1), HIGHZ (), USERCODE(B0011)") +
        Spec("REGISTER_ACCESS",
             "BOUNDARY (SAMPLE, EXTEST), REG[12] (PRIV, NONE), BYPASS (IDCODE)") +
        Spec("IDCODE_REGISTER", "0000 1111, 1") +
        "attribute INSTRUCTION_LENGTH of E : entity is 4;" + Spec("INSTRUCTION_CAPTURE", "X001") +
        Spec("INSTRUCTION_PRIVATE", "PRIV, OTHER")));
    std::vector<std::string> texts;
    for (const auto& opCode : entity->OpCodes) {
        texts.push_back(opCode->Text() + std::to_string(opCode->Value));
    }
    EXPECT_THAT(texts, ElementsAre("extest(0000)0", "SAMPLE(0001)1", "PRIV(1X0)0", "IDCODE(10)2",
                                   "CLAMP(10A1)0", "HIGHZ()0", "USERCODE(B0011)3"));
    EXPECT_EQ(entity->ExtestOpcode, 0);
    EXPECT_EQ(entity->SampleOpcode, 1);
    EXPECT_EQ(entity->IdcodeOpcode, 2);
    EXPECT_EQ(entity->UsercodeOpcode, 3);
    EXPECT_EQ(entity->BypassOpcode, -1);
    EXPECT_EQ(entity->InstructionLength, 4);
    EXPECT_EQ(entity->IdCodePattern, "0000 1111");
    EXPECT_EQ(entity->IdCode, 15U);
    EXPECT_EQ(entity->InstructionCapture, "X001");
    EXPECT_THAT(entity->InstructionPrivate, ElementsAre("PRIV", "OTHER"));
    texts.clear();
    for (const auto& association : entity->RegisterAssociations) {
        texts.push_back(association->Text());
    }
    EXPECT_THAT(texts, ElementsAre("BOUNDARY   (SAMPLE(0001),extest(0000))", "NoOpcode)",
                                   "BYPASS     (IDCODE(10))"));
    IBSDLOpCode* opCode = nullptr;
    TRegisterAssociation& registers = *entity->RegisterAssociations[1];
    EXPECT_EQ(registers.Name, "REG[12]");
    EXPECT_EQ(registers.Length, 0);
    EXPECT_EQ(registers.GetOpCode(1, opCode), StatusOk);
    EXPECT_EQ(opCode, nullptr) << "no instruction of this name";
    EXPECT_EQ(registers.GetOpCode(2, opCode), StatusIndexOutOfRange);
    EXPECT_EQ(registers.GetOpCode(3, opCode), StatusOk);
    EXPECT_EQ(registers.GetOpCode(-1, opCode), StatusOk);
}

TEST(BsdlEntity, KeepsLaterAttributesAndBytesOfAnyEncoding) {
    const auto entity = ReadBsdl(EntityText(Spec("DESIGN_WARNING", "first") +
                                            Spec("Design_Warning", "caf\xE9 \xFF") +
                                            Spec("COMPONENT_CONFORMANCE", "STD_1149_1_2001")));
    EXPECT_EQ(Got(*entity, &IBSDLEntity::GetDesignWarning), u"caf\u00E9 \u00FF");
    EXPECT_EQ(Got(*entity, &IBSDLEntity::GetComponentConformance), u"STD_1149_1_2001");
    EXPECT_EQ(Got(*entity, &IBSDLEntity::GetReservedText), u"");
    EXPECT_EQ(Got(*entity, &IBSDLEntity::GetFileName), u"test.bsd");
}

std::unique_ptr<TBSDLEntity> WithBoundary(const std::string& value) {
    return ReadBsdl(WithPinMap("A : inout bit; V : out bit_vector (0 to 1)", "A:1,V:(2,3)",
                               "attribute BOUNDARY_LENGTH of E : entity is 7;" +
                                   Spec("BOUNDARY_REGISTER", value)));
}

TEST(BsdlEntity, ReadsTheBoundaryRegisterOnDemand) {
    const auto entity = WithBoundary("1 (bc_1, A, output3, X, 0, 1, Z), 0 (BC_2, *, control, 1),"
                                     " 2 (BC_99, V(0), observe_only, 0),\"&\n\"3 (AC_1, a, INPUT)");
    std::vector<std::string> report;
    DumpEntity(*entity, report);
    EXPECT_THAT(report, testing::Contains("BoundaryLength                  : 0")) << "not read yet";
    EXPECT_EQ(Got(*entity, &IBSDLEntity::GetBoundaryLength), 7);
    std::vector<std::string> texts;
    for (const TBoundaryCell* cell : entity->GetBoundaryCells()) {
        texts.push_back(cell->LongText());
    }
    EXPECT_THAT(texts, ElementsAre("0   (BC_2      ,*         ,Control   ,1 ",
                                   "1   (BC_1      ,A         ,Output3   ,X ,0   ,1 ,Z         , "
                                   "Pin:A",
                                   "2   (          ,V(0)      ,          ,0 ",
                                   "3   (          ,a         ,Input     ,X "));
    const auto& cells = entity->GetBoundaryCells();
    EXPECT_EQ(cells[1]->ControlCellObject, cells[0]);
    EXPECT_EQ(cells[0]->ControlledCellObject, cells[1]);
    EXPECT_EQ(cells[2]->Pin, nullptr) << "one bit of a vector finds no pin";
    TScanPin& pin = *cells[1]->Pin;
    EXPECT_THAT(pin.Cells, ElementsAre(cells[1], cells[3]));
    IBSDLBoundaryCell* cell = nullptr;
    EXPECT_EQ(pin.GetCell(1, cell), StatusOk);
    EXPECT_EQ(cell, cells[3]);
    EXPECT_EQ(pin.GetCell(2, cell), StatusOk);
    EXPECT_EQ(cell, nullptr);
    EXPECT_EQ(entity->GetBoundaryCell(4, cell), StatusOk);
    EXPECT_EQ(cell, nullptr);
}

TEST(BsdlEntity, WantsCellsFromZeroWithoutGap) {
    const std::vector<std::pair<std::string, int>> cases{
        {"", 0},
        {"0 (BC_1), 1 (BC_1)", 2},
        {"0 (BC_1 (x, (y)), *)", 1},
        {"10(BC_1), 0 (BC_1)", 2}, // the digit in front of the parenthesis is lost
        {"0 (BC_1), 2(BC_1)", 1},  // and here the whole number, which ends the list
        {"0 (BC_1), x (BC_1), 1 (BC_1)", 1},
        {"0 (BC_1), 1 (BC_1", 1},
        {"0 (BC_1) 1 (BC_1)", 1},
        {"1 (BC_1)", -1},
        {"0 (BC_1), 0 (BC_1)", -1},
        {"0 (BC_1, *, output3, X, 1, 1, Z)", -1},
        {"4000000000 (BC_1)", 0},
    };
    for (const auto& [value, expected] : cases) {
        const auto entity = WithBoundary(value);
        std::int32_t count = 0;
        for (int call = 0; call < 2; ++call) {
            const Status status = entity->GetBoundaryCellCount(count);
            EXPECT_EQ(Succeeded(status) ? count : -1, expected) << value;
        }
    }
}

TEST(BsdlEntity, OffersItsRecordsAsInterfaces) {
    const auto entity = ReadBsdl(
        WithPinMap("A, TDI : in bit", "A:1", Spec("BOUNDARY_REGISTER", "0 (BC_1, A, input, X)")));
    IBSDLPin* pin = nullptr;
    ASSERT_EQ(entity->GetPin(1, pin), StatusOk);
    auto* tagged = QueryFor<IBSDLTagged>(pin);
    ASSERT_NE(tagged, nullptr);
    EXPECT_EQ(tagged->SetTag(42), StatusOk);
    EXPECT_EQ(Got(*pin, &IBSDLPin::GetTag), 42);
    EXPECT_EQ(Got(*pin, &IBSDLPin::GetEntity), entity.get());
    IBSDLPinMapping* const mapping = Got(*pin, &IBSDLPin::GetMapping);
    EXPECT_EQ(Got(*mapping, &IBSDLPinMapping::GetPin), pin);
    EXPECT_EQ(Got(*pin, &IBSDLPin::GetText),
              u" Pin Name:A            Number:1            IO:Input");
    EXPECT_EQ(Got(*mapping, &IBSDLPinMapping::GetText), u"");
    EXPECT_EQ(entity->GetPin(-1, pin), StatusOk);
    EXPECT_EQ(pin, nullptr);
    EXPECT_EQ(QueryFor<IBSDLTagged>(mapping), nullptr);
}

TEST(BsdlEntity, BoundsWhatAFileCanAskFor) {
    const auto huge = ReadBsdl(WithPinMap(
        "A : in bit_vector (0 to 2147483647); B : in bit_vector (3 downto -2); C : in bit", "C:1"));
    EXPECT_EQ(huge->Pins.size(), 7U) << "B and C";
    std::string registers = "R (";
    for (int i = 0; i < 200'000; ++i) {
        registers += "I,";
    }
    std::string opCode(10'000, '1');
    const auto wide = ReadBsdl(EntityText(Spec("INSTRUCTION_OPCODE", "I (" + opCode + ")") +
                                          Spec("REGISTER_ACCESS", registers + "I)")));
    ASSERT_EQ(wide->RegisterAssociations.size(), 1U);
    EXPECT_EQ(wide->RegisterAssociations[0]->OpCodes.size(), 200'001U);
    EXPECT_EQ(wide->RegisterAssociations[0]->Text().size(), TRegisterAssociation::TextLimit);
    std::string nested = "0 ";
    nested.append(500'000, '(').append(499'999, ')');
    EXPECT_EQ(Got(*WithBoundary(nested), &IBSDLEntity::GetBoundaryCellCount), 0);
}

TEST(NaturalSort, AgreesWithTheNaturalOrder) {
    std::mt19937 random(7);
    constexpr std::string_view alphabet = "aB01.9-";
    std::vector<std::string> names;
    for (int i = 0; i < 3000; ++i) {
        std::string name;
        for (std::size_t length = random() % 20; length > 0; --length) {
            name.push_back(alphabet[random() % alphabet.size()]);
        }
        names.push_back(name);
    }
    names.push_back(std::string(300, '9'));
    names.push_back(std::string(299, '9'));
    std::vector<std::string> sorted = names;
    SortNatural(sorted, [](const std::string& name) { return std::string_view(name); });
    std::stable_sort(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
        return CompareNatural(a, b) < 0;
    });
    EXPECT_EQ(sorted, names);
}

} // namespace
} // namespace vorel
