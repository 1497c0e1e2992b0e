// What the instructions of a device with a BSDL description select (IEEE 1149.1).
//
// All patterns of INSTRUCTION_OPCODE count, and X in one stands for either bit. REGISTER_ACCESS
// says which register an instruction selects; for those that it does not name the standard's own
// meaning holds, and any other one selects BYPASS. All ones is BYPASS whatever the file says.
#pragma once

#include "bsdl/BSDLEntity.h"

#include <string>
#include <vector>

namespace vorel::sim {

enum class BsdlRegister : std::uint8_t { Bypass, Boundary, DeviceId, UserCode, Own };

struct BsdlInstruction {
    std::string Name; // upper case
    BsdlRegister Register = BsdlRegister::Bypass;
    // A register of the device's own: its name without the length, upper case, and its bits.
    std::string RegisterName;
    std::size_t RegisterLength = 0;

    bool Is(std::string_view name) const noexcept { return Name == name; }
};

class TBsdlInstructions final {
public:
    // Longest register of a device's own; a longer one counts as unknown.
    static constexpr std::size_t MaxOwnLength = 65'536;

    // Keeps nothing of the entity.
    explicit TBsdlInstructions(const TBSDLEntity& entity);

    // The first instruction in the order of the file one of whose patterns matches; BYPASS when
    // there is none.
    const BsdlInstruction& Decode(const BitText& code) const noexcept;
    // The first pattern of an instruction (upper case) with X as 0; empty when it has none.
    BitText CodeOf(std::string_view name) const;

private:
    struct Pattern {
        BitText Bits; // 0, 1 and X
        std::size_t Instruction;
    };

    void AddPatterns(std::string_view text, std::size_t instruction, std::size_t length);
    void ReadRegisterAccess(const TBSDLEntity& entity);

    std::vector<BsdlInstruction> Instructions;
    std::vector<Pattern> Patterns;
    BsdlInstruction Bypass{"BYPASS", BsdlRegister::Bypass, {}, 0};
};

// The value of the attribute that counts of those with this name; empty without one.
std::string_view AttributeValue(const TBSDLEntity& entity, std::string_view name);

} // namespace vorel::sim
