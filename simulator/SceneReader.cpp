#include "simulator/SceneReader.h"

#include "bsdl/BSDLFile.h"
#include "bsdl/FileText.h"
#include "simulator/BsdlDevice.h"
#include "support/Text.h"

#include <algorithm>
#include <array>
#include <utility>

namespace vorel::sim {

namespace {

constexpr std::size_t MaxNameUnits = 126;
constexpr unsigned MaxBusyReads = 1'000'000;
constexpr std::size_t MaxTransfers = 1'000'000'000;
constexpr const char* FaultNames = "open, stuck_low, stuck_high or loop";
constexpr const char* DeviceItems =
    "id=HEX or id=none, ir=N, capture=BITS, idcode=BITS, kind=KIND, tdo=FAULT, bsdl=PATH, "
    "pin.PIN=LEVEL or xN";
constexpr std::string_view PinPrefix = "pin.";
constexpr std::string_view BsdlPrefix = "bsdl=";

// The lines of the connector as the cables of the shipped board files have them. The first is what
// a cable is without saying so.
struct ShippedBoard {
    const char* Name;
    CableWiring Wires;
    std::optional<CableWiring> BoardWires;
};

constexpr PortLine DataLine(unsigned bit) {
    return {PortRegister::Data, bit};
}
constexpr PortLine ControlLine(unsigned bit) {
    return {PortRegister::Control, bit};
}
constexpr PortLine StatusLine(unsigned bit) {
    return {PortRegister::Status, bit};
}

constexpr std::array<ShippedBoard, 3> ShippedBoards{{
    {"PlainHardChain", {DataLine(1), DataLine(2), DataLine(0), StatusLine(4)}, std::nullopt},
    {"ControlSignals", {ControlLine(0), ControlLine(2), DataLine(7), StatusLine(7)}, std::nullopt},
    {"MultiplexedBoard",
     {DataLine(5), DataLine(6), DataLine(4), StatusLine(5)},
     CableWiring{DataLine(1), DataLine(2), DataLine(0), StatusLine(4)}},
}};

std::string Quoted(std::string_view text) {
    std::string result(1, '"');
    return result.append(text).append(1, '"');
}

bool IsDigits(std::string_view text) noexcept {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

// "x40" in its number part; nothing for other items.
std::string_view RepeatOf(std::string_view item) noexcept {
    const bool repeat = item.size() > 1 && (item[0] == 'x' || item[0] == 'X');
    return repeat && IsDigits(item.substr(1)) ? item.substr(1) : std::string_view();
}

} // namespace

void TSceneReader::Fail(std::size_t line, const std::string& text) const {
    throw ESceneError(FileName + ":" + std::to_string(line) + ": " + text);
}

void TSceneReader::Read(std::string_view text, TScene& scene) {
    Scene = &scene;
    const TIniFile ini(text);
    const std::vector<std::size_t> foreign = ini.ForeignLines();
    if (!foreign.empty()) {
        Fail(foreign.front(), "a line \"[section]\", \"key = value\" or a comment is expected");
    }
    for (const TIniFile::Section& section : ini.Sections()) {
        ReadSection(section);
    }
    if (Target == nullptr) {
        Fail(1, "the scene has no pod and no cable; a section [pod] or [cable] is expected");
    }
    FinishTarget();
}

void TSceneReader::ReadSection(const TIniFile::Section& section) {
    const std::string kind = LowerCase(section.Name.substr(0, section.Name.find(' ')));
    if (kind == "pod") {
        BeginPod(section);
        return;
    }
    if (kind == "cable") {
        BeginCable(section);
        return;
    }
    const std::string name = LowerCase(section.Name);
    CheckOwner(section, name);
    if (name == "board") {
        Target->HasBoard = true;
        Chain = &Target->Board;
        ChainIsBoard = true;
        ReadKeys(section, &TSceneReader::ReadBoardKey, "device, tdo or busy_reads");
    } else if (name == "spi") {
        ReadKeys(section, &TSceneReader::ReadSpiKey, "device");
    } else {
        Chain = name == "hard" ? &Target->Hard : &Target->Soft;
        ChainIsBoard = false;
        ReadKeys(section, &TSceneReader::ReadChainKey, "device or tdo");
    }
    SectionsOfPod.insert(name);
}

// Whether the pod or cable that is being read can have this section.
void TSceneReader::CheckOwner(const TIniFile::Section& section, const std::string& name) const {
    static constexpr std::array<const char*, 4> Kinds{"board", "hard", "soft", "spi"};
    if (std::find(Kinds.begin(), Kinds.end(), name) == Kinds.end()) {
        Fail(section.Line, section.Name.empty()
                               ? "a section [pod] or [cable] is expected before the first key"
                               : "unknown section [" + section.Name +
                                     "]; pod, cable, board, hard, soft or spi is expected");
    }
    if (Target == nullptr) {
        Fail(section.Line, "a section [pod] or [cable] is expected before [" + section.Name + "]");
    }
    if (SectionsOfPod.contains(name)) {
        Fail(section.Line, "the pod or cable has a section [" + section.Name + "] already");
    }
    if (Pod != nullptr && (!Pod->Remote.empty() || Pod->Identity.Vendor != UsbIdentity{}.Vendor)) {
        Fail(section.Line, "only a pod with neither \"remote\" nor a foreign \"vendor\" has "
                           "sections of its own");
    }
    if (Cable != nullptr && !Cable->BoardWires && name != "hard") {
        Fail(section.Line, "without wires for a board the cable leads to a hard chain only; "
                           "board = MultiplexedBoard or board_wires is expected in [cable]");
    }
}

void TSceneReader::BeginTarget(const TIniFile::Section& section) {
    if (Target != nullptr) {
        FinishTarget();
    }
    if (Scene->Pods.size() + Scene->Cables.size() >= TScene::MaxPods) {
        Fail(section.Line,
             "a scene has at most " + std::to_string(TScene::MaxPods) + " pods and cables");
    }
    SectionsOfPod.clear();
    Pod = nullptr;
    Cable = nullptr;
}

void TSceneReader::BeginPod(const TIniFile::Section& section) {
    BeginTarget(section);
    Pod = &Scene->Pods.emplace_back();
    Target = Pod;
    Pod->Identity.SerialNumber = std::to_string(Scene->Pods.size());
    ReadKeys(section, &TSceneReader::ReadPodKey, "name, serial, product, vendor, unplug or remote");
}

void TSceneReader::BeginCable(const TIniFile::Section& section) {
    BeginTarget(section);
    Cable = &Scene->Cables.emplace_back();
    Target = Cable;
    Cable->Wires = ShippedBoards.front().Wires;
    ReadKeys(section, &TSceneReader::ReadCableKey, "address, board, wires or board_wires");
}

void TSceneReader::ReadKeys(const TIniFile::Section& section, KeyReader reader, const char* keys) {
    std::set<std::string> seen;
    for (const Entry& entry : section.Entries) {
        const std::string key = LowerCase(entry.Key);
        if (key != "device" && !seen.insert(key).second) {
            Fail(entry.Line, "the key " + Quoted(entry.Key) + " is given twice");
        }
        if (!(this->*reader)(entry)) {
            Fail(entry.Line, "unknown key " + Quoted(entry.Key) + " in [" + section.Name + "]; " +
                                 keys + " is expected");
        }
    }
}

// A board without a device line has the one controller that boards have.
void TSceneReader::FinishTarget() {
    SceneTarget& target = *Target;
    if (!target.HasBoard && !target.Spi.empty()) {
        Fail(SpiLine, "there are SPI devices; they need a section [board]");
    }
    if (!target.HasBoard && Cable != nullptr && !target.Soft.Devices.empty()) {
        Fail(1, "a cable leads to a soft chain through a board; a section [board] is expected");
    }
    if (target.HasBoard && target.Board.Devices.empty()) {
        SceneDevice controller;
        controller.Settings.Name = "Lumaplate";
        controller.Settings.Id = TBoardController::DefaultId;
        controller.Settings.IrLength = TBoardController::DefaultIrLength;
        target.Board.Devices.push_back(std::move(controller));
    }
}

bool TSceneReader::ReadPodKey(const Entry& entry) {
    UsbIdentity& identity = Pod->Identity;
    const std::string key = LowerCase(entry.Key);
    if (key == "name" || key == "serial") {
        if (entry.Value.empty() || ToWide(entry.Value).size() > MaxNameUnits) {
            Fail(entry.Line, Quoted(entry.Key) + " has to have 1 to 126 characters");
        }
        (key == "name" ? identity.ProductName : identity.SerialNumber) = entry.Value;
    } else if (key == "product" || key == "vendor") {
        const auto id = static_cast<std::uint16_t>(
            ReadHex(entry.Value, 0xFFFF, "a USB id of 1 to 4 hexadecimal digits", entry.Line));
        (key == "product" ? identity.Product : identity.Vendor) = id;
    } else if (key == "unplug") {
        Pod->Fault = ReadUnplug(entry);
    } else if (key == "remote") {
        const std::size_t colon = entry.Value.rfind(':');
        if (colon == std::string::npos || colon == 0) {
            Fail(entry.Line, "HOST:PORT is expected, not " + Quoted(entry.Value));
        }
        ReadNumber(entry.Value.substr(colon + 1), 1, 65535, "a port", entry.Line);
        Pod->Remote = entry.Value;
    } else {
        return false;
    }
    return true;
}

UsbFault TSceneReader::ReadUnplug(const Entry& entry) const {
    const std::vector<std::string> words = SplitCommaText(entry.Value);
    const bool comesBack = words.size() == 3 && SameText(words[2], "back");
    const bool isRead = !words.empty() && SameText(words[0], "read");
    if ((words.size() != 2 && !comesBack) || (!isRead && !SameText(words[0], "write"))) {
        Fail(entry.Line, "write N, read N, write N back or read N back is expected, not " +
                             Quoted(entry.Value));
    }
    UsbFault fault;
    fault.What = comesBack ? UsbFault::Effect::Replug : UsbFault::Effect::Unplug;
    fault.On = isRead ? UsbTransfer::Read : UsbTransfer::Write;
    fault.First = ReadNumber(words[1], 1, MaxTransfers, "the number of a transfer", entry.Line);
    return fault;
}

bool TSceneReader::ReadCableKey(const Entry& entry) {
    const std::string key = LowerCase(entry.Key);
    if (key == "address") {
        Cable->Address = static_cast<std::uint16_t>(
            ReadHex(entry.Value, 0xFFFF, "an address of 1 to 4 hexadecimal digits", entry.Line));
    } else if (key == "board") {
        const auto board =
            std::find_if(ShippedBoards.begin(), ShippedBoards.end(), [&](const auto& candidate) {
                return SameText(candidate.Name, entry.Value);
            });
        if (board == ShippedBoards.end()) {
            Fail(entry.Line,
                 "unknown board " + Quoted(entry.Value) +
                     "; PlainHardChain, ControlSignals or MultiplexedBoard is expected");
        }
        Cable->Wires = board->Wires;
        Cable->BoardWires = board->BoardWires;
    } else if (key == "wires") {
        Cable->Wires = ReadWiring(entry);
    } else if (key == "board_wires") {
        Cable->BoardWires = ReadWiring(entry);
    } else {
        return false;
    }
    return true;
}

CableWiring TSceneReader::ReadWiring(const Entry& entry) {
    CableWiring wiring;
    const std::array<std::pair<const char*, PortLine*>, 4> places{
        {{"tck", &wiring.Tck}, {"tms", &wiring.Tms}, {"tdi", &wiring.Tdi}, {"tdo", &wiring.Tdo}}};
    ItemsOfDevice.clear();
    for (const std::string& item : SplitCommaText(entry.Value)) {
        std::string key;
        std::string value;
        SplitItem(item, key, value, entry.Line);
        const auto place = std::find_if(places.begin(), places.end(),
                                        [&](const auto& known) { return key == known.first; });
        if (place == places.end()) {
            Fail(entry.Line, "unknown wire " + Quoted(item) +
                                 "; tck=LINE, tms=LINE, tdi=LINE and tdo=LINE are expected");
        }
        *place->second = ReadLine(value, key == "tdo", entry.Line);
    }
    if (ItemsOfDevice.size() != places.size()) {
        Fail(entry.Line, "tck=LINE, tms=LINE, tdi=LINE and tdo=LINE are expected");
    }
    return wiring;
}

PortLine TSceneReader::ReadLine(std::string_view text, bool isTdo, std::size_t line) const {
    const std::string lower = LowerCase(text);
    const bool digit = lower.size() == 2 && lower[1] >= '0' && lower[1] <= '7';
    const unsigned bit = digit ? static_cast<unsigned>(lower[1] - '0') : 0U;
    if (digit && isTdo && lower[0] == 's') {
        return {PortRegister::Status, bit};
    }
    if (digit && !isTdo && lower[0] == 'd') {
        return {PortRegister::Data, bit};
    }
    if (digit && !isTdo && lower[0] == 'c' && bit < 4) {
        return {PortRegister::Control, bit};
    }
    Fail(line, std::string(isTdo ? "S0 to S7 is" : "D0 to D7 or C0 to C3 is") + " expected, not " +
                   Quoted(text));
}

bool TSceneReader::ReadBoardKey(const Entry& entry) {
    if (SameText(entry.Key, "busy_reads")) {
        Target->BusyReads = static_cast<unsigned>(
            ReadNumber(entry.Value, 0, MaxBusyReads, "a number of reads", entry.Line));
        return true;
    }
    return ReadChainKey(entry);
}

bool TSceneReader::ReadChainKey(const Entry& entry) {
    if (SameText(entry.Key, "tdo")) {
        Chain->TdoFault = ReadFault(entry.Value, entry.Line);
        return true;
    }
    if (!SameText(entry.Key, "device")) {
        return false;
    }
    SceneDevice device = ReadDevice(entry, ChainIsBoard);
    DeviceCount += device.Count;
    if (DeviceCount > TScene::MaxDevices) {
        Fail(entry.Line, "a scene has at most " + std::to_string(TScene::MaxDevices) + " devices");
    }
    CellCount += device.Count * device.Cells;
    if (CellCount > TScene::MaxCells) {
        Fail(entry.Line, "the BSDL devices of a scene have at most " +
                             std::to_string(TScene::MaxCells) +
                             " boundary cells and instructions together");
    }
    if (device.Kind != SceneKind::Plain) {
        SoftDeviceCount += device.Count;
        if (device.Entity != nullptr) {
            Fail(entry.Line, "a device has a kind or a BSDL file, not both");
        }
        if (Chain != &Target->Soft || SoftDeviceCount > TScene::MaxSoftDevices) {
            Fail(entry.Line, "a device with a kind belongs on [soft], and a scene has at most " +
                                 std::to_string(TScene::MaxSoftDevices) + " of them");
        }
    }
    Chain->Devices.push_back(std::move(device));
    return true;
}

bool TSceneReader::ReadSpiKey(const Entry& entry) {
    if (!SameText(entry.Key, "device")) {
        return false;
    }
    const std::vector<std::string> items = ItemsOf(entry);
    std::string key;
    std::string value;
    if (items.size() == 2) {
        SplitItem(items[1], key, value, entry.Line);
    }
    if (key != "id") {
        Fail(entry.Line, "a label and id=HEX are expected for an SPI device");
    }
    SpiLine = entry.Line;
    std::vector<SceneSpiDevice>& devices = Target->Spi;
    if (devices.size() >= TBoard::MaxSpiDevices) {
        Fail(entry.Line, "a board has at most 32 SPI devices");
    }
    devices.push_back(
        {items[0], static_cast<std::uint32_t>(ReadHex(
                       value, 0xFFFFFF, "an id of 1 to 6 hexadecimal digits", entry.Line))});
    return true;
}

SceneDevice TSceneReader::ReadDevice(const Entry& entry, bool isController) {
    const std::vector<std::string> items = ItemsOf(entry);
    SceneDevice device;
    device.Settings.Name = items[0];
    device.Settings.IrLength = 0;
    // The other items change what the file says.
    for (std::size_t i = 1; i < items.size(); ++i) {
        if (SameText(std::string_view(items[i]).substr(0, BsdlPrefix.size()), BsdlPrefix)) {
            if (isController) {
                Fail(entry.Line, "a board controller cannot have a BSDL file");
            }
            ReadBsdl(device, std::string_view(items[i]).substr(BsdlPrefix.size()), entry.Line);
        }
    }
    for (std::size_t i = 1; i < items.size(); ++i) {
        ReadDeviceItem(device, items[i], entry.Line);
    }
    const bool complete = ItemsOfDevice.contains("id") && ItemsOfDevice.contains("ir");
    if (device.Entity == nullptr && !complete) {
        Fail(entry.Line,
             "device " + Quoted(items[0]) + " needs id=HEX or id=none, and ir=N; or bsdl=PATH");
    }
    CheckDevice(device, isController, entry.Line);
    return device;
}

// The items of a device line, the label first.
std::vector<std::string> TSceneReader::ItemsOf(const Entry& entry) {
    ItemsOfDevice.clear();
    std::vector<std::string> items = SplitCommaText(entry.Value);
    if (std::any_of(items.begin(), items.end(), [](const auto& item) { return item.empty(); })) {
        Fail(entry.Line, "an item is empty; one comma or blanks between two items are expected");
    }
    if (items.empty() || items[0].find('=') != std::string::npos) {
        Fail(entry.Line, "a label is expected as the first item of a device");
    }
    return items;
}

void TSceneReader::SplitItem(std::string_view item, std::string& key, std::string& value,
                             std::size_t line) {
    const std::size_t equals = item.find('=');
    key = LowerCase(item.substr(0, equals));
    value = equals == std::string_view::npos ? std::string() : std::string(item.substr(equals + 1));
    if (!ItemsOfDevice.insert(key).second) {
        Fail(line, Quoted(key) + " is given twice for one device");
    }
}

void TSceneReader::ReadDeviceItem(SceneDevice& device, std::string_view item, std::size_t line) {
    TapSettings& settings = device.Settings;
    if (const std::string_view repeat = RepeatOf(item); !repeat.empty()) {
        device.Count = ReadNumber(repeat, 1, TScene::MaxDevices, "a number of devices", line);
        return;
    }
    std::string key;
    std::string value;
    SplitItem(item, key, value, line);
    if (device.Entity != nullptr && (key == "ir" || key == "idcode")) {
        Fail(line, Quoted(key) + " of a device with a BSDL file comes from the file");
    }
    if (key == "id") {
        settings.Id.reset();
        if (!SameText(value, "none")) {
            settings.Id = static_cast<std::uint32_t>(ReadHex(
                value, 0xFFFFFFFF, "an IDCODE of 1 to 8 hexadecimal digits, or none", line));
        }
    } else if (key == "ir") {
        settings.IrLength = static_cast<unsigned>(
            ReadNumber(value, 1, TTapDevice::MaxIrLength, "an instruction register length", line));
    } else if (key == "capture") {
        settings.IrCapture = value;
    } else if (key == "idcode") {
        settings.IdcodeInstruction = value;
    } else if (key == "kind") {
        device.Kind = ReadKind(value, line);
    } else if (key == "tdo") {
        device.Fault = ReadFault(value, line);
    } else if (key.starts_with(PinPrefix)) {
        ReadPin(device, std::string_view(key).substr(PinPrefix.size()), value, line);
    } else if (key != "bsdl") {
        Fail(line,
             "unknown item " + Quoted(item) + " of a device; " + DeviceItems + " is expected");
    }
}

void TSceneReader::ReadPin(SceneDevice& device, std::string_view pin, std::string_view level,
                           std::size_t line) const {
    static constexpr std::array<std::pair<const char*, PinInput>, 3> Levels{
        {{"0", PinInput::Low}, {"1", PinInput::High}, {"flip", PinInput::Flip}}};
    if (device.Entity == nullptr) {
        Fail(line, "levels on pins need a device with bsdl=PATH");
    }
    for (const auto& [name, input] : Levels) {
        if (SameText(name, level)) {
            device.Pins.emplace_back(pin, input);
            return;
        }
    }
    Fail(line,
         "the level 0, 1 or flip is expected for pin " + Quoted(pin) + ", not " + Quoted(level));
}

void TSceneReader::ReadBsdl(SceneDevice& device, std::string_view path, std::size_t line) {
    if (path.empty()) {
        Fail(line, "the path of a BSDL file is expected behind bsdl=");
    }
    const auto file = ToPath(FileName).parent_path() / ToPath(path);
    device.Entity = LoadEntity(file.string(), line);
    device.Settings = TBsdlDevice::SettingsOf(*device.Entity, device.Settings.Name);
}

std::shared_ptr<TBSDLEntity> TSceneReader::LoadEntity(const std::string& path, std::size_t line) {
    const auto known = Entities.find(path);
    if (known != Entities.end()) {
        return known->second;
    }
    TBSDLFile file = ReadBsdlFile(path);
    if (!file.Readable) {
        Fail(line, "the BSDL file " + Quoted(path) + " cannot be read");
    }
    if (file.HadErrors()) {
        Fail(line, "the BSDL file " + Quoted(path) + " has an error in " + file.DescribeError());
    }
    if (file.Entity == nullptr) {
        Fail(line, "the BSDL file " + Quoted(path) + " has no entity in it");
    }
    return Entities.emplace(path, std::move(file.Entity)).first->second;
}

// The device itself knows what it accepts, so one is made for trial.
void TSceneReader::CheckDevice(SceneDevice& device, bool isController, std::size_t line) const {
    if (device.Settings.Id && (*device.Settings.Id & 1) == 0) {
        Fail(line, "the id of device " + Quoted(device.Settings.Name) +
                       " ends in a 0 bit; the lowest bit of an IDCODE is 1");
    }
    try {
        if (isController) {
            TBoardController(device.Settings, {});
        } else {
            const std::unique_ptr<TTapDevice> trial = device.Create();
            if (const auto* described = dynamic_cast<const TBsdlDevice*>(trial.get())) {
                device.Cells = described->BoundaryLength() + device.Entity->OpCodes.size();
            }
        }
    } catch (const EVorelError& error) {
        Fail(line, error.what());
    }
}

SceneKind TSceneReader::ReadKind(std::string_view text, std::size_t line) const {
    if (SameText(text, "processor")) {
        return SceneKind::Processor;
    }
    if (SameText(text, "memory")) {
        return SceneKind::Memory;
    }
    Fail(line, "unknown kind " + Quoted(text) + "; processor or memory is expected");
}

WireFault TSceneReader::ReadFault(std::string_view text, std::size_t line) const {
    static constexpr std::array<std::pair<const char*, WireFault>, 4> Faults{
        {{"open", WireFault::Open},
         {"stuck_low", WireFault::StuckLow},
         {"stuck_high", WireFault::StuckHigh},
         {"loop", WireFault::Loop}}};
    for (const auto& [name, fault] : Faults) {
        if (SameText(name, text)) {
            return fault;
        }
    }
    Fail(line, "unknown fault " + Quoted(text) + "; " + FaultNames + " is expected");
}

std::uint64_t TSceneReader::ReadHex(std::string_view text, std::uint64_t largest, const char* what,
                                    std::size_t line) const {
    const bool digits = text.find_first_not_of("0123456789abcdefABCDEF") == std::string_view::npos;
    const auto value = digits ? ParseHex(text) : std::nullopt;
    if (!value || *value > largest) {
        Fail(line, std::string(what) + " is expected, not " + Quoted(text));
    }
    return *value;
}

std::size_t TSceneReader::ReadNumber(std::string_view text, std::size_t smallest,
                                     std::size_t largest, const char* what,
                                     std::size_t line) const {
    const auto value = IsDigits(text) ? ParseDecimal(text) : std::nullopt;
    if (!value || static_cast<std::size_t>(*value) < smallest ||
        static_cast<std::size_t>(*value) > largest) {
        Fail(line, std::string(what) + " from " + std::to_string(smallest) + " to " +
                       std::to_string(largest) + " is expected, not " + Quoted(text));
    }
    return static_cast<std::size_t>(*value);
}

} // namespace vorel::sim
