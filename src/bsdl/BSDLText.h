// How values of BSDL attributes are taken apart: plain text, forgiving, every value with a default.
#pragma once

#include "bsdl/SortedList.h"

#include <array>
#include <cstdint>
#include <list>
#include <optional>
#include <span>

namespace vorel {

// The vocabulary of IEEE 1149.1.
inline constexpr std::array<std::string_view, 78> BSDLKeywords{"AtPins",
                                                               "Bidir",
                                                               "BidirIn",
                                                               "BidirOut",
                                                               "Both",
                                                               "Boundary",
                                                               "Boundary_Length",
                                                               "Boundary_Register",
                                                               "BScan_Inst",
                                                               "BSDL_Extension",
                                                               "Bypass",
                                                               "Cap",
                                                               "Cap_Data",
                                                               "Captures",
                                                               "Cell_Data",
                                                               "Cell_Info",
                                                               "Cell_Type",
                                                               "Clamp",
                                                               "Clock",
                                                               "Clock_Info",
                                                               "Clock_Level",
                                                               "Compliance_Patterns",
                                                               "Component_Conformance",
                                                               "Control",
                                                               "ControlR",
                                                               "Design_Warning",
                                                               "Device_ID",
                                                               "Differential_Current",
                                                               "Differential_Voltage",
                                                               "Expect_Data",
                                                               "EXTest",
                                                               "HighZ",
                                                               "ID_Bits",
                                                               "ID_String",
                                                               "IDCode",
                                                               "IDCode_Register",
                                                               "Input",
                                                               "Instruction_Capture",
                                                               "Instruction_Length",
                                                               "Instruction_OPCode",
                                                               "Instruction_Private",
                                                               "Internal",
                                                               "InTest",
                                                               "InTest_Execution",
                                                               "Keeper",
                                                               "LOW",
                                                               "Observe_Only",
                                                               "Observing",
                                                               "One",
                                                               "Output2",
                                                               "Output3",
                                                               "Physical_Pin_Map",
                                                               "PI",
                                                               "Pin_Map",
                                                               "Pin_Map_String",
                                                               "PO",
                                                               "Port_Grouping",
                                                               "Preload",
                                                               "PULL0",
                                                               "PULL1",
                                                               "Register_Access",
                                                               "RunBist",
                                                               "RunBist_Execution",
                                                               "Sample",
                                                               "TAP_Scan_Clock",
                                                               "TAP_Scan_In",
                                                               "TAP_Scan_Mode",
                                                               "TAP_Scan_Out",
                                                               "TAP_Scan_Reset",
                                                               "UPD",
                                                               "UserCode",
                                                               "UserCode_Register",
                                                               "Wait_Duration",
                                                               "Weak0",
                                                               "Weak1",
                                                               "X",
                                                               "Z",
                                                               "ZERO"};

// The place of a word in BSDLKeywords; compiling fails for a word that is not in it.
consteval std::size_t BSDLKeyword(std::string_view word) {
    for (std::size_t i = 0; i < BSDLKeywords.size(); ++i) {
        if (BSDLKeywords[i] == word) {
            return i;
        }
    }
    throw "no such keyword";
}

// Keeps texts that had to be made anew, for those who hold views.
using TTextStore = std::list<std::string>;

// The items of a comma text, one by one, as views: separated by commas or blanks (codes 1 to 32),
// an item in double quotes may hold both, and a doubled quote in it stands for one.
class TCommaText {
public:
    // `text` and `store` must stay as long as the items are used.
    TCommaText(std::string_view text, TTextStore& store);

    // False when there are no more items.
    bool Next(std::string_view& item);

private:
    void SkipBlanks() noexcept;
    std::string_view TakeQuoted();

    std::string_view Rest;
    TTextStore& Store;
    bool LastIsEmpty = false; // a comma stood at the end: one empty item is left
};

// Whole text as a decimal number of 32 bits, else `fallback`.
std::int32_t ToInteger(std::string_view text, std::int32_t fallback) noexcept;

// A text of 0 and 1 as a number; of a longer one the right 32 digits. A "B" in front is passed
// over, as are blanks and CR; any other character gives 0.
std::uint32_t BinaryToNumber(std::string_view text) noexcept;

// The text without its blanks.
std::string WithoutBlanks(std::string_view text);
// Drops X of either case at the front.
void DropLeadingX(std::string& text);

// The place of a word in a table without regard to case; 0 for a word that is not in it.
std::int32_t FindWord(std::span<const char* const> table, std::string_view word) noexcept;

} // namespace vorel
