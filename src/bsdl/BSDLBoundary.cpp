// The lazy read of the boundary register.
#include "bsdl/BSDLEntity.h"

namespace vorel {

namespace {

constexpr std::size_t NotFound = std::string_view::npos;

// The ")" that belongs to the "(" at `open`.
std::size_t MatchingClose(std::string_view text, std::size_t open) noexcept {
    std::size_t depth = 0;
    for (std::size_t i = open; i < text.size(); ++i) {
        if (text[i] == '(') {
            ++depth;
        } else if (text[i] == ')' && --depth == 0) {
            return i;
        }
    }
    return NotFound;
}

} // namespace

const std::vector<TBoundaryCell*>& TBSDLEntity::GetBoundaryCells() {
    if (BoundaryState == TBoundaryState::Unread) {
        BoundaryState = TBoundaryState::Failed;
        BoundaryLength = ToInteger(ValueOf(BSDLKeyword("Boundary_Length")), 0);
        ReadBoundaryRegister(Trim(ValueOf(BSDLKeyword("Boundary_Register"))));
        PlaceBoundaryCells();
        BoundaryState = TBoundaryState::Read;
    }
    if (BoundaryState == TBoundaryState::Failed) {
        throw std::out_of_range("The boundary cells are not numbered from 0 without a gap");
    }
    return BoundaryCells;
}

// "number (cell), number (cell)"
void TBSDLEntity::ReadBoundaryRegister(std::string_view text) {
    std::size_t start = 0;
    while (start < text.size() && AllCells.size() < MaximumRecords) {
        const std::size_t open = text.find('(', start);
        const std::size_t close = open == NotFound ? NotFound : MatchingClose(text, open);
        if (close == NotFound) {
            return;
        }
        // The character in front of the parenthesis is the blank of the usual layout; it is dropped
        // whatever it is.
        const std::size_t length = open > start ? open - 1 - start : 0;
        const std::int32_t number = ToInteger(text.substr(start, length), -1);
        if (number < 0) {
            return;
        }
        AddBoundaryCell(number, Trim(text.substr(open + 1, close - open - 1)));
        const std::size_t comma = text.find(',', close);
        if (comma == NotFound) {
            return;
        }
        start = comma + 1;
        while (start < text.size() && text[start] == ' ') {
            ++start;
        }
    }
}

void TBSDLEntity::AddBoundaryCell(std::int32_t number, std::string_view text) {
    auto cell = std::make_unique<TBoundaryCell>(*this);
    cell->Number = number;
    TCommaText fields(text, Texts);
    std::string_view field;
    for (int position = 0; position < 7 && fields.Next(field); ++position) {
        switch (position) {
        case 0:
            cell->CellType = FindWord(BoundaryCellTypeNames, field);
            break;
        case 1:
            cell->PortName = field;
            break;
        case 2:
            cell->CellFunction = FindWord(BoundaryCellFunctionNames, field);
            break;
        case 3:
            cell->SafeBit = FindWord(BoundaryCellValueNames, field);
            break;
        case 4:
            cell->ControlCell = ToInteger(field, -1);
            break;
        case 5:
            cell->DisableValue = FindWord(BoundaryCellValueNames, field);
            break;
        default:
            cell->DisableResult = FindWord(BoundaryCellDisableNames, field);
        }
    }
    if (cell->PortName != "*") {
        cell->Pin = FindPin(cell->PortName);
    }
    if (TScanPin* pin = cell->Pin) {
        pin->Cells.push_back(cell.get());
        // A pin with a cell is no supply pin, whatever its name.
        if (pin->Function == PinFunction::Power || pin->Function == PinFunction::Ground) {
            pin->Function = PinFunction::Normal;
        }
    }
    AllCells.push_back(std::move(cell));
}

void TBSDLEntity::PlaceBoundaryCells() {
    BoundaryCells.assign(AllCells.size(), nullptr);
    for (const auto& cell : AllCells) {
        BoundaryCells.at(static_cast<std::size_t>(cell->Number)) = cell.get();
    }
    for (TBoundaryCell* cell : BoundaryCells) {
        if (cell == nullptr) {
            throw std::out_of_range("A boundary cell is missing");
        }
        if (cell->ControlCell >= 0) {
            cell->ControlCellObject = BoundaryCells.at(static_cast<std::size_t>(cell->ControlCell));
            if (cell->ControlCellObject == nullptr) {
                throw std::out_of_range("A control cell is missing");
            }
            cell->ControlCellObject->ControlledCellObject = cell;
        }
    }
}

} // namespace vorel
