#include "bsdl/ParserLog.h"

#include "support/Text.h"

#include <atomic>
#include <filesystem>
#include <random>

namespace vorel {

namespace {

// Unlike any name of another parse, in this process or another one.
std::string DraftName(const std::string& path) {
    static const std::uint32_t process = std::random_device()();
    static std::atomic<std::uint32_t> count{0};
    return path + "." + ToHex(process, 8) + ToHex(++count, 4);
}

} // namespace

void TParserLog::TCloseFile::operator()(std::FILE* file) const noexcept {
    std::fclose(file);
}

TParserLog::~TParserLog() {
    if (File) {
        File.reset();
        std::remove(TempLogName.c_str());
    }
}

void TParserLog::Open(std::string path) {
    Close();
    if (path.empty()) {
        return;
    }
    TempLogName = DraftName(path);
    // "x": never into a file or link that is there already.
    File.reset(std::fopen(TempLogName.c_str(), "wbx"));
    if (File) {
        LogName = std::move(path);
        Size = 0;
        std::setvbuf(File.get(), nullptr, _IONBF, 0);
    }
}

void TParserLog::Write(std::string_view line) {
    line = line.substr(0, LineLimit);
    if (!IsOpen() || line.size() >= SizeLimit - Size) {
        return;
    }
    Size += line.size() + 1;
    Pending.append(line).push_back('\n');
    constexpr std::size_t piece = std::size_t{1} << 16U;
    if (Pending.size() >= piece) {
        Flush();
    }
}

void TParserLog::Flush() {
    // A full disk costs lines of the log, nothing else.
    static_cast<void>(std::fwrite(Pending.data(), 1, Pending.size(), File.get()));
    Pending.clear();
}

void TParserLog::Close() {
    if (!IsOpen()) {
        return;
    }
    Flush();
    File.reset();
    std::error_code error;
    std::filesystem::rename(TempLogName, LogName, error);
    if (error) {
        std::filesystem::remove(TempLogName, error);
    }
    LogName.clear();
}

} // namespace vorel
