#include "objectcode/MemoryWords.h"

#include <algorithm>

namespace vorel {

TByteConsumer AsWords(const TBlockConsumer& consumer) {
    if (!consumer) {
        return {};
    }
    return [&consumer, words = TMemoryWords()](const std::uint8_t* bytes, std::int64_t count,
                                               std::int64_t address) mutable {
        words.assign(bytes, bytes + std::max<std::int64_t>(count, 0));
        consumer(words.data(), count, address);
    };
}

} // namespace vorel
