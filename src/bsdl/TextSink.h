// Builds a text up to a limit and drops the rest, so that a text about huge names costs no more
// than what of it is kept.
#pragma once

#include <algorithm>
#include <limits>
#include <string>
#include <string_view>

namespace vorel {

class TTextSink {
public:
    explicit TTextSink(std::size_t limit = std::numeric_limits<std::size_t>::max())
        : Limit(limit) {}

    TTextSink& operator<<(std::string_view text) {
        Text.append(text.substr(0, std::min(text.size(), Limit - Text.size())));
        return *this;
    }
    // The text, padded with blanks on the right to `width`.
    TTextSink& Padded(std::string_view text, std::size_t width) {
        *this << text;
        for (std::size_t i = text.size(); i < width; ++i) {
            *this << " ";
        }
        return *this;
    }
    const std::string& Get() const noexcept { return Text; }

private:
    std::string Text;
    std::size_t Limit;
};

} // namespace vorel
