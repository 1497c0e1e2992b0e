#include "support/NeutralHost.h"

#include "support/Errors.h"
#include "support/Text.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>

namespace vorel {

namespace {

std::string RandomGuidText() {
    std::random_device source;
    std::array<unsigned, 4> word{source(), source(), source(), source()};
    word[1] = (word[1] & 0xFFFF0FFFU) | 0x4000U;     // version 4: random
    word[2] = (word[2] & 0x3FFFFFFFU) | 0x80000000U; // the RFC 4122 variant
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), "{%08X-%04X-%04X-%04X-%04X%08X}", word[0],
                  word[1] >> 16U, word[1] & 0xFFFFU, word[2] >> 16U, word[2] & 0xFFFFU, word[3]);
    return text.data();
}

void ReplaceFile(const std::filesystem::path& path, const std::string& text) {
    std::filesystem::path draft = path;
    draft += ".new";
    std::ofstream file(draft, std::ios::binary | std::ios::trunc);
    file.write(text.data(), static_cast<std::streamsize>(text.size()));
    file.close();
    std::error_code error;
    if (file) {
        std::filesystem::rename(draft, path, error);
    }
    if (!file || error) {
        std::filesystem::remove(draft, error);
        throw EVorelError("Cannot write " + path.string());
    }
}

} // namespace

Status TNeutralHost::ReadOption(const WideText&, const WideText&, const WideText& fallback,
                                WideText& value) noexcept {
    return Guard([&] { value = fallback; });
}

Status TNeutralHost::WriteOption(const WideText&, const WideText&, const WideText&) noexcept {
    return StatusOk;
}

Status TNeutralHost::ReadUserSetting(const WideText&, const WideText&, const WideText& fallback,
                                     WideText& value) noexcept {
    return Guard([&] { value = fallback; });
}

Status TNeutralHost::WriteUserSetting(const WideText&, const WideText&, const WideText&) noexcept {
    return StatusOk;
}

Status TNeutralHost::NewUniqueId(WideText& id) noexcept {
    return Guard([&] {
        id.clear();
        id = ToWide(RandomGuidText());
    });
}

Status TNeutralHost::ShowStatusText(std::int32_t, const WideText&) noexcept {
    return StatusOk;
}

Status TNeutralHost::AddMessage(const WideText&, const WideText&, const WideText&,
                                const WideText&) noexcept {
    return StatusOk;
}

Status TNeutralHost::ShowMessageBox(MessageBoxKind kind, const WideText&, const WideText&,
                                    MessageBoxAnswer& answer) noexcept {
    answer = kind == MessageBoxKind::YesNo ? MessageBoxAnswer::No : MessageBoxAnswer::Ok;
    return StatusOk;
}

Status TNeutralHost::BeginWaitCursor() noexcept {
    return StatusOk;
}

Status TNeutralHost::EndWaitCursor() noexcept {
    return StatusOk;
}

Status TNeutralHost::ProcessPendingEvents() noexcept {
    return StatusOk;
}

Status TNeutralHost::RunProcess(const WideText&, const WideText&) noexcept {
    return StatusOk;
}

Status TNeutralHost::AddPanel(const WideText&, const WideText&, void*) noexcept {
    return StatusOk;
}

Status TNeutralHost::ShowPanel(const WideText&) noexcept {
    return StatusOk;
}

Status TNeutralHost::RemovePanel(const WideText&) noexcept {
    return StatusOk;
}

Status TNeutralHost::GetObjectCodeFile(const WideText&, WideText& path) noexcept {
    path.clear();
    return StatusOk;
}

Status TNeutralHost::GetDirectory(HostDirectory directory, WideText& path) noexcept {
    return Guard([&] {
        path.clear();
        if (directory == HostDirectory::Temporary) {
            path = std::filesystem::temp_directory_path().u16string();
        }
    });
}

Status TNeutralHost::SaveTextFile(const WideText& path, const std::string& text) noexcept {
    return Guard([&] { ReplaceFile(std::filesystem::path(path), text); });
}

Status TNeutralHost::GetVersionText(WideText& text) noexcept {
    text.clear();
    return StatusOk;
}

Status TNeutralHost::IsClosing(Bool32& closing) noexcept {
    closing = False32;
    return StatusOk;
}

Status TNeutralHost::GetUsbServices(IUsbServices*& services) noexcept {
    services = nullptr;
    return StatusOk;
}

Status TNeutralHost::GetParallelPortManager(IParallelPortManager*& manager) noexcept {
    manager = nullptr;
    return StatusOk;
}

Status TNeutralHost::GetTrafficAnalyser(IJTagAnalyser*& analyser) noexcept {
    analyser = nullptr;
    return StatusOk;
}

} // namespace vorel
