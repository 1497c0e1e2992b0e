// Last-write times of files in the packed form that the driver cache stores.
#pragma once

#include <cstdint>
#include <ctime>
#include <string>

namespace vorel {

// A moment (UTC) as packed FAT date and time: date in the high 16 bits (7 bits year from 1980,
// 4 month, 5 day), time in the low 16 (5 bits hour, 6 minute, 5 second / 2). Moments outside 1980
// to 2107 are moved to the nearer end.
std::int32_t PackFatTime(std::time_t moment) noexcept;

class IFileTimes {
public:
    virtual ~IFileTimes() = default;

    // Packed last-write time, not converted to local time; -1 for a file that cannot be read.
    virtual std::int32_t LastWrite(const std::string& path) = 0;
};

class TSystemFileTimes final : public IFileTimes {
public:
    std::int32_t LastWrite(const std::string& path) override;
};

} // namespace vorel
