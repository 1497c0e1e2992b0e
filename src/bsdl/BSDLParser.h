// The VHDL parser for BSDL files: it makes BSDL entities.
#pragma once

#include "bsdl/BSDLEntity.h"
#include "bsdl/VHDLParser.h"

namespace vorel {

// Takes the log lines of a parser and of the entities that it made.
class IBSDLLogger {
public:
    virtual void Log(std::string_view line) = 0;

protected:
    IBSDLLogger() = default;
    IBSDLLogger(const IBSDLLogger&) = default;
    IBSDLLogger& operator=(const IBSDLLogger&) = default;
    ~IBSDLLogger() = default;
};

class TBSDLParser : public TVHDLParser {
public:
    // `logger` may be null. The rest is as for TVHDLParser.
    TBSDLParser(IHostClient& host, std::string temporaryFolder, TEntityList& entities,
                std::string fileName, IBSDLLogger* logger);

    std::string GetLogFileName() const override;
    // To the log file while the parse goes on, and to the logger at any time.
    void Log(std::string_view line) override;
    // A TBSDLEntity that bears the file's name.
    std::unique_ptr<TEntity> CreateEntity() override;

private:
    IBSDLLogger* Logger;
};

} // namespace vorel
