#include "knowledge/Manage_GenericDevices.h"

#include "knowledge/TextFile.h"
#include "support/Errors.h"
#include "support/Text.h"

#include <filesystem>

namespace vorel {

TGenericDeviceManager::TGenericDeviceManager(std::string path, IMappingEditor* editor)
    : Path(std::move(path)), Editor(editor) {
    Mappings.ReadIni(ReadTextFile(Path).value_or(""));
}

TGenericDeviceManager::~TGenericDeviceManager() {
    static_cast<void>(Guard([this] { Save(); }));
}

void TGenericDeviceManager::Save() const {
    namespace fs = std::filesystem;
    std::error_code error;
    const std::uintmax_t size = fs::file_size(Path, error);
    const bool wasReadWhole = error || size <= TextFileLimit;
    if (wasReadWhole && fs::is_directory(fs::path(Path).parent_path(), error)) {
        ReplaceTextFile(Path, Mappings.WriteIni(ReadTextFile(Path).value_or("")));
    }
}

Status TGenericDeviceManager::GiveText(std::uint32_t idCode, std::int32_t jtagIndex,
                                       TextGetter getter, WideText& text) noexcept {
    return Guard([&] {
        text.clear();
        text = ToWide((Mappings.FindOrMake(idCode).*getter)(jtagIndex));
    });
}

Status TGenericDeviceManager::SetBSDLFile(std::uint32_t idCode, std::int32_t jtagIndex,
                                          const WideText& path) noexcept {
    return Guard([&] { Mappings.FindOrMake(idCode).SetBSDLFile(jtagIndex, ToUtf8(path)); });
}

Status TGenericDeviceManager::SetInstructionLength(std::uint32_t idCode,
                                                   std::int32_t bits) noexcept {
    return Guard([&] { Mappings.FindOrMake(idCode).InstructionLength = bits; });
}

Status TGenericDeviceManager::GetBSDLFile(std::uint32_t idCode, std::int32_t jtagIndex,
                                          WideText& path) noexcept {
    return GiveText(idCode, jtagIndex, &TJTAGIdMapping::GetBSDLFile, path);
}

Status TGenericDeviceManager::GetLibraryReference(std::uint32_t idCode, std::int32_t jtagIndex,
                                                  WideText& text) noexcept {
    return GiveText(idCode, jtagIndex, &TJTAGIdMapping::GetLibraryReference, text);
}

Status TGenericDeviceManager::GetLibrary(std::uint32_t idCode, std::int32_t jtagIndex,
                                         WideText& text) noexcept {
    return GiveText(idCode, jtagIndex, &TJTAGIdMapping::GetLibrary, text);
}

Status TGenericDeviceManager::GetInstructionLength(std::uint32_t idCode,
                                                   std::int32_t& bits) noexcept {
    bits = 0;
    return Guard([&] { bits = Mappings.FindOrMake(idCode).InstructionLength; });
}

Status TGenericDeviceManager::GetOtherBSDLFiles(std::uint32_t idCode, std::int32_t jtagIndex,
                                                WideText& files) noexcept {
    return GiveText(idCode, jtagIndex, &TJTAGIdMapping::GetOtherBSDLFiles, files);
}

Status TGenericDeviceManager::GetDisplayText(std::uint32_t idCode, std::int32_t jtagIndex,
                                             WideText& text) noexcept {
    return GiveText(idCode, jtagIndex, &TJTAGIdMapping::GetDisplayText, text);
}

Status TGenericDeviceManager::EditMapping(std::uint32_t idCode) noexcept {
    return Guard([&] {
        TJTAGIdMapping& mapping = Mappings.FindOrMake(idCode);
        if (Editor != nullptr && Editor->Edit(mapping)) {
            Editor->NotifyChanged();
        }
    });
}

} // namespace vorel
