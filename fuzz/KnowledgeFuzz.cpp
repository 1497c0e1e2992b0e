// Text files of the installation and the user: families, aliases, mappings, version texts, the
// tables of parts.
#include "drivers/PartTable.h"
#include "knowledge/HostVersion.h"
#include "knowledge/JtagAliases.h"
#include "knowledge/Manage_DeviceFamilies.h"
#include "knowledge/Manage_GenericDevices.h"
#include "knowledge/SQLiteDatabase.h"
#include "knowledge/SQLiteTable.h"
#include "support/IniFile.h"
#include "support/Text.h"

#include <cstdlib>

namespace {

void Require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

void ReadMappings(std::string_view text) {
    vorel::TMappingList list;
    list.ReadIni(text);
    for (const auto& mapping : list.Items()) {
        static_cast<void>(mapping->GetOtherBSDLFiles(1));
    }
    // What is written comes back: every mapping, in the same order.
    vorel::TMappingList again;
    again.ReadIni(list.WriteIni(text));
    Require(again.Items().size() >= list.Items().size());
    for (std::size_t i = 0; i < list.Items().size(); ++i) {
        Require(again.Items()[i]->GetIdCode() == list.Items()[i]->GetIdCode());
    }
}

void ReadParts(const std::string& text) {
    const std::vector<std::string> lines = vorel::SplitLines(text);
    std::vector<const char*> pointers;
    for (const std::string& line : lines) {
        pointers.push_back(line.c_str());
    }
    const vorel::TPartTable table(pointers);
    for (const vorel::TPartVariant& variant : table.GetVariants()) {
        static_cast<void>(table.NameOf(variant));
    }
}

void QuoteAsValue(const std::string& text) {
    static vorel::TSQLiteDatabase database(":memory:");
    if (text.find('\0') == std::string::npos) {
        const vorel::TSQLiteTable table =
            database.GetTable("SELECT " + vorel::QuoteText(text) + " AS v");
        Require(table.FieldAsString("v") == text);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    static_cast<void>(vorel::ReadFamilies(text));
    static_cast<void>(vorel::TJtagAliases(text));
    static_cast<void>(vorel::VersionInText(text));
    static_cast<void>(vorel::FindParameter(text, "KEY"));
    static_cast<void>(vorel::TIniFile(text).ToText());
    ReadMappings(text);
    ReadParts(text);
    QuoteAsValue(text);
    return 0;
}
