#include "simulator/BsdlInstructions.h"

#include "support/Text.h"

#include <algorithm>
#include <array>
#include <map>

namespace vorel::sim {

namespace {

constexpr std::size_t NotFound = std::string_view::npos;

BsdlRegister StandardRegister(std::string_view instruction) {
    static constexpr std::array<std::pair<std::string_view, BsdlRegister>, 6> Known{
        {{"EXTEST", BsdlRegister::Boundary},
         {"SAMPLE", BsdlRegister::Boundary},
         {"PRELOAD", BsdlRegister::Boundary},
         {"INTEST", BsdlRegister::Boundary},
         {"IDCODE", BsdlRegister::DeviceId},
         {"USERCODE", BsdlRegister::UserCode}}};
    const auto* const hit = std::find_if(
        Known.begin(), Known.end(), [&](const auto& known) { return known.first == instruction; });
    return hit != Known.end() ? hit->second : BsdlRegister::Bypass;
}

// "NAME[12]" in its name and length; 0 when there is none that can be used.
std::pair<std::string, std::size_t> SplitRegister(std::string_view text) {
    const std::size_t bracket = text.find('[');
    std::string name = UpperCase(Trim(text.substr(0, bracket)));
    if (bracket == NotFound) {
        return {std::move(name), 0};
    }
    const std::size_t end = text.find(']', bracket);
    const auto length = ParseDecimal(text.substr(bracket + 1, end - bracket - 1));
    const bool usable = end != NotFound && length && *length >= 1 &&
                        *length <= static_cast<std::int64_t>(TBsdlInstructions::MaxOwnLength);
    return {std::move(name), usable ? static_cast<std::size_t>(*length) : 0};
}

void SetRegister(BsdlInstruction& instruction, const std::string& name, std::size_t length) {
    if (name == "BOUNDARY") {
        instruction.Register = BsdlRegister::Boundary;
    } else if (name == "DEVICE_ID") {
        instruction.Register =
            instruction.Is("USERCODE") ? BsdlRegister::UserCode : BsdlRegister::DeviceId;
    } else if (name == "BYPASS" || length == 0) {
        instruction.Register = BsdlRegister::Bypass;
    } else {
        instruction.Register = BsdlRegister::Own;
        instruction.RegisterName = name;
        instruction.RegisterLength = length;
    }
}

bool Matches(const BitText& pattern, const BitText& code) noexcept {
    return pattern.size() == code.size() &&
           std::equal(pattern.begin(), pattern.end(), code.begin(),
                      [](char p, char c) { return p == 'X' || p == c; });
}

} // namespace

std::string_view AttributeValue(const TBSDLEntity& entity, std::string_view name) {
    for (const auto& [key, attribute] : entity.Attributes) {
        if (SameText(attribute->Name, name)) {
            return attribute->Value;
        }
    }
    return {};
}

// "name (pattern, pattern), name (pattern)"
TBsdlInstructions::TBsdlInstructions(const TBSDLEntity& entity) {
    std::string_view text = AttributeValue(entity, "INSTRUCTION_OPCODE");
    const auto length = static_cast<std::size_t>(std::max(entity.InstructionLength, 0));
    while (Instructions.size() < TBSDLEntity::MaximumRecords) {
        const std::size_t open = text.find('(');
        const std::size_t close = text.find(')', open == NotFound ? text.size() : open);
        if (close == NotFound) {
            break;
        }
        BsdlInstruction& instruction = Instructions.emplace_back();
        instruction.Name = UpperCase(Trim(text.substr(0, open)));
        instruction.Register = StandardRegister(instruction.Name);
        AddPatterns(text.substr(open + 1, close - open - 1), Instructions.size() - 1, length);
        const std::size_t next = text.find(',', close);
        text.remove_prefix(next == NotFound ? text.size() : next + 1);
    }
    ReadRegisterAccess(entity);
}

void TBsdlInstructions::AddPatterns(std::string_view text, std::size_t instruction,
                                    std::size_t length) {
    while (!text.empty()) {
        const std::size_t comma = text.find(',');
        BitText bits = UpperCase(WithoutBlanks(Trim(text.substr(0, comma))));
        if (bits.size() == length && bits.find_first_not_of("01X") == BitText::npos) {
            Patterns.push_back({std::move(bits), instruction});
        }
        text.remove_prefix(comma == NotFound ? text.size() : comma + 1);
    }
}

// The length of a register may stand at any of its mentions.
void TBsdlInstructions::ReadRegisterAccess(const TBSDLEntity& entity) {
    std::map<std::string, std::size_t> lengths;
    std::map<std::string, BsdlInstruction*> byName;
    for (BsdlInstruction& instruction : Instructions) {
        byName.emplace(instruction.Name, &instruction);
    }
    for (const auto& association : entity.RegisterAssociations) {
        const auto [name, length] = SplitRegister(association->Name);
        lengths[name] = std::max(lengths[name], length);
    }
    for (const auto& association : entity.RegisterAssociations) {
        const std::string name = SplitRegister(association->Name).first;
        for (const auto& entry : association->OpCodes) {
            const auto known = byName.find(UpperCase(entry.Name));
            if (known != byName.end()) {
                SetRegister(*known->second, name, lengths[name]);
            }
        }
    }
}

const BsdlInstruction& TBsdlInstructions::Decode(const BitText& code) const noexcept {
    if (code.find('0') == BitText::npos) {
        return Bypass;
    }
    const auto hit = std::find_if(Patterns.begin(), Patterns.end(),
                                  [&](const Pattern& p) { return Matches(p.Bits, code); });
    return hit != Patterns.end() ? Instructions[hit->Instruction] : Bypass;
}

BitText TBsdlInstructions::CodeOf(std::string_view name) const {
    for (const Pattern& pattern : Patterns) {
        if (Instructions[pattern.Instruction].Is(name)) {
            BitText code = pattern.Bits;
            std::replace(code.begin(), code.end(), 'X', '0');
            return code;
        }
    }
    return {};
}

} // namespace vorel::sim
