// Unpacking of zip archives whose contents are not to be trusted.
#pragma once

#include <cstdint>
#include <string>

namespace vorel {

class IZipExtractor {
public:
    virtual ~IZipExtractor() = default;

    // Unpacks every file of `archive` into `folder` (both UTF-8), without the folders inside the
    // archive: the name is what follows the last '/', '\' or ':'. Files that are there are
    // replaced, the last one of equal names wins. True when all files were unpacked; a file that
    // fails leaves what was there.
    virtual bool ExtractAll(const std::string& archive, const std::string& folder) = 0;

protected:
    IZipExtractor() = default;
    IZipExtractor(const IZipExtractor&) = default;
    IZipExtractor& operator=(const IZipExtractor&) = default;
};

// What an archive may cost. Counted are the bytes that really come out; the sizes that an archive
// states play no part.
struct TZipLimits {
    std::uint64_t BytesPerFile = std::uint64_t{256} << 20U;
    std::uint64_t BytesPerArchive = std::uint64_t{1} << 30U;
    std::int64_t Entries = 65536;
};

// On libzip. Names "", ".", ".." and names with a NUL are refused; a name with a separator at its
// end is a folder and passed over. Each file is written under a name of its own and renamed when
// its data and checksum were right. The first limit that is reached ends the work.
class TZipExtractor final : public IZipExtractor {
public:
    explicit TZipExtractor(TZipLimits limits = {}) : Limits(limits) {}

    bool ExtractAll(const std::string& archive, const std::string& folder) override;

private:
    TZipLimits Limits;
};

} // namespace vorel
