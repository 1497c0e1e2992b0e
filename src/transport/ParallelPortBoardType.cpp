#include "transport/ParallelPortBoardType.h"

#include "support/Errors.h"
#include "support/IniFile.h"
#include "support/Text.h"

#include <algorithm>
#include <array>
#include <fstream>

namespace vorel {

namespace {

constexpr std::string_view BoardFileVersion = "JTag Board File v1.0";
// Far above any real board file.
constexpr std::size_t LargestBoardFile = std::size_t{1} << 20U;

using TMapping = TJTagParallelPort_BoardType::TMapping;

std::uint32_t ReadHex(const TIniFile& ini, std::string_view section, std::string_view key,
                      std::string_view fallback) {
    const std::string text = ini.Read(section, key, fallback);
    const std::size_t end = text.find_first_not_of("0123456789abcdefABCDEF");
    // Of a number that does not fit, the low 32 bits count: its last eight digits.
    std::string_view digits = std::string_view(text).substr(0, end);
    digits.remove_prefix(digits.size() - std::min<std::size_t>(digits.size(), 8));
    return static_cast<std::uint32_t>(ParseHex(digits).value_or(0));
}

bool ReadBoolean(const TIniFile& ini, std::string_view section, std::string_view key,
                 bool fallback) {
    const std::string text = ini.Read(section, key);
    if (SameText(text, "true") || SameText(text, "false")) {
        return SameText(text, "true");
    }
    const auto number = ParseDecimal(text);
    return number ? *number != 0 : fallback;
}

TMapping ReadMapping(const TIniFile& ini, std::string_view section) {
    if (!ini.HasSection(section)) {
        return nullptr;
    }
    auto mapping = std::make_unique<TJTagParallelPort_ChannelMapping>();
    mapping->Mask_TCK = ReadHex(ini, section, "Mask_TCK", "0");
    mapping->Mask_TMS = ReadHex(ini, section, "Mask_TMS", "0");
    mapping->Mask_TDO = ReadHex(ini, section, "Mask_TDO", "0");
    mapping->Mask_TDI = ReadHex(ini, section, "Mask_TDI", "0");
    mapping->DataBackground = ReadHex(ini, section, "DataBackground", "FF");
    mapping->DataFinal = ReadHex(ini, section, "DataFinal", "0");
    mapping->Mask_DataFinal = ReadHex(ini, section, "Mask_DataFinal", "0");
    mapping->Multiplexed = ReadBoolean(ini, section, "Multiplexed", false);
    mapping->ChannelAddress =
        static_cast<std::uint8_t>(ReadHex(ini, section, "ChannelAddress", "0"));
    mapping->IsJTag = ReadBoolean(ini, section, "IsJTag", true);
    mapping->NextChannel = static_cast<std::uint8_t>(
        std::min<std::uint32_t>(ReadHex(ini, section, "NextChannel", "FF"), 0xFF));
    return mapping;
}

} // namespace

bool TJTagParallelPort_BoardType::LoadFromFile(const std::filesystem::path& fileName) {
    std::error_code error;
    const auto size = std::filesystem::file_size(fileName, error);
    if (error || size > LargestBoardFile) {
        return false;
    }
    std::string text(static_cast<std::size_t>(size), '\0');
    std::ifstream file(fileName, std::ios::binary);
    return file.read(text.data(), static_cast<std::streamsize>(text.size())) && LoadFromText(text);
}

bool TJTagParallelPort_BoardType::LoadFromText(std::string_view text) {
    const TIniFile ini(text);
    if (!SameText(ini.Read("FileVersion", "Version"), BoardFileVersion)) {
        return false;
    }
    Name = ini.Read("BoardDetails", "Name", Name);
    BoardIds.clear();
    for (int i = 0; ini.HasKey("BoardDetails", "BoardId" + std::to_string(i)); ++i) {
        BoardIds.push_back(ReadHex(ini, "BoardDetails", "BoardId" + std::to_string(i), "0"));
    }
    Xilinx = ReadBoolean(ini, "BoardDetails", "Xilinx", Xilinx);
    BoardChannel = ReadMapping(ini, "BoardChannel");
    HardChannel = ReadMapping(ini, "HardChannel");
    SoftChannel = ReadMapping(ini, "SoftChannel");
    SPIChannel = ReadMapping(ini, "SPIChannel");
    return true;
}

void TJTagParallelPort_BoardType::SetPort(IParallelPort* port) noexcept {
    for (const TMapping* mapping : {&BoardChannel, &HardChannel, &SoftChannel, &SPIChannel}) {
        if (*mapping != nullptr) {
            (*mapping)->SetPort(port);
        }
    }
}

void TJTagParallelPort_BoardType::SetAnalyser(IJTagAnalyser* analyser) noexcept {
    for (const TMapping* mapping : {&BoardChannel, &HardChannel, &SoftChannel, &SPIChannel}) {
        if (*mapping != nullptr) {
            (*mapping)->SetAnalyser(analyser, mapping == &BoardChannel ? 1 : 0);
        }
    }
}

bool TJTagParallelPort_BoardType::PortIsUsable() {
    if (HardChannel == nullptr || HardChannel->GetPort() == nullptr) {
        return false;
    }
    Bool32 present = True32;
    if (Xilinx) {
        Check(HardChannel->GetPort()->IsXilinxCable(present), "Asking for the cable");
    }
    return present != False32;
}

bool TJTagParallelPort_BoardType::MatchesBoardId(std::uint32_t id) const noexcept {
    return BoardIds.empty() || std::find(BoardIds.begin(), BoardIds.end(), id) != BoardIds.end();
}

} // namespace vorel
