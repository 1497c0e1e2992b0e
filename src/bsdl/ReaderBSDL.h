// Reads one BSDL file.
#pragma once

#include "bsdl/BSDLParser.h"
#include "bsdl/IdMap.h"

namespace vorel {

class TReaderBSDL {
public:
    // `fileName` (UTF-8) is the file. `temporaryFolder` takes the log file of the parse; an empty
    // one means none. `logger` may be null.
    TReaderBSDL(IHostClient& host, const TIdMap& idMap, std::string temporaryFolder,
                std::string fileName, IBSDLLogger* logger = nullptr);

    // Reads the file; nothing happens when it does not exist.
    void Read();
    // Reads the bytes of a file that are in memory already; the file name is for reports.
    void ReadText(const std::string& text);

    bool GetHadErrors() const noexcept { return ErrorLine != -1; }
    // Place of the first error, counted from 1; -1 without one.
    std::int32_t GetErrorLine() const noexcept { return ErrorLine; }
    std::int32_t GetErrorColumn() const noexcept { return ErrorColumn; }
    // The first entity in order of names, which then is the caller's; null when there is none.
    std::unique_ptr<TBSDLEntity> TakeEntity();

private:
    IHostClient& Host;
    const TIdMap& IdMap;
    std::string TemporaryFolder;
    std::string FileName;
    IBSDLLogger* Logger;
    TEntityList Entities;
    std::int32_t ErrorLine = -1;
    std::int32_t ErrorColumn = -1;
};

} // namespace vorel
