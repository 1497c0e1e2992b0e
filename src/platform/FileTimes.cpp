#include "platform/FileTimes.h"

#include <algorithm>

#include <sys/stat.h>

namespace vorel {

namespace {

constexpr std::time_t FirstMoment = 315532800; // 1980-01-01 00:00:00
constexpr std::time_t LastMoment = 4354819199; // 2107-12-31 23:59:59

} // namespace

std::int32_t PackFatTime(std::time_t moment) noexcept {
    moment = std::clamp(moment, FirstMoment, LastMoment);
    std::tm parts{};
    gmtime_r(&moment, &parts);
    const auto field = [](int value, unsigned shift) {
        return static_cast<std::uint32_t>(value) << shift;
    };
    const std::uint32_t date =
        field(parts.tm_year - 80, 9) | field(parts.tm_mon + 1, 5) | field(parts.tm_mday, 0);
    const std::uint32_t time = field(parts.tm_hour, 11) | field(parts.tm_min, 5) |
                               field(std::min(parts.tm_sec, 59) / 2, 0);
    return static_cast<std::int32_t>((date << 16U) | time);
}

std::int32_t TSystemFileTimes::LastWrite(const std::string& path) {
    struct stat facts {};
    return stat(path.c_str(), &facts) == 0 ? PackFatTime(facts.st_mtime) : -1;
}

} // namespace vorel
