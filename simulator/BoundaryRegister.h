// The boundary register of a device with a BSDL description, and the pins around it (IEEE 1149.1).
//
// A pin's level is what the register drives onto it, else what is set from outside, else 0. A
// capture takes
//   - into input, clock, observing and bidirectional cells the level of their pin,
//   - into output cells the level of their pin (the core's, which is set like one from outside), or
//     their own value while the register drives,
//   - into control and internal cells, and cells without a pin, their own value.
// An update gives the cells their values; those of output and bidirectional cells reach the pins
// while the register drives, unless their control cell holds the disabling value. A pin whose
// output is disabled counts as released, whatever pull the description tells of. At power-up the
// cells hold their safe values, X being 0.
//
// A description whose cells are not numbered 0 to n-1 gives a register of BOUNDARY_LENGTH bits that
// keeps what was shifted in and has no pins.
//
// Pins go by package number or by port name, without case; where one text is both, the number
// counts. One bit of a vector port goes by the text of its cells, "A(3)". Only pins that a cell
// names are known.
#pragma once

#include "bsdl/BSDLEntity.h"
#include "simulator/DataRegister.h"
#include "simulator/Wires.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace vorel::sim {

// What a pin is set to from outside. Flip: low at first, the other level after each capture.
enum class PinInput : std::uint8_t { Low, High, Flip };

class TBoundaryRegister final : public TBitRegister {
public:
    // The register that `entity` describes, which is not kept; null when it describes none of 1 to
    // MaxLength bits.
    static std::unique_ptr<TBoundaryRegister> Create(TBSDLEntity& entity);

    // EVorelError for a pin that no cell names.
    void SetPin(std::string_view pin, PinInput input);
    // What the register drives onto a pin now. EVorelError as above.
    Level PinDriven(std::string_view pin) const;

    // Whether the instruction in effect connects the cells to the pins.
    void SetDriving(bool driving) noexcept { Driving = driving; }
    // Test-Logic-Reset: the control cells that know a reset take their disabling values.
    void Reset() noexcept;

    void Capture() override;
    void Update() override;

private:
    enum class CellKind : std::uint8_t { Own, Observe, Output, Both };
    static constexpr std::size_t None = static_cast<std::size_t>(-1);

    struct Cell {
        CellKind Kind = CellKind::Own;
        std::size_t Pin = None;
        std::size_t Control = None;
        bool Disables = false; // value of the control cell that disables this one
        bool HasReset = false;
        bool ResetValue = false;
        bool Value = false;
    };
    struct Pin {
        bool Level = false;
        bool Flips = false;
        std::vector<std::size_t> Drivers; // cells
    };
    using TPinIndex = std::map<std::string, std::size_t, std::less<>>;

    using TBitRegister::TBitRegister;

    void AddCells(const std::vector<TBoundaryCell*>& cells);
    std::size_t PinOf(const TBoundaryCell& cell);
    std::size_t FindPin(std::string_view pin) const;
    Level DrivenBy(const Pin& pin) const;
    bool LevelOf(const Pin& pin) const;
    bool CapturedBy(const Cell& cell) const;

    std::vector<Cell> Cells;
    std::vector<Pin> Pins;
    TPinIndex ByNumber; // keys upper case
    TPinIndex ByName;
    std::vector<std::size_t> Flipping;
    bool Driving = false;
};

} // namespace vorel::sim
