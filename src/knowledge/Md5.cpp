#include "knowledge/Md5.h"

#include "support/Errors.h"
#include "support/Text.h"

#include <array>
#include <fstream>
#include <nettle/md5.h>

namespace vorel {

namespace {

constexpr std::size_t BlockSize = 8192;

} // namespace

std::string Md5OfFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw EVorelError("Cannot open file \"" + path + "\"");
    }
    md5_ctx context{};
    md5_init(&context);
    std::array<char, BlockSize> block{};
    while (file.read(block.data(), block.size()) || file.gcount() > 0) {
        md5_update(&context, static_cast<std::size_t>(file.gcount()),
                   reinterpret_cast<const std::uint8_t*>(block.data()));
    }
    if (file.bad()) {
        throw EVorelError("Cannot read file \"" + path + "\"");
    }
    std::array<std::uint8_t, MD5_DIGEST_SIZE> digest{};
    md5_digest(&context, digest.size(), digest.data());
    std::string text;
    for (const std::uint8_t byte : digest) {
        text += ToHex(byte, 2);
    }
    return text;
}

} // namespace vorel
