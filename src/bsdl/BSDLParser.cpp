#include "bsdl/BSDLParser.h"

namespace vorel {

TBSDLParser::TBSDLParser(IHostClient& host, std::string temporaryFolder, TEntityList& entities,
                         std::string fileName, IBSDLLogger* logger)
    : TVHDLParser(host, std::move(temporaryFolder), entities, std::move(fileName)),
      Logger(logger) {}

std::string TBSDLParser::GetLogFileName() const {
    return "BSDL Parser.log";
}

void TBSDLParser::Log(std::string_view line) {
    TVHDLParser::Log(line);
    if (Logger != nullptr) {
        Logger->Log(line.substr(0, TParserLog::LineLimit));
    }
}

std::unique_ptr<TEntity> TBSDLParser::CreateEntity() {
    auto entity = std::make_unique<TBSDLEntity>();
    entity->FileName = FileName;
    return entity;
}

} // namespace vorel
