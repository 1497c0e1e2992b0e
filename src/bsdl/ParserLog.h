// The log file of one parse: written under a name of its own and moved over the final name when the
// parse ends. Lines are gathered in memory and written in large pieces. A folder that cannot be
// written gives no log and no error.
#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

namespace vorel {

class TParserLog {
public:
    // Longest line; what goes beyond is cut.
    static constexpr std::size_t LineLimit = 255;
    // Largest log; further lines are dropped.
    static constexpr std::size_t SizeLimit = std::size_t{64} << 20U;

    TParserLog() = default;
    TParserLog(const TParserLog&) = delete;
    TParserLog& operator=(const TParserLog&) = delete;
    ~TParserLog();

    // `path` is the final name; an empty one opens nothing.
    void Open(std::string path);
    bool IsOpen() const noexcept { return !LogName.empty(); }
    void Write(std::string_view line);
    void Close();

private:
    struct TCloseFile {
        void operator()(std::FILE* file) const noexcept;
    };

    void Flush();

    std::string LogName;
    std::string TempLogName;
    std::string Pending;
    std::size_t Size = 0; // bytes taken so far
    std::unique_ptr<std::FILE, TCloseFile> File;
};

} // namespace vorel
