// device and id: one device's data sheet, and what a JTAG id stands for.
#include "hosts/kit/PlainHost.h"
#include "hosts/vorelctl/Commands.h"
#include "hosts/vorelctl/Knowledge.h"
#include "hosts/vorelctl/Listing.h"
#include "hosts/vorelctl/Makers.h"
#include "hosts/vorelctl/Session.h"
#include "knowledge/JtagAliases.h"
#include "knowledge/JtagId.h"
#include "knowledge/TextFile.h"
#include "support/Errors.h"
#include "support/Text.h"
#include "vorel/Driver.h"

#include <algorithm>

namespace vorel::host {

namespace {

constexpr std::string_view GenericFamily = "Generic";

// Takes facts from a driver, in the order in which it is asked.
class TDataSheet {
public:
    explicit TDataSheet(IVorelDriver& driver) : Driver(driver) {}

    void Add(const char* label, Status (IVorelDriver::*operation)(WideText&) noexcept) {
        AddValue(label, Text(operation));
    }
    // A negative number says that the driver does not know.
    void Add(const char* label, Status (IVorelDriver::*operation)(std::int32_t&) noexcept) {
        std::int32_t number = -1;
        Check((Driver.*operation)(number), label);
        AddValue(label, number >= 0 ? TValue(std::int64_t{number}) : TValue());
    }
    void AddFlag(const char* label, Status (IVorelDriver::*operation)(Bool32&) noexcept) {
        Bool32 flag = False32;
        Check((Driver.*operation)(flag), label);
        AddValue(label, flag != False32);
    }
    void AddValue(const char* label, TValue value) {
        Facts.push_back({label, KeyOfLabel(label), std::move(value)});
    }
    std::string Text(Status (IVorelDriver::*operation)(WideText&) noexcept) {
        WideText text;
        Check((Driver.*operation)(text), "Asking a driver");
        return ToUtf8(text);
    }
    std::vector<TFact> Take() { return std::move(Facts); }

private:
    IVorelDriver& Driver;
    std::vector<TFact> Facts;
};

// What the capacity of a device of this type counts; null when it is not shown.
const char* CapacityLabel(const TDeviceEntry& entry) {
    if (SameText(entry.Type, "CPLD")) {
        return "Macrocells";
    }
    if (SameText(entry.Type, "FPGA")) {
        return entry.Vendor == "Altera"   ? "Altera Logic Elements"
               : entry.Vendor == "Xilinx" ? "Xilinx Logic Cells"
                                          : nullptr;
    }
    return SameText(entry.Type, "Other") ? nullptr : "Memory Size";
}

std::vector<std::string> StandardsOf(std::string commaText) {
    std::erase(commaText, '"');
    std::vector<std::string> standards;
    for (std::size_t start = 0; start < commaText.size();) {
        const std::size_t comma = std::min(commaText.find(',', start), commaText.size());
        standards.emplace_back(Trim(std::string_view(commaText).substr(start, comma - start)));
        start = comma + 1;
    }
    return standards;
}

std::vector<TFact> DataSheetOf(IVorelDriver& driver, const TDeviceEntry& entry) {
    TDataSheet sheet(driver);
    sheet.Add("Device Name", &IVorelDriver::GetDeviceName);
    sheet.Add("Vendor", &IVorelDriver::GetVendor);
    sheet.Add("Family", &IVorelDriver::GetFamily);
    sheet.Add("Package", &IVorelDriver::GetPackage);
    sheet.Add("Speed Grade", &IVorelDriver::GetSpeedGrade);
    sheet.Add("Temperature Grade", &IVorelDriver::GetTemperatureGrade);
    sheet.Add("Pin Count", &IVorelDriver::GetPinCount);
    sheet.Add("I/O Pin Count", &IVorelDriver::GetIoPinCount);
    if (const char* const capacity = CapacityLabel(entry)) {
        sheet.Add(capacity, &IVorelDriver::GetCapacity);
    }
    sheet.Add("Differential Pair Count", &IVorelDriver::GetDifferentialPairs);
    sheet.Add("High Speed Differential Pair Count", &IVorelDriver::GetHighSpeedPairs);
    sheet.Add("Embedded RAM (K)", &IVorelDriver::GetEmbeddedRam);
    sheet.Add("DSP Multipliers (18x18)", &IVorelDriver::GetDspMultipliers);
    sheet.Add("Clock Managers", &IVorelDriver::GetClockManagers);
    sheet.Add("Global Clock Resources", &IVorelDriver::GetGlobalClocks);
    sheet.Add("Configuration Memory Required", &IVorelDriver::GetConfigMemory);
    sheet.AddFlag("On Chip Termination Support", &IVorelDriver::GetOnChipTermination);
    sheet.AddValue("Supported I/O Standards",
                   StandardsOf(sheet.Text(&IVorelDriver::GetAttributeText36)));
    return sheet.Take();
}

class TDeviceCommand final : public ICommand {
public:
    std::string_view Name() const override { return "device"; }
    std::string_view Usage() const override { return "NAME [--json]"; }
    std::string_view Summary() const override { return "show the data sheet of a device"; }
    std::string_view Details() const override {
        return "The name is looked up without case. \"-\" is what its driver does not know.";
    }
    std::vector<TOption> Options() const override { return {JsonOption}; }
    ExitStatus Run(const TArguments& arguments) const override;
};

ExitStatus TDeviceCommand::Run(const TArguments& arguments) const {
    const std::string& name = NeedWords(arguments, 1, "device NAME [--json]").front();
    TSession session;
    const std::optional<TDeviceEntry> entry = FindDevice(session.Devices(), name);
    if (!entry) {
        FailNotFound("No driver knows the device \"" + name +
                     "\". vorelctl families lists the families, vorelctl devices --family F the "
                     "devices of one.");
    }
    IVorelDriver* driver = nullptr;
    Check(session.Devices().GetDriverForDevice(ToWide(name), driver), "Asking for a driver");
    if (driver == nullptr) {
        throw ECommandFailure(ExitStatus::EnvironmentFault,
                              "The driver module " + entry->Module + " declares \"" + name +
                                  "\" but cannot be used. vorelctl cache rebuild reads all "
                                  "modules again.");
    }
    PrintListing({DataSheetOf(*driver, *entry), "", {}, {}}, arguments.Has("--json"));
    return ExitStatus::Ok;
}

class TIdCommand final : public ICommand {
public:
    std::string_view Name() const override { return "id"; }
    std::string_view Usage() const override { return "HEX [--json]"; }
    std::string_view Summary() const override { return "tell which devices a JTAG id stands for"; }
    std::string_view Details() const override {
        return "The mask shows the bits that tell parts apart: version bits do not, except for\n"
               "manufacturer 110. An id that no driver knows counts as a generic device, about\n"
               "which vorelctl mapping says more.\n"
               "Exit status: 0 a driver knows the id, 1 none does.";
    }
    std::vector<TOption> Options() const override { return {JsonOption}; }
    ExitStatus Run(const TArguments& arguments) const override;
};

std::uint32_t AliasOf(std::uint32_t id) {
    const std::string path = (TInstallation::OfThisProgram().System() / "JTAG_ALIAS.txt").string();
    return TJtagAliases(ReadTextFile(path).value_or("")).Resolve(id);
}

std::vector<TFact> FactsOfId(std::uint32_t id) {
    const std::uint32_t alias = AliasOf(id);
    const std::string maker = MakerName(ManufacturerOf(id));
    return {
        {"Id", "id", IdText(id)},
        {"Mask", "mask", IdText(MaskedIdCode(0xF0000000U | id) | 0x0FFFFFFFU)},
        {"Masked id", "masked_id", IdText(MaskedIdCode(id))},
        {"Alias of", "alias_of", alias != id ? TValue(IdText(alias)) : TValue()},
        {"Manufacturer", "manufacturer", "0x" + ToHex(ManufacturerOf(id), 3)},
        {"Maker", "maker", maker.empty() ? TValue() : TValue(maker)},
        {"Part", "part", "0x" + ToHex((id >> 12U) & 0xFFFFU, 4)},
        {"Version", "version", static_cast<std::int64_t>(id >> 28U)},
    };
}

ExitStatus TIdCommand::Run(const TArguments& arguments) const {
    const std::uint32_t id = ParseId(NeedWords(arguments, 1, "id HEX [--json]").front());
    TSession session;
    IDeviceManager& manager = session.Devices();
    TListing listing{FactsOfId(id),
                     "devices",
                     {{"Device", "device"}, {"Family", "family"}, {"Vendor", "vendor"}},
                     {}};
    bool known = false;
    for (std::string& name :
         NamesOf([&](WideText& names) { return manager.DevicesForJtagId(id, names); })) {
        const TDeviceEntry entry = FindDevice(manager, name).value_or(TDeviceEntry());
        known = known || !SameText(entry.Family, GenericFamily);
        listing.Rows.push_back({std::move(name), entry.Family, entry.Vendor});
    }
    listing.Facts.push_back({"Known", "known", known});
    PrintListing(listing, arguments.Has("--json"));
    return known ? ExitStatus::Ok : ExitStatus::NothingFound;
}

} // namespace

const ICommand& DeviceCommand() {
    static const TDeviceCommand command;
    return command;
}

const ICommand& IdCommand() {
    static const TIdCommand command;
    return command;
}

} // namespace vorel::host
