#include "simulator/BoundaryRegister.h"

#include "support/Errors.h"
#include "support/Text.h"

#include <algorithm>
#include <stdexcept>

namespace vorel::sim {

namespace {

std::string_view FunctionOf(const TBoundaryCell& cell) {
    return BoundaryCellFunctionNames[static_cast<std::size_t>(cell.CellFunction)];
}

bool IsOne(std::int32_t value) {
    return std::string_view(BoundaryCellValueNames[static_cast<std::size_t>(value)]) == "1";
}

// The cells, or none when they are out of order.
std::vector<TBoundaryCell*> CellsOf(TBSDLEntity& entity) {
    try {
        return entity.GetBoundaryCells();
    } catch (const std::out_of_range&) {
        return {};
    }
}

} // namespace

std::unique_ptr<TBoundaryRegister> TBoundaryRegister::Create(TBSDLEntity& entity) {
    const std::vector<TBoundaryCell*> cells = CellsOf(entity);
    const std::size_t length =
        cells.empty() ? static_cast<std::size_t>(std::max(entity.BoundaryLength, 0)) : cells.size();
    if (length < 1 || length > MaxLength) {
        return nullptr;
    }
    std::unique_ptr<TBoundaryRegister> result(new TBoundaryRegister(length));
    result->AddCells(cells);
    return result;
}

void TBoundaryRegister::AddCells(const std::vector<TBoundaryCell*>& cells) {
    for (const TBoundaryCell* source : cells) {
        const std::string_view function = FunctionOf(*source);
        Cell cell;
        cell.Value = IsOne(source->SafeBit);
        cell.Disables = IsOne(source->DisableValue);
        cell.Control =
            source->ControlCell >= 0 ? static_cast<std::size_t>(source->ControlCell) : None;
        if (function == "ControlR" && source->ControlledCellObject != nullptr) {
            cell.HasReset = true;
            cell.ResetValue = IsOne(source->ControlledCellObject->DisableValue);
        }
        const bool own = function.starts_with("Control") || function == "Internal";
        if (!own && source->PortName != "*") {
            cell.Pin = PinOf(*source);
            cell.Kind = function.starts_with("Output") ? CellKind::Output
                        : function == "BiDir"          ? CellKind::Both
                                                       : CellKind::Observe;
        }
        if (cell.Kind == CellKind::Output || cell.Kind == CellKind::Both) {
            Pins[cell.Pin].Drivers.push_back(Cells.size());
        }
        Cells.push_back(cell);
    }
    Reset();
}

std::size_t TBoundaryRegister::PinOf(const TBoundaryCell& cell) {
    const auto [place, isNew] = ByName.emplace(UpperCase(cell.PortName), Pins.size());
    if (isNew) {
        Pins.emplace_back();
        if (cell.Pin != nullptr && !cell.Pin->Number.empty()) {
            ByNumber.emplace(UpperCase(cell.Pin->Number), place->second);
        }
    }
    return place->second;
}

std::size_t TBoundaryRegister::FindPin(std::string_view pin) const {
    const std::string key = UpperCase(pin);
    for (const TPinIndex* index : {&ByNumber, &ByName}) {
        const auto hit = index->find(key);
        if (hit != index->end()) {
            return hit->second;
        }
    }
    throw EVorelError(StatusBadArgument,
                      "No boundary cell belongs to a pin \"" + std::string(pin) + "\"");
}

void TBoundaryRegister::SetPin(std::string_view pin, PinInput input) {
    const std::size_t index = FindPin(pin);
    Pins[index].Level = input == PinInput::High;
    if (input == PinInput::Flip && !Pins[index].Flips) {
        Flipping.push_back(index);
    } else if (input != PinInput::Flip) {
        std::erase(Flipping, index);
    }
    Pins[index].Flips = input == PinInput::Flip;
}

Level TBoundaryRegister::PinDriven(std::string_view pin) const {
    return DrivenBy(Pins[FindPin(pin)]);
}

void TBoundaryRegister::Reset() noexcept {
    for (Cell& cell : Cells) {
        cell.Value = cell.HasReset ? cell.ResetValue : cell.Value;
    }
}

Level TBoundaryRegister::DrivenBy(const Pin& pin) const {
    if (!Driving) {
        return Level::Released;
    }
    for (const std::size_t driver : pin.Drivers) {
        const Cell& cell = Cells[driver];
        if (cell.Control == None || Cells[cell.Control].Value != cell.Disables) {
            return ToLevel(cell.Value);
        }
    }
    return Level::Released;
}

bool TBoundaryRegister::LevelOf(const Pin& pin) const {
    const Level driven = DrivenBy(pin);
    return driven == Level::Released ? pin.Level : driven == Level::High;
}

bool TBoundaryRegister::CapturedBy(const Cell& cell) const {
    const bool own = cell.Kind == CellKind::Own || (cell.Kind == CellKind::Output && Driving);
    return own ? cell.Value : LevelOf(Pins[cell.Pin]);
}

void TBoundaryRegister::Capture() {
    if (Cells.empty()) {
        return;
    }
    BitText bits(Cells.size(), '0');
    for (std::size_t i = 0; i < Cells.size(); ++i) {
        if (CapturedBy(Cells[i])) {
            bits[bits.size() - 1 - i] = '1';
        }
    }
    Load(bits);
    for (const std::size_t index : Flipping) {
        Pins[index].Level = !Pins[index].Level;
    }
}

void TBoundaryRegister::Update() {
    const BitText bits = Text();
    for (std::size_t i = 0; i < Cells.size(); ++i) {
        Cells[i].Value = bits[bits.size() - 1 - i] == '1';
    }
}

} // namespace vorel::sim
