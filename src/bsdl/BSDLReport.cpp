#include "bsdl/BSDLReport.h"

#include <charconv>

namespace vorel {

namespace {

constexpr std::size_t ReportLimit = std::size_t{64} << 20U;

std::string TwoDecimals(double value) {
    std::array<char, 400> digits{}; // the largest double has 309 of them
    const std::to_chars_result end = std::to_chars(digits.data(), digits.data() + digits.size(),
                                                   value, std::chars_format::fixed, 2);
    return {digits.data(), end.ptr};
}

void AddOpCodes(const TBSDLEntity& entity, std::vector<std::string>& lines) {
    std::size_t size = 0;
    for (std::size_t i = 0; i < entity.OpCodes.size() && size < ReportLimit; ++i) {
        TTextSink line;
        line << PadLeft(std::to_string(i), 4) << " :"
             << " Opcode Name:";
        line.Padded(entity.OpCodes[i]->Name, 12) << " Opcode Pattern:";
        line.Padded(entity.OpCodes[i]->Pattern, 12);
        size += line.Get().size();
        lines.push_back(line.Get());
    }
}

void AddTapPin(const char* word, const TScanPin* pin, std::vector<std::string>& lines) {
    lines.push_back(std::string(word) + " Pin :" + (pin != nullptr ? pin->Text() : " Not Defined"));
}

void AddRegisters(const TBSDLEntity& entity, std::vector<std::string>& lines) {
    std::size_t size = 0;
    for (const auto& association : entity.RegisterAssociations) {
        if (size >= ReportLimit) {
            return;
        }
        lines.push_back("   " + association->Text());
        size += lines.back().size();
    }
}

} // namespace

void DumpEntity(const TBSDLEntity& entity, std::vector<std::string>& lines) {
    lines.push_back("Device Name:" + entity.Name);
    lines.push_back("Pins:" + std::to_string(entity.Pins.size()));
    lines.push_back("Instruction Length: " + std::to_string(entity.InstructionLength));
    AddOpCodes(entity, lines);
    lines.emplace_back();
    AddTapPin("TDI", entity.TdiPin, lines);
    AddTapPin("TDO", entity.TdoPin, lines);
    AddTapPin("TMS", entity.TmsPin, lines);
    AddTapPin("TRST", entity.TrstPin, lines);
    AddTapPin("TCK", entity.TckPin, lines);
    lines.emplace_back();
    const char* mode = ScanClockModeNames[static_cast<std::size_t>(entity.ScanClockMode)];
    lines.push_back(std::string("Scan Clock Mode                 : ") + mode);
    lines.push_back("Scan Clock Max Frequency        : " +
                    TwoDecimals(entity.ScanClockFrequency / 1'000'000) + " MHz");
    lines.push_back("User-Code Register Pattern      : " + entity.UserCodePattern);
    lines.push_back("ID-Code Register Pattern        : " + entity.IdCodePattern);
    lines.push_back("ID-Code Register Value          : " + ToHex(entity.IdCode, 8));
    lines.push_back("Design Warning                  : " + entity.DesignWarning);
    lines.push_back("Compliance-Enable Pattern       : " + entity.CompliancePatterns);
    lines.push_back("Component Conformance Statement : " + entity.ComponentConformance);
    lines.push_back("BoundaryLength                  : " + std::to_string(entity.BoundaryLength));
    lines.emplace_back("Register Associations");
    AddRegisters(entity, lines);
    lines.emplace_back();
}

} // namespace vorel
