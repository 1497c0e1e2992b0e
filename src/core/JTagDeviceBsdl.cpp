#include "core/JTagDeviceBsdl.h"

#include "core/JTagDevice.h"
#include "support/Errors.h"
#include "support/Text.h"

#include <filesystem>

namespace vorel {

namespace {

constexpr char Separator = static_cast<char>(std::filesystem::path::preferred_separator);

using TDriverText = Status (IVorelDriver::*)(WideText&) noexcept;

std::string TextOf(IVorelDriver& driver, TDriverText get) {
    WideText text;
    Check((driver.*get)(text), "asking a driver");
    return ToUtf8(text);
}

bool FileExists(const std::string& path) {
    std::error_code error;
    return std::filesystem::is_regular_file(path, error);
}

// The path with another extension.
std::string LogPathOf(const std::string& path) {
    const std::size_t folder = path.size() - FileNameOf(path).size();
    return path.substr(0, folder).append(StemOf(path)).append(".Log");
}

// Not owned: it stays the driver's.
std::shared_ptr<IBSDLEntity> DefaultEntity(IVorelDriver& driver) {
    IBSDLEntity* entity = nullptr;
    Check(driver.GetDefaultEntity(entity), "asking a driver for its default entity");
    return {std::shared_ptr<void>(), entity};
}

} // namespace

bool IsGenericDriver(IVorelDriver& driver) {
    return SameText(TextOf(driver, &IVorelDriver::GetDeviceName), TJTagDevice::GenericName);
}

IBSDLEntity* TJTagDeviceBsdl::GetEntity(const std::string& part, IVorelDriver& driver,
                                        std::uint32_t idCode, std::int32_t chainIndex) {
    const auto known = Entities.find(part);
    if (known != Entities.end()) {
        return known->second.get();
    }
    const std::string path = FindFile(driver, idCode, chainIndex);
    bool hadErrors = false;
    std::shared_ptr<IBSDLEntity> entity;
    if (!path.empty()) {
        entity = Load(path, hadErrors);
    }
    if (hadErrors) {
        TellOfErrors(path);
    }
    if (entity == nullptr || hadErrors) {
        entity = DefaultEntity(driver);
    }
    // With nothing at all a file may still turn up; a bad one is not read again for each question.
    if (entity != nullptr || hadErrors) {
        Entities.emplace(part, entity);
    }
    return entity.get();
}

void TJTagDeviceBsdl::Forget(const std::string& part) {
    const auto known = Entities.find(part);
    if (known != Entities.end()) {
        Replaced.push_back(known->second);
        Entities.erase(known);
    }
}

std::string TJTagDeviceBsdl::FindFile(IVorelDriver& driver, std::uint32_t idCode,
                                      std::int32_t chainIndex) const {
    if (Context.Bsdl == nullptr) {
        return {};
    }
    if (!IsGenericDriver(driver)) {
        const std::string path = LibraryPath(driver);
        return path.empty() ? path : Context.Bsdl->FindFile(path);
    }
    WideText path;
    if (Context.Generic != nullptr) {
        Check(Context.Generic->GetBSDLFile(idCode, chainIndex, path),
              "asking for a generic device's BSDL file");
    }
    std::string file = ToUtf8(path);
    return FileExists(file) ? file : std::string();
}

std::string TJTagDeviceBsdl::LibraryPath(IVorelDriver& driver) const {
    std::string file = TextOf(driver, &IVorelDriver::GetBsdlFile);
    if (file.empty() || FileNameOf(file).size() != file.size()) {
        return file;
    }
    WideText library;
    Check(Context.Host.GetDirectory(HostDirectory::Library, library),
          "asking for the library folder");
    std::string path = ToUtf8(library);
    const std::string vendor = TextOf(driver, &IVorelDriver::GetVendor);
    const std::string family = TextOf(driver, &IVorelDriver::GetFamily);
    for (const std::string& step : {std::string("BSDL"), vendor, family, file}) {
        path.append(1, Separator).append(step);
    }
    return path;
}

// A report that cannot be saved is no reason to do without the entity.
std::shared_ptr<IBSDLEntity> TJTagDeviceBsdl::Load(const std::string& path, bool& hadErrors) const {
    const TLoadedBsdl loaded = Context.Bsdl->Load(path);
    hadErrors = loaded.HadErrors;
    if (loaded.Entity != nullptr) {
        Context.Host.SaveTextFile(ToWide(LogPathOf(path)), loaded.Log);
    }
    return loaded.Entity;
}

void TJTagDeviceBsdl::TellOfErrors(const std::string& path) const {
    MessageBoxAnswer answer = MessageBoxAnswer::Ok;
    Context.Host.ShowMessageBox(
        MessageBoxKind::Information, WideText(),
        ToWide("Error reading BSDL file: " + path + "\rUsing default data for device."), answer);
}

} // namespace vorel
