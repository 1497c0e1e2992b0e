#include "knowledge/VorelCache.h"

#include "knowledge/JtagId.h"
#include "support/Text.h"

namespace vorel {

namespace {

std::uint32_t IdFromText(std::string_view text) {
    return static_cast<std::uint32_t>(ParseDecimal(text).value_or(0));
}

std::string MaskedIdText(std::uint32_t idCode) {
    return std::to_string(MaskedIdCode(idCode));
}

} // namespace

TSQLiteTable TModulePathLookupCache::Select(std::string_view statement, std::string_view value) {
    return Database->GetTable(std::string(statement) + QuoteText(value));
}

// Only the file name of a stored path counts: a database never leads out of the System folder.
std::string TModulePathLookupCache::ModulePath(std::string_view fileName) const {
    return SystemDirectory + "/" + std::string(FileNameOf(fileName));
}

std::string TModulePathLookupCache::FirstModulePath(std::string_view statement,
                                                    std::string_view value) {
    const TSQLiteTable table = Select(statement, value);
    return table.Eof() ? std::string() : ModulePath(table.FieldAsString(std::size_t{0}));
}

std::vector<std::string> TModulePathLookupCache::ListOf(const std::string& statement) {
    std::vector<std::string> list;
    for (TSQLiteTable table = Database->GetTable(statement); !table.Eof(); table.Next()) {
        list.push_back(table.FieldAsString(std::size_t{0}));
    }
    return list;
}

std::string TModulePathLookupCache::ModulePathForDevice(std::string_view device) {
    return FirstModulePath("SELECT Path FROM tblVorelCache WHERE Device = ", device);
}

int TModulePathLookupCache::ModuleCountForId(std::uint32_t idCode) {
    const TSQLiteTable table =
        Database->GetTable("SELECT COUNT(DISTINCT Path) FROM tblVorelCache WHERE MaskedIdCode = " +
                           MaskedIdText(idCode));
    return table.Eof() ? 0 : static_cast<int>(table.FieldAsInteger(0));
}

std::string TModulePathLookupCache::ModulePathForId(std::uint32_t idCode, int index) {
    const std::vector<std::string> paths = ListOf(
        "SELECT DISTINCT Path FROM tblVorelCache WHERE MaskedIdCode = " + MaskedIdText(idCode));
    const auto position = static_cast<std::size_t>(index);
    return index < 0 || position >= paths.size() ? std::string() : ModulePath(paths[position]);
}

std::vector<std::string> TModulePathLookupCache::Vendors() {
    return ListOf("SELECT DISTINCT Vendor FROM tblVorelCache");
}

std::vector<std::string> TModulePathLookupCache::FamiliesOfVendor(std::string_view vendor) {
    return ListOf("SELECT DISTINCT Family FROM tblVorelCache WHERE Vendor = " + QuoteText(vendor));
}

std::vector<std::string> TModulePathLookupCache::FamiliesOfType(std::string_view type) {
    return ListOf("SELECT DISTINCT Family FROM tblVorelCache WHERE Type = " + QuoteText(type));
}

std::vector<std::string> TModulePathLookupCache::DevicesOfFamily(std::string_view family) {
    return ListOf("SELECT DISTINCT Device FROM tblVorelCache WHERE Family = " + QuoteText(family));
}

std::string TModulePathLookupCache::ModulePathForFamily(std::string_view family) {
    return FirstModulePath("SELECT Path FROM tblVorelCache WHERE Family = ", family);
}

std::optional<TDeviceRow> TModulePathLookupCache::DeviceInfo(std::string_view device) {
    const TSQLiteTable table = Select("SELECT * FROM tblVorelCache WHERE Device = ", device);
    if (table.Eof()) {
        return std::nullopt;
    }
    TDeviceRow row;
    row.Path = table.FieldAsString("Path");
    row.Vendor = table.FieldAsString("Vendor");
    row.Family = table.FieldAsString("Family");
    row.Display = table.FieldAsString("Display");
    row.Type = table.FieldAsString("Type");
    row.IdCode = IdFromText(table.FieldAsString("IdCode"));
    row.MaskedIdCode = IdFromText(table.FieldAsString("MaskedIdCode"));
    return row;
}

std::string TModulePathLookupCache::GetVersion() {
    const TSQLiteTable table = Database->GetTable("SELECT Version FROM tblsystemInfo WHERE ID = 1");
    return table.Eof() ? std::string() : table.FieldAsString(std::size_t{0});
}

} // namespace vorel
