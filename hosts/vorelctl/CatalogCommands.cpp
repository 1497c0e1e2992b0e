// vendors, families and devices: what the driver modules of the installation know.
#include "hosts/vorelctl/Commands.h"
#include "hosts/vorelctl/Knowledge.h"
#include "hosts/vorelctl/Listing.h"
#include "hosts/vorelctl/Session.h"
#include "support/Text.h"

namespace vorel::host {

namespace {

constexpr const char* TypeWords = "FPGA, CPLD, PROM, PROC, SPROC, GPROC, Other";

std::vector<std::string> FamiliesOfVendor(IDeviceManager& manager, const std::string& vendor) {
    return NamesOf(
        [&](WideText& names) { return manager.GetFamiliesForVendor(ToWide(vendor), names); });
}

std::vector<std::string> DevicesOfFamily(IDeviceManager& manager, const std::string& family) {
    return NamesOf(
        [&](WideText& names) { return manager.GetDevicesOfFamily(ToWide(family), names); });
}

std::vector<std::string> Vendors(IDeviceManager& manager) {
    return NamesOf([&](WideText& names) { return manager.GetVendors(names); });
}

class TVendorsCommand final : public ICommand {
public:
    std::string_view Name() const override { return "vendors"; }
    std::string_view Usage() const override { return "[--json]"; }
    std::string_view Summary() const override { return "list the vendors of known devices"; }
    std::vector<TOption> Options() const override { return {JsonOption}; }
    ExitStatus Run(const TArguments& arguments) const override;
};

ExitStatus TVendorsCommand::Run(const TArguments& arguments) const {
    NeedWords(arguments, 0, "vendors [--json]");
    TSession session;
    TListing listing{{}, "vendors", {{"Vendor", "vendor"}}, {}};
    for (std::string& vendor : Vendors(session.Devices())) {
        listing.Rows.push_back({std::move(vendor)});
    }
    if (listing.Rows.empty()) {
        FailNotFound("No driver module declares a vendor. vorelctl cache status tells which "
                     "modules were read.");
    }
    PrintListing(listing, arguments.Has("--json"));
    return ExitStatus::Ok;
}

class TFamiliesCommand final : public ICommand {
public:
    std::string_view Name() const override { return "families"; }
    std::string_view Usage() const override { return "[--vendor V | --type T] [--json]"; }
    std::string_view Summary() const override { return "list the families of known devices"; }
    std::string_view Details() const override {
        return "Types: FPGA, CPLD, PROM, PROC (processor), SPROC and GPROC (soft and generic\n"
               "processors) and Other. Names and types are looked up without case.";
    }
    std::vector<TOption> Options() const override {
        return {{"--vendor", "V", "only the families of this vendor"},
                {"--type", "T", "only families with devices of this type"},
                JsonOption};
    }
    ExitStatus Run(const TArguments& arguments) const override;
};

std::vector<std::string> AllFamilies(IDeviceManager& manager) {
    std::vector<std::string> families;
    for (const std::string& vendor : Vendors(manager)) {
        for (std::string& family : FamiliesOfVendor(manager, vendor)) {
            families.push_back(std::move(family));
        }
    }
    if (families.empty()) {
        FailNotFound("No driver module declares a family. vorelctl cache status tells which "
                     "modules were read.");
    }
    return families;
}

std::vector<std::string> ChosenFamilies(IDeviceManager& manager, const TArguments& arguments) {
    const auto vendor = arguments.Find("--vendor");
    const auto type = arguments.Find("--type");
    if (vendor && type) {
        throw ECommandFailure(ExitStatus::WrongUsage, "Choose one of --vendor and --type.");
    }
    if (!vendor && !type) {
        return AllFamilies(manager);
    }
    std::vector<std::string> families =
        vendor ? FamiliesOfVendor(manager, *vendor) : NamesOf([&](WideText& names) {
            return manager.GetFamiliesForType(ToWide(*type), names);
        });
    if (families.empty() && vendor) {
        FailNotFound("No driver knows the vendor \"" + *vendor +
                     "\". vorelctl vendors lists the known ones.");
    }
    if (families.empty()) {
        FailNotFound("No known device has the type \"" + *type + "\". The types are " + TypeWords +
                     ".");
    }
    return families;
}

ExitStatus TFamiliesCommand::Run(const TArguments& arguments) const {
    NeedWords(arguments, 0, "families [--vendor V | --type T] [--json]");
    TSession session;
    IDeviceManager& manager = session.Devices();
    TListing listing{
        {},
        "families",
        {{"Family", "family"}, {"Vendor", "vendor"}, {"Type", "type"}, {"Devices", "devices"}},
        {}};
    for (const std::string& family : ChosenFamilies(manager, arguments)) {
        const std::vector<std::string> devices = DevicesOfFamily(manager, family);
        const std::optional<TDeviceEntry> first =
            devices.empty() ? std::nullopt : FindDevice(manager, devices.front());
        const TDeviceEntry entry = first.value_or(TDeviceEntry());
        listing.Rows.push_back(
            {family, entry.Vendor, entry.Type, static_cast<std::int64_t>(devices.size())});
    }
    PrintListing(listing, arguments.Has("--json"));
    return ExitStatus::Ok;
}

class TDevicesCommand final : public ICommand {
public:
    std::string_view Name() const override { return "devices"; }
    std::string_view Usage() const override { return "--family F [--json]"; }
    std::string_view Summary() const override { return "list the devices of a family"; }
    std::string_view Details() const override {
        return "Ids are shown as the drivers declare them; \"-\" for a device without one.";
    }
    std::vector<TOption> Options() const override {
        return {{"--family", "F", "the family, without case"}, JsonOption};
    }
    ExitStatus Run(const TArguments& arguments) const override;
};

ExitStatus TDevicesCommand::Run(const TArguments& arguments) const {
    NeedWords(arguments, 0, "devices --family F [--json]");
    const auto family = arguments.Find("--family");
    if (!family) {
        throw ECommandFailure(ExitStatus::WrongUsage, "devices needs --family.");
    }
    TSession session;
    TListing listing{{}, "devices", {{"Device", "device"}, {"Type", "type"}, {"Id", "id"}}, {}};
    for (std::string& device : DevicesOfFamily(session.Devices(), *family)) {
        const TDeviceEntry entry = FindDevice(session.Devices(), device).value_or(TDeviceEntry());
        listing.Rows.push_back({std::move(device), entry.Type,
                                entry.IdCode != 0 ? TValue(IdText(entry.IdCode)) : TValue()});
    }
    if (listing.Rows.empty()) {
        FailNotFound("No driver knows the family \"" + *family +
                     "\". vorelctl families lists the known ones.");
    }
    PrintListing(listing, arguments.Has("--json"));
    return ExitStatus::Ok;
}

} // namespace

const ICommand& VendorsCommand() {
    static const TVendorsCommand command;
    return command;
}

const ICommand& FamiliesCommand() {
    static const TFamiliesCommand command;
    return command;
}

const ICommand& DevicesCommand() {
    static const TDevicesCommand command;
    return command;
}

} // namespace vorel::host
