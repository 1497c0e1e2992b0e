// The mappings of all ids and their form in an ini text.
#include "knowledge/Manage_GenericDevices.h"
#include "support/IniFile.h"
#include "support/Text.h"

namespace vorel {

namespace {

constexpr int LinkLimit = 1000;
constexpr std::int64_t InstructionLengthLimit = 0xFFFF;
constexpr const char* SectionStem = "JTAGMapping";

// The keys of all sections, those of the same name together, for reading large texts quickly.
class TIniIndex {
public:
    explicit TIniIndex(std::string_view text) {
        for (TIniFile::Section& section : TIniFile(text).Sections()) {
            TKeys& keys = Sections[LowerCase(section.Name)];
            for (TIniFile::Entry& entry : section.Entries) {
                keys.try_emplace(LowerCase(entry.Key), std::move(entry.Value));
            }
        }
    }

    bool Enter(const std::string& section) {
        const auto found = Sections.find(LowerCase(section));
        Keys = found == Sections.end() ? nullptr : &found->second;
        return Keys != nullptr;
    }

    const std::string* Find(const std::string& key) const {
        const auto found = Keys->find(LowerCase(key));
        return found == Keys->end() ? nullptr : &found->second;
    }

    std::string Text(const std::string& key) const {
        const std::string* value = Find(key);
        return value == nullptr ? std::string() : *value;
    }

    std::int64_t Number(const std::string& key, std::int64_t fallback) const {
        return ParseDecimal(Text(key)).value_or(fallback);
    }

private:
    using TKeys = std::unordered_map<std::string, std::string>;
    std::unordered_map<std::string, TKeys> Sections;
    const TKeys* Keys = nullptr;
};

std::string Numbered(const char* stem, int number) {
    return stem + std::to_string(number);
}

// 0 for a text that is no id.
std::uint32_t IdCodeOf(std::string_view text) {
    text = Trim(text);
    if (text.starts_with('$')) {
        text.remove_prefix(1);
    } else if (text.starts_with("0x") || text.starts_with("0X")) {
        text.remove_prefix(2);
    }
    const std::uint64_t value = ParseHex(text).value_or(0);
    return value > 0xFFFFFFFFU ? 0 : static_cast<std::uint32_t>(value);
}

void ReadLinks(const TIniIndex& ini, TJTAGIdMapping& mapping) {
    for (int n = 1; mapping.LinkCount() < LinkLimit; ++n) {
        const std::string* fileName = ini.Find(Numbered("BSDLFileName", n));
        if (fileName == nullptr) {
            return;
        }
        if (!fileName->empty()) {
            TBSDLAndLibraryLink& link = mapping.AddLink(*fileName);
            link.LibraryReference = ini.Text(Numbered("LibraryReference", n));
            link.Library = ini.Text(Numbered("Library", n));
        }
    }
}

void ReadIndexLinks(const TIniIndex& ini, TJTAGIdMapping& mapping) {
    for (int n = 1; mapping.IndexLinkCount() < LinkLimit; ++n) {
        if (ini.Find(Numbered("JTAGIndex", n)) == nullptr) {
            return;
        }
        const std::int64_t index = ini.Number(Numbered("JTAGIndex", n), -1);
        if (index != -1 && index == static_cast<std::int32_t>(index)) {
            mapping.SetIndexLinkFile(static_cast<std::int32_t>(index),
                                     ini.Text(Numbered("JTAGIndexBSDLLink", n)));
        }
    }
}

void ReadMapping(const TIniIndex& ini, TJTAGIdMapping& mapping) {
    const std::int64_t length = ini.Number("InstructionLength", 0);
    const bool isSane = length >= 0 && length <= InstructionLengthLimit;
    mapping.InstructionLength = isSane ? static_cast<std::int32_t>(length) : 0;
    mapping.SetLastAssociatedBSDL(ini.Text("LastAssociatedBSDL"));
    mapping.UseInstructionLength = ini.Number("UseInstructionLength", 0) != 0;
    ReadLinks(ini, mapping);
    ReadIndexLinks(ini, mapping);
}

void WriteLinks(TIniFile& ini, const std::string& section, const TJTAGIdMapping& mapping) {
    for (int k = 0; k < mapping.LinkCount(); ++k) {
        const TBSDLAndLibraryLink& link = *mapping.LinkAt(k);
        if (!link.BSDLFileName.empty()) {
            ini.Write(section, Numbered("BSDLFileName", k + 1), link.BSDLFileName);
            ini.Write(section, Numbered("LibraryReference", k + 1), link.LibraryReference);
            ini.Write(section, Numbered("Library", k + 1), link.Library);
        }
    }
}

void WriteIndexLinks(TIniFile& ini, const std::string& section, const TJTAGIdMapping& mapping) {
    for (int k = 0; k < mapping.IndexLinkCount(); ++k) {
        const TJTAGIndexAndBSDLLink& link = *mapping.IndexLinkAt(k);
        if (!link.BSDLFileName.empty()) {
            ini.Write(section, Numbered("JTAGIndex", k + 1), std::to_string(link.JTAGIndex));
            ini.Write(section, Numbered("JTAGIndexBSDLLink", k + 1), link.BSDLFileName);
        }
    }
}

} // namespace

TJTAGIdMapping& TMappingList::FindOrMake(std::uint32_t idCode) {
    TJTAGIdMapping*& entry = ById[idCode];
    if (entry == nullptr) {
        Mappings.push_back(std::make_unique<TJTAGIdMapping>(idCode));
        entry = Mappings.back().get();
    }
    return *entry;
}

void TMappingList::ReadIni(std::string_view text) {
    TIniIndex ini(text);
    for (int n = 1; ini.Enter(Numbered(SectionStem, n)); ++n) {
        const std::uint32_t idCode = IdCodeOf(ini.Text("IdCode"));
        if (idCode != 0) {
            ReadMapping(ini, FindOrMake(idCode));
        }
    }
}

std::string TMappingList::WriteIni(std::string_view oldText) const {
    TIniFile ini(oldText);
    int number = 0;
    for (const auto& mapping : Mappings) {
        const std::string section = Numbered(SectionStem, ++number);
        ini.Write(section, "IdCode", ToHex(mapping->GetIdCode(), 8));
        ini.Write(section, "InstructionLength", std::to_string(mapping->InstructionLength));
        ini.Write(section, "LastAssociatedBSDL", mapping->GetLastAssociatedBSDL());
        ini.Write(section, "UseInstructionLength", mapping->UseInstructionLength ? "1" : "0");
        WriteLinks(ini, section, *mapping);
        WriteIndexLinks(ini, section, *mapping);
    }
    return ini.ToText();
}

} // namespace vorel
